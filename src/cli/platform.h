#pragma once

#include <cstddef>
#include <cstdio>
#include <filesystem>

/// What the program needs from the operating system beyond the standard library.
namespace quillmate::cli {

/// Makes the standard streams safe to use: bytes pass unchanged, a reader that has gone shows as a write error instead
/// of a signal, and a stream that the caller had closed can't be taken by the next file that is opened.
void PrepareStandardStreams();

/// The folder of the running executable, symbolic links resolved; empty when the system does not tell.
std::filesystem::path ExecutableFolder();

/// True when standard error is shown to somebody.
bool ErrorStreamIsTerminal() noexcept;
/// Columns of that terminal; 80 when it does not tell.
std::size_t TerminalColumns() noexcept;

/// std::fopen for a path; sets errno.
std::FILE* OpenStream(const std::filesystem::path& file, const char* mode) noexcept;

/// A number that no other running process of this machine has.
long ProcessNumber() noexcept;

/// Makes a new folder that only this user may enter, `prefix` with something appended, below an existing folder.
/// Throws std::filesystem::filesystem_error.
std::filesystem::path MakePrivateFolder(const std::filesystem::path& parent, const char* prefix);

/// Swaps two existing folders of one file system in one step. False when the system can't, nothing has changed then.
bool ExchangeFolders(const std::filesystem::path& a, const std::filesystem::path& b) noexcept;

}  // namespace quillmate::cli
