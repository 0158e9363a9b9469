#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/symbols/compare.h>

/// A comparison in German words, UTF-8: the same wherever it is told.
namespace quillmate::symbols {

/// The answer and what it speaks of.
struct ComparedStates {
  const symbols::Comparison& comparison;
  const symbols::ReferenceIndex& oldIndex;
  const symbols::ReferenceIndex& newIndex;
};

/// The side to speak of: the new one unless it is gone.
const ReferenceIndex& IndexOf(const ComparedStates& states, const RoutineChange& routine);
RoutinePlace PlaceOf(const RoutineChange& routine);
/// The line of its name, as the editor counts.
std::uint32_t LineOf(const ReferenceIndex& index, const RoutinePlace& place);
std::string_view NameOf(const ComparedStates& states, const ModuleChange& module);
/// "Sub Start"; "Property Get Name".
std::string TitleOf(const ComparedStates& states, const RoutineChange& routine);
/// "geändert", "umbenannt, vorher Alt", "verschoben, vorher Alt in Modul2, geändert", "nur Form (Kommentare)".
std::string StateText(const ComparedStates& states, const RoutineChange& routine);
std::string StateText(const ComparedStates& states, const ModuleChange& module);
/// Who calls a routine that is not what it was: in the new state, of a gone one in the old state.
std::vector<CallEdge> CallersOf(const ComparedStates& states, const RoutineChange& routine);
/// "Modul2.Rechne (Zeile 4, 9)".
std::string CallerText(const ReferenceIndex& index, const CallEdge& edge);
/// "Steuerelement cmdOk: geändert: Typ alt -> Typ neu".
std::string FactText(const FactChange& fact);
/// "Konstante Grenze: geändert"
std::string DeclarationText(const ComparedStates& states, const DeclarationChange& declaration);
/// "Sub Alt in Modul1, Zeile 4 (sicher: nirgends verwendet)".
std::string UnusedText(const ComparedStates& states, const UnusedChange& unused);
/// "Module: 1 geändert, 1 neu; Routinen: 2 geändert; Zeilen: 3 dazu, 2 weg".
std::string SummaryText(const Comparison& comparison);
/// "Dokument Mappe.xlsm"; where there is only one project its name says nothing.
std::string ProjectTitle(const ComparedStates& states, const ProjectChange& project);
/// What differs in nothing else than what is ignored is not listed.
bool IsListed(const ModuleChange& module) noexcept;
bool IsListed(const ProjectChange& project) noexcept;

}  // namespace quillmate::symbols
