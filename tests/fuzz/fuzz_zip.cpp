#include "fuzz.h"
#include "zip_archive_p.h"

namespace quillmate::fuzz {

using namespace office;

void Check(std::string_view bytes) {
  constexpr std::size_t kLimit = 1000000;
  MemorySource source(bytes);
  const ZipArchive zip(source);
  if (!zip.Opened()) return;
  const auto index = zip.FindEnding("vbaProject.bin");
  if (!index.has_value()) return;
  const ZipEntry entry = zip.Read(*index, kLimit);
  Expect(entry.bytes.size() <= kLimit + 100000);
  Expect((entry.state == ZipEntry::State::kRead) <= !entry.bytes.empty());
  Expect(zip.Find(zip.Name(*index)).has_value());
}

}  // namespace quillmate::fuzz
