#include <algorithm>
#include <unordered_map>

#include <quillmate/language/parse.h>
#include <quillmate/symbols/unused.h>

#include "index_data_p.h"
#include "outside_use_p.h"

namespace quillmate::symbols {
namespace {

using Data = ReferenceIndex::Data;
namespace declaration_flag = language::declaration_flag;

constexpr std::string_view kNowhere = "nirgends verwendet";

/// What the references to a symbol come to.
struct Evidence {
  bool used = false;                                                        ///< surely, by something else
  bool self = false;                                                        ///< surely, but only by itself
  bool written = false;                                                     ///< a variable that is surely written
  bool bound = false;                                                       ///< implements a member that nobody calls
  Index text = kNone, ambiguous = kNone, byName = kNone, inactive = kNone;  ///< numbers of the first such references

  /// The weak references of both.
  void Join(const Evidence& other) noexcept {
    text = std::min(text, other.text);
    ambiguous = std::min(ambiguous, other.ambiguous);
    byName = std::min(byName, other.byName);
    inactive = std::min(inactive, other.inactive);
  }
};

bool IsVariable(SymbolKind kind) { return kind == SymbolKind::kVariable || kind == SymbolKind::kParameter; }

class Grader {
 public:
  explicit Grader(const ReferenceIndex& index) : index_(index), data_(index.data()) {}

  std::optional<UnusedSymbol> Of(SymbolId symbol) const;

 private:
  bool IsListed(SymbolId id) const;
  bool HasActiveTwin(SymbolId id) const;
  bool HasActiveSibling(SymbolId id) const;
  Evidence Collect(SymbolId id) const;
  void CollectUses(SymbolId id, bool headers, Evidence& evidence) const;
  void Weigh(SymbolId id, Index number, Evidence& evidence) const;
  void CollectThroughMember(SymbolId routine, Evidence& evidence) const;
  std::vector<SymbolId> EnumMembers(SymbolId id) const;
  std::optional<std::string> Signature(SymbolId parameter) const;
  const Mention* MentionOf(SymbolId id) const;
  const DeadMention* DeadMentionOf(SymbolId id) const;
  std::string PlaceOf(Index number, SymbolId id) const;
  std::string LinePlace(Index module, std::uint32_t line) const;

