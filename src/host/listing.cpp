#include <algorithm>
#include <cstdint>
#include <optional>
#include <system_error>
#include <unordered_set>
#include <utility>

#include <quillmate/codedb/index_files.h>
#include <quillmate/files/paths.h>
#include <quillmate/host/vb_project.h>
#include <quillmate/office/byte_source.h>
#include <quillmate/office/text_export.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>
#include <quillmate/workers/ordered_work.h>

#include "listing_p.h"
#include "source_file_p.h"

namespace quillmate::host {
namespace {

namespace fs = std::filesystem;

std::string CodeOfPath(const fs::path& path) { return text::CodeFromUtf8(files::PathText(path)); }
std::string ExtensionOf(const fs::path& file) { return files::PathText(file.extension()); }

/// How much text of a listing is kept for the read that mostly follows.
constexpr std::uintmax_t kMostKeptText = std::uintmax_t{40} << 20U;

/// Counts the texts that are kept.
class KeptText {
 public:
  /// False when there is no room for them.
  bool Keep(std::uintmax_t size) noexcept {
    if (size > kMostKeptText - size_) return false;
    size_ += size;
    return true;
  }

 private:
  std::uintmax_t size_ = 0;
};

std::vector<files::FileStamp> StampsOf(const std::vector<ListedModule>& modules) {
  std::vector<files::FileStamp> stamps;
  stamps.reserve(modules.size());
  for (const ListedModule& module : modules) stamps.push_back(files::StampOf(module.path));
  return stamps;
}

std::uintmax_t SizeOf(const std::vector<files::FileStamp>& stamps) {
  std::uintmax_t size = 0;
  for (const files::FileStamp& stamp : stamps) size += stamp.size;
  return size;
}

std::size_t TextSize(const office::VbaProject& project) {
  std::size_t size = 0;
  for (const office::VbaModule& module : project.modules) size += module.code.size();
  return size;
}

template <typename Names>
bool Holds(const Names& names, std::string_view name) {
  return std::any_of(names.begin(), names.end(),
                     [&](std::string_view entry) { return text::EqualsIgnoreCase(entry, name); });
}

/// A file in a folder that is opened to see whether it holds macros. Beside an open document Office puts a file "~$..."
/// that only says who has it open; the index of a project is the program's own.
bool MayBeOfficeFile(const fs::path& file) {
  const std::string name = files::PathText(file.filename());
  std::string extension = ExtensionOf(file);
  if (name.starts_with("~$") || name == codedb::kDatabaseFile || extension.empty()) return false;
  extension.erase(0, 1);
  return Holds(office::OfficeFileExtensions(), extension) || text::EqualsIgnoreCase(name, "vbaProject.bin");
}

/// A file in a folder that was opened in vain: no macros, or something else altogether. Files with the old extensions,
/// all of three letters, are often enough RTF, HTML or text.
bool IsOfNoConcern(const fs::path& file, office::OfficeFile::State state) {
  constexpr std::size_t kOldExtension = 4;  // with the dot
  if (state == office::OfficeFile::State::kNotOffice) return ExtensionOf(file).size() <= kOldExtension;
  return state == office::OfficeFile::State::kNoMacros;
}

constexpr std::string_view kVbProjectExtension = ".vbp";

/// What a file ".txt" is, by its beginning.
office::TextExport TextExportIn(const fs::path& file) {
  const std::string extension = ExtensionOf(file);
  if (extension.empty() ||
      !text::EqualsIgnoreCase(std::string_view(extension).substr(1), office::kTextExportExtension)) {
    return office::TextExport::kNone;
  }
  office::FileSource source(file);
  return office::TextExportOf(office::ReadBytes(source, 0, office::kTextExportHead));
}

/// The names of a folder, files apart from sub-folders, each in byte order.
struct FolderContent {
  std::vector<fs::path> files;
  std::vector<fs::path> officeFiles;
  std::vector<fs::path> vbProjects;
  /// Queries and macros of Access, saved as text.
  std::vector<fs::path> queries;
  std::vector<fs::path> folders;
};

void SortByBytes(std::vector<fs::path>& paths) {
  std::sort(paths.begin(), paths.end(),
            [](const fs::path& a, const fs::path& b) { return a.filename().u8string() < b.filename().u8string(); });
}

void TakeEntry(const files::FolderEntry& entry, FolderContent& content) {
  if (entry.isFolder) {
    // A linked folder may be above this one.
    if (!entry.isLink) content.folders.push_back(entry.path);
  } else if (office::IsModuleFileExtension(ExtensionOf(entry.path))) {
    content.files.push_back(entry.path);
  } else if (text::EqualsIgnoreCase(ExtensionOf(entry.path), kVbProjectExtension)) {
    content.vbProjects.push_back(entry.path);
  } else if (MayBeOfficeFile(entry.path)) {
    content.officeFiles.push_back(entry.path);
  } else if (const office::TextExport found = TextExportIn(entry.path); found != office::TextExport::kNone) {
    (office::HoldsModule(found) ? content.files : content.queries).push_back(entry.path);
  }
}

std::error_code ReadFolder(const fs::path& folder, FolderContent& content) {
  std::error_code error;
  for (const files::FolderEntry& entry : files::FolderEntries(folder, error)) TakeEntry(entry, content);
  SortByBytes(content.files);
  SortByBytes(content.officeFiles);
  SortByBytes(content.vbProjects);
  SortByBytes(content.queries);
  SortByBytes(content.folders);
  return error;
}

/// Full path without "." and "..", and without a separator at its end. The last name stays as given, also when it is a
/// link; further up ".." leads where the system takes it.
fs::path FullPath(const fs::path& source) {
  std::error_code error;
  fs::path full = files::AbsolutePath(source);
  if (std::find(full.begin(), full.end(), fs::path("..")) == full.end()) {
    full = files::NormalPath(full);
  } else if (const fs::path name = full.filename(); name.empty() || name == "." || name == "..") {
    full = files::RealPath(full, error);
  } else {
    full = files::RealPath(full.parent_path(), error) / name;
  }
  return full.has_filename() || full == full.root_path() ? full : full.parent_path();
}

/// Fills in what the module's file says of it, and all of its text where `keep` is set, or says why it can't be read.
office::Reason LookAt(ListedModule& module, const files::FileStamp& stamp, bool keep) {
  std::string buffer;
  const SourceBytes content = ReadSourceFile(module.path, buffer, module.codePage);
  if (content.problem != office::Reason::kNone) return content.problem;
  office::ModuleFile file = keep ? office::ParseModuleFile(content.bytes, module.extension)
                                 : office::SummarizeModuleFile(content.bytes, module.extension);
  module.component = {NameOf(module, file), file.type, file.lineCount, files::PathText(module.path)};
  if (keep) module.kept = {stamp, std::move(file)};
  return office::Reason::kNone;
}

class Lister {
 public:
  Lister(bool excel4, int codePage) : options_{.facts = true, .excel4 = excel4}, codePage_(codePage) {}
  void ListSource(const fs::path& source);
  Listing Take() { return std::move(listing_); }

