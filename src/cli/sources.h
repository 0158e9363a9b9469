#pragma once

#include <string>
#include <vector>

#include <quillmate/host/com_host.h>
#include <quillmate/host/document_host.h>
#include <quillmate/host/host_tree.h>
#include <quillmate/host/joined_host.h>

#include "invocation.h"

namespace quillmate::cli {

/// What a command is to read: the running host of the edition where asked for, and the inputs, as one host.
class Sources {
 public:
  explicit Sources(const Invocation& invocation);

  host::HostAutomation& Host() noexcept;
  /// Everything that can be read, ticked. What can't be read is named on standard error; throws CommandFailure when
  /// nothing is left.
  host::HostTree List();
  /// False when the listing left anything out.
  bool AreWhole() const noexcept { return whole_; }
  /// How many projects there are, locked ones included, with every module of one or two lines too: Host() gives them by
  /// their numbers. What can't be read is named on standard error.
  int ListAll();

 private:
  /// Names what could not be read. With no module left, the last complaint is the reason why the command fails.
  void NameProblems(std::vector<std::string> complaints, bool hasModules);
  /// Of the first `projects` projects.
  void AddLockedProjects(int projects, std::vector<std::string>& complaints);
  /// A source that was named and could not be read at all makes the run fail; with --strict everything does.
  void MarkMissing(bool anyComplaint);
  /// Whether a full path is one of the inputs.
  bool IsNamed(const std::string& file) const;
  /// Notes what the listing has read.
  void NoteFiles(int projects);
  bool ListsOffice(const host::HostTree& tree) const;
  void ListWithOffice(host::HostTree& tree, std::vector<std::string>& complaints);

  const std::string edition_;
  const bool accessEdition_;
  const bool withOffice_;
  const bool withSmall_;
  const bool strict_;
  std::vector<std::string> names_;
  host::ComHost office_;
  host::DocumentHost documents_;
  host::JoinedHost joined_;
  bool whole_ = true;
};

}  // namespace quillmate::cli
