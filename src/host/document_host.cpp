#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include <quillmate/files/paths.h>
#include <quillmate/files/sha256.h>
#include <quillmate/host/document_host.h>
#include <quillmate/text/markers.h>
#include <quillmate/text/windows1252.h>

#include "component_facts_p.h"
#include "document_facts_p.h"
#include "listing_p.h"

namespace quillmate::host {
namespace {

namespace fs = std::filesystem;

template <typename Items>
auto& At(Items& items, int position, HostReason missing) {
  if (position < 1 || static_cast<std::size_t>(position) > items.size()) throw files::Failure(missing);
  return items[static_cast<std::size_t>(position) - 1];
}

ListedModule& FindModule(ListedProject& project, const std::string& name, int position) {
  if (position >= 1 && static_cast<std::size_t>(position) <= project.modules.size()) {
    ListedModule& listed = At(project.modules, position, HostReason::kModuleGone);
    if (listed.component.name == name) return listed;
  }
  for (ListedModule& module : project.modules) {
    if (module.component.name == name) return module;
  }
  throw files::Failure(HostReason::kModuleGone);
}

/// A file that turned into another module is not the one that was ticked.
office::ModuleFile LoadOwnFile(const ListedModule& module, std::optional<KeptModule> kept) {
  office::ModuleFile file = LoadModule(module, std::move(kept));
  if (NameOf(module, file) != module.component.name) throw files::Failure(HostReason::kOtherModule);
  return file;
}

/// The module where it was listed, or wherever it has moved to by its name.
office::ModuleFile FindInProject(const ListedModule& module, const office::VbaProject& project) {
  if (project.protection.Locked()) throw files::Failure(HostReason::kProjectLocked);
  if (*module.inOfficeFile < project.modules.size()) {
    office::ModuleFile file = ModuleFileOf(project.modules[*module.inOfficeFile]);
    if (file.name == module.component.name) return file;
  }
  for (const office::VbaModule& candidate : project.modules) {
    if (text::CodeFromUtf8(candidate.name) == module.component.name) return ModuleFileOf(candidate);
  }
  throw files::Failure(HostReason::kNotInFile);
}

HostComponent ComponentNow(const ListedModule& module, const office::ModuleFile& file) {
  HostComponent component = module.component;
  component.type = file.type;
  component.lineCount = file.lineCount;
  return component;
}

codedb::ModuleFacts FactsNow(const ListedProject& project, const ListedModule& module, office::ModuleFile file) {
  codedb::ModuleFacts facts = FactsOfFile(std::move(file));
  if (!module.givenName.empty() || facts.name.empty()) facts.name = text::Utf8FromCode(module.component.name);
  facts.file = module.component.file;
  facts.linesOfFile = !module.inOfficeFile.has_value();
  if (module.inOfficeFile.has_value()) TakeModuleFacts(project.outside, facts);
  return facts;
}

WholeComponent TakeWhole(const ListedProject& project, const ListedModule& module, office::ModuleFile file) {
  WholeComponent whole;
  whole.component = ComponentNow(module, file);
  whole.code = std::move(file.code);
  whole.facts = FactsNow(project, module, std::move(file));
  return whole;
}

std::string FirstLines(std::string code, int count) {
  if (count <= 0) return {};
  std::size_t at = 0;
  for (int line = 0; line < count; ++line) {
    const std::size_t found = code.find(text::kLineBreak, at);
    if (found == std::string::npos) return code;
    at = found + text::kLineBreak.size();
  }
  code.resize(at - text::kLineBreak.size());
  return code;
}

}  // namespace

struct DocumentHost::State {
  /// The module that ComponentByName has looked at: Lines is asked for it next, and gets the same state of the file.
  struct Loaded {
    const ListedModule* module;
    office::ModuleFile file;
  };

  /// The Office file that was read last: its modules are asked for one after the other.
  struct OpenOfficeFile {
    fs::path path;
    office::VbaProject project;
  };

  std::vector<fs::path> sources;
  bool excel4 = false;
  int codePage = 0;
  Listing listing;
  std::optional<Loaded> loaded;
  /// Its code is no longer among what is loaded.
  bool codeTaken = false;
  std::optional<OpenOfficeFile> officeFile;
  bool listed = false;
  /// True once texts that the listing has kept have been asked for: after that read nothing needs the others.
  bool readSinceListing = false;
  bool attached = false;

