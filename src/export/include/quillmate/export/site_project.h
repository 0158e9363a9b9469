#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include <quillmate/codedb/records.h>
#include <quillmate/symbols/project_sources.h>
#include <quillmate/symbols/reference_index.h>

/// What a documentation (site.h) is made of.
namespace quillmate::output {

/// What the user has noted beside a line.
struct SiteNote {
  codedb::ModuleNumber module;
  /// Of the stored text.
  codedb::Line line;
  /// UTF-8, lines separated by LF.
  std::string text;
};

struct SiteProject {
  /// UTF-8.
  std::string title;
  /// Where the module text files are.
  std::filesystem::path indexFolder;
  /// The whole index, by number.
  std::vector<codedb::ModuleRecord> modules;
  /// What the code means (null: nothing is known), and where the lines of its modules are in the index
  /// (symbols::LoadSources). Must outlive the site's making.
  const symbols::ReferenceIndex* understanding = nullptr;
  std::span<const symbols::ModulePlaces> places;
  /// By module, then line.
  std::vector<SiteNote> notes{};
};

}  // namespace quillmate::output
