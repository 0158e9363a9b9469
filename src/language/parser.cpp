#include <algorithm>

#include <quillmate/text/operations.h>

#include "file_header_p.h"
#include "parser_p.h"

namespace quillmate::language {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

}  // namespace

void Parser::Parse(std::string_view text, const ParseOptions& options, NamePool& names, Lexer& lexer, Module& module) {
  text_ = text;
  options_ = &options;
  names_ = &names;
  lexer_ = &lexer;
  module_ = &module;
  Reset();
  constants_.Start(text, names, options);
  lexer.Open(text, names, module, options.keepTokens);
  SurveyDirectives();
  const std::size_t start = text.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0;
  const std::size_t code = ReadFileHeader(text, start, names, module);
  if (code > start) Hide(1, static_cast<std::uint32_t>(module.lines.size()));
  lexer.Seek(code);
  while (lexer.Next()) ParseLine();
  Finish();
}

void Parser::Reset() {
  context_ = 0;
  drawing_ = Drawing::kNothing;
  assigned_ = kNone;
  inlineIfs_.clear();
  activity_ = Activity::kActive;
  groups_.clear();
  headerGroups_ = 0;
  blocks_.Clear();
  routine_ = lineRoutine_ = block_ = kNone;
  bodyBegun_ = headerConditional_ = false;
  std::fill(std::begin(defTypes_), std::end(defTypes_), BuiltinType::kUndeclared);
  classAttributes_ = false;
}

/// Takes up the logical line that the lexer has read.
void Parser::UseLine() {
  tokens_ = lexer_->Tokens().data();
  tokenCount_ = static_cast<std::uint32_t>(lexer_->Tokens().size() - 1);
  at_ = 0;
}

void Parser::ParseLine() {
  UseLine();
  const std::size_t logical = module_->logicalLines.size();
  KeepTokens();
  module_->logicalLines.push_back(
      {lexer_->FirstLine(), lexer_->LineCount(), static_cast<Index>(module_->uses.size()), firstToken_, kNone});
  lineRoutine_ = routine_;
  Activity activity = activity_;
  context_ = activity_ == Activity::kActive ? 0 : use_flag::kInactive;
  if (tokens_[0].kind == TokenKind::kDirective) {
    const std::size_t groups = groups_.size();
    ParseDirective();
    // The line itself belongs to what is around its group.
    if (groups_.size() == groups && groups > 0) activity = groups_.back().outer;
    if (groups_.size() < groups) activity = activity_;
  } else if (activity_ == Activity::kDead) {
    ParseDeadLine();
  } else if (tokenCount_ > 0) {
    ParseStatements();
  }
  module_->logicalLines[logical].routine = lineRoutine_;
  if (activity == Activity::kActive) return;
  for (std::size_t line = lexer_->FirstLine(); line < lexer_->FirstLine() + lexer_->LineCount(); ++line) {
    module_->lines[line - 1].activity = activity;
  }
}

void Parser::KeepTokens() {
  if (!options_->keepTokens) return;
  std::vector<Token>& kept = module_->tokens;
  firstToken_ = static_cast<Index>(kept.size());
  kept.insert(kept.end(), tokens_, tokens_ + tokenCount_);
  kept.insert(kept.end(), lexer_->Comments().begin(), lexer_->Comments().end());
}

void Parser::Hide(std::uint32_t first, std::uint32_t last) {
  std::vector<HiddenLines>& hidden = module_->hidden;
  if (!hidden.empty() && hidden.back().last + 1 == first) {
    hidden.back().last = last;
    return;
  }
  const std::uint32_t before =
      hidden.empty() ? 0 : hidden.back().hiddenBefore + hidden.back().last - hidden.back().first + 1;
  hidden.push_back({first, last, before});
}

/// The module is read: closes what is open and counts.
void Parser::Finish() {
  const auto lastLine = static_cast<std::uint32_t>(module_->lines.size());
  if (block_ != kNone) CloseBlockDeclaration(lastLine);
  if (routine_ != kNone) CloseWithoutEnd(lastLine);
  for (const Group& group : groups_) Note(group.line, ProblemKind::kUnclosedDirective);
  std::uint32_t previousLast = 0;
  for (Routine& routine : module_->routines) {
    CountLines(routine);
    FindDescription(routine, previousLast);
    previousLast = routine.lastLine;
  }
  CountModuleLines();
  SettleKind();
}

void Parser::CountModuleLines() {
  LineCounts& counts = module_->counts;
  for (const PhysicalLine& line : module_->lines) {
    counts.code += line.lineClass == LineClass::kCode;
    counts.comment += line.lineClass == LineClass::kComment;
    counts.blank += line.lineClass == LineClass::kBlank;
    counts.directive += line.lineClass == LineClass::kDirective;
    counts.trailingComments += line.trailingComment;
    counts.inactive += line.activity != Activity::kActive && line.lineClass != LineClass::kDirective;
  }
}

/// The kind in the words of the file; the caller's where they leave it open.
void Parser::SettleKind() {
  ModuleFacts& facts = module_->facts;
  const bool classLike = facts.kind == ModuleKind::kClass || classAttributes_;
  if (facts.kind == ModuleKind::kStandard || facts.kind == ModuleKind::kClass) {
    facts.kind = classLike ? ModuleKind::kClass : ModuleKind::kStandard;
    if (options_->kind != ModuleKind::kStandard) facts.kind = options_->kind;
  }
  if (facts.kind != ModuleKind::kClass) return;
  const bool accessName =
      text::StartsWithIgnoreCase(facts.name, "Form_") || text::StartsWithIgnoreCase(facts.name, "Report_");
  const bool document = facts.base.starts_with("0{0002") || (facts.predeclared && accessName) ||
                        (facts.predeclared && facts.exposed && !facts.creatable);
  if (document) facts.kind = ModuleKind::kDocument;
}

}  // namespace quillmate::language
