#include <algorithm>
#include <array>

#include <quillmate/language/parse.h>
#include <quillmate/text/utf8.h>

#include "index_data_p.h"
#include "library_p.h"
#include "macro_name_p.h"

/// What calls routines from outside the code.
namespace quillmate::symbols {
namespace {

using Data = ReferenceIndex::Data;

/// A routine of one module by name, of any visibility.
SymbolId RoutineOf(const Data& data, Index module, NameHash name) {
  const ModuleTable& table = data.tables.modules[module];
  for (Local local = table.Find(name); local != kNone; local = table.next[local]) {
    const SymbolKind kind = KindOf(table, local);
    if (kind == SymbolKind::kSub || kind == SymbolKind::kFunction) return data.SymbolOf(module, local);
  }
  return kNone;
}

/// Enters a call of what the binding names; `module`: where it is looked for first, or kNone. False when it names
/// nothing that is there.
bool AddHostCall(Data& data, const ExternalBinding& binding, Index module) {
  const MacroName name = ParseMacroName(binding.text);
  if (name.routine.empty()) return false;
  // A defined name is there because something uses the routine: what does is the better answer.
  const bool indirect = binding.kind == BindingKind::kDefinedName;
  if (module != kNone && name.module.empty()) {
    const SymbolId own = RoutineOf(data, module, language::HashName(name.routine));
    if (own != kNone) return data.hostCalls.push_back({own, indirect, binding.place}), true;
  }
  const std::vector<MacroTarget> targets = FindMacro(data.tables, binding.project, kNone, name);
  for (const MacroTarget& target : targets) {
    const SymbolId symbol = data.SymbolOf(target.module, target.local);
    if (symbol != kNone) data.hostCalls.push_back({symbol, indirect, binding.place});
  }
  return !targets.empty();
}

/// A binding of the project's own that leads nowhere: a mere name in a document may mean a command of the host, and a
/// formula may call what another document brings.
bool IsLoose(const Data& data, const ExternalBinding& binding) {
  constexpr std::array kTold{BindingKind::kButton, BindingKind::kRibbon, BindingKind::kShortcut,
                             BindingKind::kEventProperty};
  if (std::find(kTold.begin(), kTold.end(), binding.kind) == kTold.end()) return false;
  const MacroName name = ParseMacroName(binding.text);
  const ProjectTable& project = data.tables.projects[binding.project];
  const bool foreign = !name.project.empty() && language::HashName(name.project) != project.nameHash;
  return !name.routine.empty() && !foreign && (name.book.empty() || IsFile(project, name.book));
}

/// "=Rechne(1)" in an event property of a form: the function is called without any code.
void AddEventProperties(Data& data, Index module) {
  const language::Module& code = data.code[module];
  for (const language::EventProperty& property : code.eventProperties) {
    const std::string_view value = code.Text(property.value);
    if (value.empty() || value.front() != '=') continue;
    std::string place = "Eigenschaft ";
    place.append(code.Text(property.property)).append(" von ");
    std::string_view owner;
    if (property.control != kNone) owner = code.Text(code.controls[property.control].nameText);
    place.append(owner.empty() ? std::string_view(data.modules[module].name) : owner);
    if (!owner.empty()) place.append(" in ").append(data.modules[module].name);
    AddHostCall(data,
                {data.modules[module].project, {}, std::string(value), std::move(place), BindingKind::kEventProperty},
                module);
  }
}

/// "Strg+K" from "k\n14": a capital letter is one with the shift key.
std::string KeyName(std::string_view value) {
  if (value.size() < 2 || value[0] != '"') return {};
  const std::string_view key = value.substr(1, text::ReadUtf8(value.substr(1)).length);
  const bool small = key.size() == 1 && key[0] >= 'a' && key[0] <= 'z';
  std::string name = "Tastenkürzel Strg+";
  if (key.size() == 1 && key[0] >= 'A' && key[0] <= 'Z') name += "Umschalt+";
  return small ? name + static_cast<char>(key[0] - 0x20) : name.append(key);
}

void AddShortcuts(Data& data, Index module) {
  const language::Module& code = data.code[module];
  const ModuleTable& table = data.tables.modules[module];
  for (const language::Attribute& attribute : code.attributes) {
    if (attribute.name != language::kWordVB_Invoke_Func || attribute.declaration == kNone) continue;
    if ((table.status[attribute.declaration] & status::kShortcut) == 0) continue;
    const SymbolId symbol = data.SymbolOf(module, attribute.declaration + 1);
    if (symbol != kNone) data.hostCalls.push_back({symbol, false, KeyName(code.Text(attribute.value))});
  }
}

}  // namespace

void JoinBindings(Data& data, const std::vector<ExternalBinding>& bindings) {
  for (const ExternalBinding& binding : bindings) {
    if (binding.project >= data.projects.size()) continue;
    Index module = kNone;
    if (!binding.module.empty()) {
      module = data.tables.FindModule(binding.project, language::HashName(language::FoldName(binding.module)));
    }
    if (!AddHostCall(data, binding, module) && IsLoose(data, binding)) data.looseBindings.push_back(binding);
  }
  for (Index module = 0; module < data.modules.size(); ++module) {
    AddEventProperties(data, module);
    AddShortcuts(data, module);
  }
  std::sort(data.hostCalls.begin(), data.hostCalls.end());
  data.hostCalls.erase(std::unique(data.hostCalls.begin(), data.hostCalls.end()), data.hostCalls.end());
}

/// Marks types that leave the code as a whole, and the types of their members.
void JoinRecords(Data& data) {
  data.wholeTypes.assign(data.symbols.size(), false);
  data.eventObjects.assign(data.symbols.size(), false);
  for (const Data::Handled& handler : data.handlers) {
    if (handler.object != kNone) data.eventObjects[handler.object] = true;
  }
  data.addressTaken.assign(data.symbols.size(), false);
  std::vector<bool> seen(data.sets.offsets.size());
  for (const ModuleReferences& found : data.references) {
    for (const StoredReference& reference : found.references) {
      if (reference.form != Form::kAddress || reference.target == kNone) continue;
      if ((reference.flags & reference_flag::kSet) == 0) {
        data.addressTaken[reference.target] = true;
      } else if (!seen[reference.target]) {
        seen[reference.target] = true;
        for (const SymbolId symbol : data.sets.Row(reference.target)) data.addressTaken[symbol] = true;
      }
    }
  }
  std::vector<WholeRecord> open;
  const auto mark = [&](Index module, Local local) {
    const SymbolId symbol = data.SymbolOf(module, local);
    if (symbol == kNone || data.wholeTypes[symbol]) return;
    data.wholeTypes[symbol] = true;
    open.push_back({module, local});
  };
  for (const ModuleReferences& found : data.references) {
    for (const WholeRecord& record : found.records) mark(record.module, record.local);
  }
  for (Index module = 0; module < data.modules.size(); ++module) {
    const ModuleTable& table = data.tables.modules[module];
    for (const language::Declaration& declared : table.code->declarations) {
      if (declared.kind != language::DeclarationKind::kParameter || declared.parent == kNone) continue;
      if (KindOf(table, declared.parent + 1) != SymbolKind::kDeclare) continue;
      const TypeRef& type = table.types[static_cast<std::size_t>(&declared - table.code->declarations.data()) + 1];
      if (type.kind == TypeKind::kRecord) mark(type.module, type.local);
    }
  }
  while (!open.empty()) {
    const WholeRecord record = open.back();
    open.pop_back();
    const ModuleTable& table = data.tables.modules[record.module];
    const language::Declaration& declared = table.Declared(record.local);
    for (std::uint32_t child = 0; child < declared.childCount; ++child) {
      const TypeRef& type = table.types[declared.firstChild + child + 1];
      if (type.kind == TypeKind::kRecord) mark(type.module, type.local);
    }
  }
}

std::pair<std::string_view, std::string_view> HandlerParts(const ReferenceIndex& index, const Data::Handled& handler) {
  const Data& data = index.data();
  const Symbol& symbol = data.symbols[handler.routine];
  const language::Module& code = data.code[symbol.module];
  const std::string_view folded = code.NameText(code.declarations[symbol.declaration].name).substr(0, handler.prefix);
  // Folding may change the length of a name, never the number of its "_".
  auto left = std::count(folded.begin(), folded.end(), '_');
  const std::string_view name = index.Name(handler.routine);
  std::size_t cut = name.find('_');
  while (left-- > 0 && cut != std::string_view::npos) cut = name.find('_', cut + 1);
  if (cut == std::string_view::npos) return {name, {}};
  return {name.substr(0, cut), name.substr(cut + 1)};
}

std::string HandlerPlace(const ReferenceIndex& index, const Data::Handled& handler) {
  const auto [object, member] = HandlerParts(index, handler);
  const bool interface = handler.kind == HandlerKind::kInterface || handler.kind == HandlerKind::kLibraryInterface;
  std::string place = interface ? "Schnittstelle " : "Ereignis ";
  if (interface) return place.append(object);
  return place.append(member).append(" von ").append(object);
}

std::vector<std::string> ReferenceIndex::HostPlaces(SymbolId routine) const {
  std::vector<std::string> places;
  const Data::Handled* handler = data_->HandlerOf(routine);
  if (handler != nullptr && handler->kind != HandlerKind::kInterface && handler->kind != HandlerKind::kEvent) {
    places.push_back(HandlerPlace(*this, *handler));
  }
  auto call = std::lower_bound(data_->hostCalls.begin(), data_->hostCalls.end(), routine,
                               [](const HostCall& a, SymbolId id) { return a.routine < id; });
  for (; call != data_->hostCalls.end() && call->routine == routine; ++call) {
    places.push_back(call->place);
  }
  const Symbol& symbol = data_->symbols[routine];
  if (symbol.kind == SymbolKind::kSub && data_->modules[symbol.module].kind == language::ModuleKind::kStandard) {
    const ProjectTable& project = data_->tables.projects[data_->modules[symbol.module].project];
    const NameHash name =
        data_->code[symbol.module].NameHash(data_->code[symbol.module].declarations[symbol.declaration].name);
    if ((library::EntryPointHosts(name) & library::HostBit(project.host)) != 0 && project.host != Host::kUnknown) {
      places.push_back("Start durch den Host");
    }
  }
  return places;
}

}  // namespace quillmate::symbols
