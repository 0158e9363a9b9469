#pragma once

#include <string>

#include <quillmate/office/office_file.h>
#include <quillmate/office/storage.h>

namespace quillmate::office {

/// Reasons that several kinds of files share.
namespace reasons {
inline constexpr const char* kWithoutMacros = "Datei enthält keine Makros";
inline constexpr const char* kEncrypted = "Datei ist mit einem Kennwort verschlüsselt";
inline constexpr const char* kTooLarge = "Makroprojekt ist zu groß (mehr als 128 MB)";
inline constexpr const char* kBrokenProject = "Datei ist beschädigt: das Makroprojekt ist nicht lesbar";
}  // namespace reasons

/// A file without a project.
OfficeFile Without(OfficeFile::State state, std::string reason, OfficeHost host = OfficeHost::kUnknown);
/// The project in a storage; without modules and not locked it is none.
OfficeFile ReadProjectIn(const Storage& file, Storage::Id storage, OfficeHost host);

/// The project of an Access database, which begins with its signature.
OfficeFile ReadAccessFile(ByteSource& source);

}  // namespace quillmate::office
