#pragma once

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

/// How the files of a work folder take the place of others in more than one step, so that whoever is killed in between
/// leaves a record by which the next run comes to the end.
///
/// In the work folder are then
///   neu   what is new: a folder of files, or one file
///   alt   what was replaced, as far as it has got
///   plan  the record: a line that names its kind; "alt " or "neu " and a name for each file that goes or comes, or
///         "datei ", the number by which the file system knows it, a blank and the full path of the one file that is
///         written over; "ende". UTF-8 (elsewhere than on Windows
///         names as the bytes they are), LF. It is there from the moment at which everything new is whole and on the
///         disk until everything old has gone.
///   zurueck  the same record under another name, once the exchange is being taken back
/// Each step finds out by itself whether it was taken, so that all can be taken again.
namespace quillmate::files {

inline constexpr const char* kFresh = "neu";

/// Files of one folder for files of another.
struct Exchange {
  std::filesystem::path work;
  /// The folder in which files are replaced.
  std::filesystem::path place;
  /// Names in `neu`, and names in `place` that go. A name in both stands for a file that is replaced.
  std::vector<std::filesystem::path> fresh;
  std::vector<std::filesystem::path> old;
};

/// Puts `neu` in place of the old files. With an error the old files are in their place again; where even that fails
/// the record stays. Each file changes in one step where the file system has second names for a file, else it is
/// missing for a moment.
std::error_code CarryOut(const Exchange& exchange);

/// Writes the file `neu` over the bytes of `target`, for a file that keeps its place because its folder takes no other.
/// With an error the old bytes are back.
std::error_code WriteOver(const std::filesystem::path& work, const std::filesystem::path& target);

/// True when a work folder holds what must not be removed.
bool HasOpenExchange(const std::filesystem::path& work) noexcept;

/// Brings what a killed process left to its end, or back.
void FinishExchange(const std::filesystem::path& work);

}  // namespace quillmate::files
