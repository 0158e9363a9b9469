#include "fuzz.h"
#include "presentation_p.h"

namespace quillmate::fuzz {

using namespace office;

/// The input is the stream "PowerPoint Document" itself, with the place of the last edit in its last four bytes.
void Check(std::string_view bytes) {
  constexpr std::size_t kLimit = 1000000;
  const std::size_t tail = bytes.size() < 4 ? bytes.size() : 4;
  const std::string user = std::string(16, '\0') + std::string(bytes.substr(bytes.size() - tail));
  MemorySource source(bytes);
  PiecedSource stream(&source);
  stream.Append(0, bytes.size());
  const PresentationProject project = ReadPresentationProject(std::move(stream), user, kLimit);
  Expect(project.bytes.size() <= kLimit + 100000);
}

}  // namespace quillmate::fuzz
