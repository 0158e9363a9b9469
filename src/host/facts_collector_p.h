#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/codedb/facts.h>
#include <quillmate/host/host_automation.h>
#include <quillmate/host/host_tree.h>
#include <quillmate/host/project_reader.h>

namespace quillmate::host {

struct Ticked {
  const HostProjectNode* project;
  const HostModuleNode* module;
};

/// The facts of a module that was scanned, on any thread: with the original code, and its lines in the stored text,
/// where that is another. `code` is what was scanned with `layout`, `markedText` what came of it; `editorCode` is what
/// the host's editor shows where that is not `code`.
codedb::ModuleFacts WithOriginal(codedb::ModuleFacts facts, const text::CodeLayout& layout, std::string_view code,
                                 const std::optional<std::string>& editorCode, std::string_view markedText);

/// What a read learns beyond the index, module by module, and its file beside the index in the end.
class FactsCollector {
 public:
  explicit FactsCollector(const ReadRequest& request) : folder_(request.folder) {}

  /// Its number, 0-based; a project is taken when it is first asked for.
  int NumberOf(const HostProjectNode& project, HostAutomation* host);
  /// Takes a module of the index, whose number `facts` have.
  void Add(const HostProjectNode& project, HostAutomation* host, int position, codedb::ModuleFacts facts);
  /// Takes the modules of a project that are too short for the index.
  void AddShortModules(const HostProjectNode& project, HostAutomation& host);
  /// Takes a module that is left out; `reason` may begin with the name of its file.
  void AddOmission(const Ticked& ticked, HostAutomation* host, std::string_view reason);
  /// Takes what the listing left out, but nothing of projects that the user has left out.
  void AddOmissionsOf(HostAutomation& host, const HostTree& tree);
  /// Throws files::Failure.
  void Write();

  /// German lines, UTF-8: a module each that has lost characters.
  std::vector<std::string> ReplacedCharacters() const;

 private:
  struct Added {
    int project = 0;
    int position = 0;
    codedb::ModuleFacts facts;
  };

  void AddShort(int project, HostAutomation& host, int index, int position, const HostComponent& component);

  const std::filesystem::path folder_;
  std::map<int, int> numbers_;
  std::vector<codedb::ProjectFacts> projects_;
  /// By project; 0 for one that was not read as a whole.
  std::vector<int> moduleCounts_;
  std::vector<codedb::BindingFact> bindings_;
  std::vector<codedb::OmissionFact> omissions_;
  std::vector<Added> modules_;
};

}  // namespace quillmate::host
