#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/host/host_automation.h>

/// The host tree `treApp` as plain data: a node for each readable project, below it a node for each module.
namespace quillmate::host {

struct HostModuleNode {
  /// The component's, Windows-1252.
  std::string name;
  /// Project key + name.
  std::string key;
  /// What the tree shows, Windows-1252.
  std::string text;
  /// Image key: "M1", "M2", "M3", "M5", "M6" or "XXX".
  std::string image;
  /// The `mod_typ` that the image stands for: in the Access edition a module of a form counts as a form.
  int kind = 0;
  /// Full path of the module's file, UTF-8; empty when the code is not in a file of its own.
  std::string file;
  /// Position in the host's component collection, 1-based.
  int position = 0;
  bool checked = false;
};

struct HostProjectNode {
  /// In the host's collection, 1-based.
  int index = 0;
  /// "A" + index + "\".
  std::string key;
  /// Project name + " [" + file name without folder + "]", Windows-1252.
  std::string text;
  std::vector<HostModuleNode> modules;
  bool checked = false;
};

/// A project that is left out because it is locked.
struct LockedProject {
  /// Full path, UTF-8; its name where it has none.
  std::string file;
};

struct HostTree {
  std::vector<HostProjectNode> projects;
  /// Projects left out because they are locked.
  int lockedProjects = 0;
  std::vector<LockedProject> locked;
  /// True when at least one project or module is ticked.
  bool AnyChecked() const noexcept;
  std::size_t CheckedModules() const noexcept;
};

struct ListResult {
  bool attached = false;
  float version = 0;
  /// What the host could not give, or what ended the listing: German, UTF-8, one line each; empty when nothing did.
  std::string problem{};
};

/// Clears the tree, attaches and lists what can be read; components of 2 lines or fewer hold no routine and are left
/// out unless `withSmall` asks for all that have any line. `accessEdition` is set for the Access edition, whose form
/// and report modules carry a prefix. Errors of the host end the listing as if it had not been attached.
ListResult ListHostProjects(HostAutomation& host, bool accessEdition, HostTree& tree, bool withSmall = false);

/// The text to show after a listing, UTF-8 with CR LF; empty when there is nothing to say.
std::string RefreshMessage(const ListResult& result, const HostTree& tree, std::string_view hostName);

/// True for a component that is listed and indexed: one of 2 lines or fewer holds no routine.
bool IsListed(const HostComponent& component) noexcept;

/// `mod_typ` of a component type.
int ModuleKindOf(int componentType) noexcept;
/// Image key of a component type in the host tree; `name` decides in the Access edition.
std::string HostImageKey(int componentType, bool accessEdition, std::string_view name);

}  // namespace quillmate::host
