#include <algorithm>
#include <exception>
#include <iterator>
#include <utility>

#include <quillmate/host/joined_host.h>

namespace quillmate::host {
namespace {

template <typename Item>
const Item& At(const std::vector<Item>& items, int position, HostReason missing) {
  if (position < 1 || static_cast<std::size_t>(position) > items.size()) throw files::Failure(missing);
  return items[static_cast<std::size_t>(position) - 1];
}

/// A locked project does not even count its components.
std::vector<HostComponent> ComponentsOf(HostAutomation& host, int project, bool locked) {
  std::vector<HostComponent> components;
  const int count = locked ? 0 : host.ComponentCount(project);
  for (int position = 1; position <= count; ++position) components.push_back(host.Component(project, position));
  return components;
}

void AddLine(std::string& lines, const std::string& line) {
  if (line.empty()) return;
  lines += lines.empty() ? line : "\r\n" + line;
}

}  // namespace

JoinedHost::JoinedHost(const std::vector<HostAutomation*>& parts) {
  for (HostAutomation* part : parts) parts_.push_back({part});
}

std::optional<int> JoinedHost::IndexIn(const HostAutomation& part, int project) const noexcept {
  if (project < 1 || static_cast<std::size_t>(project) > projects_.size()) return std::nullopt;
  const ListedProject& listed = projects_[static_cast<std::size_t>(project) - 1];
  return listed.host == &part ? std::optional(listed.index) : std::nullopt;
}

bool JoinedHost::AttachHost() {
  for (Part& part : parts_) {
    part.failure.clear();
    part.attached = part.host->AttachHost();
  }
  return std::any_of(parts_.begin(), parts_.end(), [](const Part& part) { return part.attached; });
}

void JoinedHost::Release() noexcept {
  for (Part& part : parts_) {
    part.host->Release();
    part.attached = false;
  }
}

float JoinedHost::HostVersion() const noexcept {
  for (const Part& part : parts_) {
    if (const float version = part.host->HostVersion(); version > 0) return version;
  }
  return 0;
}

std::string JoinedHost::Problem() const {
  std::string problems;
  for (const Part& part : parts_) AddLine(problems, part.failure.empty() ? part.host->Problem() : part.failure);
  return problems;
}

std::vector<codedb::OmissionFact> JoinedHost::Omissions() const {
  std::vector<codedb::OmissionFact> omissions;
  for (const Part& part : parts_) {
    if (!part.failure.empty()) omissions.push_back({{}, {}, {}, part.failure});
    std::ranges::move(part.host->Omissions(), std::back_inserter(omissions));
  }
  return omissions;
}

void JoinedHost::List(Part& part) {
  std::vector<ListedProject> projects;
  const int count = part.host->ProjectCount();
  for (int index = 1; index <= count; ++index) {
    HostProject info = part.host->Project(index);
    std::vector<HostComponent> components = ComponentsOf(*part.host, index, info.locked);
    projects.push_back({part.host, index, std::move(info), std::move(components)});
  }
  std::move(projects.begin(), projects.end(), std::back_inserter(projects_));
}

int JoinedHost::ProjectCount() {
  projects_.clear();
  std::exception_ptr failure;
  bool listed = false;
  for (Part& part : parts_) {
    part.failure.clear();
    if (!part.attached) continue;
    try {
      List(part);
      listed = true;
    } catch (const std::exception& error) {
      part.failure = error.what();
      if (!failure) failure = std::current_exception();
    }
  }
  if (!listed && failure) std::rethrow_exception(failure);
  return static_cast<int>(projects_.size());
}

const JoinedHost::ListedProject& JoinedHost::Listed(int project) const {
  return At(projects_, project, HostReason::kProjectGone);
}

HostProject JoinedHost::Project(int project) { return Listed(project).info; }

int JoinedHost::ComponentCount(int project) { return static_cast<int>(Listed(project).components.size()); }

HostComponent JoinedHost::Component(int project, int component) {
  return At(Listed(project).components, component, HostReason::kModuleGone);
}

HostComponent JoinedHost::ComponentByName(int project, const std::string& name, int position) {
  const ListedProject& listed = Listed(project);
  return listed.host->ComponentByName(listed.index, name, position);
}

std::string JoinedHost::Lines(int project, const std::string& name, int position, int count) {
  const ListedProject& listed = Listed(project);
  return listed.host->Lines(listed.index, name, position, count);
}

codedb::ProjectFacts JoinedHost::FactsOfProject(int project) {
  const ListedProject& listed = Listed(project);
  return listed.host->FactsOfProject(listed.index);
}

codedb::ModuleFacts JoinedHost::FactsOfComponent(int project, const std::string& name, int position) {
  const ListedProject& listed = Listed(project);
  return listed.host->FactsOfComponent(listed.index, name, position);
}

std::function<WholeComponent()> JoinedHost::StartReading(int project, const std::string& name, int position) {
  const ListedProject& listed = Listed(project);
  return listed.host->StartReading(listed.index, name, position);
}

std::vector<codedb::BindingFact> JoinedHost::BindingsOfProject(int project) {
  const ListedProject& listed = Listed(project);
  return listed.host->BindingsOfProject(listed.index);
}

}  // namespace quillmate::host
