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

/// What a read learns beyond the index, module by module, and its file beside the index in the end.
class FactsCollector {
 public:
  explicit FactsCollector(const ReadRequest& request);

  /// Its number, 0-based; a project is taken when it is first asked for.
  int NumberOf(const HostProjectNode& project, HostAutomation* host);
  /// Takes a module of the index, whose number `facts` have. `code` is what was scanned; `editorCode` what the host's
  /// editor shows of it where that is another text.
  void Add(const HostProjectNode& project, HostAutomation* host, int position, codedb::ModuleFacts facts,
           std::string_view code, std::optional<std::string> editorCode = std::nullopt);
  /// Takes the modules of a project that are too short for the index.
  void AddShortModules(const HostProjectNode& project, HostAutomation& host);
  /// When all texts of the index are written. Throws codedb::DatabaseError.
  void Write();

  /// German lines, UTF-8: a module each that has lost characters.
  std::vector<std::string> ReplacedCharacters() const;

 private:
  struct Added {
    int project = 0;
    int position = 0;
    codedb::ModuleFacts facts;
    /// What was scanned, where a header before the code was scanned with it, and the header's lines.
    std::string scanned = {};
    std::int32_t headerLines = 0;
  };

  void AddShort(int project, HostAutomation& host, int index, int position, const HostComponent& component);
  void CompareWithStored(Added& added) const;

  const std::filesystem::path folder_;
  const bool laidOut_;
  std::map<std::string, int> numbers_;
  std::vector<codedb::ProjectFacts> projects_;
  std::vector<codedb::BindingFact> bindings_;
  std::vector<Added> modules_;
};

}  // namespace quillmate::host
