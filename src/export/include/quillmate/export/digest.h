#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/checks/checks.h>
#include <quillmate/checks/metrics.h>
#include <quillmate/symbols/reference_index.h>

/// Everything worth knowing of a project in one Markdown text, for people and for assistants that read it whole: an
/// overview, what documents say of themselves, what could not be read, the modules, every routine with its comment, its
/// callers and what it calls, findings, then the code.
namespace quillmate::output {

struct DigestOptions {
  std::string title;  ///< UTF-8
  /// Bytes that the text may have. The overview comes first, then modules, routines, findings, code; what finds no room
  /// is named or counted at the end of its part.
  std::size_t limit = 500'000;
};

/// UTF-8, German, lines end in LF. The same for the same index. Findings and metrics are those of the index.
std::string ProjectDigest(const symbols::ReferenceIndex& index, const checks::Metrics& metrics,
                          const std::vector<checks::Finding>& findings, const DigestOptions& options);

/// `Public Function Name(ByVal a As Long, Optional b = 2) As String` on one line, from a routine's declaration.
std::string Signature(const language::Module& code, const language::Routine& routine);

}  // namespace quillmate::output
