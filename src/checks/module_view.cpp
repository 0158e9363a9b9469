#include <algorithm>
#include <utility>

#include "module_view_p.h"

namespace quillmate::checks {

std::string InQuotes(std::string_view text) { return "„" + std::string(text) + "“"; }

std::string Shortened(std::string_view text) {
  constexpr std::size_t kShown = 60;
  if (text.size() <= kShown) return std::string(text);
  std::size_t end = kShown;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
  return std::string(text.substr(0, end)) + "…";
}

void ModuleView::Open(Index number, language::Workspace& workspace) {
  module = number;
  index.ParseAgain(number, workspace, code);
  index.BindUses(number, bound);
  known.resize(code.NameCount());
  for (language::NameId name = 0; name < code.NameCount(); ++name) known[name] = FindKnown(code.NameHash(name));
  vb6 = Project().dialect == language::Dialect::kVb6 || Project().host == symbols::Host::kVb6;
}

Known ModuleView::LibraryName(Index use) const noexcept {
  return bound[use].target == kNone && bound[use].certainty == Certainty::kSure ? known[code.uses[use].name]
                                                                                : Known::kNone_;
}

Known ModuleView::GlobalName(Index use) const noexcept {
  const language::NameUse& found = code.uses[use];
  const Known name = LibraryName(use);
  if (name == Known::kNone_ || found.access == Access::kSimple) return name;
  if (found.access != Access::kMember || found.previous == kNone) return Known::kNone_;
  if (code.uses[found.previous].access != Access::kSimple) return Known::kNone_;
  switch (LibraryName(found.previous)) {
    case Known::kVBA:
    case Known::kApplication:
    case Known::kExcel:
    case Known::kWord:
    case Known::kAccess:
    case Known::kInteraction:
    case Known::kFileSystem:
      return name;
    default:
      return Known::kNone_;
  }
}

Index ModuleView::ChainFirst(Index use) const noexcept {
  while (code.uses[use].previous != kNone &&
         (code.uses[use].access == Access::kMember || code.uses[use].access == Access::kKey)) {
    use = code.uses[use].previous;
  }
  return use;
}

const Symbol* ModuleView::SureSymbol(Index use) const noexcept {
  const BoundUse& found = bound[use];
  return found.target == kNone || found.certainty != Certainty::kSure ? nullptr : &index.SymbolAt(found.target);
}

const language::Declaration* ModuleView::DeclarationOf(const Symbol& symbol) const noexcept {
  if (symbol.declaration == kNone || IsModule(symbol.kind) || symbol.kind == SymbolKind::kControl) return nullptr;
  return &index.Code(symbol.module).declarations[symbol.declaration];
}

std::span<const language::Token> ModuleView::Tokens(const language::Statement& statement) const noexcept {
  Index end = statement.firstToken;
  while (end < code.tokens.size() && code.tokens[end].offset < statement.offset + statement.length &&
         code.tokens[end].offset >= statement.offset) {
    ++end;
  }
  return std::span(code.tokens).subspan(statement.firstToken, end - statement.firstToken);
}

std::uint32_t ModuleView::ColumnOf(std::uint32_t offset, std::uint32_t line) const {
  const std::string_view before = code.text.substr(code.lines[line - 1].offset, offset - code.lines[line - 1].offset);
  return 1 + static_cast<std::uint32_t>(std::ranges::count_if(
                 before, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

std::string ModuleView::Named(const language::NameUse& use) const { return InQuotes(code.Spelling(use)); }
std::string ModuleView::Named(const language::Declaration& declaration) const {
  return InQuotes(code.Spelling(declaration));
}

void ModuleView::Report(CheckId check, std::uint32_t line, std::uint32_t column, Index routine,
                        std::string_view subject, std::string text, std::string advice) {
  Finding& finding = findings.emplace_back();
  finding.check = check;
  finding.module = module;
  finding.routine = routine;
  finding.line = line;
  finding.column = column;
  finding.text = std::move(text);
  finding.advice = advice.empty() ? std::string(InfoOf(check).advice) : std::move(advice);
  finding.subject = subject;
}

void ModuleView::ReportUse(CheckId check, Index use, std::string text, std::string advice) {
  const language::NameUse& at = code.uses[use];
  Report(check, at.line, at.column, at.routine, code.Spelling(at), std::move(text), std::move(advice));
}

void ModuleView::ReportStatement(CheckId check, const language::Statement& statement, std::string text,
                                 std::string advice) {
  Report(check, statement.line, ColumnOf(statement.offset, statement.line), statement.routine,
         Shortened(code.text.substr(statement.offset, statement.length)), std::move(text), std::move(advice));
}

void ModuleView::ReportDeclaration(CheckId check, const language::Declaration& declaration, std::string text,
                                   std::string advice) {
  Report(check, declaration.line, declaration.column, declaration.routine, code.Spelling(declaration), std::move(text),
         std::move(advice));
}

}  // namespace quillmate::checks
