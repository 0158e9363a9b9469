#include <algorithm>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include <quillmate/host/com_host.h>
#include <quillmate/office/module_file.h>
#include <quillmate/text/characters.h>
#include <quillmate/text/markers.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/wide.h>
#include <quillmate/text/windows1252.h>

#include "com_apartment_windows_p.h"
#include "com_calls_windows_p.h"

namespace quillmate::host {
namespace {

files::Failure ProjectGone() { return files::Failure(HostReason::kProjectGone); }
files::Failure ModuleGone() { return files::Failure(HostReason::kModuleGone); }
files::Failure ModulesWithheld() { return files::Failure(HostReason::kModulesWithheld); }

std::string CodeOf(std::wstring_view wide) { return text::CodeFromUtf16(std::u16string(wide.begin(), wide.end())); }

bool Same(const HostProject& a, const HostProject& b) { return a.name == b.name && a.fileName == b.fileName; }

/// The lines asked for, without the line break that a host may put after the last.
std::string AskedLines(std::wstring_view lines, int count) {
  std::string code = text::NormalizeLineBreaks(CodeOf(lines));
  if (office::CountLines(code) == count + 1 && code.ends_with(text::kLineBreak)) {
    code.resize(code.size() - text::kLineBreak.size());
  }
  return code;
}

}  // namespace

struct ComHost::State {
  State(std::string hostName, Patience hostPatience)
      : name(std::move(hostName)), patience(hostPatience), calls(name, patience.withBusy) {}

  struct OpenProject {
    ComObject project;
    std::optional<ComObject> components;
  };
  /// The module that ComponentByName found: Lines is asked for it next.
  struct FoundModule {
    int project;
    std::string name;
    int position;
    ComObject codeModule;
  };

  std::string name;
  Patience patience;
  ComCalls calls;
  std::optional<ComApartment> apartment;
  std::optional<ComObject> projects;
  float version = 0;
  std::string problem;
  /// The projects of the last listing in its order; kept for the reads that follow it.
  std::vector<HostProject> listed;
  std::map<int, OpenProject> open;
  std::optional<FoundModule> found;

