#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <quillmate/codedb/code_database.h>
#include <quillmate/export/rtf.h>
#include <quillmate/export/sink.h>

/// Exports of a whole module or a whole project, read from the module text files of an index folder. They hold one
/// module's text and 64 KB pieces of the result at a time. A module file that can't be read ends them with
/// files::Failure.
namespace quillmate::output {

/// A module as project exports need it.
struct ModuleEntry {
  codedb::ModuleNumber number;
  /// Windows-1252.
  std::string name;
  /// Image key in the project tree, "M" and `mod_typ`.
  std::string imageKey;
};

/// All modules of an index by number, the order of project exports. Throws files::Failure.
std::vector<ModuleEntry> ReadModules(codedb::CodeDatabase& database);

void ModuleRtf(const std::filesystem::path& folder, codedb::ModuleNumber module, const text::CodeLook& look,
               const Sink& sink);
/// All modules in one document; with `headers`, each after its header block, otherwise back to back.
void ProjectRtf(const std::filesystem::path& folder, const std::vector<ModuleEntry>& modules, bool headers,
                const text::CodeLook& look, const Sink& sink);

/// The code as the code view shows it, Windows-1252.
void ModuleText(const std::filesystem::path& folder, codedb::ModuleNumber module, const Sink& sink);
/// As the RTF of the project: the same modules and header blocks without colours.
void ProjectText(const std::filesystem::path& folder, const std::vector<ModuleEntry>& modules, bool headers,
                 const Sink& sink);

/// The RTF into a file. An earlier file stays as it was until the new one is whole. A target that is no plain file (a
/// device, a pipe) is written to directly. Throws files::Failure.
void ExportModuleRtf(const std::filesystem::path& folder, codedb::ModuleNumber module, const text::CodeLook& look,
                     const std::filesystem::path& target);
void ExportProjectRtf(const std::filesystem::path& folder, const std::vector<ModuleEntry>& modules, bool headers,
                      const text::CodeLook& look, const std::filesystem::path& target);

}  // namespace quillmate::output
