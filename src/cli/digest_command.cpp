#include <quillmate/checks/checks.h>
#include <quillmate/checks/metrics.h>
#include <quillmate/export/digest.h>

#include "commands.h"
#include "output.h"
#include "title.h"
#include "understanding.h"

namespace quillmate::cli {

void RunDigest(const Invocation& invocation) {
  constexpr std::size_t kKilobyte = 1000;
  output::DigestOptions options;
  if (invocation.limit) options.limit = *invocation.limit * kKilobyte;
  options.title = TitleOf(invocation);
  const symbols::ReferenceIndex index = ReadUnderstanding(invocation);
  WriteWhole(invocation.output,
             output::ProjectDigest(index, checks::Measure(index), checks::RunChecks(index), options));
}

}  // namespace quillmate::cli
