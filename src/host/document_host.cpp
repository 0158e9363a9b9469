#include <optional>
#include <utility>

#include <quillmate/codedb/index_files.h>
#include <quillmate/host/document_host.h>
#include <quillmate/text/markers.h>

#include "listing_p.h"

namespace quillmate::host {
namespace {

namespace fs = std::filesystem;

constexpr const char* kProjectGone = "Projekt ist nicht mehr vorhanden";
constexpr const char* kModuleGone = "Modul ist nicht mehr vorhanden";

template <typename Item>
const Item& At(const std::vector<Item>& items, int position, const char* missing) {
  if (position < 1 || static_cast<std::size_t>(position) > items.size()) throw HostError(missing);
  return items[static_cast<std::size_t>(position) - 1];
}

const ListedModule& FindModule(const ListedProject& project, const std::string& name, int position) {
  if (position >= 1 && static_cast<std::size_t>(position) <= project.modules.size()) {
    const ListedModule& listed = At(project.modules, position, kModuleGone);
    if (listed.component.name == name) return listed;
  }
  for (const ListedModule& module : project.modules) {
    if (module.component.name == name) return module;
  }
  throw HostError(kModuleGone);
}

/// The module as its file holds it now. A file that turned into another module is not the one that was ticked.
ModuleFile LoadAsListed(const ListedModule& module, std::string& buffer) {
  try {
    ModuleFile file = LoadModule(module, buffer);
    if (NameOf(module, file) != module.component.name) throw HostError("Datei enthält jetzt ein anderes Modul");
    return file;
  } catch (const HostError& error) {
    throw HostError(module.component.file + ": " + error.what());
  }
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
    ModuleFile file;
  };

  std::vector<fs::path> sources;
  Listing listing;
  std::optional<Loaded> loaded;
  std::string buffer;
  bool listed = false;
  bool attached = false;

  void List() {
    loaded.reset();
    listing = ListSources(sources);
    listed = true;
  }
  const ListedProject& Project(int project) {
    if (!listed) List();
    return At(listing.projects, project, kProjectGone);
  }
  void Forget() noexcept {
    loaded.reset();
    std::string().swap(buffer);
  }
};

DocumentHost::DocumentHost() : state_(std::make_unique<State>()) {}
DocumentHost::~DocumentHost() = default;

void DocumentHost::SetSources(std::vector<fs::path> sources) { state_->sources = std::move(sources); }

const std::vector<SourceProblem>& DocumentHost::Problems() const noexcept { return state_->listing.problems; }

bool DocumentHost::Attach() {
  state_->Forget();
  state_->attached = !state_->sources.empty();
  return state_->attached;
}

void DocumentHost::Release() noexcept {
  state_->Forget();
  state_->attached = false;
}

float DocumentHost::Version() const noexcept { return 0; }

int DocumentHost::ProjectCount() {
  state_->List();
  return static_cast<int>(state_->listing.projects.size());
}

HostProject DocumentHost::Project(int project) { return state_->Project(project).project; }

int DocumentHost::ComponentCount(int project) { return static_cast<int>(state_->Project(project).modules.size()); }

HostComponent DocumentHost::Component(int project, int component) {
  return At(state_->Project(project).modules, component, kModuleGone).component;
}

HostComponent DocumentHost::ComponentByName(int project, const std::string& name, int position) {
  const ListedModule& module = FindModule(state_->Project(project), name, position);
  state_->loaded = State::Loaded{&module, LoadAsListed(module, state_->buffer)};
  HostComponent component = module.component;
  component.type = state_->loaded->file.type;
  component.lineCount = state_->loaded->file.lineCount;
  return component;
}

std::string DocumentHost::Lines(int project, const std::string& name, int position, int count) {
  const ListedModule& module = FindModule(state_->Project(project), name, position);
  if (!state_->loaded.has_value() || state_->loaded->module != &module) {
    state_->loaded = State::Loaded{&module, LoadAsListed(module, state_->buffer)};
  }
  ModuleFile file = std::move(state_->loaded->file);
  state_->loaded.reset();
  return count >= file.lineCount ? std::move(file.code) : FirstLines(std::move(file.code), count);
}

}  // namespace quillmate::host
