#include <quillmate/office/vba_compression.h>

#include "fuzz.h"

namespace quillmate::fuzz {

using namespace office;

void Check(std::string_view bytes) {
  constexpr std::size_t kLimit = 1000000;
  const VbaUnpacked unpacked = UnpackVba(bytes, kLimit);
  Expect(unpacked.bytes.size() <= kLimit + 4096);
  Expect(UnpacksTo(bytes, "Attri") <= (unpacked.bytes.size() >= 5));
  const std::size_t found = FindContainer(bytes, "Attri");
  Expect(found == std::string_view::npos || UnpacksTo(bytes.substr(found), "Attri"));
}

}  // namespace quillmate::fuzz
