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
  ModuleScan(codedb::CodeDatabase& database, ProjectTree& tree, codedb::RoutineNumber& lastRoutine)
      : database_(database), tree_(tree), lastRoutine_(lastRoutine) {}

  void Run(std::string_view text, codedb::ModuleNumber module, Needle& name) {
    SpanWalk spans(text);
    std::size_t counted = 0;
    codedb::Line line{1};
    name.Start(text, 0);
    for (std::size_t found = name.Next(); found != std::string_view::npos; found = name.Next()) {
      if (!StandsAlone(text, found, found + name.Length()) || spans.Covers(found)) continue;
      const std::string_view passed = text.substr(counted, found - counted);
      line.value += static_cast<std::int32_t>(std::ranges::count(passed, '\r'));
      counted = found;
      if (!walk_) AddModule(module);
      if (moduleNode_ >= 0) AddRoutineAt(line);
    }
  }

 private:
  void AddModule(codedb::ModuleNumber number) {
    routines_ = database_.RoutinesWithLines(number);
    walk_.emplace(routines_);
    std::optional<codedb::ModuleRecord> module = database_.Module(number);
    if (!module) return;
    moduleNode_ = tree_.Add({number, {}, std::move(module->name), codedb::ModuleImageKey(module->kind), -1});
  }

  void AddRoutineAt(codedb::Line line) {
    const int found = walk_->At(line);
    if (found < 0) return;
    const codedb::RoutineRecord& routine = routines_[static_cast<std::size_t>(found)];
    if (routine.number == lastRoutine_) return;
    lastRoutine_ = routine.number;
    tree_.Add({routine.module, routine.number, routine.name, codedb::RoutineImageKey(routine.kind, routine.visibility),
               moduleNode_});
  }

  codedb::CodeDatabase& database_;
  ProjectTree& tree_;
  codedb::RoutineNumber& lastRoutine_;  // of the last routine node added in any module
  std::vector<codedb::RoutineRecord> routines_;
  std::optional<LineWalk> walk_;
  int moduleNode_ = -1;
};

}  // namespace

CallerScope FindCallerScope(codedb::CodeDatabase& database, codedb::ViewIndex view, std::string_view name) noexcept
    try {
  const auto routines = database.RoutinesNamed(name, codedb::ModuleOf(view));
  if (routines.empty()) return CallerScope::kUnknown;
  const codedb::RoutineRecord& routine = routines.front();
  if (routine.kind >= codedb::kLet && routine.kind <= codedb::kSet) return CallerScope::kProperty;
  return routine.visibility == codedb::kPrivate ? CallerScope::kModule : CallerScope::kProject;
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

ProjectTree ScanCallers(codedb::CodeDatabase& database, ProjectTexts& texts, std::string_view name,
                        codedb::ModuleNumber first, codedb::ModuleNumber last) {
  ProjectTree tree;
  if (name.empty()) return tree;
  Needle needle(name, false);
  codedb::RoutineNumber lastRoutine;
  for (codedb::ModuleNumber module = first; module <= last; ++module.value) {
    ModuleScan(database, tree, lastRoutine).Run(texts.Text(module), module, needle);
  }
  return tree;
}

Callers FindCallers(codedb::CodeDatabase& database, ProjectTexts& texts, codedb::ViewIndex view,
                    std::string_view name) {
  Callers callers{FindCallerScope(database, view, name), {}};
  if (callers.scope == CallerScope::kModule) {
    callers.tree = ScanCallers(database, texts, name, codedb::ModuleOf(view), codedb::ModuleOf(view));
  } else if (callers.scope == CallerScope::kProject) {
    callers.tree = ScanCallers(database, texts, name, {1}, {texts.Count()});
  }
  return callers;
}

}  // namespace quillmate::navigation
