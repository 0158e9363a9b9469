#pragma once

#include <vector>

#include <quillmate/symbols/project_sources.h>
#include <quillmate/symbols/reference_index.h>

#include "invocation.h"
#include "project_input.h"

namespace quillmate::cli {

/// Where module files run that don't tell: the program of the edition.
symbols::Host HostOfEdition(int edition);

/// What the inputs' code means, sources or a saved project: every module, those of one or two lines too. What can't be
/// read is named on standard error; throws CommandFailure when nothing is left.
symbols::ReferenceIndex ReadUnderstanding(const Invocation& invocation);

/// What the code of an index means, and where its lines are. Empty of modules when there are none.
struct IndexUnderstanding {
  symbols::ReferenceIndex index;
  std::vector<symbols::ModulePlaces> places;
};
IndexUnderstanding UnderstandIndex(ProjectInput& input, int edition);

}  // namespace quillmate::cli
