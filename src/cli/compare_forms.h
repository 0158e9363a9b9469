#pragma once

#include <string>
#include <vector>

#include <quillmate/symbols/compare_words.h>

#include "output.h"

/// A comparison in its forms for terminals, programs and reviews.
namespace quillmate::cli {

using symbols::ComparedStates;

/// One line of a unified difference: ' ', '-' or '+' and the text; '@' for the head of a stretch.
struct DiffLine {
  char sign;
  std::string text;
};
/// Two pieces of code as stretches with three lines around each change. Lines are counted as the host's editor does. A
/// stretch ends where the editor's lines don't follow one another. A side without lines (a routine that is new or gone)
/// has no module: kNone.
std::vector<DiffLine> UnifiedDifference(const ComparedStates& states, symbols::Index oldModule,
                                        const symbols::PieceLines& oldLines, symbols::Index newModule,
                                        const symbols::PieceLines& newLines, const std::vector<symbols::Edit>& edits);
std::vector<DiffLine> DifferenceOf(const ComparedStates& states, const symbols::RoutineChange& routine);
/// Of what is outside of routines.
std::vector<DiffLine> DifferenceOutside(const ComparedStates& states, const symbols::ModuleChange& module);

void WriteComparisonText(const ComparedStates& states, Output& output);
void WriteComparisonStat(const ComparedStates& states, Output& output);
void WriteComparisonMarkdown(const ComparedStates& states, Output& output);
void WriteComparisonJson(const ComparedStates& states, Output& output);

}  // namespace quillmate::cli
