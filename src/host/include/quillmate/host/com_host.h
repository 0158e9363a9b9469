#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <utility>

#include <quillmate/host/host_automation.h>

namespace quillmate::host {

/// The running Office program as it offers itself to automation. It is looked up among the running objects under
/// name + ".Application", never started, and only ever asked. Elsewhere than on Windows attaching fails.
///
/// Everything happens on the calling thread, which becomes a single-threaded apartment unless it is an apartment
/// already. A program that is busy (a cell being edited, a dialog open) is asked again, and one that does not answer a
/// call waited for, as long as the patience lasts; both are a files::Failure then, as is a program that ends in the
/// middle.
///
/// Attaching fails when the program does not run and when it refuses the access to its projects; Version tells the two
/// apart, and Problem says what it is. A module that gives no code is listed with 0 lines, a project that gives no
/// modules without any; Problem names them.
///
/// What Project said in the last listing marks a project: should its place be another's by the time a module is read,
/// it is looked for by its name and file.
class ComHost : public HostAutomation {
 public:
  struct Patience {
    std::chrono::milliseconds withBusy{4000};
    std::chrono::milliseconds withSilence{40000};
  };

  /// The edition's host, such as "Excel"; ASCII.
  explicit ComHost(std::string name) : ComHost(std::move(name), Patience()) {}
  ComHost(std::string name, Patience patience);
  ~ComHost() override;

  bool AttachHost() override;
  void Release() noexcept override;
  /// Kept after a refused attach, until Release.
  float HostVersion() const noexcept override;
  std::string Problem() const override;
  std::vector<codedb::OmissionFact> Omissions() const override;
  int ProjectCount() override;
  HostProject Project(int project) override;
  int ComponentCount(int project) override;
  HostComponent Component(int project, int component) override;
  HostComponent ComponentByName(int project, const std::string& name, int position) override;
  std::string Lines(int project, const std::string& name, int position, int count) override;
  codedb::ProjectFacts FactsOfProject(int project) override;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace quillmate::host
