#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <quillmate/office/byte_source.h>

/// Macro projects of presentations in compound files, after the published format [MS-PPT]: the project is a compound
/// file of its own inside the stream "PowerPoint Document", most often packed.
///
///     record                 version and instance (16 bits), type (16 bits), size (32 bits), content     2.3.1
///     CurrentUserAtom        in its own stream: encrypted or not, where the last edit is                 2.3.2
///     UserEditAtom           the edit before it, its persist directory, the document's persist id        2.3.3
///     PersistDirectoryAtom   where the objects of the edit are                                           2.3.4
///     DocumentContainer      ... DocInfoListContainer, VBAInfoContainer, VBAInfoAtom: the project's id   2.4.1
///     to 2.4.11 ExOleObjStg            the project, plain or as its size and zlib
///     data                             2.10.34
namespace quillmate::office {

struct PresentationProject {
  enum class State {
    kRead,
    kNoMacros,
    kEncrypted,
    kTooLarge,
    kDamaged,    // there is a project, but it can't be unpacked
    kUnreadable  // neither the edits nor the records lead to a project, and they don't show that there is none
  };

  State state = State::kNoMacros;
  /// The compound file.
  std::string bytes;
};

/// The project of a presentation, at most `limit` bytes: `document` is its stream "PowerPoint Document", `currentUser`
/// the content of the stream of that name, empty when there is none. When the way through the edits is damaged, the
/// last record in the stream that holds a project is taken; a stream whose records break off without one is unreadable.
/// Linear in the stream's size; at most 65,536 edits are gone through and 4,096 records searched.
PresentationProject ReadPresentationProject(PiecedSource document, std::string_view currentUser, std::size_t limit);

}  // namespace quillmate::office
