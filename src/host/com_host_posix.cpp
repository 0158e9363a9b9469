#include <utility>

#include <quillmate/host/com_host.h>

namespace quillmate::host {

/// No host runs on this system.
struct ComHost::State {
  std::string name;
  [[noreturn]] void Fail() const { throw files::Failure(HostReason::kNotRunning, {}, {name}); }
};

ComHost::ComHost(std::string name, Patience) : state_(std::make_unique<State>(State{std::move(name)})) {}
ComHost::~ComHost() = default;

bool ComHost::AttachHost() { return false; }
void ComHost::Release() noexcept {}
float ComHost::HostVersion() const noexcept { return 0; }
std::string ComHost::Problem() const { return {}; }
std::vector<codedb::OmissionFact> ComHost::Omissions() const { return {}; }
int ComHost::ProjectCount() { state_->Fail(); }
HostProject ComHost::Project(int) { state_->Fail(); }
int ComHost::ComponentCount(int) { state_->Fail(); }
HostComponent ComHost::Component(int, int) { state_->Fail(); }
HostComponent ComHost::ComponentByName(int, const std::string&, int) { state_->Fail(); }
std::string ComHost::Lines(int, const std::string&, int, int) { state_->Fail(); }
codedb::ProjectFacts ComHost::FactsOfProject(int) { state_->Fail(); }

}  // namespace quillmate::host