 private:
  void ListPath(const fs::path& full);
  void ListFile(const fs::path& file);
  void ListFolder(const fs::path& folder);
  void ListVbProject(const fs::path& file);
  void ListModuleFile(const fs::path& file);
  void ListOfficeFile(const fs::path& file, bool inFolder);
  void TakeOfficeFile(const fs::path& file, const files::FileStamp& stamp, office::OfficeFile read, bool inFolder);

  void CollectFolder(const fs::path& folder, FolderContent& all);
  /// Whatever is opened goes through these two, or AddModules.
  SourceBytes ReadBytes(const fs::path& file);
  office::OfficeFile ReadOffice(const fs::path& file);
  std::optional<ListedProject> ReadVbProject(const fs::path& file);
  /// False for a file that an earlier source has given already.
  bool IsNew(const fs::path& file) { return seen_.insert(file.native()).second; }
  void AddModules(std::vector<ListedModule> modules, ListedProject& project);
  /// What a query or macro beside the modules calls.
  void AddQuery(const fs::path& file, ListedProject& project);
  void AddProject(ListedProject project);
  void AddProblem(const fs::path& path, office::Reason reason, std::string detail = {});

  const office::ReadOptions options_;
  Listing listing_;
  const int codePage_;
  std::string buffer_;
  KeptText keptText_;
  std::unordered_set<fs::path::string_type> seen_;
};

void Lister::ListSource(const fs::path& source) {
  const fs::path full = FullPath(source);
  const std::size_t projects = listing_.projects.size();
  const std::size_t problems = listing_.problems.size();
  ListPath(full);
  const bool gaveNothing = std::all_of(listing_.projects.begin() + static_cast<std::ptrdiff_t>(projects),
                                       listing_.projects.end(), [](const auto& each) { return each.project.locked; });
  for (std::size_t i = problems; i < listing_.problems.size(); ++i) listing_.problems[i].isWholeSource = gaveNothing;
}

void Lister::ListPath(const fs::path& full) {
  std::error_code error;
  if (fs::is_directory(full, error)) {
    ListFolder(full);
  } else if (!fs::exists(full, error)) {
    AddProblem(full, office::ProblemOfPath(full));
  } else if (IsNew(full)) {
    ListFile(full);
  }
}

SourceBytes Lister::ReadBytes(const fs::path& file) {
  listing_.files.push_back(file.native());
  return ReadSourceFile(file, buffer_, codePage_);
}

office::OfficeFile Lister::ReadOffice(const fs::path& file) {
  listing_.files.push_back(file.native());
  return office::ReadOfficeFile(file, options_);
}

/// Content decides before the name does.
void Lister::ListFile(const fs::path& file) {
  const files::FileStamp stamp = files::StampOf(file);
  office::OfficeFile read = ReadOffice(file);
  const std::string extension = ExtensionOf(file);
  if (read.recognized) {
    TakeOfficeFile(file, stamp, std::move(read), false);
  } else if (text::EqualsIgnoreCase(extension, kVbProjectExtension)) {
    ListVbProject(file);
  } else if (office::IsModuleFileExtension(extension) || office::HoldsModule(TextExportIn(file))) {
    ListModuleFile(file);
  } else if (MayBeOfficeFile(file)) {
    TakeOfficeFile(file, stamp, std::move(read), false);
  } else {
    AddProblem(file, office::Reason::kUnknownKind);
  }
}

void Lister::ListFolder(const fs::path& folder) {
  const std::size_t before = listing_.projects.size() + listing_.problems.size();
  ListedProject project;
  project.project.name = CodeOfPath(folder.has_filename() ? folder.filename() : folder);
  project.project.fileName = files::PathText(folder);
  FolderContent content;
  CollectFolder(folder, content);
  // What a project file in the folder names belongs to that project.
  std::vector<ListedProject> vbProjects;
  std::unordered_set<fs::path::string_type> taken;
  for (const fs::path& file : content.vbProjects) {
    std::optional<ListedProject> vbProject = IsNew(file) ? ReadVbProject(file) : std::nullopt;
    if (!vbProject) continue;
    for (const ListedModule& module : vbProject->modules) {
      taken.insert(module.path.native());
      seen_.insert(module.path.native());
    }
    vbProjects.push_back(std::move(*vbProject));
  }
  std::vector<ListedModule> modules;
  for (const fs::path& file : content.files) {
    if (!taken.contains(file.native()) && IsNew(file)) modules.push_back({{}, file, ExtensionOf(file), {}, {}, 0, {}});
  }
  AddModules(std::move(modules), project);
  for (const fs::path& file : content.queries) {
    if (!project.modules.empty() && IsNew(file)) AddQuery(file, project);
  }
  AddProject(std::move(project));
  for (ListedProject& vbProject : vbProjects) AddProject(std::move(vbProject));
  for (const fs::path& file : content.officeFiles) {
    if (IsNew(file)) ListOfficeFile(file, true);
  }
  const std::size_t after = listing_.projects.size() + listing_.problems.size();
  const bool empty = content.files.empty() && content.vbProjects.empty() && after == before;
  if (empty) AddProblem(folder, office::Reason::kNoModules);
}

void Lister::ListVbProject(const fs::path& file) {
  std::optional<ListedProject> project = ReadVbProject(file);
  if (project) AddProject(std::move(*project));
}

std::optional<ListedProject> Lister::ReadVbProject(const fs::path& file) {
  const SourceBytes content = ReadBytes(file);
  if (content.problem != office::Reason::kNone) return AddProblem(file, content.problem), std::nullopt;
  const VbProject vbProject = ParseVbProject(content.bytes);
  if (vbProject.modules.empty()) return AddProblem(file, office::Reason::kNamesNoModules), std::nullopt;

  ListedProject project;
  project.project.name = vbProject.name.empty() ? CodeOfPath(file.stem()) : text::CodeFromUtf8(vbProject.name);
  project.project.fileName = files::PathText(file);
  project.facts.name = vbProject.name;
  project.facts.host = "vb6";
  TakeReferences(vbProject.references, vbProject.constants, project.facts);
  ProjectPaths paths(file.parent_path());
  std::vector<ListedModule> modules;
  for (const VbProjectModule& entry : vbProject.modules) {
    ListedModule& module = modules.emplace_back();
    module.path = paths.Resolve(entry.file);
    module.extension = entry.extension;
    module.givenName = text::CodeFromUtf8(entry.name);
  }
  AddModules(std::move(modules), project);
  return project;
}

void Lister::ListModuleFile(const fs::path& file) {
  ListedProject project;
  project.project.name = CodeOfPath(file.stem());
  project.project.fileName = files::PathText(file);
  AddModules({{{}, file, ExtensionOf(file), {}, {}, 0, {}}}, project);
  AddProject(std::move(project));
}

void Lister::ListOfficeFile(const fs::path& file, bool inFolder) {
  const files::FileStamp stamp = files::StampOf(file);
  TakeOfficeFile(file, stamp, ReadOffice(file), inFolder);
}

void Lister::TakeOfficeFile(const fs::path& file, const files::FileStamp& stamp, office::OfficeFile read,
                            bool inFolder) {
  if (read.state != office::OfficeFile::State::kRead) {
    if (!inFolder || !read.facts.excel4.empty() || !IsOfNoConcern(file, read.state)) {
      AddProblem(file, read.reason, std::move(read.macroSheets));
    }
    return;
  }
  ListedProject project;
  project.project.name = read.project.name.empty() ? CodeOfPath(file.stem()) : text::CodeFromUtf8(read.project.name);
  project.project.fileName = files::PathText(file);
  project.project.locked = read.project.protection.Locked();
  project.facts = ProjectFactsOf(read);
  project.outside = ModulesOf(read.facts);
  project.bindings = BindingsOf(read.facts, read.host, files::PathText(file.filename()));
  for (const office::VbaModule& module : read.project.modules) {
    ListedModule listed;
    listed.component = {text::CodeFromUtf8(module.name), module.type, module.lineCount, {}};
    listed.path = file;
    listed.inOfficeFile = project.modules.size();
    project.modules.push_back(std::move(listed));
  }
  for (const std::string& warning : read.project.warnings) AddProblem(file, office::Reason::kNone, warning);
  if (stamp.settled && keptText_.Keep(TextSize(read.project))) project.unpacked = {stamp, std::move(read.project)};
  AddProject(std::move(project));
}

/// The files of a folder, then those of its sub-folders.
void Lister::CollectFolder(const fs::path& folder, FolderContent& all) {
  FolderContent content;
  if (ReadFolder(folder, content)) AddProblem(folder, office::Reason::kFolderUnreadable);
  const auto append = [](std::vector<fs::path>& to, const std::vector<fs::path>& from) {
    to.insert(to.end(), from.begin(), from.end());
  };
  append(all.files, content.files);
  append(all.officeFiles, content.officeFiles);
  append(all.vbProjects, content.vbProjects);
  append(all.queries, content.queries);
  for (const fs::path& inner : content.folders) CollectFolder(inner, all);
}

/// Looks at the files on all cores. Their texts are kept all or none: a part of many would need the memory and hardly
/// save time.
void Lister::AddModules(std::vector<ListedModule> modules, ListedProject& project) {
  const std::vector<files::FileStamp> stamps = StampsOf(modules);
  const bool keepAll = keptText_.Keep(SizeOf(stamps));
  std::vector<office::Reason> problems(modules.size());
  workers::OrderedWork work;
  for (std::size_t i = 0; i < modules.size(); ++i) {
    while (work.IsFull()) work.FinishFirst();
    ListedModule& module = modules[i];
    listing_.files.push_back(module.path.native());
    module.codePage = codePage_;
    work.Add(
        [&module, &stamp = stamps[i], keepAll, &problem = problems[i]] {
          problem = LookAt(module, stamp, keepAll && stamp.settled);
          return std::size_t{0};
        },
        [&](const std::exception_ptr& failure) {
          if (failure) std::rethrow_exception(failure);
        });
  }
  work.FinishAll();
  for (std::size_t i = 0; i < modules.size(); ++i) {
    if (problems[i] == office::Reason::kNone) {
      project.modules.push_back(std::move(modules[i]));
    } else {
      AddProblem(modules[i].path, problems[i]);
      listing_.problems.back().project = project.project.fileName.value_or(std::string());
    }
  }
}

void Lister::AddQuery(const fs::path& file, ListedProject& project) {
  const SourceBytes content = ReadBytes(file);
  if (content.problem != office::Reason::kNone) return AddProblem(file, content.problem);
  const bool isMacro = office::TextExportOf(content.bytes) == office::TextExport::kMacro;
  const std::string kind = isMacro ? "Makro" : "Abfrage";
  const std::string name = files::PathText(file.stem());
  project.facts.document.push_back({kind, name});
  for (std::string& called : office::NamesCalledIn(content.bytes)) {
    project.bindings.push_back({0, {}, std::move(called), kind + " '" + name + "'", "sonstiges"});
  }
}

void Lister::AddProject(ListedProject project) {
  if (project.modules.empty() && !project.project.locked) return;
  if (project.facts.name.empty()) project.facts.name = text::Utf8FromCode(project.project.name);
  project.facts.file = project.project.fileName.value_or(std::string());
  project.facts.locked = project.project.locked;
  listing_.projects.push_back(std::move(project));
}

void Lister::AddProblem(const fs::path& path, office::Reason reason, std::string detail) {
  listing_.problems.push_back({files::PathText(path), reason, std::move(detail), false});
}

}  // namespace

Listing ListSources(const std::vector<fs::path>& sources, bool excel4, int codePage) {
  Lister lister(excel4, codePage);
  for (const fs::path& source : sources) lister.ListSource(source);
  return lister.Take();
}

std::string NameOf(const ListedModule& module, const office::ModuleFile& file) {
  if (!module.givenName.empty()) return module.givenName;
  if (!file.name.empty()) return file.name;
  const std::string stem = CodeOfPath(module.path.stem());
  return text::StartsWithIgnoreCase(stem, file.namePrefix) ? stem : std::string(file.namePrefix) + stem;
}

office::ModuleFile LoadModule(const ListedModule& module, std::optional<KeptModule> kept) {
  if (kept && files::IsUnchanged(module.path, kept->stamp)) return std::move(kept->file);
  std::string buffer;
  const SourceBytes content = ReadSourceFile(module.path, buffer, module.codePage);
  if (content.problem != office::Reason::kNone) throw files::Failure(content.problem);
  return office::ParseModuleFile(content.bytes, module.extension);
}

}  // namespace quillmate::host
