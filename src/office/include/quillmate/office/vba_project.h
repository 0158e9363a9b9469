#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <quillmate/office/compound_file.h>
#include <quillmate/office/module_file.h>
#include <quillmate/office/vba_directory.h>

/// A macro project as it is in a storage, mostly of a compound file, after the published format [MS-OVBA] 2.2:
///
///     PROJECT       text: kinds and order of the modules, protection          2.3.1
///     VBA/dir       packed: code page, names, streams and text offsets        2.3.4.2
///     VBA/<module>  compiled code, then the packed text                       2.3.4.3
///     <form>        designer data of a form, not read
///
/// Nothing but the texts is looked at; compiled code is never used. Files may be damaged or made to do harm. Bounds:
/// kMostVbaModules modules, kLargestVbaDirectory bytes of dir and of PROJECT, kLargestVbaModule bytes of a module's
/// text, kLargestVbaText of all texts together, and all module streams together not longer than the file.
namespace quillmate::office {

inline constexpr std::size_t kLargestVbaDirectory = std::size_t{16} << 20U;
inline constexpr std::size_t kLargestVbaModule = std::size_t{16} << 20U;
inline constexpr std::size_t kLargestVbaText = std::size_t{128} << 20U;

struct VbaModule : EditorText {
  /// UTF-8.
  std::string name;
  /// ComponentType: from PROJECT; where that does not name the module, from dir and from the module's attributes.
  int type = 0;
  /// False when its text is missing or can't be unpacked; the code is empty then.
  bool hasText = true;
};

/// A reference to a library or another project; UTF-8.
struct VbaReference {
  std::string name;
  /// "2.8"; empty for a project.
  std::string version;
  /// Of the library or the project's file, as the host noted it.
  std::string path;
  bool toProject = false;
};

/// Takes a reference apart as project files and streams note it (2.1.1.8, 2.1.1.12):
/// "*\G{...}#2.0#0#C:\...\stdole2.tlb#OLE Automation" or "*\AC:\...\Mappe.xlsm". UTF-8. The name is the last part
/// of a library, the file's stem of a project.
VbaReference ParseLibid(std::string_view libid);

struct VbaProject {
  /// UTF-8.
  std::string name;
  /// As the project says; 0 when it does not.
  int codePage = 0;
  /// Conditional constants as they were typed: "DEBUGMODE = 1 : ALT = 0"; UTF-8.
  std::string constants;
  std::vector<VbaReference> references;
  VbaProtection protection;
  /// In the order of the editor: that of PROJECT, then those that only dir names. Empty when the project is locked.
  std::vector<VbaModule> modules;
  /// What could not be read, or not whole: German, UTF-8, one line each. A module named here is listed all the same.
  std::vector<std::string> warnings;
};

/// The storage that holds the file's own project; nothing when there is none. Known places come first (the root, then
/// "_VBA_PROJECT_CUR" and "Macros" in it), then the first storage with a dir stream in a storage "VBA".
std::optional<CompoundId> FindVbaProject(const CompoundFile& file);

/// Reads the project in a storage as far as it goes. A module whose text is not where dir says is searched for in
/// its stream: a text begins with the attribute of its name. A locked project is not read.
/// `mostText` is the most bytes of all texts together; a text that begins after them is left out with a warning.
VbaProject ReadVbaProject(const Storage& file, Storage::Id storage, std::size_t mostText = kLargestVbaText);

}  // namespace quillmate::office
