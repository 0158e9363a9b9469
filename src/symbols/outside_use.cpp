#include <algorithm>
#include <span>

#include <quillmate/language/parse.h>

#include "index_data_p.h"
#include "library_p.h"
#include "outside_use_p.h"

namespace quillmate::symbols {
namespace {

using Data = ReferenceIndex::Data;

/// A symbol with what is around it.
class Outside {
 public:
  Outside(const ReferenceIndex& index, SymbolId id)
      : index_(index),
        data_(index.data()),
        id_(id),
        symbol_(data_.symbols[id]),
        module_(data_.modules[symbol_.module]),
        table_(data_.tables.modules[symbol_.module]),
        project_(data_.tables.projects[module_.project]),
        hidden_(symbol_.visibility == Visibility::kPrivate || symbol_.visibility == Visibility::kLocal) {}

  std::string Use() const {
    if (symbol_.kind == SymbolKind::kParameter) return OfParameter();
    if (IsExposed()) return "Element einer nach außen sichtbaren Klasse";
    if (symbol_.kind == SymbolKind::kTypeMember && symbol_.parent != kNone && data_.wholeTypes[symbol_.parent]) {
      return "Teil eines Typs, der als Ganzes weitergegeben wird";
    }
    if (symbol_.kind == SymbolKind::kTypeMember && symbol_.parent != kNone && IsOneOfSeveral(symbol_.parent)) {
      return "Teil eines Typs, dessen Name mehrere meinen kann";
    }
    if (!IsRoutine(symbol_.kind)) return {};
    if ((symbol_.flags & symbol_flag::kDefaultMember) != 0) return "Standardelement, das ohne Namen verwendet wird";
    if ((symbol_.flags & symbol_flag::kEnumerator) != 0) return "Element, das For Each ohne Namen verwendet";
    if (IsProperty(symbol_.kind)) return OfProperty();
    if (symbol_.kind == SymbolKind::kFunction) return OfFunction();
    return OfSub();
  }

 private:
  bool IsExposed() const {
    const bool member = IsCallable(symbol_.kind) || symbol_.kind == SymbolKind::kVariable ||
                        symbol_.kind == SymbolKind::kEvent || symbol_.kind == SymbolKind::kEnum ||
                        symbol_.kind == SymbolKind::kEnumMember || symbol_.kind == SymbolKind::kConstant;
    return table_.classLike && module_.exposed && member && !hidden_ && symbol_.visibility != Visibility::kFriend;
  }

  /// Whether a use may mean the type or another of its name: nobody knows whose members are used then.
  bool IsOneOfSeveral(SymbolId type) const {
    const std::span<const Index> sets = data_.memberships.Row(type);
    return std::any_of(sets.begin(), sets.end(), [&](Index set) {
      return !data_.uses.Row(static_cast<Index>(data_.symbols.size()) + set).empty();
    });
  }

  std::string OfProperty() const {
    const bool control = module_.kind == language::ModuleKind::kUserControl;
    if (control && !hidden_) return "Eigenschaft eines Steuerelements, die ein Formular setzen kann";
    return {};
  }

  std::string OfFunction() const {
    if (table_.classLike) {
      const bool form = table_.bases == library::base::kAccessForm;
      return form ? "Funktion eines Formulars, die eine Eigenschaft aufrufen kann" : std::string();
    }
    if (hidden_) return {};
    if (project_.host == Host::kExcel) return "öffentliche Funktion, die eine Zelle aufrufen kann";
    if (project_.host == Host::kAccess) return "öffentliche Funktion, die eine Abfrage oder ein Makro aufrufen kann";
    return {};
  }

  std::string OfSub() const {
    if (IsMarkedAsTest()) return "Testroutine";
    if (IsCallback() && !project_.outsideKnown) return "Rückruf, wie seine Parameter zeigen";
    if (!table_.classLike && !project_.hostKnown && library::EntryPointHosts(NameOf()) != 0) {
      return "Name, den ein Host von selbst aufruft";
    }
    return MayHandle();
  }

  std::string MayHandle() const {
    const std::string_view name = index_.Name(id_);
    const std::size_t cut = name.rfind('_');
    if (cut == std::string_view::npos || cut == 0 || data_.HandlerOf(id_) != nullptr) return {};
    if (!module_.kindKnown) {
      // Any name in a class may be a control's; in a module only those that look like a handler's.
      const bool event = library::IsEventName(language::HashName(language::FoldName(name.substr(cut + 1))));
      if (table_.classLike || event) return "vielleicht ein Ereignis: die Art des Moduls ist nicht bekannt";
    }
    if (table_.classLike && !module_.controlsKnown) {
      return "vielleicht ein Ereignis: die Steuerelemente sind nicht bekannt";
    }
    return {};
  }

  std::string OfParameter() const {
    const SymbolId routine = symbol_.parent;
    if (!index_.ImplementationsOf(routine).empty()) return "Parameter eines Elements einer Schnittstelle";
    if (data_.addressTaken[routine]) return "Parameter eines Rückrufs (AddressOf)";
    const Outside whole(index_, routine);
    if (whole.symbol_.kind != SymbolKind::kSub) return {};
    if (whole.IsCallback()) return "Parameter eines Rückrufs";
    return whole.MayHandle().empty() ? std::string() : "Parameter einer Routine, die vielleicht ein Ereignis behandelt";
  }

  bool IsCallback() const {
    const language::Declaration& header = Header();
    if (header.childCount == 0) return false;
    const std::string type = table_.code->DeclaredType(table_.code->declarations[header.firstChild]);
    return library::IsCallbackType(language::HashName(language::FoldName(type.substr(type.rfind('.') + 1))));
  }

  bool IsMarkedAsTest() const {
    const language::Routine& routine = table_.code->routines[symbol_.routine];
    for (std::uint32_t line = routine.descriptionFirst; line != 0 && line <= routine.descriptionLast; ++line) {
      if (library::MarksTest(table_.code->LineText(line))) return true;
    }
    return false;
  }

  const language::Declaration& Header() const { return table_.code->declarations[symbol_.declaration]; }
  NameHash NameOf() const { return table_.code->NameHash(Header().name); }

  const ReferenceIndex& index_;
  const Data& data_;
  const SymbolId id_;
  const Symbol& symbol_;
  const ModuleInfo& module_;
  const ModuleTable& table_;
  const ProjectTable& project_;
  const bool hidden_;
};

}  // namespace

std::string OutsideUse(const ReferenceIndex& index, SymbolId id) { return Outside(index, id).Use(); }

}  // namespace quillmate::symbols
