#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>

#include <quillmate/codedb/facts.h>
#include <quillmate/codedb/numbers.h>
#include <quillmate/symbols/project_sources.h>
#include <quillmate/symbols/reference_index.h>

#include "json.h"

namespace quillmate::cli {

/// Appends "projects", what each document says of itself, and "omitted", what could not be read or not whole; neither
/// where there is nothing to tell.
void AppendSources(JsonObject& object, std::string& json, std::span<const symbols::ProjectInfo> projects,
                   std::span<const symbols::Omission> omissions);

/// Where the modules of an index came from, for JSON. What is unknown is null: everything of a project without facts.
class Provenance {
 public:
  explicit Provenance(const std::filesystem::path& folder);

  /// Appends the members "file" and "project" to the object in `json`.
  void Append(JsonObject& object, std::string& json, codedb::ModuleNumber module) const;
  /// ProjectHeading of the module.
  std::string Heading(codedb::ModuleNumber module) const;
  /// The same of the index. Modules of documents that are too short for it are omissions too; those in files of their
  /// own are there for everybody to see.
  void AppendSources(JsonObject& object, std::string& json) const;
  /// The line of the module's own file that is in a line of the stored text.
  std::optional<std::int64_t> SourceLine(codedb::ModuleNumber module, std::optional<codedb::Line> line) const;

 private:
  struct Module {
    const codedb::ModuleFacts* facts;
    symbols::ModulePlaces places;
  };

  std::optional<codedb::Facts> facts_;
  std::unordered_map<std::int64_t, Module> modules_;
};

}  // namespace quillmate::cli
