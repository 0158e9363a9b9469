#include <algorithm>
#include <utility>

#include <quillmate/symbols/compare_rows.h>

namespace quillmate::symbols {
namespace {

using Kind = CompareRow::Kind;

/// The lines of a piece on one side.
struct PieceSide {
  std::vector<std::string_view> texts;
  std::vector<std::uint32_t> numbers;
};

PieceSide SideOf(const ReferenceIndex& index, Index module, const PieceLines& lines) {
  PieceSide side;
  side.texts = TextsOf(index.Code(module), lines);
  side.numbers.reserve(lines.size());
  for (const std::uint32_t line : lines) side.numbers.push_back(index.EditorLine(module, line));
  return side;
}

PieceSide SideOf(const ReferenceIndex& index, const RoutinePlace& place) {
  if (!place.IsKnown()) return {};
  return SideOf(index, place.module, RoutineLines(index.Code(place.module), place.routine));
}

PieceSide OutsideOf(const ReferenceIndex& index, Index module) {
  return module == kNone ? PieceSide() : SideOf(index, module, OutsideLines(index.Code(module)));
}

}  // namespace

class CompareRows::Builder {
 public:
  Builder(CompareRows& made, const ComparedStates& states, bool whole) : made_(made), states_(states), whole_(whole) {}

  void AddModule(const ModuleChange& module) {
    AddFacts(module.facts);
    const PieceSide olds = OutsideOf(states_.oldIndex, module.oldModule);
    const PieceSide news = OutsideOf(states_.newIndex, module.newModule);
    if ((whole_ && olds.texts.size() + news.texts.size() > 0) || !module.outside.edits.empty()) {
      Begin(kNone, module.oldModule, module.newModule, "Außerhalb der Routinen");
      AddPiece(olds, news, module.outside.edits);
    }
    for (Index routine = 0; routine < module.routines.size(); ++routine) {
      if (whole_ || module.routines[routine].state != ChangeState::kSame) AddRoutine(module, routine);
    }
    FindChanges();
  }

  void AddFactsOf(const ProjectChange& project) {
    AddFacts(project.facts);
    FindChanges();
  }

 private:
  void AddRoutine(const ModuleChange& module, Index number) {
    const RoutineChange& routine = module.routines[number];
    std::string title = TitleOf(states_, routine);
    if (routine.state != ChangeState::kSame) title += ": " + StateText(states_, routine);
    Begin(number, routine.oldPlace.module, routine.newPlace.module, std::move(title));
    AddPiece(SideOf(states_.oldIndex, routine.oldPlace), SideOf(states_.newIndex, routine.newPlace),
             routine.text.edits);
  }

  void Begin(Index routine, Index oldModule, Index newModule, std::string title) {
    made_.pieces_.push_back({routine, oldModule, newModule, made_.rows_.size()});
    AddHeading(std::move(title));
  }

  void AddHeading(std::string title) {
    const std::string_view text = made_.texts_.emplace_back(std::move(title));
    Add({.kind = Kind::kHeading, .oldText = text, .newText = text});
  }

