#include <quillmate/export/digest.h>

#include "declaration_text_p.h"

namespace quillmate::output {
namespace {

using symbols::SymbolKind;

std::string_view Word(language::Visibility visibility) {
  constexpr std::string_view kWords[] = {"Public ", "Private ", "Friend ", "Public ", ""};
  return kWords[static_cast<std::size_t>(visibility)];
}

std::string_view Word(language::DeclarationKind kind) {
  using language::DeclarationKind;
  switch (kind) {
    case DeclarationKind::kFunction:
      return "Function ";
    case DeclarationKind::kPropertyGet:
      return "Property Get ";
    case DeclarationKind::kPropertyLet:
      return "Property Let ";
    case DeclarationKind::kPropertySet:
      return "Property Set ";
    default:
      return "Sub ";
  }
}

/// Without blanks and pieces of a character at its end.
std::string_view TrimEnd(std::string_view text) {
  const auto isRest = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; };
  std::size_t start = text.size();
  while (start > 0 && text.size() - start < 3 && isRest(text[start - 1])) --start;
  if (start > 0) {
    const auto lead = static_cast<unsigned char>(text[start - 1]);
    const std::size_t needed = lead >= 0xF0U ? 4 : lead >= 0xE0U ? 3 : lead >= 0xC0U ? 2 : 1;
    if (text.size() - (start - 1) < needed) text = text.substr(0, start - 1);
  }
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

/// The value after "=" of a parameter, a constant or a member of an enumeration, as written.
std::string_view DefaultOf(const language::Module& code, const language::Declaration& declared) {
  const std::size_t behind =
      declared.typeLength > 0 ? declared.typeOffset + declared.typeLength : declared.offset + declared.length;
  std::string_view rest = code.text.substr(behind, kLongestDeclaration);
  const std::size_t equal = rest.find('=');
  if (equal == std::string_view::npos) return {};
  rest.remove_prefix(equal + 1);
  while (!rest.empty() && rest.front() == ' ') rest.remove_prefix(1);
  int depth = 0;
  bool quoted = false;
  bool date = false;
  std::size_t end = 0;
  for (; end < rest.size(); ++end) {
    const char c = rest[end];
    quoted = quoted != (c == '"');
    if (quoted) continue;
    // After a digit it is the suffix of a number.
    if (c == '#' && (date || end == 0 || rest[end - 1] == ' ')) date = !date;
    depth += (c == '(') - (c == ')');
    if (c == '\r' || c == '\n' || c == '\'' || depth < 0) break;
    if (depth == 0 && (c == ',' || (c == ':' && !date))) break;
  }
  return TrimEnd(rest.substr(0, end));
}

std::string ParameterText(const language::Module& code, const language::Declaration& parameter) {
  namespace flag = language::declaration_flag;
  std::string text;
  const auto has = [&](std::uint32_t bit) { return (parameter.flags & bit) != 0; };
  if (has(flag::kOptional)) text += "Optional ";
  if (has(flag::kByVal)) text += "ByVal ";
  if (has(flag::kByRef)) text += "ByRef ";
  if (has(flag::kParamArray)) text += "ParamArray ";
  if (has(flag::kWithEvents)) text += "WithEvents ";
  text += code.Spelling(parameter);
  if (has(flag::kArray)) text += "()";
  if (parameter.typeLength > 0) {
    text.append(has(flag::kAsNew) ? " As New " : " As ").append(code.DeclaredType(parameter));
  }
  if (has(flag::kDefault)) {
    const std::string_view value = DefaultOf(code, parameter);
    if (!value.empty()) text.append(" = ").append(value);
  }
  return text;
}

/// Long headers and values are nobody's help in a list.
std::string Shortened(std::string text) {
  if (text.size() <= kLongestDeclaration) return text;
  std::size_t end = kLongestDeclaration;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
  return text.substr(0, end) + "…";
}

/// The parameters in brackets, and the type.
std::string Rest(const language::Module& code, const language::Declaration& declared) {
  std::string text = "(";
  for (std::uint32_t i = 0; i < declared.childCount && text.size() <= kLongestDeclaration; ++i) {
    text.append(i == 0 ? "" : ", ").append(ParameterText(code, code.declarations[declared.firstChild + i]));
  }
  text += ")";
  if (declared.typeLength > 0) text.append(" As ").append(code.DeclaredType(declared));
  return text;
}

/// Without the word for the visibility, which only some kinds have.
std::string Plain(const language::Module& code, const language::Declaration& declared, SymbolKind kind) {
  switch (kind) {
    case SymbolKind::kDeclare:
      return (declared.kind == language::DeclarationKind::kDeclareSub ? "Declare Sub " : "Declare Function ") +
             std::string(code.Spelling(declared)) + Rest(code, declared);
    case SymbolKind::kEvent:
      return "Event " + std::string(code.Spelling(declared)) + Rest(code, declared);
    case SymbolKind::kConstant:
      return "Const " + ParameterText(code, declared);
    case SymbolKind::kType:
      return "Type " + std::string(code.Spelling(declared));
    case SymbolKind::kEnum:
      return "Enum " + std::string(code.Spelling(declared));
    default:
      return ParameterText(code, declared);
  }
}

/// "Dim " where nothing else says that it is a variable.
std::string_view Before(const language::Declaration& declared, SymbolKind kind) {
  namespace flag = language::declaration_flag;
  const bool local = declared.visibility == language::Visibility::kLocal;
  if (kind == SymbolKind::kParameter || kind == SymbolKind::kTypeMember || kind == SymbolKind::kEnumMember) return {};
  if (kind == SymbolKind::kVariable && (declared.flags & flag::kStatic) != 0) return "Static ";
  if (kind == SymbolKind::kVariable && (local || (declared.flags & flag::kScopeWritten) == 0)) return "Dim ";
  return local ? std::string_view() : Word(declared.visibility);
}

}  // namespace

std::string Signature(const language::Module& code, const language::Routine& routine) {
  const language::Declaration& declared = code.declarations[routine.declaration];
  std::string text(Word(declared.visibility));
  if ((declared.flags & language::declaration_flag::kStatic) != 0) text += "Static ";
  text.append(Word(declared.kind)).append(code.Spelling(declared)).append("(");
  for (std::uint32_t i = 0; i < declared.childCount; ++i) {
    text.append(i == 0 ? "" : ", ").append(ParameterText(code, code.declarations[declared.firstChild + i]));
  }
  text += ")";
  if (declared.typeLength > 0) text.append(" As ").append(code.DeclaredType(declared));
  return text;
}

std::string DeclarationText(const symbols::ReferenceIndex& index, symbols::SymbolId symbol) {
  const symbols::Symbol& found = index.SymbolAt(symbol);
  const language::Module& code = index.Code(found.module);
  const std::string name(index.Name(symbol));
  if (symbols::IsRoutine(found.kind)) return Shortened(Signature(code, code.routines[found.routine]));
  if (found.kind == SymbolKind::kControl) {
    const std::string type = index.DeclaredType(symbol);
    return Shortened(type.empty() ? name : name + " As " + type);
  }
  if (found.kind == SymbolKind::kLabel || found.declaration == symbols::kNone) return Shortened(name);
  const language::Declaration& declared = code.declarations[found.declaration];
  return Shortened(std::string(Before(declared, found.kind)) + Plain(code, declared, found.kind));
}

}  // namespace quillmate::output
