#include <algorithm>

#include <quillmate/text/operations.h>

#include "characters_p.h"
#include "parser_p.h"

/// "#If" and its kin.
namespace quillmate::language {
namespace {

/// The first byte after the blanks from `at` on.
std::size_t SkipBlanks(std::string_view text, std::size_t at) noexcept {
  while (at < text.size() && (text[at] == ' ' || text[at] == '\t')) ++at;
  return at;
}

constexpr std::size_t kLongestDirective = 8;  // as far as the first word matters

bool BeginsWithWord(std::string_view text, std::string_view word) noexcept {
  return text::StartsWithIgnoreCase(text, word) && (text.size() == word.size() || !GoesOnWithName(text[word.size()]));
}

}  // namespace

/// Looks over the directives of the whole module: "#Const" counts above its line and in branches that are left out,
/// too, and an "#If" that is never closed must not silence what follows.
void Parser::SurveyDirectives() {
  openDirectives_.clear();
  for (std::size_t hash = text_.find('#'); hash != std::string_view::npos; hash = text_.find('#', hash + 1)) {
    std::size_t line = hash;
    while (line > 0 && (text_[line - 1] == ' ' || text_[line - 1] == '\t')) --line;
    if (line > 0 && text_[line - 1] != '\n' && text_[line - 1] != '\r') continue;
    if (EndsContinued(text_.substr(0, line))) continue;
    const std::string_view word = text_.substr(SkipBlanks(text_, hash + 1), kLongestDirective);
    if (BeginsWithWord(word, "const")) {
      lexer_->Seek(line);
      lexer_->Next();
      UseLine();
      if (tokens_[0].kind == TokenKind::kDirective && IsWord(1, kWordConst)) DefineConstant(false);
    } else if (BeginsWithWord(word, "if")) {
      openDirectives_.push_back(static_cast<std::uint32_t>(hash));
    } else if ((BeginsWithWord(word, "end") || BeginsWithWord(word, "endif")) && !openDirectives_.empty()) {
      openDirectives_.pop_back();
    }
  }
  module_->lines.clear();
}

void Parser::DefineConstant(bool replace) {
  if (tokens_[2].kind != TokenKind::kName || !IsOperator(3, Operator::kEqual)) return;
  if (!replace && constants_.Defines(tokens_[2].name)) return;
  constants_.Define(tokens_[2].name, constants_.Evaluate({tokens_ + 4, tokens_ + std::max(tokenCount_, 4U)}));
}

void Parser::ParseDirective() {
  at_ = 1;
  if (TakeWord(kWordIf)) {
    ParseIfDirective();
  } else if (TakeWord(kWordElseIf)) {
    ParseElseDirective(true);
  } else if (TakeWord(kWordElse)) {
    ParseElseDirective(false);
  } else if (TakeWord(kWordEndIf) || (TakeWord(kWordEnd) && AtWord(kWordIf))) {
    ParseEndDirective();
  } else if (TakeWord(kWordConst)) {
    ParseConstDirective();
  } else {
    Note(tokens_[0].line, ProblemKind::kStrayDirective);
  }
}

void Parser::ParseConstDirective() {
  if (activity_ == Activity::kActive) DefineConstant(true);
  if (activity_ == Activity::kDead || !AtName()) return;
  Declare(tokens_[at_++], DeclarationKind::kConditionalConstant, Visibility::kPrivate, kNone);
  TakeOperator(Operator::kEqual);
  EmitConditionals(at_, tokenCount_);
}

/// The names of a condition.
void Parser::EmitConditionals(std::uint32_t from, std::uint32_t to) {
  if (activity_ == Activity::kDead) return;
  for (; from < to; ++from) {
    const Token& token = tokens_[from];
    if (token.kind == TokenKind::kName && token.name >= kWordAccess &&
        (token.name < kWordAbs || token.name > kWordSgn)) {
      Emit(token, Role::kConditional);
    }
  }
}

std::uint32_t Parser::ConditionEnd(std::uint32_t from) const {
  std::uint32_t to = from;
  while (to < tokenCount_ && !IsWord(to, kWordThen)) ++to;
  return to;
}

/// A literal that is never true.
bool Parser::IsNeverTrue(std::uint32_t from, std::uint32_t to) const {
  while (to - from > 2 && IsOperator(from, Operator::kOpen) && tokens_[from].name == to - 1) ++from, --to;
  if (to - from != 1) return false;
  return IsWord(from, kWordFalse) || (tokens_[from].kind == TokenKind::kInteger && IsZero(tokens_[from]));
}

void Parser::ParseIfDirective() {
  Group& group = groups_.emplace_back();
  group.line = tokens_[0].line;
  group.closed = !std::binary_search(openDirectives_.begin(), openDirectives_.end(), tokens_[0].offset);
  group.outer = activity_;
  group.blocks = blocks_.Top();
  group.routine = routine_;
  group.routineCount = module_->routines.size();
  EnterBranch(group, true);
}

void Parser::ParseElseDirective(bool condition) {
  if (groups_.empty()) {
    Note(tokens_[0].line, ProblemKind::kStrayDirective);
    return;
  }
  Group& group = groups_.back();
  LeaveBranch(group);
  activity_ = group.outer;
  // The routine of the #If goes on in this branch, though another branch held its End.
  const bool reopens = group.routine != kNone && routine_ == kNone && module_->routines.size() == group.routineCount;
  if (reopens) routine_ = group.routine;
  blocks_.Restore(routine_ == group.routine ? group.blocks : kNone);
  EnterBranch(group, condition);
}

void Parser::EnterBranch(Group& group, bool condition) {
  const std::uint32_t from = at_;
  const std::uint32_t to = condition ? ConditionEnd(from) : from;
  context_ = group.outer == Activity::kActive ? 0 : use_flag::kInactive;
  if (condition) EmitConditionals(from, to);
  const bool dead = group.outer == Activity::kDead || (condition && group.closed && IsNeverTrue(from, to));
  const bool holds = !condition || constants_.Evaluate({tokens_ + from, tokens_ + to}).IsTrue();
  if (dead) {
    activity_ = Activity::kDead;
  } else if (group.outer == Activity::kActive && !group.taken && holds) {
    activity_ = Activity::kActive;
  } else {
    activity_ = Activity::kInactive;
  }
  group.taken = group.taken || activity_ == Activity::kActive;
  group.branchRoutines = module_->routines.size();
  // Dead text in a routine is left alone; elsewhere its routines are listed.
  group.deadInRoutine = dead && routine_ != kNone;
  deadBlock_ = false;
}

/// Keeps the state at the end of a branch and whether it left a routine open.
void Parser::LeaveBranch(Group& group) {
  const bool active = activity_ == Activity::kActive;
  if (!group.hasAfter || (active && !group.afterActive)) {
    group.after = blocks_.Top();
    group.afterRoutine = routine_;
    group.afterActive = active;
    group.hasAfter = true;
  }
  const bool openedHere = routine_ != kNone && routine_ >= group.branchRoutines;
  if (openedHere && group.header != routine_) {
    group.header = routine_;
    ++headerGroups_;
  }
}

void Parser::ParseEndDirective() {
  if (groups_.empty()) {
    Note(tokens_[0].line, ProblemKind::kStrayDirective);
    return;
  }
  Group& group = groups_.back();
  LeaveBranch(group);
  if (routine_ != kNone && group.header == routine_ && headerGroups_ > 0) --headerGroups_;
  if (group.afterRoutine == routine_) blocks_.Restore(group.after);
  const bool deadRoutine = routine_ != kNone && module_->routines[routine_].activity == Activity::kDead;
  if (deadRoutine && group.outer != Activity::kDead) CloseWithoutEnd(tokens_[0].line - 1);
  activity_ = group.outer;
  groups_.pop_back();
}

}  // namespace quillmate::language
