#include "dump.h"

#include <string_view>

namespace quillmate::language {
namespace {

std::string Text(std::string_view text) { return std::string(text); }

constexpr std::string_view kKinds[] = {
    "sub",         "function", "get",         "let",       "set",  "declare-sub", "declare-function",
    "event",       "variable", "constant",    "parameter", "type", "type-member", "enum",
    "enum-member", "label",    "conditional", "redim"};
constexpr std::string_view kRoles[] = {"value",   "call",       "let",         "set",       "for",   "for-each",
                                       "next",    "input",      "redim",       "erase",     "type",  "new",
                                       "type-of", "implements", "address",     "raise",     "label", "named",
                                       "load",    "unload",     "conditional", "attribute", "key"};
constexpr std::string_view kVisibilities[] = {"public", "private", "friend", "global", "local"};

void Append(std::string& text, const std::string& item) {
  if (!text.empty()) text += ' ';
  text += item;
}

struct FlagWord {
  std::uint32_t flag;
  std::string_view word;
};

constexpr FlagWord kDeclarationFlags[] = {
    {declaration_flag::kArray, "array"},       {declaration_flag::kAsNew, "new"},
    {declaration_flag::kWithEvents, "events"}, {declaration_flag::kOptional, "optional"},
    {declaration_flag::kByVal, "byval"},       {declaration_flag::kByRef, "byref"},
    {declaration_flag::kParamArray, "rest"},   {declaration_flag::kStatic, "static"},
    {declaration_flag::kFixedLength, "fixed"}, {declaration_flag::kFromDefType, "deftype"},
    {declaration_flag::kInactive, "inactive"}, {declaration_flag::kDead, "dead"},
    {declaration_flag::kVariant, "variant"},   {declaration_flag::kPtrSafe, "ptrsafe"},
};

constexpr FlagWord kUseFlags[] = {
    {use_flag::kInactive, "inactive"}, {use_flag::kMoreArguments, "more"}, {use_flag::kByValArgument, "byval"},
    {use_flag::kConstant, "constant"}, {use_flag::kWithObject, "with"},    {use_flag::kForEachSource, "each"},
    {use_flag::kReadToo, "read"},      {use_flag::kPreserve, "preserve"},  {use_flag::kWithEvents, "events"},
    {use_flag::kOutputList, "list"},   {use_flag::kOfResult, "of-result"},
};

template <std::size_t kCount>
std::string Words(const FlagWord (&words)[kCount], std::uint32_t flags) {
  std::string text;
  for (const FlagWord& word : words) {
    if ((flags & word.flag) != 0) text.append(",").append(word.word);
  }
  return text;
}

/// The chain that a use is the last name of.
std::string Chain(const Module& module, Index index) {
  std::string text;
  while (index != kNone) {
    const NameUse& use = module.uses[index];
    const bool key = use.access == Access::kKey || use.access == Access::kWithKey;
    std::string part = use.access == Access::kSimple ? "" : key ? "!" : ".";
    if (use.access == Access::kWith || use.access == Access::kWithKey) part = "~" + part;
    text = part + Text(module.Spelling(use)) + text;
    index = use.access == Access::kSimple ? kNone : use.previous;
  }
  return text;
}

}  // namespace

std::string_view RoleName(Role role) { return kRoles[static_cast<std::size_t>(role)]; }
std::string_view KindName(DeclarationKind kind) { return kKinds[static_cast<std::size_t>(kind)]; }

std::string Routines(const Module& module) {
  std::string text;
  for (const Routine& routine : module.routines) {
    std::string item(1, "SFGLT"[static_cast<int>(routine.kind)]);
    item += ':' + Text(module.Spelling(module.declarations[routine.declaration])) + '@';
    item += std::to_string(routine.firstLine) + '-' + std::to_string(routine.lastLine);
    if (routine.variantCount > 1) item += '*' + std::to_string(routine.variantCount);
    if (routine.activity == Activity::kInactive) item += '~';
    if (routine.activity == Activity::kDead) item += '#';
    if (!routine.hasEnd) item += '!';
    Append(text, item);
  }
  return text;
}

std::string Declarations(const Module& module) {
  std::string text;
  for (const Declaration& declaration : module.declarations) {
    std::string item = Text(KindName(declaration.kind)) + ' ';
    item += Text(module.Spelling(declaration)) + '@' + std::to_string(declaration.line);
    const std::string type = module.DeclaredType(declaration);
    if (!type.empty()) item += ':' + type;
    if ((declaration.flags & declaration_flag::kFromDefType) != 0) item += ':' + Text(TypeName(declaration.type));
    item += Words(kDeclarationFlags, declaration.flags);
    if (declaration.parent != kNone) {
      item += '<' + Text(module.Spelling(module.declarations[declaration.parent]));
    } else {
      item += ',' + Text(kVisibilities[static_cast<std::size_t>(declaration.visibility)]);
    }
    Append(text, item + ';');
  }
  return text;
}

std::string Uses(const Module& module, bool lines) {
  std::string text;
  for (std::size_t i = 0; i < module.uses.size(); ++i) {
    const NameUse& use = module.uses[i];
    std::string item;
    if (use.role != Role::kValue) item = Text(RoleName(use.role)) + ' ';
    item += Chain(module, static_cast<Index>(i));
    if (lines) item += '@' + std::to_string(use.line);
    const bool counted = use.argumentCount > 0 || (use.flags & use_flag::kParenthesised) != 0;
    if (counted) item += '(' + std::to_string(use.argumentCount) + ')';
    item += Words(kUseFlags, use.flags);
    if ((use.flags & use_flag::kBareArgument) != 0) {
      item += '<' + Text(module.Spelling(module.uses[use.owner])) + std::to_string(use.position);
    } else if (use.role == Role::kNamedArgument && use.owner != kNone) {
      item += '<' + Text(module.Spelling(module.uses[use.owner]));
    }
    Append(text, item + ';');
  }
  return text;
}

std::string Strings(const Module& module) {
  std::string text;
  for (const StringUse& string : module.strings) {
    std::string item = Text(module.text.substr(string.offset, string.length)) + '@' + std::to_string(string.line);
    if (string.owner != kNone) {
      item += string.assigned ? "=" : "<";
      item += Chain(module, string.owner) + std::to_string(string.position);
    }
    if (string.whole) item += ",whole";
    if (string.inactive) item += ",inactive";
    Append(text, item + ';');
  }
  return text;
}

std::string Metrics(const Module& module) {
  std::string text;
  for (const Routine& routine : module.routines) {
    const RoutineMetrics& m = routine.metrics;
    Append(text, std::to_string(m.statements) + "/" + std::to_string(m.complexity) + "/" + std::to_string(m.nesting));
  }
  return text;
}

}  // namespace quillmate::language
