#include <algorithm>
#include <map>
#include <optional>

#include <quillmate/language/parse.h>
#include <quillmate/project/folding.h>
#include <quillmate/symbols/exact_routines.h>

namespace quillmate::project {
namespace {

using language::StatementKind;

/// What a statement closes; nothing for one that closes no block.
std::optional<StatementKind> OpenerOf(StatementKind kind) {
  switch (kind) {
    case StatementKind::kEndIf:
      return StatementKind::kIf;
    case StatementKind::kEndSelect:
      return StatementKind::kSelect;
    case StatementKind::kNext:
      return StatementKind::kFor;
    case StatementKind::kLoop:
      return StatementKind::kDo;
    case StatementKind::kWend:
      return StatementKind::kWhile;
    case StatementKind::kEndWith:
      return StatementKind::kWith;
    default:
      return std::nullopt;
  }
}

bool Opens(StatementKind kind) {
  switch (kind) {
    case StatementKind::kIf:
    case StatementKind::kSelect:
    case StatementKind::kFor:
    case StatementKind::kForEach:
    case StatementKind::kDo:
    case StatementKind::kWhile:
    case StatementKind::kWith:
      return true;
    default:
      return false;
  }
}

class Finder {
 public:
  Finder(const Understanding& understanding, symbols::Index module) : known_(understanding), module_(module) {}

  std::vector<Fold> Find() {
    const language::Module& code = known_.Index().Code(module_);
    for (const language::Routine& routine : code.routines) Add(routine.headerLastLine, routine.lastLine);
    for (const language::Declaration& declaration : code.declarations) {
      const bool isBlock =
          declaration.kind == language::DeclarationKind::kType || declaration.kind == language::DeclarationKind::kEnum;
      if (isBlock) Add(declaration.firstLine, declaration.lastLine);
    }
    AddBlocks();
    std::ranges::sort(
        folds_, [](const Fold& a, const Fold& b) { return a.first != b.first ? a.first < b.first : a.last > b.last; });
    // Of blocks that begin on one line only the outermost one can be told from the others.
    const auto same = [](const Fold& a, const Fold& b) { return a.first == b.first; };
    folds_.erase(std::unique(folds_.begin(), folds_.end(), same), folds_.end());
    return std::move(folds_);
  }

 private:
  struct Open {
    StatementKind kind;
    std::uint32_t line;
    language::Index routine;
  };

  void Add(std::uint32_t first, std::uint32_t last) {
    const std::uint32_t from = known_.ShownLine(module_, first);
    const std::uint32_t to = known_.ShownLine(module_, last);
    if (from > 0 && to > from) folds_.push_back({static_cast<int>(from) - 1, static_cast<int>(to) - 1});
  }

  void AddBlocks() {
    language::Workspace workspace;
    language::Module code;
    known_.Index().ParseAgain(module_, workspace, code);
    std::vector<Open> open;
    // A closing word is looked for only where its block is open, however deep.
    std::map<StatementKind, int> counts;
    const auto close = [&] {
      --counts[open.back().kind];
      open.pop_back();
    };
    for (const language::Statement& statement : code.statements) {
      // A block that was not closed ends with its routine.
      while (!open.empty() && open.back().routine != statement.routine) close();
      if (Opens(statement.kind)) {
        const bool isEach = statement.kind == StatementKind::kForEach;
        open.push_back({isEach ? StatementKind::kFor : statement.kind, statement.line, statement.routine});
        ++counts[open.back().kind];
      } else if (const auto opener = OpenerOf(statement.kind)) {
        if (counts[*opener] == 0) continue;
        while (open.back().kind != *opener) close();
        Add(open.back().line, statement.line);
        close();
      }
    }
  }

  const Understanding& known_;
  symbols::Index module_;
  std::vector<Fold> folds_;
};

}  // namespace

std::vector<Fold> FoldsOf(const Understanding& understanding, symbols::Index module) {
  return Finder(understanding, module).Find();
}

std::vector<RoutineLines> RoutinesOf(const language::Module& code, const symbols::ModulePlaces& places) {
  std::vector<RoutineLines> routines;
  const auto shown = [&](std::uint32_t line) { return static_cast<int>(places.ShownLine(line)) - 1; };
  for (const symbols::ExactRoutine& routine : symbols::ExactRoutines(code)) {
    const RoutineLines lines = {shown(routine.first), shown(routine.headerLast), shown(routine.last),
                                symbols::ExactName(code, routine)};
    if (lines.first >= 0) routines.push_back(lines);
  }
  return routines;
}

std::vector<RoutineLines> RoutinesOf(const Understanding& understanding, symbols::Index module) {
  const std::vector<symbols::ModulePlaces>& places = understanding.Places();
  if (module >= places.size()) return {};
  return RoutinesOf(understanding.Index().Code(module), places[module]);
}

}  // namespace quillmate::project
