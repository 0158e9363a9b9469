#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <quillmate/codedb/facts.h>
#include <quillmate/host/host_reason.h>
#include <quillmate/office/component_type.h>

/// The object model of a running Office host, as far as the program reads it. Nothing here ever starts a host, writes
/// to it or runs a macro. Names and code are Windows-1252, file names UTF-8, messages UTF-8. What
/// a host refuses, or what comes too late, throws files::Failure (host_reason.h).
namespace quillmate::host {

/// A component's type is a module's.
using office::ComponentType;
using enum office::ComponentType;

struct HostProject {
  std::string name;
  /// Full path as the host gives it; nothing for a project that was never saved.
  std::optional<std::string> fileName;
  /// A locked project can't be read.
  bool locked = false;
};

struct HostComponent {
  std::string name;
  int type = 0;
  int lineCount = 0;
  /// Full path of the module's own file, UTF-8; empty when the code is not in one.
  std::string file;
};

/// A component as it is now with its code, without a trailing line break, and what is known of it.
struct WholeComponent {
  HostComponent component;
  std::string code;
  codedb::ModuleFacts facts;
};

/// Projects and components are counted from 1, as in the object model.
class HostAutomation {
 public:
  virtual ~HostAutomation() = default;

  /// Gets hold of the running host; false when there is none or access is refused. Never throws.
  virtual bool AttachHost() = 0;
  virtual void Release() noexcept = 0;
  /// The numeric value of the host's version; 0 when not attached.
  virtual float HostVersion() const noexcept = 0;
  /// What is missing although there is a host: it refuses the access to its projects, is busy, can't give a module.
  /// One German line each (UTF-8, CR LF between them), empty when nothing is. Kept until the next attach or listing.
  virtual std::string Problem() const { return {}; }

  /// While attached: what the last listing had to leave out, locked projects included; unless the host knows better the
  /// lines of Problem.
  virtual std::vector<codedb::OmissionFact> Omissions() const;

  virtual int ProjectCount() = 0;
  virtual HostProject Project(int project) = 0;
  virtual int ComponentCount(int project) = 0;
  virtual HostComponent Component(int project, int component) = 0;

  /// Type and line count of a component as they are now, by its name as listed. Throws when it is gone.
  /// `position` is where it was listed; it decides where a source holds several components of one name.
  virtual HostComponent ComponentByName(int project, const std::string& name, int position) = 0;
  /// The first `count` lines of a component, separated by CR LF, without a trailing line break.
  virtual std::string Lines(int project, const std::string& name, int position, int count) = 0;

  /// What is known of a project beside its components; unless the host knows better its name, its file and the lock.
  virtual codedb::ProjectFacts FactsOfProject(int project);
  /// What is known of a component beside its code, cheap right after its Lines. `code` is set only where those have
  /// lost characters; `project` and `number` are the caller's. Throws as Lines does.
  virtual codedb::ModuleFacts FactsOfComponent(int project, const std::string& name, int position);
  /// Reads a component as ComponentByName, Lines and FactsOfComponent do in turn. What any thread can do of it is left
  /// to the function that comes back: to be called once, and before the next listing.
  virtual std::function<WholeComponent()> StartReading(int project, const std::string& name, int position);

  /// What starts routines of the project from outside of its code, as far as the host knows; their `project` is the
  /// caller's.
  virtual std::vector<codedb::BindingFact> BindingsOfProject(int project);
};

}  // namespace quillmate::host
