#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <quillmate/codedb/code_database.h>
#include <quillmate/settings/options.h>

#include "command_line.h"
#include "scratch_folder.h"

namespace quillmate::cli {

/// True when the input is a saved project folder. Throws UsageError when it is one among several inputs, or when a
/// running host is to be read too.
bool IsSavedProject(const Invocation& invocation);

/// Reads the running host's projects where asked for, then the sources in the order given, into an index in `folder`.
/// What can't be read is named on standard error;
/// throws CommandFailure when nothing is left.
void ReadSources(const Invocation& invocation, const settings::Options& options, const std::filesystem::path& folder,
                 codedb::CodeDatabase& database);

/// Throws UsageError when the output would be written over an input: the program never writes to what it reads.
void CheckOutputIsNoInput(const Invocation& invocation);

/// Opens the index in `folder`. Throws CommandFailure.
void OpenIndex(codedb::CodeDatabase& database, const std::filesystem::path& folder);

/// A project that is ready to be asked: a saved one where it lies, or sources read into a scratch folder that lives as
/// long as this.
class ProjectInput {
 public:
  /// Throws CommandFailure and UsageError.
  ProjectInput(const Invocation& invocation, const settings::Options& options);

  codedb::CodeDatabase& Database() noexcept { return database_; }
  const std::filesystem::path& Folder() const noexcept { return folder_; }

 private:
  std::optional<ScratchFolder> scratch_;
  std::filesystem::path folder_;
  codedb::CodeDatabase database_;
};

}  // namespace quillmate::cli
