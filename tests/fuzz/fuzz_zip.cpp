#include "fuzz.h"
#include "zip_entry_p.h"

namespace quillmate::fuzz {

using namespace office;

void Check(std::string_view bytes) {
  constexpr std::size_t kLimit = 1000000;
  MemorySource source(bytes);
  const ZipEntry entry = ReadZipEntry(source, "vbaProject.bin", kLimit);
  Expect(entry.bytes.size() <= kLimit + 100000);
  Expect((entry.state == ZipEntry::State::kRead) <= !entry.bytes.empty());
}

}  // namespace quillmate::fuzz