  const ReferenceIndex& index_;
  const Data& data_;
  mutable std::unordered_map<SymbolId, Evidence> members_;  ///< of interfaces, events: asked for each that answers them
  mutable std::unordered_map<Index, Evidence> sets_;        ///< what uses of several things come to
  mutable std::unordered_map<std::uint64_t, bool> activeGroups_;  ///< by module and first name of a group
  /// Names and kinds of what is active in one routine, type or enum, sorted: asked for each of its parts.
  mutable std::pair<SymbolId, std::vector<std::pair<language::NameId, language::DeclarationKind>>> active_{kNone, {}};
};

bool Grader::IsListed(SymbolId id) const {
  const Symbol& symbol = data_.symbols[id];
  switch (symbol.kind) {
    case SymbolKind::kModule:
    case SymbolKind::kClass:
    case SymbolKind::kForm:
    case SymbolKind::kDocument:
    case SymbolKind::kControl:
      return false;
    case SymbolKind::kLabel:
      return (symbol.flags & symbol_flag::kLineNumber) == 0;
    case SymbolKind::kParameter:
      return symbol.parent != kNone && IsRoutine(data_.symbols[symbol.parent].kind);
    default:
      return (symbol.flags & symbol_flag::kInactive) == 0 || !HasActiveTwin(id);
  }
}

/// Whether the name is declared again, in a branch that counts.
bool Grader::HasActiveTwin(SymbolId id) const {
  const Symbol& symbol = data_.symbols[id];
  const ModuleTable& table = data_.tables.modules[symbol.module];
  const language::Module& code = *table.code;
  const language::NameId name = code.declarations[symbol.declaration].name;
  if (symbol.parent == kNone) {
    const bool type = symbol.kind == SymbolKind::kType;
    const bool event = symbol.kind == SymbolKind::kEvent;
    const NameHash hash = code.NameHash(name);
    const Local head = type ? table.FindType(hash) : event ? table.FindEvent(hash) : table.Find(hash);
    if (head == kNone) return false;
    const auto [known, isNew] =
        activeGroups_.try_emplace(static_cast<std::uint64_t>(symbol.module) << 32U | head, false);
    if (isNew) {
      for (Local local = head; local != kNone; local = type || event ? kNone : table.next[local]) {
        if (!table.IsInactive(local)) known->second = true;
      }
    }
    return known->second;
  }
  return HasActiveSibling(id);
}

/// The same for a part of a routine, a type or an enum.
bool Grader::HasActiveSibling(SymbolId id) const {
  const Symbol& symbol = data_.symbols[id];
  const language::Module& code = data_.code[symbol.module];
  const Symbol& parent = data_.symbols[symbol.parent];
  // A part of something that has a twin has one too.
  if ((parent.flags & symbol_flag::kInactive) != 0 && HasActiveTwin(symbol.parent)) return true;
  Index first = 0, end = 0;
  if (symbol.routine != kNone) {
    first = code.routines[symbol.routine].firstDeclaration;
    end = code.routines[symbol.routine].endDeclaration;
  } else if (parent.declaration != kNone) {
    first = code.declarations[parent.declaration].firstChild;
    end = first + code.declarations[parent.declaration].childCount;
  }
  if (active_.first != symbol.parent) {
    active_.first = symbol.parent;
    active_.second.clear();
    for (Index at = first; at < end; ++at) {
      const language::Declaration& other = code.declarations[at];
      if ((other.flags & declaration_flag::kInactive) == 0) active_.second.emplace_back(other.name, other.kind);
    }
    std::sort(active_.second.begin(), active_.second.end());
  }
  const language::Declaration& own = code.declarations[symbol.declaration];
  return std::binary_search(active_.second.begin(), active_.second.end(), std::pair{own.name, own.kind});
}

void Grader::Weigh(SymbolId id, Index number, Evidence& evidence) const {
  const Symbol& symbol = data_.symbols[id];
  const Index module = data_.ModuleOfReference(number);
  const StoredReference& stored = data_.Stored(number, module);
  if ((stored.flags & reference_flag::kResult) != 0) return;
  const auto first = [number](Index& known) { known = std::min(known, number); };
  switch (stored.certainty) {
    case Certainty::kSure:
      break;
    case Certainty::kAmbiguous:
      return first(evidence.ambiguous);
    case Certainty::kByName:
      return first(evidence.byName);
    case Certainty::kString:
    case Certainty::kHost:
      return first(evidence.text);
    case Certainty::kInactive:
      return first(evidence.inactive);
  }
  if (IsVariable(symbol.kind) && (stored.flags & (reference_flag::kDeclaration | reference_flag::kString)) == 0 &&
      data_.UseOf(stored, id) == Use::kWrite) {
    // The variable of a loop has to be there, read or not.
    const language::Role role = data_.code[module].uses[stored.place].role;
    const bool loop = role == language::Role::kForVariable || role == language::Role::kForEachVariable;
    (loop ? evidence.used : evidence.written) = true;
    return;
  }
  if (IsRoutine(symbol.kind) && module == symbol.module &&
      (stored.flags & (reference_flag::kDeclaration | reference_flag::kString)) == 0 &&
      data_.code[module].uses[stored.place].routine == symbol.routine) {
    evidence.self = true;
    return;
  }
  evidence.used = true;
}

/// All uses of the symbol, until one of them is sure. A use of several things is weighed once for all of them.
void Grader::CollectUses(SymbolId id, bool headers, Evidence& evidence) const {
  for (const Index number : data_.uses.Row(id)) {
    const StoredReference& stored = data_.Stored(number, data_.ModuleOfReference(number));
    if (headers || (stored.flags & reference_flag::kDeclaration) == 0) Weigh(id, number, evidence);
    if (evidence.used) return;
  }
  for (const Index set : data_.memberships.Row(id)) {
    const auto [known, isNew] = sets_.try_emplace(set);
    if (isNew) {
      for (const Index number : data_.uses.Row(static_cast<Index>(data_.symbols.size()) + set)) {
        Weigh(id, number, known->second);
      }
    }
    evidence.Join(known->second);
  }
}

Evidence Grader::Collect(SymbolId id) const {
  Evidence evidence;
  CollectUses(id, true, evidence);
  if ((data_.symbols[id].flags & symbol_flag::kImplicit) != 0) {
    const bool written = (data_.symbols[id].flags & symbol_flag::kFirstWritten) != 0;
    (written ? evidence.written : evidence.used) = true;
  }
  // An Enum is there for its members.
  for (const SymbolId member : EnumMembers(id)) {
    if (evidence.used) break;
    CollectUses(member, true, evidence);
  }
  if (!evidence.used) CollectThroughMember(id, evidence);
  return evidence;
}

/// An implementation is called with its interface's member, a handler with its event.
void Grader::CollectThroughMember(SymbolId routine, Evidence& evidence) const {
  const Data::Handled* handler = data_.HandlerOf(routine);
  if (handler == nullptr || handler->target == kNone) return;
  const auto [known, isNew] = members_.try_emplace(handler->target);
  Evidence& member = known->second;
  if (isNew) CollectUses(handler->target, false, member);
  evidence.used = member.used || member.written;
  evidence.Join(member);
  evidence.bound = handler->kind == HandlerKind::kInterface;
}

/// The members of an Enum; nothing for anything else.
std::vector<SymbolId> Grader::EnumMembers(SymbolId id) const {
  std::vector<SymbolId> members;
  const Symbol& symbol = data_.symbols[id];
  if (symbol.kind != SymbolKind::kEnum) return members;
  const language::Declaration& declared = data_.code[symbol.module].declarations[symbol.declaration];
  for (std::uint32_t child = 0; child < declared.childCount; ++child) {
    const SymbolId member = data_.SymbolOf(symbol.module, declared.firstChild + child + 1);
    if (member != kNone) members.push_back(member);
  }
  return members;
}

/// Why a parameter has to be there although nothing reads it.
std::optional<std::string> Grader::Signature(SymbolId parameter) const {
  const SymbolId routine = data_.symbols[parameter].parent;
  const Data::Handled* handler = data_.HandlerOf(routine);
  if (handler != nullptr) return HandlerPlace(index_, *handler);
  const std::vector<std::string> places = index_.HostPlaces(routine);
  if (!places.empty()) return places.front();
  return std::nullopt;
}

const Mention* Grader::MentionOf(SymbolId id) const {
  const Symbol& symbol = data_.symbols[id];
  const bool routine = symbol.kind == SymbolKind::kSub || symbol.kind == SymbolKind::kFunction;
  const bool member = symbol.parent == kNone && data_.tables.modules[symbol.module].classLike &&
                      (IsProperty(symbol.kind) || symbol.kind == SymbolKind::kVariable);
  if (!routine && !(member && data_.callsByName[data_.modules[symbol.module].project])) return nullptr;
  const language::Module& code = data_.code[symbol.module];
  const NameHash key =
      Within(code.NameHash(code.declarations[symbol.declaration].name), data_.modules[symbol.module].project);
  auto at = std::lower_bound(data_.mentions.begin(), data_.mentions.end(), key,
                             [](const Mention& mention, NameHash k) { return mention.key < k; });
  for (; at != data_.mentions.end() && at->key == key; ++at) {
    // A routine that tells its own name, as in messages of errors, calls nobody.
    if (at->module != symbol.module || at->routine != symbol.routine) return &*at;
  }
  return nullptr;
}

/// A name in dead code that may mean the symbol: what is in a routine only there, what is private in its module.
const DeadMention* Grader::DeadMentionOf(SymbolId id) const {
  const Symbol& symbol = data_.symbols[id];
  if (symbol.declaration == kNone || data_.deadMentions.empty()) return nullptr;
  const language::Module& code = data_.code[symbol.module];
  const NameHash key =
      Within(code.NameHash(code.declarations[symbol.declaration].name), data_.modules[symbol.module].project);
  const auto from = [&](Index module, Index routine) {
    return std::lower_bound(data_.deadMentions.begin(), data_.deadMentions.end(), DeadMention{key, module, routine, 0});
  };
  const bool routine = IsRoutine(symbol.kind);
  const bool local = !routine && symbol.routine != kNone;
  const auto isPrivate = [&](SymbolId of) { return data_.symbols[of].visibility == Visibility::kPrivate; };
  const bool ownModule = isPrivate(id) || (symbol.parent != kNone && isPrivate(symbol.parent));
  auto at = local ? from(symbol.module, symbol.routine) : from(ownModule ? symbol.module : 0, 0);
  const auto fits = [&] {
    if (at == data_.deadMentions.end() || at->key != key) return false;
    if (local) return at->module == symbol.module && at->routine == symbol.routine;
    return !ownModule || at->module == symbol.module;
  };
  // A routine's own name in its own dead code is no use of it.
  if (routine && fits() && at->module == symbol.module && at->routine == symbol.routine) {
    at = from(symbol.module, symbol.routine + 1);
  }
  return fits() ? &*at : nullptr;
}

std::string Grader::LinePlace(Index module, std::uint32_t line) const {
  return data_.modules[module].name + ":" + std::to_string(index_.EditorLine(module, line));
}

std::string Grader::PlaceOf(Index number, SymbolId id) const {
  const Reference reference = data_.At(number, id);
  return LinePlace(reference.module, reference.line);
}

std::optional<UnusedSymbol> Grader::Of(SymbolId id) const {
  if (!IsListed(id)) return std::nullopt;
  const Evidence evidence = Collect(id);
  if (evidence.used || data_.eventObjects[id]) return std::nullopt;
  const Symbol& symbol = data_.symbols[id];
  if (IsRoutine(symbol.kind)) {
    const std::vector<std::string> places = index_.HostPlaces(id);
    if (!places.empty()) return UnusedSymbol{id, Grade::kHost, places.front(), places.front()};
    // Nobody raises the event yet: whoever does will call it.
    const Data::Handled* handler = data_.HandlerOf(id);
    if (handler != nullptr && handler->kind == HandlerKind::kEvent) {
      std::string place = HandlerPlace(index_, *handler);
      return UnusedSymbol{id, Grade::kHost, place + ", das nichts auslöst", place};
    }
  }
  if (symbol.kind == SymbolKind::kParameter) {
    if (std::optional<std::string> place = Signature(id)) {
      return UnusedSymbol{id, Grade::kHost, "Parameter, den der Aufrufer vorgibt: " + *place, *place};
    }
  }
  if (evidence.text != kNone)
    return UnusedSymbol{id, Grade::kText, "Name in einer Zeichenkette", PlaceOf(evidence.text, id)};
  if (const Mention* mention = MentionOf(id)) {
    const std::uint32_t line = data_.code[mention->module].strings[mention->string].line;
    return UnusedSymbol{id, Grade::kText, "Name in einer Zeichenkette", LinePlace(mention->module, line)};
  }
  if (evidence.ambiguous != kNone) {
    return UnusedSymbol{id, Grade::kPossible, "Name, der mehreres bedeuten kann", PlaceOf(evidence.ambiguous, id)};
  }
  if (evidence.byName != kNone) {
    return UnusedSymbol{id, Grade::kPossible, "Element eines Objekts, dessen Typ der Code nicht nennt",
                        PlaceOf(evidence.byName, id)};
  }
  if (evidence.bound) {
    return UnusedSymbol{id, Grade::kPossible, "implementiert ein Element, das niemand aufruft", {}};
  }
  if (std::string reason = OutsideUse(index_, id); !reason.empty())
    return UnusedSymbol{id, Grade::kPossible, std::move(reason), {}};
  if (evidence.self) return UnusedSymbol{id, Grade::kSelf, "nur von sich selbst verwendet", {}};
  if (evidence.written) return UnusedSymbol{id, Grade::kWritten, "nur geschrieben, nie gelesen", {}};
  if (evidence.inactive != kNone) {
    return UnusedSymbol{id, Grade::kInactive, "nur in inaktivem Code verwendet", PlaceOf(evidence.inactive, id)};
  }
  const DeadMention* dead = DeadMentionOf(id);
  for (const SymbolId member : EnumMembers(id)) {
    if (dead == nullptr) dead = DeadMentionOf(member);
  }
  if (dead != nullptr) {
    return UnusedSymbol{id, Grade::kInactive, "nur in inaktivem Code verwendet", LinePlace(dead->module, dead->line)};
  }
  if ((symbol.flags & symbol_flag::kInactive) != 0)
    return UnusedSymbol{id, Grade::kInactive, "steht in inaktivem Code", {}};
  return UnusedSymbol{id, Grade::kCertain, std::string(kNowhere), {}};
}

}  // namespace

std::vector<UnusedSymbol> FindUnused(const ReferenceIndex& index) {
  std::vector<UnusedSymbol> unused;
  const Grader grader(index);
  for (SymbolId symbol = 0; symbol < index.SymbolCount(); ++symbol) {
    if (std::optional<UnusedSymbol> found = grader.Of(symbol)) unused.push_back(std::move(*found));
  }
  return unused;
}

std::vector<UnusedSymbol> FindUnused(const ReferenceIndex& index, Index module) {
  std::vector<UnusedSymbol> unused;
  const Grader grader(index);
  const ModuleInfo& info = index.Modules()[module];
  for (SymbolId symbol = info.symbol; symbol < info.endSymbol; ++symbol) {
    if (std::optional<UnusedSymbol> found = grader.Of(symbol)) unused.push_back(std::move(*found));
  }
  return unused;
}

std::optional<UnusedSymbol> GradeUnused(const ReferenceIndex& index, SymbolId symbol) {
  return Grader(index).Of(symbol);
}

}  // namespace quillmate::symbols