  void List() {
    Forget();
    listing = ListSources(sources, excel4, codePage);
    listed = true;
    readSinceListing = false;
  }
  const office::VbaProject& OfficeProject(ListedProject& project, const fs::path& path) {
    if (officeFile.has_value() && officeFile->path == path) return officeFile->project;
    officeFile.reset();
    std::optional<UnpackedProject> unpacked = std::exchange(project.unpacked, std::nullopt);
    readSinceListing = true;
    if (unpacked.has_value() && files::IsUnchanged(path, unpacked->stamp)) {
      officeFile = OpenOfficeFile{path, std::move(unpacked->project)};
    } else {
      office::OfficeFile file = office::ReadOfficeFile(path, {.facts = excel4, .excel4 = excel4});
      if (file.state != office::OfficeFile::State::kRead)
        throw files::Failure(HostReason::kNoCode, {}, {file.ReasonText()});
      officeFile = OpenOfficeFile{path, std::move(file.project)};
    }
    return officeFile->project;
  }
  /// The module as its file holds it now.
  void Load(ListedProject& project, ListedModule& module) {
    loaded.reset();
    codeTaken = false;
    try {
      loaded =
          Loaded{&module, module.inOfficeFile.has_value() ? FindInProject(module, OfficeProject(project, module.path))
                                                          : LoadOwnFile(module, TakeKept(module))};
    } catch (const files::Failure& failure) {
      throw failure.At(module.path);
    }
  }
  std::optional<KeptModule> TakeKept(ListedModule& module) noexcept {
    readSinceListing = true;
    return std::exchange(module.kept, std::nullopt);
  }
  ListedProject& Project(int project) {
    if (!listed) List();
    return At(listing.projects, project, HostReason::kProjectGone);
  }
  void ForgetUnpacked() noexcept {
    for (ListedProject& project : listing.projects) {
      project.unpacked.reset();
      for (ListedModule& module : project.modules) module.kept.reset();
    }
  }
  void Forget() noexcept {
    loaded.reset();
    officeFile.reset();
  }
};

std::string SourceProblem::Text() const {
  if (reason == office::Reason::kNone) return detail;
  const std::string words = office::ReasonText(reason);
  return detail.empty() ? words : words + ", sie " + detail;
}

DocumentHost::DocumentHost() : state_(std::make_unique<State>()) {}
DocumentHost::~DocumentHost() = default;

void DocumentHost::SetSources(std::vector<fs::path> sources) { state_->sources = std::move(sources); }

void DocumentHost::SetExcel4(bool wanted) noexcept { state_->excel4 = wanted; }

void DocumentHost::SetCodePage(int number) noexcept { state_->codePage = number; }

const std::vector<SourceProblem>& DocumentHost::Problems() const noexcept { return state_->listing.problems; }

const std::vector<fs::path::string_type>& DocumentHost::Files() const noexcept { return state_->listing.files; }

std::vector<codedb::OmissionFact> DocumentHost::Omissions() const {
  std::vector<codedb::OmissionFact> omissions;
  if (!state_->attached) return omissions;
  for (const SourceProblem& problem : Problems()) omissions.push_back({problem.source, {}, {}, problem.Text()});
  for (const ListedProject& listed : state_->listing.projects) {
    if (listed.project.locked)
      omissions.push_back({listed.facts.file, listed.facts.name, {}, files::ReasonText(HostReason::kProjectLocked)});
  }
  return omissions;
}

bool DocumentHost::AttachHost() {
  state_->Forget();
  state_->attached = !state_->sources.empty();
  return state_->attached;
}

void DocumentHost::Release() noexcept {
  state_->Forget();
  if (state_->readSinceListing) state_->ForgetUnpacked();
  state_->attached = false;
}

float DocumentHost::HostVersion() const noexcept { return 0; }

int DocumentHost::ProjectCount() {
  state_->List();
  return static_cast<int>(state_->listing.projects.size());
}

HostProject DocumentHost::Project(int project) { return state_->Project(project).project; }

int DocumentHost::ComponentCount(int project) { return static_cast<int>(state_->Project(project).modules.size()); }

HostComponent DocumentHost::Component(int project, int component) {
  return At(state_->Project(project).modules, component, HostReason::kModuleGone).component;
}

HostComponent DocumentHost::ComponentByName(int project, const std::string& name, int position) {
  ListedProject& listed = state_->Project(project);
  ListedModule& module = FindModule(listed, name, position);
  state_->Load(listed, module);
  return ComponentNow(module, state_->loaded->file);
}

std::string DocumentHost::Lines(int project, const std::string& name, int position, int count) {
  ListedProject& listed = state_->Project(project);
  ListedModule& module = FindModule(listed, name, position);
  if (!state_->loaded.has_value() || state_->loaded->module != &module || state_->codeTaken) {
    state_->Load(listed, module);
  }
  // What else is known of it stays for FactsOfComponent.
  office::ModuleFile& file = state_->loaded->file;
  state_->codeTaken = true;
  return count >= file.lineCount ? std::move(file.code) : FirstLines(std::move(file.code), count);
}

codedb::ProjectFacts DocumentHost::FactsOfProject(int project) {
  codedb::ProjectFacts facts = state_->Project(project).facts;
  facts.hash = files::FileHash(files::PathFromText(facts.file));
  return facts;
}

codedb::ModuleFacts DocumentHost::FactsOfComponent(int project, const std::string& name, int position) {
  ListedProject& listed = state_->Project(project);
  ListedModule& module = FindModule(listed, name, position);
  if (!state_->loaded.has_value() || state_->loaded->module != &module) state_->Load(listed, module);
  codedb::ModuleFacts facts = FactsNow(listed, module, std::move(state_->loaded->file));
  state_->loaded.reset();
  return facts;
}

std::function<WholeComponent()> DocumentHost::StartReading(int project, const std::string& name, int position) {
  ListedProject& listed = state_->Project(project);
  ListedModule& module = FindModule(listed, name, position);
  if (module.inOfficeFile.has_value()) {
    state_->Load(listed, module);
    auto file = std::make_shared<office::ModuleFile>(std::move(state_->loaded->file));
    state_->loaded.reset();
    return [&listed, &module, file] { return TakeWhole(listed, module, std::move(*file)); };
  }
  auto kept = std::make_shared<std::optional<KeptModule>>(state_->TakeKept(module));
  return [&listed, &module, kept] {
    try {
      return TakeWhole(listed, module, LoadOwnFile(module, std::move(*kept)));
    } catch (const files::Failure& failure) {
      throw failure.At(module.path);
    }
  };
}

std::vector<codedb::BindingFact> DocumentHost::BindingsOfProject(int project) {
  return state_->Project(project).bindings;
}

}  // namespace quillmate::host
