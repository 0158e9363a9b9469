#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <quillmate/codedb/code_database.h>
#include <quillmate/files/work_folder.h>
#include <quillmate/settings/options.h>

#include "invocation.h"

namespace quillmate::cli {

/// True when the input is a saved project folder. Throws UsageError when it is one among several inputs, or when a
/// running host is to be read too.
bool IsSavedProject(const Invocation& invocation);

/// Reads the running host's projects where asked for, then the sources in the order given, into an index in `folder`.
/// What can't be read is named on standard error; false when anything was. Throws CommandFailure when nothing is left,
/// UsageError when the output file is one of the files that are read.
bool ReadSources(const Invocation& invocation, const settings::Options& options, const std::filesystem::path& folder,
                 codedb::CodeDatabase& database);

/// Throws UsageError when the output is an input, before anything is read.
void CheckOutput(const Invocation& invocation);

/// Opens the index in `folder`. Throws CommandFailure.
void OpenIndex(codedb::CodeDatabase& database, const std::filesystem::path& folder);

/// A project that is ready to be asked: a saved one where it is, or sources read into a scratch folder that lives as
/// long as this.
class ProjectInput {
 public:
  /// Throws CommandFailure and UsageError.
  ProjectInput(const Invocation& invocation, const settings::Options& options);

  codedb::CodeDatabase& Database() noexcept { return database_; }
  const std::filesystem::path& Folder() const noexcept { return folder_; }

 private:
  std::unique_ptr<files::WorkFolder> scratch_;
  std::filesystem::path folder_;
  codedb::CodeDatabase database_;
};

}  // namespace quillmate::cli
