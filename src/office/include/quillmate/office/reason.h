#pragma once

#include <system_error>

/// Why a file or a folder gave no code. Whoever finds out says it by a code; the words for it are in reason.cpp and
/// nowhere else.
namespace quillmate::office {

enum class Reason {
  kNone,
  // The path leads to nothing that can be read.
  kMissing,
  kDeadLink,
  kIsFolder,
  kInUse,
  kNoAccess,
  kUnreadable,
  kFolderUnreadable,
  // The content is nothing that holds code.
  kEmpty,
  kNoText,
  kNotOffice,
  kUnknownKind,
  kNoMacros,
  kNoVba,  // but macros of Excel 4
  kNoModules,
  kNamesNoModules,
  // There is code that can't be had.
  kEncrypted,
  kCompiled,
  kOfExcel95,
  kProjectTooLarge,
  kModuleTooLarge,
  // Damage: of the file's directory, of what is on the way to the project, of the project.
  kBrokenZip,
  kBrokenCompound,
  kPartOfDirectory,
  kBrokenDatabase,
  kBrokenPresentation,
  kBrokenEntry,
  kBrokenProject
};

/// What somebody could do about it.
enum class Cause { kNone, kDamaged, kEncrypted, kCompiled, kUnsupported, kUnreadable };
Cause CauseOf(Reason reason) noexcept;

/// German, UTF-8, one line, without the file's name and without a full stop; "" for kNone.
const char* ReasonText(Reason reason) noexcept;
std::error_code make_error_code(Reason reason) noexcept;

}  // namespace quillmate::office

template <>
struct std::is_error_code_enum<quillmate::office::Reason> : std::true_type {};
