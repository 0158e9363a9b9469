#include "parser_p.h"
#include "word_classes_p.h"

/// Statements on files and on drawing surfaces.
namespace quillmate::language {

/// `Open path For mode Access ... As #n Len = size`: the words between the expressions mean nothing here.
void Parser::ParseOpen() {
  const std::uint32_t first = at_ - 1;
  Run(Mode::kExpression);
  while (!AtEnd()) {
    const std::uint32_t before = at_;
    const NameId word = AtName() ? tokens_[at_].name : kNone;
    switch (word) {
      case kWordFor:
        at_ += tokens_[at_ + 1].kind == TokenKind::kName ? 2 : 1;
        break;
      case kWordAccess:
      case kWordShared:
      case kWordLock:
      case kWordRead:
      case kWordWrite:
        ++at_;
        break;
      case kWordAs:
        ++at_;
        Run(Mode::kExpression);
        break;
      case kWordLen:
        ++at_;
        if (TakeOperator(Operator::kEqual)) Run(Mode::kExpression);
        break;
      default:
        Run(Mode::kExpression);
        break;
    }
    if (at_ == before) ++at_;
  }
  Complete(StatementKind::kFile, first, true);
}

/// File numbers and values parted by commas; with `targets` all after the first one are written.
void Parser::ParseFileList(bool targets) {
  const std::uint32_t first = at_ - 1;
  for (bool written = false; !AtEnd(); written = targets) {
    const std::uint32_t before = at_;
    if (written) {
      ParseTarget(Role::kInputTarget);
    } else {
      Run(Mode::kToComma);
    }
    while (!AtEnd() && !AtOperator(Operator::kComma)) {
      // "To" between the records of Lock and what else is in the way.
      ++at_;
      Run(Mode::kToComma);
    }
    if (!TakeOperator(Operator::kComma) && at_ == before) ++at_;
  }
  Complete(StatementKind::kFile, first, true);
}

/// `Get #n, record, variable`, `Put #n, record, value`.
void Parser::ParseGet(bool target) {
  const std::uint32_t first = at_ - 1;
  for (int part = 0; part < 2 && !AtEnd(); ++part) {
    Run(Mode::kToComma);
    TakeOperator(Operator::kComma);
  }
  if (target) {
    ParseTarget(Role::kInputTarget);
  } else {
    Run(Mode::kExpression);
  }
  SkipToEnd();
  Complete(StatementKind::kFile, first, true);
}

/// Print and Write, on files and on forms.
void Parser::ParsePrint() {
  const std::uint32_t first = at_ - 1;
  const bool file = AtOperator(Operator::kFileNumber);
  Run(Mode::kOutputList);
  SkipToEnd();
  Complete(file ? StatementKind::kFile : StatementKind::kCall, first, true);
}

/// At Name: `Name old As new`.
bool Parser::IsRename() const {
  if (MakesName(at_ + 1)) return false;
  for (std::uint32_t i = at_ + 1; tokens_[i].kind != TokenKind::kEnd && !IsOperator(i, Operator::kColon); ++i) {
    if (IsWord(i, kWordAs)) return i > at_ + 1;
  }
  return false;
}

void Parser::ParseName() {
  const std::uint32_t first = at_ - 1;
  Run(Mode::kExpression);
  if (TakeWord(kWordAs)) Run(Mode::kExpression);
  SkipToEnd();
  Complete(StatementKind::kFile, first, true);
}

/// True when points follow: "(x, y)", "Step (x, y)", "-(x, y)".
bool Parser::BeginsGraphics(std::uint32_t token) const {
  if (IsWord(token, kWordStep)) return IsOperator(token + 1, Operator::kOpen);
  if (IsOperator(token, Operator::kMinus)) {
    return IsOperator(token + 1, Operator::kOpen) || IsWord(token + 1, kWordStep);
  }
  if (!IsOperator(token, Operator::kOpen)) return false;
  const NameId close = tokens_[token].name;
  if (close == kNone) return false;
  for (std::uint32_t i = token + 1; i < close; ++i) {
    if (IsOperator(i, Operator::kComma)) {
      // `Circle(x, y) = 1` and `Circle(x, y).z` are names.
      return !IsOperator(close + 1, Operator::kEqual) && !IsOperator(close + 1, Operator::kDot);
    }
    if (IsOperator(i, Operator::kOpen) && tokens_[i].name != kNone) i = tokens_[i].name;
  }
  return false;
}

void Parser::ParseGraphics(Index callee, Drawing drawing) {
  if (callee != kNone) Use(callee).flags |= use_flag::kOutputList;
  drawing_ = drawing;
  Run(Mode::kOutputList, callee);
  drawing_ = Drawing::kNothing;
  SkipToEnd();
}

}  // namespace quillmate::language
