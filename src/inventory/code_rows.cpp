#include <algorithm>
#include <optional>
#include <utility>

#include <quillmate/checks/checks.h>
#include <quillmate/checks/metrics.h>
#include <quillmate/symbols/project_sources.h>
#include <quillmate/symbols/reference_index.h>
#include <quillmate/text/operations.h>

#include "code_rows_p.h"
#include "text_hash_p.h"

namespace quillmate::inventory {
namespace {

using language::DeclarationKind;
using symbols::Index;
using symbols::ReferenceIndex;

constexpr std::size_t kLongestSignature = 500;

bool IsCode(const language::PhysicalLine& line) noexcept {
  using language::LineClass;
  return line.lineClass == LineClass::kCode || line.lineClass == LineClass::kDirective;
}

std::uint64_t HashOf(const language::Module& code, std::uint32_t first, std::uint32_t last) {
  TextHash hash;
  last = std::min(last, static_cast<std::uint32_t>(code.lines.size()));
  for (std::uint32_t line = first; line <= last; ++line) {
    if (IsCode(code.lines[line - 1])) hash.Add(code.LineText(line));
  }
  return hash.Value();
}

/// The statement that begins in a line, on one line with single blanks and without a comment after it.
std::string StatementAt(const language::Module& code, std::uint32_t line) {
  std::string text;
  bool quoted = false;
  const language::LogicalLine& logical = code.logicalLines[code.LogicalLineAt(line)];
  for (std::uint32_t i = 0; i < logical.lineCount; ++i) {
    std::string_view piece = code.LineText(logical.firstLine + i);
    if (i + 1 < logical.lineCount && piece.ends_with('_')) piece.remove_suffix(1);
    for (const char c : piece) {
      if (c == '"') quoted = !quoted;
      if (c == '\'' && !quoted) break;
      const bool blank = c == ' ' || c == '\t';
      if (!quoted && blank && (text.empty() || text.back() == ' ')) continue;
      text += blank ? ' ' : c;
    }
    if (!text.empty() && text.back() != ' ') text += ' ';
  }
  while (text.ends_with(' ')) text.pop_back();
  if (text.size() > kLongestSignature) {
    text.resize(kLongestSignature);
    // No half character.
    while (!text.empty() && (static_cast<unsigned char>(text.back()) & 0xC0U) == 0x80U) text.pop_back();
    if (!text.empty() && (static_cast<unsigned char>(text.back()) & 0x80U) != 0) text.pop_back();
  }
  return text;
}

/// The literal after a word of a Declare: Lib "user32", Alias "FindWindowA".
std::string LiteralBehind(std::string_view statement, std::string_view word) {
  for (std::size_t at = 0; at + word.size() < statement.size(); ++at) {
    if (!text::EqualsIgnoreCase(statement.substr(at, word.size()), word)) continue;
    std::string_view rest = statement.substr(at + word.size());
    rest = text::TrimLeft(rest);
    if (!rest.starts_with('"')) continue;
    rest.remove_prefix(1);
    return std::string(rest.substr(0, rest.find('"')));
  }
  return {};
}

void TakeDeclares(const ReferenceIndex& index, Index module, Content& content) {
  const language::Module& code = index.Code(module);
  for (const language::Declaration& declaration : code.declarations) {
    if (declaration.kind != DeclarationKind::kDeclareSub && declaration.kind != DeclarationKind::kDeclareFunction) {
      continue;
    }
    const std::string statement = StatementAt(code, declaration.firstLine);
    ApiRow& row = content.apis.emplace_back();
    row.module = module;
    row.name = code.Spelling(declaration);
    row.library = LiteralBehind(statement, " Lib");
    row.alias = LiteralBehind(statement, " Alias");
    row.ptrSafe = (declaration.flags & language::declaration_flag::kPtrSafe) != 0;
    row.line = index.EditorLine(module, declaration.firstLine);
  }
}

void TakeModules(const ReferenceIndex& index, const checks::Metrics& metrics, Content& content) {
  for (Index module = 0; module < index.Modules().size(); ++module) {
    const symbols::ModuleInfo& info = index.Modules()[module];
    const checks::ModuleNumbers& numbers = metrics.modules[module];
    const language::Module& code = index.Code(module);
    ModuleRow& row = content.modules.emplace_back();
    row.name = info.name;
    row.kind = symbols::Word(index.SymbolAt(info.symbol).kind);
    row.lines = numbers.lines;
    row.codeLines = numbers.code;
    row.commentLines = numbers.comment;
    row.hash = HashOf(code, 1, static_cast<std::uint32_t>(code.lines.size()));
    TakeDeclares(index, module, content);
  }
}

void TakeRoutines(const ReferenceIndex& index, const checks::Metrics& metrics, Content& content) {
  for (const checks::RoutineNumbers& numbers : metrics.routines) {
    const symbols::SymbolId id = index.RoutineSymbol(numbers.module, numbers.routine);
    if (id == symbols::kNone) continue;
    const symbols::Symbol& symbol = index.SymbolAt(id);
    const language::Module& code = index.Code(numbers.module);
    const language::Routine& routine = code.routines[numbers.routine];
    RoutineRow& row = content.routines.emplace_back();
    row.module = numbers.module;
    row.name = index.Name(id);
    row.kind = symbols::Word(symbol.kind);
    row.visibility = symbols::Word(symbol.visibility);
    row.signature = StatementAt(code, symbol.line);
    row.line = index.EditorLine(numbers.module, symbol.line);
    row.lines = numbers.lines;
    row.statements = numbers.statements;
    row.complexity = numbers.complexity;
    row.nesting = numbers.nesting;
    row.parameters = numbers.parameters;
    row.hash = HashOf(code, routine.firstLine, routine.lastLine);
  }
}

void TakeFindings(const ReferenceIndex& index, Content& content) {
  for (checks::Finding& finding : checks::RunChecks(index, {}, 1)) {
    FindingRow& row = content.findings.emplace_back();
    row.check = checks::InfoOf(finding.check).id;
    row.module = finding.module;
    if (finding.routine != symbols::kNone) {
      const symbols::SymbolId routine = index.RoutineSymbol(finding.module, finding.routine);
      if (routine != symbols::kNone) row.routine = index.Name(routine);
    }
    row.line = index.EditorLine(finding.module, finding.line);
    row.column = finding.column;
    row.text = std::move(finding.text);
  }
}

/// What the project refers to is told at no line of code.
void MarkBrokenReferences(Content& content) {
  for (const FindingRow& finding : content.findings) {
    if (finding.line != 0 || finding.check != checks::InfoOf(checks::CheckId::kLibrary32).id) continue;
    for (ReferenceRow& reference : content.references) {
      const bool named = !reference.name.empty() && finding.text.find("„" + reference.name + "“") != std::string::npos;
      if (named) reference.broken = "nur 32 Bit";
    }
  }
}

}  // namespace

void TakeCode(codedb::Facts facts, Content& content) {
  for (const codedb::ModuleFacts& module : facts.modules) {
    content.replaced += static_cast<std::uint32_t>(module.replacedCharacters);
  }
  // One process reads one file: the other cores read others.
  const ReferenceIndex index = ReferenceIndex::Build(symbols::SourcesFrom(std::move(facts)), {.threads = 1});
  const checks::Metrics metrics = checks::Measure(index, 1);
  TakeModules(index, metrics, content);
  TakeRoutines(index, metrics, content);
  TakeFindings(index, content);
  MarkBrokenReferences(content);
}

}  // namespace quillmate::inventory
