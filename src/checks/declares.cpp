#include <algorithm>
#include <string>

#include "api_table_p.h"
#include "check_list_p.h"

namespace quillmate::checks {
namespace {

using language::BuiltinType;
using language::Declaration;
using language::DeclarationKind;

bool IsDeclare(const Declaration& declaration) {
  return declaration.kind == DeclarationKind::kDeclareFunction || declaration.kind == DeclarationKind::kDeclareSub;
}

/// What follows a word among the tokens after a Declare's name: a string without its quotes.
std::string_view TextBehind(const language::Module& code, const Declaration& declared, language::NameId word) {
  auto token = std::ranges::lower_bound(code.tokens, declared.offset, {}, &language::Token::offset);
  for (; token != code.tokens.end() && token->kind != language::TokenKind::kOperator; ++token) {
    if (token->name != word || token + 1 == code.tokens.end()) continue;
    const language::Token& text = token[1];
    if (text.kind != language::TokenKind::kString || text.length < 2) return {};
    return code.text.substr(text.offset + 1, text.length - 2);
  }
  return {};
}

/// The name that the library exports.
std::string_view ExportedName(const language::Module& code, const Declaration& declared) {
  const std::string_view alias = TextBehind(code, declared, language::kWordAlias);
  return alias.empty() ? code.Spelling(declared) : alias;
}

bool IsNarrow(BuiltinType type) { return type == BuiltinType::kLong || type == BuiltinType::kInteger; }

/// Whether a parameter has too few bytes: for an address that is handed over by its value (`ByVal lpRect As Long`), or
/// for a pointer that Windows writes. A pointer to a Long may be where a pointer is handed over by its value.
bool IsTooNarrow(const Declaration& parameter, const ApiParameter& known) {
  if (!IsNarrow(parameter.type)) return false;
  const bool byVal = (parameter.flags & declaration_flag::kByVal) != 0;
  return byVal ? known.IsAddress() : known.pointer && !known.byVal;
}

/// Parameters that have to be pointers and are not: „hWnd“, „lParam“ und das Ergebnis.
std::string NarrowParts(const language::Module& code, const Declaration& declared, const ApiFunction& api) {
  std::vector<std::string> parts;
  for (std::uint32_t i = 0; i < declared.childCount; ++i) {
    const Declaration& parameter = code.declarations[declared.firstChild + i];
    if (IsTooNarrow(parameter, api.parameters[i])) parts.push_back(InQuotes(code.Spelling(parameter)));
  }
  if (api.result == BuiltinType::kLongPtr && IsNarrow(declared.type)) parts.emplace_back("das Ergebnis");
  std::string text;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    text.append(i == 0 ? "" : i + 1 < parts.size() ? ", " : " und ").append(parts[i]);
  }
  return text;
}

std::string RightDeclaration(const language::Module& code, const Declaration& declared, const ApiFunction& api) {
  return "Richtig ist: " + DeclarationOf(api, code.Spelling(declared));
}

void CheckKnown(ModuleView& view, const Declaration& declared, const ApiFunction& api) {
  if (declared.childCount != api.parameters.size()) {
    return view.ReportDeclaration(CheckId::kApiSignature, declared,
                                  view.Named(declared) + " hat " + std::to_string(declared.childCount) +
                                      " Parameter, " + InQuotes(api.name) + " von Windows aber " +
                                      std::to_string(api.parameters.size()) + ".",
                                  RightDeclaration(view.code, declared, api));
  }
  const std::string parts = NarrowParts(view.code, declared, api);
  if (parts.empty()) return;
  const bool several = parts.find(" und ") != std::string::npos || parts.find(", ") != std::string::npos;
  view.ReportDeclaration(CheckId::kApiSignature, declared,
                         "In " + view.Named(declared) + (several ? " müssen " : " muss ") + parts +
                             " LongPtr sein: Zeiger und Handles haben in 64-Bit-Office 8 Byte.",
                         RightDeclaration(view.code, declared, api));
}

void CheckByName(ModuleView& view, const Declaration& declared) {
  for (std::uint32_t i = 0; i < declared.childCount; ++i) {
    const Declaration& parameter = view.code.declarations[declared.firstChild + i];
    const bool byVal = (parameter.flags & declaration_flag::kByVal) != 0;
    std::string_view name = view.code.Spelling(parameter);
    // Handed over by reference, "phToken" is where Windows puts a handle.
    if (!byVal && !name.starts_with("ph")) continue;
    if (!byVal) name.remove_prefix(1);
    if (parameter.type != BuiltinType::kLong || !SoundsLikePointer(name)) continue;
    view.ReportDeclaration(CheckId::kPointerAsLong, parameter,
                           view.Named(parameter) + " in " + view.Named(declared) +
                               " ist dem Namen nach ein Zeiger oder Handle, aber als Long deklariert.");
  }
}

/// Records that Windows reads or fills.
void CheckMember(ModuleView& view, const Declaration& member) {
  if (member.type != BuiltinType::kLong || !SoundsLikePointer(view.code.Spelling(member))) return;
  const Declaration& type = view.code.declarations[member.parent];
  view.ReportDeclaration(CheckId::kPointerAsLong, member,
                         view.Named(member) + " im Typ " + view.Named(type) +
                             " ist dem Namen nach ein Zeiger oder Handle, aber als Long deklariert.");
}

}  // namespace