  bool AttachHost();
  void Release() noexcept;
  float ReadVersion(const ComObject& application);
  const ComObject& Projects() const;
  std::optional<ComObject> Item(const ComObject& collection, const ComValue& key, ComType type);
  std::optional<std::string> FileNameOf(const ComObject& project);
  HostProject Describe(const ComObject& project);
  void Remember(int project, const HostProject& info);
  ComObject FindProject(int project);
  OpenProject& Open(int project);
  const ComObject& Components(int project);
  ComObject FindComponent(int project, const std::string& component, int position);
  int ComponentCount(int project);
  int LineCount(const ComObject& component, const std::string& called);
  void AddProblem(const std::string& line);
};

bool ComHost::State::AttachHost() {
  Release();
  problem.clear();
  apartment.emplace(patience.withSilence);
  calls.ForgetMembers();
  const std::wstring progId = std::wstring(name.begin(), name.end()) + L".Application";
  const std::optional<ComObject> application = calls.Running(progId);
  if (!application.has_value()) return false;
  version = ReadVersion(*application);
  const files::Failure refused(HostReason::kNoAccess, {}, {name});
  const ComObject editor = calls.GetObject(*application, L"VBE", ComType::kEditor, refused);
  projects = calls.GetObject(editor, L"VBProjects", ComType::kProjects, refused);
  return true;
}

void ComHost::State::Release() noexcept {
  found.reset();
  open.clear();
  projects.reset();
  apartment.reset();
  version = 0;
}

/// "16.0": a text with a point whatever the user's language; some hosts give a number.
float ComHost::State::ReadVersion(const ComObject& application) {
  const std::wstring value = calls.GetText(application, L"Version", files::Failure(HostReason::kNoVersion, {}, {name}));
  return static_cast<float>(text::LeadingNumber(text::Utf8FromWide(value)));
}

const ComObject& ComHost::State::Projects() const {
  if (!projects.has_value()) throw files::Failure(HostReason::kEnded, {}, {name});
  return *projects;
}

/// Nothing when the collection has no such item.
std::optional<ComObject> ComHost::State::Item(const ComObject& collection, const ComValue& key, ComType type) {
  try {
    return calls.Item(collection, key, type, ModuleGone());
  } catch (const files::Failure& failure) {
    if (!failure.Is(HostReason::kRefused)) throw;
    return std::nullopt;
  }
}

/// A project that was never saved refuses to name its file, or names none.
std::optional<std::string> ComHost::State::FileNameOf(const ComObject& project) {
  try {
    std::string file = text::Utf8FromWide(calls.GetText(project, L"FileName", ProjectGone()));
    return file.empty() ? std::nullopt : std::optional(std::move(file));
  } catch (const files::Failure& failure) {
    if (!failure.Is(HostReason::kRefused)) throw;
    return std::nullopt;
  }
}

HostProject ComHost::State::Describe(const ComObject& project) {
  HostProject info;
  info.fileName = FileNameOf(project);
  info.name = CodeOf(calls.GetText(project, L"Name", ProjectGone()));
  info.locked = calls.GetNumber(project, L"Protection", ProjectGone()) != 0;
  return info;
}

void ComHost::State::Remember(int project, const HostProject& info) {
  const auto place = static_cast<std::size_t>(project);
  if (listed.size() < place) listed.resize(place);
  listed[place - 1] = info;
}

/// Projects move up when one before them is closed: the place alone would lead to another project's modules, which
/// often have the same names.
ComObject ComHost::State::FindProject(int project) {
  if (project < 1 || static_cast<std::size_t>(project) > listed.size()) throw ProjectGone();
  const HostProject& wanted = listed[static_cast<std::size_t>(project) - 1];
  const int count = calls.GetNumber(Projects(), L"Count", ProjectGone());
  // Of projects that were never saved often several have the same name; they are told apart only while all are there.
  const auto twins =
      std::count_if(listed.begin(), listed.end(), [&](const HostProject& each) { return Same(each, wanted); });
  const bool mixed = twins > 1 && static_cast<std::size_t>(count) != listed.size();
  const auto fits = [&](const std::optional<ComObject>& object) {
    return object && !mixed && Same(Describe(*object), wanted);
  };
  std::optional<ComObject> object = Item(Projects(), ComValue(project), ComType::kProject);
  if (fits(object)) return *object;
  for (int place = 1; place <= count; ++place) {
    object = Item(Projects(), ComValue(place), ComType::kProject);
    if (fits(object)) return *object;
  }
  throw files::Failure(HostReason::kProjectClosed, {},
                       {text::Utf8FromCode(wanted.name), wanted.fileName.value_or("Nicht gespeichert")});
}

ComHost::State::OpenProject& ComHost::State::Open(int project) {
  const auto known = open.find(project);
  if (known != open.end()) return known->second;
  return open.emplace(project, OpenProject{FindProject(project), std::nullopt}).first->second;
}

const ComObject& ComHost::State::Components(int project) {
  OpenProject& opened = Open(project);
  if (!opened.components.has_value()) {
    opened.components = calls.GetObject(opened.project, L"VBComponents", ComType::kComponents, ModulesWithheld());
  }
  return *opened.components;
}

/// Where it was listed, or wherever its name has moved to. A name that Windows-1252 can't hold is found by its place.
ComObject ComHost::State::FindComponent(int project, const std::string& component, int position) {
  const ComObject& components = Components(project);
  std::optional<ComObject> object = Item(components, ComValue(position), ComType::kComponent);
  if (object && CodeOf(calls.GetText(*object, L"Name", ModuleGone())) == component) return *object;
  object = Item(components, ComValue(text::Utf16FromCode(component)), ComType::kComponent);
  if (!object.has_value()) throw ModuleGone();
  return *object;
}

/// A project that keeps its modules to itself must not hide the others.
int ComHost::State::ComponentCount(int project) {
  try {
    return calls.GetNumber(Components(project), L"Count", ModulesWithheld());
  } catch (const files::Failure& failure) {
    if (!failure.Is(HostReason::kRefused)) throw;
    AddProblem(text::Utf8FromCode(listed.at(static_cast<std::size_t>(project) - 1).name) + ": " + failure.what());
    return 0;
  }
}

/// A component that gives no code is nothing to read; neither must it hide the others.
int ComHost::State::LineCount(const ComObject& component, const std::string& called) {
  const files::Failure refused(HostReason::kCodeWithheld, {}, {text::Utf8FromCode(called)});
  try {
    return calls.GetNumber(calls.GetObject(component, L"CodeModule", ComType::kCodeModule, refused), L"CountOfLines",
                           refused);
  } catch (const files::Failure& failure) {
    if (!failure.Is(HostReason::kRefused)) throw;
    AddProblem(failure.what());
    return 0;
  }
}

void ComHost::State::AddProblem(const std::string& line) { problem += problem.empty() ? line : "\r\n" + line; }

ComHost::ComHost(std::string name, Patience patience) : state_(std::make_unique<State>(std::move(name), patience)) {}

ComHost::~ComHost() { Release(); }

bool ComHost::AttachHost() {
  try {
    return state_->AttachHost();
  } catch (const std::exception& error) {
    state_->problem = error.what();
    return false;
  }
}

void ComHost::Release() noexcept { state_->Release(); }

float ComHost::HostVersion() const noexcept { return state_->version; }

std::string ComHost::Problem() const { return state_->problem; }

std::vector<codedb::OmissionFact> ComHost::Omissions() const {
  std::vector<codedb::OmissionFact> omissions = HostAutomation::Omissions();
  for (const HostProject& info : state_->listed) {
    if (!info.locked) continue;
    omissions.push_back(
        {info.fileName.value_or(""), text::Utf8FromCode(info.name), {}, files::ReasonText(HostReason::kProjectLocked)});
  }
  return omissions;
}

int ComHost::ProjectCount() {
  state_->problem.clear();
  state_->listed.clear();
  state_->open.clear();
  return state_->calls.GetNumber(state_->Projects(), L"Count",
                                 files::Failure(HostReason::kNoAccess, {}, {state_->name}));
}

HostProject ComHost::Project(int project) {
  ComObject object = state_->calls.Item(state_->Projects(), ComValue(project), ComType::kProject, ProjectGone());
  HostProject info = state_->Describe(object);
  state_->Remember(project, info);
  state_->open.insert_or_assign(project, State::OpenProject{std::move(object), std::nullopt});
  return info;
}

int ComHost::ComponentCount(int project) { return state_->ComponentCount(project); }

HostComponent ComHost::Component(int project, int component) {
  ComCalls& calls = state_->calls;
  const ComObject object =
      calls.Item(state_->Components(project), ComValue(component), ComType::kComponent, ModuleGone());
  HostComponent info;
  info.name = CodeOf(calls.GetText(object, L"Name", ModuleGone()));
  info.type = calls.GetNumber(object, L"Type", ModuleGone());
  info.lineCount = state_->LineCount(object, info.name);
  return info;
}

HostComponent ComHost::ComponentByName(int project, const std::string& name, int position) {
  ComCalls& calls = state_->calls;
  const ComObject object = state_->FindComponent(project, name, position);
  HostComponent info;
  info.name = name;
  info.type = calls.GetNumber(object, L"Type", ModuleGone());
  ComObject codeModule = calls.GetObject(object, L"CodeModule", ComType::kCodeModule, ModuleGone());
  info.lineCount = calls.GetNumber(codeModule, L"CountOfLines", ModuleGone());
  state_->found = State::FoundModule{project, name, position, std::move(codeModule)};
  return info;
}

std::string ComHost::Lines(int project, const std::string& name, int position, int count) {
  ComCalls& calls = state_->calls;
  const auto isIt = [&](const State::FoundModule& module) {
    return module.project == project && module.name == name && module.position == position;
  };
  if (!state_->found.has_value() || !isIt(*state_->found)) ComponentByName(project, name, position);
  const ComObject codeModule = std::exchange(state_->found, std::nullopt)->codeModule;
  if (count <= 0) return {};

  const ComValue first(1);
  const ComValue number(count);
  ComValue lines = calls.Get(codeModule, L"Lines", ModuleGone(), {first.Get(), number.Get()});
  if (!lines.Become(VT_BSTR)) throw ModuleGone();
  std::string code = AskedLines(lines.Text(), count);
  // Fewer lines are fine only while there are no more: a host counts a last line without text or not.
  if (office::CountLines(code) != count && calls.GetNumber(codeModule, L"CountOfLines", ModuleGone()) != count) {
    throw files::Failure(HostReason::kModuleChanged);
  }
  return code;
}

/// As it was listed: to ask the host anew would mark another project where one before it was closed.
codedb::ProjectFacts ComHost::FactsOfProject(int project) {
  codedb::ProjectFacts facts;
  if (project >= 1 && static_cast<std::size_t>(project) <= state_->listed.size()) {
    const HostProject& info = state_->listed[static_cast<std::size_t>(project) - 1];
    facts.name = text::Utf8FromCode(info.name);
    facts.file = info.fileName.value_or(std::string());
    facts.locked = info.locked;
  }
  facts.host = state_->name;
  for (char& c : facts.host) c = static_cast<char>(text::ToLower(c));
  return facts;
}

}  // namespace quillmate::host
