#pragma once

#include <string>

#include <quillmate/export/sink.h>
#include <quillmate/symbols/compare_words.h>

/// A comparison as one HTML file that needs nothing else: both states side by side, a list of what changed, changed
/// words marked. UTF-8 with LF. It follows the light or dark setting of the reader's system, can be printed, and runs
/// no script: filters and navigation are the browser's own.
namespace quillmate::output {

struct CompareTitles {
  /// What the states are called, UTF-8: paths as a rule.
  std::string oldState, newState;
};

/// Lines are numbered as the host's editor does. Of unchanged code three lines are shown around each change.
void WriteCompareHtml(const symbols::ComparedStates& states, const CompareTitles& titles, const Sink& sink);

}  // namespace quillmate::output