void CheckDeclares(ModuleView& view) {
  const bool declares = std::ranges::any_of(view.code.declarations, IsDeclare);
  for (const Declaration& declared : view.code.declarations) {
    if ((declared.flags & declaration_flag::kInactive) != 0) continue;
    // Only where the module calls Windows: elsewhere "hFile" may be a number of a file.
    if (declared.kind == DeclarationKind::kTypeMember && declares && !view.vb6) CheckMember(view, declared);
    if (!IsDeclare(declared)) continue;
    const std::string_view lib = TextBehind(view.code, declared, language::kWordLib);
    view.ReportDeclaration(CheckId::kDeclare, declared,
                           view.Named(declared) + " ruft die Bibliothek " + InQuotes(lib) + " auf.");
    if (view.vb6) continue;
    const ApiFunction* const api = FindApi(ExportedName(view.code, declared), lib);
    if ((declared.flags & declaration_flag::kPtrSafe) == 0) {
      view.ReportDeclaration(
          CheckId::kPtrSafe, declared,
          view.Named(declared) + " ist ohne PtrSafe deklariert; 64-Bit-Office kompiliert das Modul so nicht.",
          api != nullptr ? RightDeclaration(view.code, declared, *api) : std::string());
    } else if (api != nullptr) {
      CheckKnown(view, declared, *api);
    } else {
      CheckByName(view, declared);
    }
  }
}

// ------------------------------------------------------------------------------------------------------ call-backs

namespace {

/// The Declare that the statement around a use hands it to, as its signature wants it.
const std::string_view* SignatureAround(const ModuleView& view, Index use, std::string_view& name) {
  static thread_local std::string_view signature;
  const language::LogicalLine& line = view.code.logicalLines[view.code.LogicalLineAt(view.code.uses[use].line)];
  for (Index at = use; at-- > line.firstUse;) {
    const Symbol* const symbol = view.SureSymbol(at);
    if (symbol == nullptr || symbol->kind != SymbolKind::kDeclare) continue;
    name = view.index.Name(view.bound[at].target);
    const auto found = CallbackOf(name);
    if (!found) return nullptr;
    signature = *found;
    return &signature;
  }
  return nullptr;
}

std::string NarrowInCallback(const language::Module& code, const Declaration& routine, std::string_view signature) {
  std::string parts;
  if (routine.childCount != signature.size() - 1) return parts;
  for (std::uint32_t i = 0; i < routine.childCount; ++i) {
    const Declaration& parameter = code.declarations[routine.firstChild + i];
    if (signature[i] != 'P' || !IsNarrow(parameter.type)) continue;
    parts.append(parts.empty() ? "" : ", ").append(InQuotes(code.Spelling(parameter)));
  }
  if (signature.back() == 'P' && IsNarrow(routine.type)) parts.append(parts.empty() ? "" : ", ").append("das Ergebnis");
  return parts;
}

/// The same by the names of the parameters alone.
std::string NarrowByName(const language::Module& code, const Declaration& routine) {
  std::string parts;
  for (std::uint32_t i = 0; i < routine.childCount; ++i) {
    const Declaration& parameter = code.declarations[routine.firstChild + i];
    if (parameter.type != BuiltinType::kLong || !SoundsLikePointer(code.Spelling(parameter))) continue;
    parts.append(parts.empty() ? "" : ", ").append(InQuotes(code.Spelling(parameter)));
  }
  return parts;
}

}  // namespace

