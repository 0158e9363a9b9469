#pragma once

#include <string>
#include <vector>

#include <quillmate/host/host_automation.h>

namespace quillmate::testing {

/// A running host with projects of one module each.
class FakeHost : public host::HostAutomation {
 public:
  bool running = true;
  float version = 0;
  std::string problem;
  std::vector<host::HostProject> projects;

  bool Attach() override { return running; }
  void Release() noexcept override {}
  float Version() const noexcept override { return version; }
  std::string Problem() const override { return problem; }
  int ProjectCount() override { return static_cast<int>(projects.size()); }
  host::HostProject Project(int project) override { return projects[static_cast<std::size_t>(project) - 1]; }
  int ComponentCount(int) override { return 1; }
  host::HostComponent Component(int, int) override { return {"Modul1", host::kStdModule, 3, {}}; }
  host::HostComponent ComponentByName(int project, const std::string&, int position) override {
    return Component(project, position);
  }
  std::string Lines(int, const std::string&, int, int) override { return "Sub A()\r\n  x = 1\r\nEnd Sub"; }
};

}  // namespace quillmate::testing