  void AddFacts(const std::vector<FactChange>& facts) {
    if (facts.empty()) return;
    Begin(kNone, kNone, kNone, "Eigenschaften");
    for (const FactChange& fact : facts) {
      const auto text = [&](const std::string& value) -> std::string_view {
        std::string line = std::string(GermanWord(fact.kind)) + " " + fact.name;
        if (!value.empty()) line += ": " + value;
        std::ranges::replace_if(
            line, [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
        return made_.texts_.emplace_back(std::move(line));
      };
      const bool isNew = fact.state == ChangeState::kNew, isGone = fact.state == ChangeState::kGone;
      Add({.kind = isNew    ? Kind::kNew
                   : isGone ? Kind::kGone
                            : Kind::kChanged,
           .oldText = isNew ? std::string_view() : text(fact.oldValue),
           .newText = isGone ? std::string_view() : text(fact.newValue)});
    }
  }

  void AddPiece(const PieceSide& olds, const PieceSide& news, const std::vector<Edit>& edits) {
    std::uint32_t oldAt = 0, newAt = 0;
    for (std::size_t i = 0; i < edits.size(); ++i) {
      const Edit& edit = edits[i];
      AddSame(olds, news, oldAt, newAt, edit.oldFirst - oldAt, i > 0, true);
      for (const LinePair& pair : PairLines(olds.texts, news.texts, edit)) AddPair(olds, news, pair);
      oldAt = edit.oldFirst + edit.oldCount;
      newAt = edit.newFirst + edit.newCount;
    }
    AddSame(olds, news, oldAt, newAt, static_cast<std::uint32_t>(olds.texts.size()) - oldAt, true, false);
  }

  void AddSame(const PieceSide& olds, const PieceSide& news, std::uint32_t oldAt, std::uint32_t newAt,
               std::uint32_t count, bool changeBefore, bool changeBehind) {
    std::uint32_t head = std::min(changeBefore ? kContext : 0, count);
    std::uint32_t tail = std::min(changeBehind ? kContext : 0, count - head);
    // One line takes no more room than the word that it is left out.
    if (whole_ || count - head - tail <= 1) head = count - tail;
    for (std::uint32_t n = 0; n < head; ++n) AddPair(olds, news, {oldAt + n, newAt + n}, true);
    const std::uint32_t left = count - head - tail;
    if (left > 0) Add({.kind = Kind::kSkipped, .skipped = left});
    for (std::uint32_t n = count - tail; n < count; ++n) AddPair(olds, news, {oldAt + n, newAt + n}, true);
  }

  void AddPair(const PieceSide& olds, const PieceSide& news, const LinePair& pair, bool same = false) {
    CompareRow row{.kind = Kind::kChanged};
    if (pair.oldLine != kNoLine) {
      row.oldNumber = olds.numbers[pair.oldLine];
      row.oldText = olds.texts[pair.oldLine];
    } else {
      row.kind = Kind::kNew;
    }
    if (pair.newLine != kNoLine) {
      row.newNumber = news.numbers[pair.newLine];
      row.newText = news.texts[pair.newLine];
    } else {
      row.kind = Kind::kGone;
    }
    if (same) row.kind = Kind::kSame;
    Add(row);
  }

  void Add(const CompareRow& row) { made_.rows_.push_back(row); }

  void FindChanges() {
    const auto differs = [](Kind kind) { return kind == Kind::kChanged || kind == Kind::kGone || kind == Kind::kNew; };
    for (std::uint32_t row = 0; row < made_.rows_.size(); ++row) {
      const Kind kind = made_.rows_[row].kind;
      if (!differs(kind)) continue;
      if (row > 0 && differs(made_.rows_[row - 1].kind)) {
        ChangeStretch& last = made_.changes_.back();
        ++last.count;
        if (last.kind != kind) last.kind = Kind::kChanged;
      } else {
        made_.changes_.push_back({row, 1, kind});
      }
    }
  }

  CompareRows& made_;
  const ComparedStates& states_;
  const bool whole_;
};

CompareRows::CompareRows(const ComparedStates& states, const ModuleChange& module, bool whole) {
  Builder(*this, states, whole).AddModule(module);
}

CompareRows::CompareRows(const ComparedStates& states, const ProjectChange& project) {
  Builder(*this, states, true).AddFactsOf(project);
}

std::size_t CompareRows::RowOf(Index routine) const {
  for (const Piece& piece : pieces_) {
    const bool isFacts = piece.oldModule == kNone && piece.newModule == kNone;
    if (piece.routine == routine && !isFacts) return piece.firstRow;
  }
  return 0;
}

std::size_t CompareRows::RowAt(const ComparedLine& line) const {
  const bool isOld = line.side == Side::kOld;
  for (std::size_t i = 0; i < pieces_.size(); ++i) {
    if ((isOld ? pieces_[i].oldModule : pieces_[i].newModule) != line.module) continue;
    const std::size_t end = i + 1 < pieces_.size() ? pieces_[i + 1].firstRow : rows_.size();
    for (std::size_t row = pieces_[i].firstRow; row < end; ++row) {
      if ((isOld ? rows_[row].oldNumber : rows_[row].newNumber) == line.line && line.line != 0) return row;
    }
  }
  return kNoRow;
}

const CompareRows::Piece* CompareRows::PieceAt(std::size_t row) const {
  const auto behind = std::ranges::upper_bound(pieces_, row, {}, &Piece::firstRow);
  return behind == pieces_.begin() ? nullptr : &*std::prev(behind);
}

Index CompareRows::RoutineAt(std::size_t row) const {
  const Piece* const piece = PieceAt(row);
  return piece == nullptr ? kNone : piece->routine;
}

Index CompareRows::ModuleAt(std::size_t row, Side side) const {
  const Piece* const piece = PieceAt(row);
  if (piece == nullptr) return kNone;
  return side == Side::kOld ? piece->oldModule : piece->newModule;
}

}  // namespace quillmate::symbols