void CheckCallbacks(ModuleView& view) {
  if (view.vb6) return;
  for (Index use = 0; use < view.code.uses.size(); ++use) {
    if (view.code.uses[use].role != Role::kAddressOf || !view.IsActive(view.code.uses[use])) continue;
    const Symbol* const routine = view.SureSymbol(use);
    if (routine == nullptr || !IsRoutine(routine->kind)) continue;
    std::string_view api;
    const std::string_view* const signature = SignatureAround(view, use, api);
    const language::Module& code = view.index.Code(routine->module);
    const Declaration& declared = *view.DeclarationOf(*routine);
    if (signature == nullptr) {
      if (const std::string parts = NarrowByName(code, declared); !parts.empty()) {
        view.ReportUse(CheckId::kPointerAsLong, use,
                       view.Named(view.code.uses[use]) + " wird von außen gerufen; dem Namen nach sind Zeiger oder " +
                           "Handles, aber als Long deklariert: " + parts + ".");
      }
      continue;
    }
    const std::string parts = NarrowInCallback(code, declared, *signature);
    if (parts.empty()) continue;
    view.ReportUse(CheckId::kCallbackAsLong, use,
                   "Windows ruft " + view.Named(view.code.uses[use]) + " über " + InQuotes(api) +
                       " auf; dort müssen Zeiger und Handles LongPtr sein: " + parts + ".");
  }
}

// --------------------------------------------------------------------------------------------------------- pointers

namespace {

bool IsPointerFunction(const ModuleView& view, Index use) {
  const Known name = view.GlobalName(use);
  return name == Known::kVarPtr || name == Known::kStrPtr || name == Known::kObjPtr;
}

/// What gives a pointer: VarPtr and its kin, a Declare or a routine whose result is LongPtr.
bool GivesPointer(const ModuleView& view, Index use) {
  if (IsPointerFunction(view, use)) return true;
  const Symbol* const symbol = view.SureSymbol(use);
  if (symbol == nullptr) return false;
  const Declaration* const declared = view.DeclarationOf(*symbol);
  return declared != nullptr && declared->type == BuiltinType::kLongPtr;
}

/// `VarPtr(a(0)) + 4`: a pointer still, while the difference of two is a number. The use is the first thing after "=".
bool IsMovedPointer(const ModuleView& view, Index use) {
  const std::vector<language::Token>& tokens = view.code.tokens;
  auto token = std::ranges::lower_bound(tokens, view.code.uses[use].offset, {}, &language::Token::offset);
  const auto is = [&](language::Operator sign) {
    return token != tokens.end() && token->kind == language::TokenKind::kOperator &&
           token->detail == static_cast<std::uint8_t>(sign);
  };
  if (token == tokens.begin() || token == tokens.end()) return false;
  --token;
  if (!is(language::Operator::kEqual)) return false;
  token += 2;
  if (!is(language::Operator::kOpen)) return false;
  for (std::size_t depth = 0; token != tokens.end(); ++token) {
    if (is(language::Operator::kOpen)) ++depth;
    if (is(language::Operator::kClose) && --depth == 0) break;
  }
  if (token == tokens.end()) return false;
  ++token;
  return is(language::Operator::kPlus);
}

}  // namespace

void CheckPointers(ModuleView& view) {
  if (view.vb6) return;
  const language::Module& code = view.code;
  for (Index target = 0; target + 1 < code.uses.size(); ++target) {
    if (code.uses[target].role != Role::kLetTarget || !view.IsActive(code.uses[target])) continue;
    const Symbol* const symbol = view.SureSymbol(target);
    if (symbol == nullptr) continue;
    const Declaration* const declared = view.DeclarationOf(*symbol);
    if (declared == nullptr || !IsNarrow(declared->type)) continue;
    // The value: the chain after the target that is the whole right side.
    const Index logicalEnd = target + 64;
    for (Index value = target + 1; value < code.uses.size() && value < logicalEnd; ++value) {
      if (code.uses[value].routine != code.uses[target].routine || code.uses[value].role == Role::kLetTarget) break;
      if (code.uses[value].line > code.uses[target].line + 1) break;
      const bool whole = (code.uses[value].flags & use_flag::kWholeValue) != 0;
      if (!whole && !(IsPointerFunction(view, value) && IsMovedPointer(view, value))) continue;
      if (!GivesPointer(view, value)) break;
      view.ReportUse(CheckId::kPointerInLong, target,
                     view.Named(code.uses[target]) + " ist Long, bekommt aber mit " + view.Named(code.uses[value]) +
                         " einen Zeiger oder ein Handle.");
      break;
    }
  }
}

}  // namespace quillmate::checks
