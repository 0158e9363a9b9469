#include <algorithm>
#include <exception>
#include <optional>
#include <utility>

#include <quillmate/codedb/codes.h>
#include <quillmate/navigation/callers.h>
#include <quillmate/navigation/routine_lines.h>
#include <quillmate/text/marked_walk.h>

#include "needle_p.h"
#include "words_p.h"

namespace quillmate::navigation {
namespace {

/// Comments, string literals and keywords. Any opener begins such a span, that of a header line too; it ends with the
/// next closer of a span, so that of a header line only the first keyword belongs to it.
constexpr text::SpanRule kNoCallers{text::kAnyOpener, text::SpanClose, text::SpanClose.size()};

std::string ScopeQuery(int view, std::string_view name) {
  return "SELECT td_rout.rou_name, "
         "  td_rout.mod_num, "
         "  td_rout.rou_typ, "
         "  td_rout.rou_open, td_rout.rou_num"
         " FROM td_rout"
         " WHERE (((td_rout.rou_name)='" +
         codedb::QuoteLiteral(name) + "') AND ((td_rout.mod_num)=" + std::to_string(view + 1) + "));";
}

std::string ModuleQuery(int moduleNumber) {
  return "SELECT td_Mod.mod_typ, "
         "  td_Mod.mod_name, "
         "  td_Mod.mod_num"
         " FROM td_Mod"
         " Where td_mod.mod_num = " +
         std::to_string(moduleNumber);
}

/// Tells which offsets of a marked-up text no caller is looked for at.
class SpanWalk {
 public:
  explicit SpanWalk(std::string_view text) : text_(text) {}

  /// Offsets must ascend.
  bool Covers(std::size_t offset) {
    while (span_.end <= offset) span_ = text::NextSpan(text_, kNoCallers, span_.end);
    return offset >= span_.start;
  }

 private:
  std::string_view text_;
  text::MarkedSpan span_;  // the last one looked at
};

bool StandsAlone(std::string_view text, std::size_t start, std::size_t end) noexcept {
  return (start == 0 || !IsIdentifierAt(text, start - 1)) && (end == text.size() || !IsIdentifierAt(text, end));
}

/// Adds one module's nodes to the tree, the module's own when the first mention in it turns up.
class ModuleScan {
 public:
  ModuleScan(codedb::CodeDatabase& database, ProjectTree& tree, std::int64_t& lastRoutine)
      : database_(database), tree_(tree), lastRoutine_(lastRoutine) {}

  void Run(std::string_view text, int moduleNumber, Needle& name) {
    SpanWalk spans(text);
    std::size_t counted = 0;
    long line = 1;
    name.Start(text, 0);
    for (std::size_t found = name.Next(); found != std::string_view::npos; found = name.Next()) {
      if (!StandsAlone(text, found, found + name.Length()) || spans.Covers(found)) continue;
      const std::string_view passed = text.substr(counted, found - counted);
      line += static_cast<long>(std::ranges::count(passed, '\r'));
      counted = found;
      if (!walk_) AddModule(moduleNumber);
      if (moduleNode_ >= 0) AddRoutineAt(line);
    }
  }

 private:
  void AddModule(int moduleNumber) {
    routines_ = ReadRoutineLines(database_, moduleNumber);
    walk_.emplace(routines_);
    codedb::Recordset module = database_.OpenRecordset(ModuleQuery(moduleNumber));
    if (!module.Next()) return;
    moduleNode_ = Add({"M" + module.Text(2), module.Text(1), "M" + module.Text(0), -1});
    ++tree_.moduleCount;
  }

  void AddRoutineAt(long line) {
    const int found = walk_->At(line);
    if (found < 0) return;
    const RoutineLines& routine = routines_[static_cast<std::size_t>(found)];
    if (routine.number == lastRoutine_) return;
    lastRoutine_ = routine.number;
    Add({"R" + std::to_string(routine.number), routine.name, codedb::RoutineImageKey(routine.kind, routine.visibility),
         moduleNode_});
  }

  int Add(TreeNode node) {
    const int index = static_cast<int>(tree_.nodes.size());
    tree_.byKey.emplace(node.key, index);
    tree_.nodes.push_back(std::move(node));
    return index;
  }

  codedb::CodeDatabase& database_;
  ProjectTree& tree_;
  std::int64_t& lastRoutine_;  // of the last routine node added in any module
  std::vector<RoutineLines> routines_;
  std::optional<LineWalk> walk_;
  int moduleNode_ = -1;
};

}  // namespace

CallerScope FindCallerScope(codedb::CodeDatabase& database, int view, std::string_view name) noexcept try {
  codedb::Recordset routine = database.OpenRecordset(ScopeQuery(view, name));
  if (!routine.Next()) return CallerScope::kUnknown;
  const auto kind = routine.Number(2).value_or(0);
  if (kind >= codedb::kLet && kind <= codedb::kSet) return CallerScope::kProperty;
  return routine.Number(3).value_or(0) == codedb::kPrivate ? CallerScope::kModule : CallerScope::kProject;
} catch (const std::exception&) {
  return CallerScope::kFailed;
}

std::string_view ScopeMessage(CallerScope scope) noexcept {
  switch (scope) {
    case CallerScope::kUnknown:
      return "Infos zu Routine nicht gefunden";
    case CallerScope::kProperty:
      return "Property wird von der Routinensuche nicht unterstützt";
    case CallerScope::kFailed:
      return "Routine nicht gefunden";
    default:
      return {};
  }
}

ProjectTree ScanCallers(codedb::CodeDatabase& database, ProjectTexts& texts, std::string_view name, int firstModule,
                        int lastModule) {
  ProjectTree tree;
  if (name.empty()) return tree;
  Needle needle(name, false);
  std::int64_t lastRoutine = 0;
  for (int number = firstModule; number <= lastModule; ++number) {
    ModuleScan(database, tree, lastRoutine).Run(texts.Text(number), number, needle);
  }
  return tree;
}

Callers FindCallers(codedb::CodeDatabase& database, ProjectTexts& texts, int view, std::string_view name) {
  Callers callers{FindCallerScope(database, view, name), {}};
  if (callers.scope == CallerScope::kModule) {
    callers.tree = ScanCallers(database, texts, name, view + 1, view + 1);
  } else if (callers.scope == CallerScope::kProject) {
    callers.tree = ScanCallers(database, texts, name, 1, texts.Count());
  }
  return callers;
}

}  // namespace quillmate::navigation
