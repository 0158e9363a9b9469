#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "site_model_p.h"

/// What several pages of a site have in common.
namespace quillmate::output {

/// Kinds as readers know them, German.
std::string_view ModuleKindText(int kind) noexcept;
std::string_view RoutineKindText(int kind) noexcept;

/// One word or two, and a sentence; German.
std::string_view JudgementText(SiteJudgement judgement) noexcept;
std::string_view JudgementExplanation(SiteJudgement judgement) noexcept;

/// A number and what it counts.
std::string Counted(std::int64_t number, std::string_view one, std::string_view many);

/// The address of what is told about a routine, seen from the page of a module (position; -1 for other pages).
std::string RoutineAddress(const SiteModel& model, const SiteRoutine& routine, int fromModule = -1);

/// A link; `text` is escaped.
void AppendLink(std::string& html, std::string_view address, std::string_view text);

}  // namespace quillmate::output
