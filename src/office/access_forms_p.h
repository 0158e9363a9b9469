#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/office/storage.h>

#include "code_page_p.h"
#include "facts_collector_p.h"

namespace quillmate::office {

/// Forms and reports of a database: their controls, captions, and what their properties call. Each folder of the
/// storage ("Forms", "Reports") holds
///
///     DirData      4 bytes, then for each form: 4 (8 bits), the length of the rest (8 bits), its name (UTF-16), its
///                  number (32 bits); its streams are in the storage of that number
///     n/TypeInfo   0xACCDEAF7, 4, 4 bytes, number of controls (32 bits), 16 bytes; for each control its type (8 bits),
///                  3 and 4 bytes, its name in code and, where that is another, its own name, both with a NUL at the
///                  end
///     n/Blob       10 bytes, then entries with a tag (32 bits). 0xFD and 0xFE begin a control or section: its type (16
///                  bits); 0xFF as well, with 16 bits more in front of it. Any other is a property: number (16 bits),
///                  type, size and length of its value (32 bits each), the value. A tag 0xFD alone ends the stream.
///
/// None of this is described anywhere. What does not read so to its last byte is not used, and the controls of such a
/// form stay unknown.
void ReadAccessForms(const Storage& storage, const CodePage& codePage, FactsCollector& collector);

/// What a folder's DirData says: the names of forms, reports or macros and of their storages.
struct AccessFolderEntry {
  std::string name;
  std::string storage;
};
/// A stream whose name may have the code 3 in front.
std::optional<Storage::Id> FindAccessStream(const Storage& storage, Storage::Id folder, std::string_view name);
std::vector<AccessFolderEntry> ReadAccessFolder(std::string_view dirData);

}  // namespace quillmate::office
