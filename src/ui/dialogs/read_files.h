#pragma once

#include <filesystem>
#include <utility>
#include <vector>

#include <quillmate/files/identity.h>
#include <quillmate/host/document_host.h>
#include <quillmate/project/session.h>

namespace quillmate::ui {

/// Files that are not to be written.
class KnownFiles {
 public:
  explicit KnownFiles(files::IdentitySet read) : read_(std::move(read)) {}

  /// Throws files::Failure when one of the paths `written`, which are to be written, leads to one of them.
  void Check(const std::vector<std::filesystem::path>& written) const;

 private:
  files::IdentitySet read_;
};

/// The program never writes to what it reads: the sources of the last listing and the files of the project on screen,
/// by whatever name they are reached.
class ReadFiles {
 public:
  /// Both must outlive it.
  ReadFiles(const host::DocumentHost& documents, const project::Session& session)
      : documents_(documents), session_(session) {}

  /// Throws files::Failure when one of the paths `written`, which are to be written, leads to such a file
  /// or to one of `alsoRead`.
  void Check(const std::vector<std::filesystem::path>& written,
             const std::vector<std::filesystem::path>& alsoRead = {}) const;
  /// As they are now, to be asked in any thread.
  KnownFiles Known(const std::vector<std::filesystem::path>& alsoRead = {}) const;

 private:
  const host::DocumentHost& documents_;
  const project::Session& session_;
};

}  // namespace quillmate::ui
