#include <algorithm>
#include <cctype>

#include <quillmate/language/parse.h>

#include "binder_p.h"
#include "macro_name_p.h"

namespace quillmate::symbols {
namespace {

using language::Declaration;
using language::DeclarationKind;
namespace declaration_flag = language::declaration_flag;

/// Names are at most 255 characters long; longer ones handle nothing.
constexpr std::size_t kLongestName = 1024;

Form HeaderForm(DeclarationKind kind) {
  if (kind == DeclarationKind::kPropertyLet) return Form::kLet;
  return kind == DeclarationKind::kPropertySet ? Form::kSet : Form::kRead;
}

/// Whether a routine of that kind can implement the member.
bool Implements(DeclarationKind routine, SymbolKind member) {
  switch (member) {
    case SymbolKind::kSub:
      return routine == DeclarationKind::kSub;
    case SymbolKind::kFunction:
      return routine == DeclarationKind::kFunction;
    case SymbolKind::kPropertyGet:
      return routine == DeclarationKind::kPropertyGet;
    case SymbolKind::kPropertyLet:
      return routine == DeclarationKind::kPropertyLet;
    case SymbolKind::kPropertySet:
      return routine == DeclarationKind::kPropertySet;
    case SymbolKind::kVariable:
      return routine != DeclarationKind::kSub && routine != DeclarationKind::kFunction;
    default:
      return false;
  }
}

}  // namespace

/// A routine whose name has two parts may handle an event or implement a member: its header then uses that.
void Binder::BindHeader(Index routine) {
  if (!table_.classLike) return;
  const Index declaration = code_.routines[routine].declaration;
  if ((table_.status[declaration] & status::kNone) != 0) return;
  const std::string_view name = code_.NameText(code_.declarations[declaration].name);
  if (name.size() > kLongestName) return;
  std::string prefix;
  for (std::size_t cut = name.rfind('_'); cut != std::string_view::npos && cut > 0; cut = name.rfind('_', cut - 1)) {
    prefix.assign(name.substr(0, cut));
    if (cut + 1 == name.size()) continue;
    const NameHash member = language::HashName(std::string(name.substr(cut + 1)));
    if (BindInterfaceMember(declaration, prefix, member) || BindHandler(declaration, prefix, member)) return;
  }
}

bool Binder::BindInterfaceMember(Index declaration, const std::string& prefix, NameHash member) {
  const Index number = table_.interfaceNames.Find(language::HashName(prefix));
  if (number == kNone) return false;
  Handler handler{declaration,
                  table_.interfaces[number],
                  kNone,
                  kNone,
                  static_cast<std::uint32_t>(prefix.size()),
                  HandlerKind::kLibraryInterface};
  if (handler.module == kNone) {
    result_.handlers.push_back(handler);
    return true;
  }
  const Declaration& header = code_.declarations[declaration];
  const ModuleTable& table = tables_.modules[handler.module];
  const Local first = table.Find(member);
  if (first == kNone) return false;
  scratch_.picked.clear();
  Pick(table, first, HeaderForm(header.kind), handler.module != module_, false, false, scratch_.picked);
  for (const Local local : scratch_.picked) {
    if (!Implements(header.kind, KindOf(table, local))) continue;
    handler.kind = HandlerKind::kInterface;
    handler.local = local;
    result_.handlers.push_back(handler);
    const bool inactive = table_.IsInactive(declaration + 1) || table.IsInactive(local);
    Emit(declaration, Raw(handler.module, local), Form::kImplements, inactive ? Certainty::kInactive : Certainty::kSure,
         reference_flag::kDeclaration);
    return true;
  }
  return false;
}

bool Binder::BindHandler(Index declaration, const std::string& prefix, NameHash member) {
  const Declaration& header = code_.declarations[declaration];
  if (header.kind != DeclarationKind::kSub && header.kind != DeclarationKind::kFunction) return false;
  const NameHash name = language::HashName(prefix);
  Handler handler{
      declaration, kNone, kNone, kNone, static_cast<std::uint32_t>(prefix.size()), HandlerKind::kLibraryEvent};
  for (Local local = table_.FindEventObject(name); local != kNone; local = table_.next[local]) {
    const bool control = table_.IsControl(local);
    if (!control && (table_.Declared(local).flags & declaration_flag::kWithEvents) == 0) continue;
    const TypeRef type = table_.types[local];
    handler.object = local;
    if (type.kind == TypeKind::kClass) {
      const ModuleTable& table = tables_.modules[type.module];
      const Local event = table.FindEvent(member);
      if (event == kNone) {
        if (!control && table.bases == 0) continue;  // the class has no such event
      } else {
        handler.kind = HandlerKind::kEvent;
        handler.module = type.module;
        handler.local = event;
        const bool inactive = table_.IsInactive(declaration + 1) || table.IsInactive(event);
        Emit(declaration, Raw(type.module, event), Form::kWithEvents,
             inactive ? Certainty::kInactive : Certainty::kSure, reference_flag::kDeclaration);
      }
    }
    result_.handlers.push_back(handler);
    return true;
  }
  if (!library::IsHostObject(name, table_.bases)) return false;
  handler.kind = HandlerKind::kHostObject;
  result_.handlers.push_back(handler);
  return true;
}

// --------------------------------------------------------------------------------------------------------- strings

void Binder::BindString(Index number) {
  const language::StringUse& string = code_.strings[number];
  const std::string_view literal = code_.text.substr(string.offset, string.length);
  MentionNames(number, literal);
  if (!string.whole || string.owner == kNone) return;
  Index callee = string.owner;
  unsigned position = string.position;
  if (Use(callee).role == language::Role::kNamedArgument) {
    static const NameHash kNames[] = {language::HashName("macro"), language::HashName("procedure"),
                                      language::HashName("procname"), language::HashName("formname")};
    const NameHash argument = HashOf(Use(callee).name);
    callee = Use(callee).owner;
    if (callee == kNone || std::find(std::begin(kNames), std::end(kNames), argument) == std::end(kNames)) return;
    const NameHash called = HashOf(Use(callee).name);
    position = library::FindStringTarget(called, 1, false) != library::StringTarget::kNone ? 1 : 2;
  }
  const Bound& bound = scratch_.bound[callee];
  if (bound.state == Bound::State::kOwn || bound.state == Bound::State::kSeveral) return;
  const std::string text = LiteralText(literal);
  const Certainty certainty = string.inactive ? Certainty::kInactive : Certainty::kString;
  switch (library::FindStringTarget(HashOf(Use(callee).name), position, string.assigned)) {
    case library::StringTarget::kNone:
      return;
    case library::StringTarget::kMacro:
    case library::StringTarget::kExpression:
      return BindMacroName(number, text);
    case library::StringTarget::kMember: {
      if (result_.callsByName > 0) --result_.callsByName;
      const NameHash name = language::HashName(language::FoldName(text));
      const SetRequest request{SetKind::kMembers, Form::kRead, false, project_, kNone, name, 0};
      if (tables_.projects[project_].memberNames.Find(name) == kNone) return;
      return Emit(number, SetNumber(request), Form::kCall, certainty, reference_flag::kString | reference_flag::kSet);
    }
    case library::StringTarget::kForm: {
      const std::string folded = language::FoldName(text);
      for (const char* prefix : {"form_", "report_", ""}) {
        const Index module = tables_.FindModule(project_, language::HashName(prefix + folded));
        if (module == kNone || !tables_.modules[module].classLike) continue;
        return Emit(number, Raw(module, 0), Form::kRead, certainty, reference_flag::kString);
      }
      return;
    }
    case library::StringTarget::kControl: {
      const auto [module, control] = FindControl(callee, language::HashName(language::FoldName(text)));
      if (control == kNone) return;
      return Emit(number, Raw(module, control), Form::kRead, certainty, reference_flag::kString);
    }
  }
}

/// "Mappe!Modul.Routine".
void Binder::BindMacroName(Index number, std::string_view text) {
  const MacroName name = ParseMacroName(text);
  if (name.routine.empty()) return;
  const Certainty certainty = code_.strings[number].inactive ? Certainty::kInactive : Certainty::kString;
  const NameHash routine = language::HashName(name.routine);
  if (name.module.empty() && name.book.empty()) {
    if (tables_.projects[project_].macroNames.Find(routine) == kNone) return;
    const bool own = table_.kind == SymbolKind::kModule && table_.Find(routine) != kNone;
    const SetRequest request{SetKind::kMacros, Form::kRead, false, project_, own ? module_ : kNone, routine, 0};
    return Emit(number, SetNumber(request), Form::kCall, certainty, reference_flag::kString | reference_flag::kSet);
  }
  for (const MacroTarget& target : FindMacro(tables_, project_, module_, name)) {
    Emit(number, Raw(target.module, target.local), Form::kCall, certainty, reference_flag::kString);
  }
}

/// `[Rechne(A1)]`: a formula that Excel evaluates.
void Binder::BindBracketed(Index number) {
  if ((tables_.projects[project_].hosts & library::kExcel) == 0) return;
  ForEachMention(code_.Spelling(Use(number)), [&](std::string_view name) {
    const NameHash routine = language::HashName(language::FoldName(name));
    if (tables_.projects[project_].macroNames.Find(routine) == kNone) return;
    const SetRequest request{SetKind::kMacros, Form::kRead, false, project_, kNone, routine, 0};
    Emit(number, SetNumber(request), Form::kCall, IsInactive(Use(number)) ? Certainty::kInactive : Certainty::kString,
         reference_flag::kSet);
  });
}

/// Remembers names that the literal may hand to somebody: the whole of it, or before a "(" in it.
void Binder::MentionNames(Index number, std::string_view literal) {
  if (code_.strings[number].inactive) return;
  const auto mention = [&](std::string_view name) {
    if (name.empty() || name.size() > kLongestName) return;
    const NameHash hash = language::HashName(language::FoldName(name));
    const ProjectTable& project = tables_.projects[project_];
    if (project.macroNames.Find(hash) == kNone && project.memberNames.Find(hash) == kNone) return;
    result_.mentions.push_back({hash, number, code_.strings[number].routine});
  };
  ForEachMention(literal, mention);
}

}  // namespace quillmate::symbols
