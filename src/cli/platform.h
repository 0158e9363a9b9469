#pragma once

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

/// What the program needs from the operating system beyond the standard library.
namespace quillmate::cli {

/// Makes the standard streams safe to use: bytes pass unchanged, a reader that has gone shows as a write error instead
/// of a signal, and a stream that the caller had closed can't be taken by the next file that is opened.
void PrepareStandardStreams();

/// The command line behind the program's name, UTF-8 (elsewhere than on Windows as the bytes that were given).
std::vector<std::string> Arguments(int argc, char** argv);

/// From now on a signal that ends the process (SIGINT, SIGTERM, SIGHUP; on Windows the console's events) runs `cleanUp`
/// in a thread of its own first. Then the process ends as the signal would have ended it, so that the caller sees the
/// signal in the exit status. A signal that the caller has set to be ignored stays ignored. Where no thread can be
/// started a signal ends the process at once.
void OnEndingSignal(void (*cleanUp)());

/// Where an open file can't be removed (Windows): closes this process's files at or below a path, under whoever is
/// still writing to them. For the end of the process only.
void CloseFilesIn(const std::filesystem::path& path);

/// The folder of the running executable, symbolic links resolved; empty when the system does not tell.
std::filesystem::path ExecutableFolder();

/// True when what is written to an open stream is shown to somebody.
bool IsTerminal(std::FILE* stream) noexcept;
/// Columns of the terminal behind standard error; 80 when it does not tell.
std::size_t TerminalColumns() noexcept;

/// True for what is written to directly and never replaced: a device, a pipe.
bool IsDevice(const std::filesystem::path& path);

/// kNew fails when the file is there already, kExisting when it is not; both leave a file that is there as it is.
enum class OpenMode { kNew, kExisting };
/// Opens a file for writing its bytes; nothing on failure, with the reason in errno.
std::FILE* OpenStream(const std::filesystem::path& file, OpenMode mode) noexcept;

/// The errno value of a write that has just failed; EPIPE when the reader has gone.
int WriteError() noexcept;

/// A number that no other running process of this machine has.
long ProcessNumber() noexcept;

/// The folder for files that live no longer than a run: the user's choice where there is one, else memory where the
/// system has a folder in it with plenty of room (a thousand small files cost a disk more than reading them), else the
/// system's temporary folder. Throws std::filesystem::filesystem_error.
std::filesystem::path FolderForScratch();

/// Makes a new folder that only this user may enter, `prefix` with something appended, below an existing folder.
/// Throws std::filesystem::filesystem_error.
std::filesystem::path MakePrivateFolder(const std::filesystem::path& parent, const char* prefix);

/// True where Office programs run that can be asked for their projects.
bool HostsCanRun() noexcept;

}  // namespace quillmate::cli
