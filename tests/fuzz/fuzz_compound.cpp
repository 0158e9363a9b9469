#include <quillmate/office/compound_file.h>

#include "fuzz.h"

namespace quillmate::fuzz {

using namespace office;

void Check(std::string_view bytes) {
  MemorySource source(bytes);
  const std::optional<CompoundFile> file = CompoundFile::Open(source);
  if (!file.has_value()) return;
  std::size_t left = 100;
  for (CompoundId id = 0; id < file->Entries().size() && left > 0; ++id) {
    const CompoundEntry& entry = file->Entries()[id];
    if (entry.kind != CompoundEntry::Kind::kStream || !entry.parent.has_value()) continue;
    --left;
    const Storage::Stream stream = file->ReadStream(id, bytes.size() + 1);
    Expect(stream.bytes.size() <= bytes.size());
    Expect(!stream.complete || stream.bytes.size() == entry.size);
    PiecedSource pieces = file->OpenStream(id, bytes.size());
    Expect(ReadBytes(pieces, stream.bytes.size() / 2, 100) == stream.bytes.substr(stream.bytes.size() / 2, 100));
    Expect(file->Find(*entry.parent, entry.name).has_value());
  }
}

}  // namespace quillmate::fuzz
