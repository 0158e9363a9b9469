#pragma once

#include <string>
#include <utility>
#include <vector>

#include <quillmate/checks/checks.h>
#include <quillmate/checks/metrics.h>
#include <quillmate/codedb/facts.h>
#include <quillmate/symbols/reference_index.h>

/// The first page of what is handed over of a project. All texts are UTF-8.
namespace quillmate::output {

/// One thing that is handed over with the page.
struct CoverPart {
  std::string file;  ///< relative, "/" between its parts
  std::string text;  ///< what it is
};

struct CoverNote {
  std::string place;
  std::string text;  ///< lines end in LF
};

struct CoverPage {
  std::string title;
  /// When it was made, in words.
  std::string time;
  /// What the sources told; null when nothing is known.
  const codedb::Facts* facts = nullptr;
  const symbols::ReferenceIndex& index;
  const checks::Metrics& metrics;
  const std::vector<checks::Finding>& findings;
  std::vector<CoverPart> parts;
  std::vector<CoverNote> notes;
};

/// HTML5 in German, LF, a file of its own, without anything from a network: the parts, the files that were read with
/// their dates and hashes (those of modules that are files: as they are now), what could not be read, counts, findings
/// by check, and the notes.
std::string CoverHtml(const CoverPage& page);

}  // namespace quillmate::output
