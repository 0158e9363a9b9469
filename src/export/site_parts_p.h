#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "site_model_p.h"
#include "site_uses_p.h"

/// What several pages of a site have in common.
namespace quillmate::output {

/// Kinds as readers know them, German.
std::string_view ModuleKindText(int kind) noexcept;
std::string_view RoutineKindText(int kind) noexcept;
/// What a property's part is called after the property's name: " (Get)"; empty for other routines.
std::string_view PartText(int kind) noexcept;

/// "sicher", "vom Host" ... and a sentence about it; German.
std::string_view GradeText(symbols::Grade grade) noexcept;
std::string_view GradeExplanation(symbols::Grade grade) noexcept;
/// The word and, where that tells more, why; escaped.
std::string GradeWithReason(const symbols::RoutineGrade& grade);

/// Project and file that a module is from and the name outside for it, escaped; empty when nothing is known.
std::string OriginText(const SiteModel& model, const SiteModule& module);

/// A number and what it counts.
std::string Counted(std::int64_t number, std::string_view one, std::string_view many);

/// The address of what is told about a routine, seen from the page of a module (position; -1 for other pages).
std::string RoutineAddress(const SiteModel& model, const SiteRoutine& routine, int fromModule = -1);

/// Where a symbol is declared, with links: "mdlA.Start, Zeile 3".
void AppendDeclarationPlace(std::string& html, const SiteModel& model, symbols::SymbolId symbol);
/// A line that uses something, with a link and, on demand, its module's name.
void AppendUse(std::string& html, const SiteModel& model, const SiteUse& use, bool withModule);

/// A link; `text` is escaped.
void AppendLink(std::string& html, std::string_view address, std::string_view text);

}  // namespace quillmate::output
