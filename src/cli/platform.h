#pragma once

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

/// What the program needs from the operating system beyond the standard library.
namespace quillmate::cli {

/// Makes the standard streams safe to use: bytes pass unchanged, a reader that has gone shows as a write error instead
/// of a signal, as does a file that grows beyond the caller's limit, and a stream that the caller had closed can't be
/// taken by the next file that is opened.
void PrepareStandardStreams();

/// The command line after the program's name, UTF-8 (elsewhere than on Windows as the bytes that were given).
std::vector<std::string> Arguments(int argc, char** argv);

/// The inputs with each wildcard replaced by what it stands for. Only Windows leaves this to the programs; elsewhere
/// the inputs stay as they are.
///
/// "*" stands for any characters and "?" for one, in the last part of a path, capitals or not; "*.*" is everything,
/// with or without a point. Hidden files and folders don't count (Office hides the file that marks an open document).
/// Names come sorted, without regard to case. Throws CommandFailure when nothing fits.
std::vector<std::string> ExpandWildcards(const std::vector<std::string>& inputs);

/// From now on a signal that ends the process (SIGINT, SIGTERM, SIGHUP; on Windows the console's events) runs `cleanUp`
/// in a thread of its own first. Then the process ends as the signal would have ended it, so that the caller sees the
/// signal in the exit status. A signal that the caller has set to be ignored stays ignored. Where no thread can be
/// started a signal ends the process at once.
void OnEndingSignal(void (*cleanUp)());

/// The folder of the running executable, symbolic links resolved; empty when the system does not tell.
std::filesystem::path ExecutableFolder();

/// True when what is written to an open stream is shown to somebody.
bool IsTerminal(std::FILE* stream) noexcept;
/// True when a terminal can be told to show colours; a console is set to.
bool TakesColours(std::FILE* terminal) noexcept;
/// Columns of the terminal of standard error; 80 when it does not tell.
std::size_t TerminalColumns() noexcept;

/// From now on large blocks of memory go back to the system when they are free, where it would else keep some.
void ReturnLargeBlocks() noexcept;

/// The errno value of a write that has just failed; EPIPE when the reader has gone.
int WriteError() noexcept;

/// Memory, where the system has a folder in it: a thousand small files cost a disk more than reading them. Empty where
/// it has none.
std::filesystem::path MemoryFolder();

/// True where Office programs run that can be asked for their projects.
bool HostsCanRun() noexcept;

}  // namespace quillmate::cli
