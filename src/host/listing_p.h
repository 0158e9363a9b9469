#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/files/stamp.h>
#include <quillmate/host/document_host.h>
#include <quillmate/host/host_automation.h>
#include <quillmate/office/module_file.h>
#include <quillmate/office/office_file.h>

#include "document_facts_p.h"

namespace quillmate::host {

/// A module file as it was taken apart for the listing.
struct KeptModule {
  files::FileStamp stamp;
  office::ModuleFile file;
};

/// A module of a source as it was listed.
struct ListedModule {
  HostComponent component;
  std::filesystem::path path;
  /// Decides how the file is read; the file's own extension, or the one that its line in a project file stands for.
  std::string extension;
  /// The name that a project file gives the module, Windows-1252; empty when it gives none.
  std::string givenName;
  /// Where it is in the macro project of the Office file at `path`; nothing for a module in a file of its own.
  std::optional<std::size_t> inOfficeFile;
  /// See DocumentHost::SetCodePage.
  int codePage = 0;
  /// What was read for the listing, until it is read in earnest; nothing where the texts of a listing grow too many.
  std::optional<KeptModule> kept{};
};

/// The macro project of an Office file as it was unpacked for the listing.
struct UnpackedProject {
  files::FileStamp stamp;
  office::VbaProject project;
};

struct ListedProject {
  HostProject project;
  /// But for the hash.
  codedb::ProjectFacts facts;
  std::vector<ListedModule> modules;
  /// What the document says of its modules and of who starts them.
  DocumentModules outside;
  std::vector<codedb::BindingFact> bindings;
  /// Nothing for other sources, once it has been read, and where the texts of a listing grow too many to be kept.
  std::optional<UnpackedProject> unpacked;
};

struct Listing {
  std::vector<ListedProject> projects;
  std::vector<SourceProblem> problems;
  /// Those that were opened. A path takes ten times the room of its text.
  std::vector<std::filesystem::path::string_type> files;
};

/// Looks through the sources; a source that holds no readable module becomes a problem instead of a project. With
/// `excel4` formulas of macro sheets are modules. `codePage` is DocumentHost::SetCodePage's.
Listing ListSources(const std::vector<std::filesystem::path>& sources, bool excel4 = false, int codePage = 0);

/// A module's name, Windows-1252: as the project file gives it, as the file says itself, or the file name's stem.
std::string NameOf(const ListedModule& module, const office::ModuleFile& file);

/// The text of a file that holds a module, from the file again when it has changed since `kept`. Throws files::Failure
/// (the reason alone).
office::ModuleFile LoadModule(const ListedModule& module, std::optional<KeptModule> kept);

}  // namespace quillmate::host
