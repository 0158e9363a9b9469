#include <algorithm>

#include <quillmate/language/parse.h>
#include <quillmate/symbols/workers.h>

#include "index_data_p.h"
#include "macro_name_p.h"

namespace quillmate::symbols {
namespace {

using language::Declaration;
using language::DeclarationKind;
namespace declaration_flag = language::declaration_flag;

/// A declaration or an implicit variable, before it has its number.
struct Placed {
  std::uint32_t offset;
  Index number;
  bool implicit;
};

/// What the module declares, by place.
void CollectPlaced(const ModuleTable& table, const ModuleReferences& found, std::vector<Placed>& placed) {
  placed.clear();
  const language::Module& code = *table.code;
  for (Index number = 0; number < code.declarations.size(); ++number) {
    if ((table.status[number] & status::kNone) == 0) {
      placed.push_back({code.declarations[number].offset, number, false});
    }
  }
  for (Index number = 0; number < found.implicits.size(); ++number) {
    placed.push_back({code.uses[found.implicits[number].use].offset, number, true});
  }
  const auto before = [](const Placed& a, const Placed& b) { return a.offset < b.offset; };
  if (!std::is_sorted(placed.begin(), placed.end(), before)) std::stable_sort(placed.begin(), placed.end(), before);
}

std::uint16_t FlagsOf(const ModuleTable& table, Index number) {
  const Declaration& declared = table.code->declarations[number];
  const std::uint8_t known = table.status[number];
  unsigned flags = 0;
  if ((declared.flags & declaration_flag::kInactive) != 0) flags |= symbol_flag::kInactive;
  if (declared.kind == DeclarationKind::kReDim) flags |= symbol_flag::kReDim;
  if (declared.kind == DeclarationKind::kLabel && (declared.flags & declaration_flag::kNumber) != 0) {
    flags |= symbol_flag::kLineNumber;
  }
  if ((known & status::kDefault) != 0) flags |= symbol_flag::kDefaultMember;
  if ((known & status::kEnumerator) != 0) flags |= symbol_flag::kEnumerator;
  return static_cast<std::uint16_t>(flags);
}

Symbol SymbolOfDeclaration(const ReferenceIndex::Data& data, Index module, Index number) {
  const ModuleTable& table = data.tables.modules[module];
  const Declaration& declared = table.code->declarations[number];
  Index parent = declared.parent;
  if (parent == kNone && declared.routine != kNone) {
    const Index routine = table.code->routines[declared.routine].declaration;
    if (routine != number) parent = routine;
  }
  return {KindOf(table, number + 1),
          VisibilityOf(table, number + 1),
          FlagsOf(table, number),
          module,
          parent == kNone ? kNone : data.SymbolOf(module, parent + 1),
          number,
          declared.routine,
          declared.offset,
          declared.line,
          declared.column,
          declared.length};
}

Symbol SymbolOfImplicit(const ReferenceIndex::Data& data, Index module, const ImplicitVariable& implicit) {
  const language::NameUse& use = data.code[module].uses[implicit.use];
  const Index routine = data.code[module].routines[implicit.routine].declaration;
  const bool written = implicit.form != Form::kRead && implicit.form != Form::kCall;
  return {SymbolKind::kVariable,
          Visibility::kLocal,
          static_cast<std::uint16_t>(symbol_flag::kImplicit | (written ? symbol_flag::kFirstWritten : 0)),
          module,
          data.SymbolOf(module, routine + 1),
          kNone,
          implicit.routine,
          use.offset,
          use.line,
          use.column,
          use.length};
}

/// The symbols that a set of equal names holds.
void SetMembers(const ReferenceIndex::Data& data, const SetRequest& request, std::vector<SymbolId>& members) {
  const Tables& tables = data.tables;
  std::vector<Local> picked;
  const auto addGroup = [&](Index module, Local first, bool outside, bool otherProject, bool routines) {
    const ModuleTable& table = tables.modules[module];
    picked.clear();
    Pick(table, first, request.form, outside, otherProject, routines, picked);
    for (const Local local : picked) {
      Local member = local;
      if (request.argument != 0) {
        if (!table.IsDeclaration(local) || !IsCallable(KindOf(table, local))) continue;
        member = table.FindParameter(local, request.argument);
        if (member == kNone) continue;
      }
      const SymbolId symbol = data.SymbolOf(module, member);
      if (symbol != kNone) members.push_back(symbol);
    }
  };
  switch (request.kind) {
    case SetKind::kMembers:
    case SetKind::kDocumentMembers:
    case SetKind::kMemberParameters: {
      const bool documents = request.kind == SetKind::kDocumentMembers;
      const auto addProject = [&](Index project) {
        const ProjectTable& shown = tables.projects[project];
        const Index first = (documents ? shown.documentNames : shown.memberNames).Find(request.name);
        for (Index at = first; at != kNone; at = tables.exports[at].next) {
          const Exported& group = tables.exports[at];
          addGroup(group.module, group.first, true, project != request.project, false);
        }
      };
      addProject(request.project);
      for (const Index reference : tables.projects[request.project].references) addProject(reference);
      break;
    }
    case SetKind::kExports:
    case SetKind::kExportParameters:
    case SetKind::kExportedRoutines: {
      const Index first = tables.projects[request.project].exportNames.Find(request.name);
      bool active = false;
      for (const bool count : {true, false}) {
        for (Index at = first; at != kNone; at = tables.exports[at].next) {
          const Exported& group = tables.exports[at];
          const bool isActive = !tables.modules[group.module].IsInactive(group.first);
          if (count) {
            active = active || isActive;
          } else if (isActive || !active) {
            addGroup(group.module, group.first, true, false, request.kind == SetKind::kExportedRoutines);
          }
        }
      }
      break;
    }
    case SetKind::kExportedTypes: {
      const Index first = tables.projects[request.project].exportTypes.Find(request.name);
      for (Index at = first; at != kNone; at = tables.exports[at].next) {
        members.push_back(data.SymbolOf(tables.exports[at].module, tables.exports[at].first));
      }
      break;
    }
    case SetKind::kGroup:
    case SetKind::kGroupParameters:
      addGroup(request.module, static_cast<Local>(request.name), request.outside, false, false);
      break;
    case SetKind::kModules:
      for (Index at = tables.FindModule(request.project, request.name); at != kNone; at = tables.nextModule[at]) {
        members.push_back(data.SymbolOf(at, 0));
      }
      break;
    case SetKind::kMacros:
      for (const MacroTarget& target : FindMacros(tables, request.project, request.module, request.name)) {
        const SymbolId symbol = data.SymbolOf(target.module, target.local);
        if (symbol != kNone) members.push_back(symbol);
      }
      break;
  }
  std::sort(members.begin(), members.end());
  members.erase(std::unique(members.begin(), members.end()), members.end());
}

/// Gives equal requests of all modules one number each: by module, the numbers of its sets.
std::vector<std::vector<Index>> NumberSets(const ReferenceIndex::Data& data, std::vector<SetRequest>& all) {
  std::vector<std::vector<Index>> numbers(data.references.size());
  HashTable known;
  for (std::size_t module = 0; module < numbers.size(); ++module) {
    for (const SetRequest& request : data.references[module].sets) {
      for (NameHash key = request.Key();; ++key) {
        Index& number = known.Grow(key);
        if (number == kNone) {
          number = static_cast<Index>(all.size());
          all.push_back(request);
        }
        if (all[number] != request) continue;
        numbers[module].push_back(number);
        break;
      }
    }
  }
  return numbers;
}

}  // namespace

void NumberSymbols(ReferenceIndex::Data& data) {
  data.rawSymbols.assign(data.tables.rawBases.back(), kNone);
  std::vector<Placed> placed;
  std::size_t count = 0;
  for (Index module = 0; module < data.modules.size(); ++module) {
    ModuleTable& table = data.tables.modules[module];
    for (const Index redim : data.references[module].redims) {
      table.status[redim] &= static_cast<std::uint8_t>(~status::kNone);
    }
    CollectPlaced(table, data.references[module], placed);
    count += 1 + table.controls.size() + placed.size();
  }
  data.symbols.reserve(count);
  for (Index module = 0; module < data.modules.size(); ++module) {
    ModuleTable& table = data.tables.modules[module];
    ModuleReferences& found = data.references[module];
    const Index base = data.tables.rawBases[module];
    ModuleInfo& info = data.modules[module];
    info.symbol = static_cast<SymbolId>(data.symbols.size());
    data.rawSymbols[base] = info.symbol;
    data.symbols.push_back({table.kind, Visibility::kPublic, 0, module, kNone, kNone, kNone, 0, 0, 0, 0});
    const std::size_t firstControl = 1 + table.code->declarations.size();
    for (std::size_t control = 0; control < table.controls.size(); ++control) {
      data.rawSymbols[base + firstControl + control] = static_cast<SymbolId>(data.symbols.size());
      const auto flags = static_cast<std::uint16_t>(table.controls[control].array ? symbol_flag::kControlArray : 0);
      data.symbols.push_back({SymbolKind::kControl, Visibility::kPublic, flags, module, kNone,
                              static_cast<Index>(control), kNone, 0, 0, 0, 0});
    }
    CollectPlaced(table, found, placed);
    const auto firstPlaced = static_cast<SymbolId>(data.symbols.size());
    found.implicitSymbols.resize(found.implicits.size());
    for (std::size_t at = 0; at < placed.size(); ++at) {
      const auto symbol = static_cast<SymbolId>(firstPlaced + at);
      if (placed[at].implicit) {
        found.implicitSymbols[placed[at].number] = symbol;
      } else {
        data.rawSymbols[base + 1 + placed[at].number] = symbol;
      }
    }
    for (const Placed& one : placed) {
      data.symbols.push_back(one.implicit ? SymbolOfImplicit(data, module, found.implicits[one.number])
                                          : SymbolOfDeclaration(data, module, one.number));
    }
    info.endSymbol = static_cast<SymbolId>(data.symbols.size());
  }
}

void JoinReferences(ReferenceIndex::Data& data, unsigned workers) {
  std::vector<SetRequest> requests;
  const std::vector<std::vector<Index>> setNumbers = NumberSets(data, requests);
  std::vector<std::vector<SymbolId>> members(requests.size());
  ForEachPiece(workers, requests.size(),
               [&](unsigned, std::size_t set) { SetMembers(data, requests[set], members[set]); });
  ForEachPiece(workers, data.references.size(), [&](unsigned, std::size_t module) {
    ModuleReferences& found = data.references[module];
    for (StoredReference& reference : found.references) {
      if ((reference.flags & reference_flag::kSet) != 0) {
        reference.target = setNumbers[module][reference.target];
      } else if ((reference.flags & reference_flag::kUndeclared) != 0) {
        reference.target = found.implicitSymbols[reference.target];
      } else {
        reference.target = data.rawSymbols[reference.target];
      }
    }
    std::erase_if(found.sets, [](const SetRequest&) { return true; });
    found.sets.shrink_to_fit();
    found.references.shrink_to_fit();
  });

  RowsBuilder sets(data.sets, requests.size()), memberships(data.memberships, data.symbols.size());
  for (Index set = 0; set < requests.size(); ++set) {
    for (const SymbolId symbol : members[set]) {
      sets.Count(set);
      memberships.Count(symbol);
    }
  }
  sets.Start();
  memberships.Start();
  for (Index set = 0; set < requests.size(); ++set) {
    for (const SymbolId symbol : members[set]) {
      sets.Add(set, symbol);
      memberships.Add(symbol, set);
    }
  }

  const auto symbolCount = static_cast<Index>(data.symbols.size());
  const auto rowOf = [&](const StoredReference& reference) {
    return (reference.flags & reference_flag::kSet) != 0 ? symbolCount + reference.target : reference.target;
  };
  RowsBuilder uses(data.uses, symbolCount + requests.size());
  Index number = 0;
  for (const ModuleReferences& found : data.references) {
    data.referenceBases.push_back(number);
    number += static_cast<Index>(found.references.size());
    for (const StoredReference& reference : found.references) {
      if (reference.target != kNone) uses.Count(rowOf(reference));
    }
  }
  data.referenceBases.push_back(number);
  uses.Start();
  number = 0;
  for (const ModuleReferences& found : data.references) {
    for (const StoredReference& reference : found.references) {
      if (reference.target != kNone) uses.Add(rowOf(reference), number);
      ++number;
    }
  }
}

void JoinHandlers(ReferenceIndex::Data& data) {
  data.callsByName.assign(data.projects.size(), false);
  for (Index module = 0; module < data.modules.size(); ++module) {
    for (const Handler& handler : data.references[module].handlers) {
      const SymbolId routine = data.SymbolOf(module, handler.declaration + 1);
      if (routine == kNone) continue;
      const SymbolId target = handler.local == kNone ? kNone : data.SymbolOf(handler.module, handler.local);
      const SymbolId object = handler.object == kNone ? kNone : data.SymbolOf(module, handler.object);
      data.handlers.push_back({routine, target, object, handler.prefix, handler.kind});
      if (target != kNone) data.handledBy.emplace_back(target, routine);
    }
    if (data.references[module].callsByName > 0) data.callsByName[data.modules[module].project] = true;
    for (const TextMention& mention : data.references[module].mentions) {
      data.mentions.push_back(
          {Within(mention.name, data.modules[module].project), module, mention.string, mention.routine});
    }
    const language::Module& code = data.code[module];
    for (const language::DeadName& dead : code.deadNames) {
      const NameHash key = Within(code.NameHash(dead.name), data.modules[module].project);
      data.deadMentions.push_back({key, module, dead.routine, dead.line});
    }
  }
  std::sort(data.handlers.begin(), data.handlers.end(),
            [](const auto& a, const auto& b) { return a.routine < b.routine; });
  std::sort(data.handledBy.begin(), data.handledBy.end());
  std::stable_sort(data.mentions.begin(), data.mentions.end(),
                   [](const Mention& a, const Mention& b) { return a.key < b.key; });
  std::sort(data.deadMentions.begin(), data.deadMentions.end());
}

}  // namespace quillmate::symbols
