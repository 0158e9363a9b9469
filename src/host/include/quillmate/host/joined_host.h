#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <quillmate/host/host_automation.h>

namespace quillmate::host {

/// Several hosts as one: the projects of the first are listed first, the indices run through. It attaches when at least
/// one part does, and its version is that of the first part that has one.
///
/// ProjectCount lists every attached part anew, to the last component, and the answers about projects and components
/// come from this listing; ComponentByName and Lines ask the part itself. A part that fails while it is listed is left
/// out whole, as if it had not been attached, and named in Problem; when no part is left, its error is passed on.
class JoinedHost : public HostAutomation {
 public:
  /// In the order of the listing; they have to outlive this host.
  explicit JoinedHost(const std::vector<HostAutomation*>& parts);

  /// The index that a project of the last listing has within `part`, counted from 1; nothing for another part's
  /// project.
  std::optional<int> IndexIn(const HostAutomation& part, int project) const noexcept;

  bool AttachHost() override;
  void Release() noexcept override;
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
  codedb::ModuleFacts FactsOfComponent(int project, const std::string& name, int position) override;
  std::function<WholeComponent()> StartReading(int project, const std::string& name, int position) override;
  std::vector<codedb::BindingFact> BindingsOfProject(int project) override;

 private:
  struct Part {
    HostAutomation* host;
    bool attached = false;
    /// What ended its last listing; UTF-8.
    std::string failure{};
  };
  struct ListedProject {
    HostAutomation* host;
    /// Within its part.
    int index;
    HostProject info;
    std::vector<HostComponent> components;
  };

  void List(Part& part);
  const ListedProject& Listed(int project) const;

  std::vector<Part> parts_;
  std::vector<ListedProject> projects_;
};

}  // namespace quillmate::host
