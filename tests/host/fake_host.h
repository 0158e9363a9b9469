#pragma once

#include <string>
#include <utility>
#include <vector>

#include <quillmate/host/host_automation.h>
#include <quillmate/office/module_file.h>

namespace quillmate::host {

struct FakeComponent {
  std::string name;
  int type = kStdModule;
  std::string code;
};

struct FakeProject {
  HostProject info;
  std::vector<FakeComponent> components;
};

/// A running host out of a script; notes its calls, and refuses the one named `failAt`.
class FakeHost : public HostAutomation {
 public:
  std::vector<FakeProject> projects;
  bool running = true;
  float version = 9;
  std::string problem;
  std::string failAt;
  std::vector<std::string> calls;

  bool AttachHost() override { return calls.emplace_back("Attach"), running; }
  void Release() noexcept override { calls.emplace_back("Release"); }
  float HostVersion() const noexcept override { return version; }
  std::string Problem() const override { return problem; }
  int ProjectCount() override { return Note("ProjectCount"), static_cast<int>(projects.size()); }
  HostProject Project(int project) override {
    return Note("Project " + std::to_string(project)), Nth(projects, project).info;
  }
  int ComponentCount(int project) override {
    Note("ComponentCount " + std::to_string(project));
    return static_cast<int>(Nth(projects, project).components.size());
  }
  HostComponent Component(int project, int component) override {
    Note("Component " + std::to_string(component));
    return Info(Nth(Nth(projects, project).components, component));
  }
  HostComponent ComponentByName(int project, const std::string& name, int position) override {
    Note("ComponentByName " + std::to_string(project) + " " + name);
    return Info(ByName(project, name, position));
  }
  std::string Lines(int project, const std::string& name, int position, int count) override {
    return Note("Lines " + name + " " + std::to_string(count)), ByName(project, name, position).code;
  }

 private:
  template <typename Item>
  static const Item& Nth(const std::vector<Item>& items, int number) {
    return items.at(static_cast<std::size_t>(number) - 1);
  }
  static HostComponent Info(const FakeComponent& component) {
    return {component.name, component.type, office::CountLines(component.code), {}};
  }
  const FakeComponent& ByName(int project, const std::string& name, int position) const {
    const FakeComponent& component = Nth(Nth(projects, project).components, position);
    if (component.name != name) throw files::Failure(HostReason::kModuleGone);
    return component;
  }
  void Note(std::string call) {
    calls.push_back(std::move(call));
    if (calls.back() == failAt) throw files::Failure(HostReason::kNoCode, {}, {"Aufruf abgelehnt"});
  }
};

}  // namespace quillmate::host
