#include "access_database_p.h"
#include "fuzz.h"

namespace quillmate::fuzz {

using namespace office;

void Check(std::string_view bytes) {
  MemorySource source(bytes);
  AccessDatabase database(source);
  Expect(database.Objects().size() <= bytes.size());
  Expect(database.JoinedObjects(bytes.size()).size() <= bytes.size());
  const std::unique_ptr<AccessStorage> storage = database.OpenStorage();
  if (storage == nullptr) return;
  std::size_t read = 0;
  std::vector<Storage::Item> items = storage->List(Storage::kRoot);
  for (std::size_t i = 0; i < items.size() && i < 100; ++i) {
    if (items[i].isStorage) {
      const std::vector<Storage::Item> inner = storage->List(items[i].id);
      items.insert(items.end(), inner.begin(), inner.end());
    } else {
      read += storage->ReadStream(items[i].id, bytes.size()).bytes.size();
    }
  }
  Expect(read <= 3 * bytes.size());
}

}  // namespace quillmate::fuzz
