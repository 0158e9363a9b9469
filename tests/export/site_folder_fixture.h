#pragma once

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <quillmate/codedb/codes.h>
#include <quillmate/codedb/facts.h>
#include <quillmate/export/plain_text.h>
#include <quillmate/export/site.h>
#include <quillmate/settings/options.h>
#include <quillmate/text/markers.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

#include "codedb/scratch.h"
#include "site_checker.h"

namespace quillmate::output {

/// A project of modules that a test writes down, in a folder that goes away with the test.
class SiteTest : public testing::Test {
 protected:
  SiteTest() {
    project_.title = "Prüfstück";
    project_.indexFolder = folder_ / "index";
    std::filesystem::create_directories(project_.indexFolder);
  }

  /// Marked-up text: [keyword] {comment} ~string^ <header line>, lines separated by LF.
  static std::string Marked(std::string_view code) {
    std::string marked;
    for (const char c : code) {
      constexpr std::string_view kSigns = "[{~]}^<>\n";
      constexpr std::string_view kTexts[] = {text::KeywordOpen,    text::CommentOpen,     text::StringOpen,
                                             text::SpanClose,      text::SpanClose,       text::SpanClose,
                                             text::HeaderLineOpen, text::HeaderLineClose, text::kLineBreak};
      const std::size_t sign = kSigns.find(c);
      marked += sign == std::string_view::npos ? std::string_view(&c, 1) : kTexts[sign];
    }
    return marked;
  }

  codedb::ModuleRecord& AddModule(const std::string& name, int kind, std::string_view markedText) {
    const codedb::ModuleNumber number{static_cast<std::int32_t>(project_.modules.size()) + 1};
    codedb::WriteModuleText(project_.indexFolder, number, std::string(markedText) + "\r\n");
    const auto lines = static_cast<std::int32_t>(std::count(markedText.begin(), markedText.end(), '\n')) + 1;
    project_.modules.push_back({number, name, kind, lines, {}});
    return project_.modules.back();
  }

  struct Lines {
    std::optional<std::int32_t> start{}, end{};
    int header = 1;
  };

  void AddRoutine(const std::string& name, Lines lines, int kind = codedb::kSub, int visibility = codedb::kPublic) {
    codedb::ModuleRecord& module = project_.modules.back();
    const auto line = [](std::optional<std::int32_t> number) {
      return number ? std::optional(codedb::Line{*number}) : std::nullopt;
    };
    module.routines.push_back(
        {{++routineNumber_}, module.number, name, kind, visibility, lines.header, line(lines.start), line(lines.end)});
  }

  /// All files of the site by name, looked over. Unless `originals` knows another text the modules' code is what they
  /// show.
  std::map<std::string, std::string> Write(const text::CodeLook& look = settings::LookOf({})) {
    symbols::Sources sources;
    symbols::ProjectSource& project = sources.projects.emplace_back();
    project.name = "Lager";
    project.file = "/pfad/Lager.xlsm";
    project.host = symbols::Host::kExcel;
    project.properties = properties_;
    sources.omissions = omissions_;
    if (hasSecondProject_) sources.projects.emplace_back().name = "Zweites";
    std::vector<symbols::ModulePlaces> places;
    codedb::Facts kept;
    for (const codedb::ModuleRecord& module : project_.modules) {
      const std::string shown =
          text::Utf8FromCode(PlainText(codedb::ReadModuleText(project_.indexFolder, module.number)));
      codedb::ModuleFacts facts;
      facts.number = module.number.value;
      symbols::ModuleSource& source = sources.modules.emplace_back();
      const auto original = originals_.find(module.name);
      source.text = original == originals_.end() ? shown : original->second;
      if (original != originals_.end()) facts.lines = codedb::MatchLines(original->second, shown);
      source.name = text::Utf8FromCode(module.name);
      if (module.kind == codedb::kClass) source.kind = language::ModuleKind::kClass;
      if (module.kind == codedb::kForm) source.kind = language::ModuleKind::kForm;
      if (inSecondProject_.contains(module.name)) source.project = 1;
      if (const auto controls = controls_.find(module.name); controls != controls_.end()) {
        source.controlsKnown = true;
        for (const codedb::ControlFact& control : controls->second)
          source.controls.push_back({control.name, control.type});
        facts.controls = controls->second;
        kept.modules.push_back(facts);
      }
      places.emplace_back(facts);
    }
    kept.projects.emplace_back().name = "Lager";
    if (!kept.modules.empty()) codedb::WriteFacts(project_.indexFolder, kept);
    const auto understanding = symbols::ReferenceIndex::Build(std::move(sources));
    project_.understanding = &understanding;
    project_.places = places;
    const std::filesystem::path site = folder_ / "site";
    std::filesystem::remove_all(site);
    std::filesystem::create_directories(site);
    WriteSite(project_, look, site);
    std::map<std::string, std::string> files = files::FilesIn(site);
    CheckSite(files);
    return files;
  }

  /// The part of a page from `from` up to before `to`.
  static std::string Part(const std::string& page, std::string_view from, std::string_view to) {
    const std::size_t begin = page.find(from);
    const std::size_t end = page.find(to, begin == std::string::npos ? 0 : begin);
    EXPECT_NE(end, std::string::npos) << from << " ... " << to << "\nin\n" << page;
    return begin == std::string::npos || end == std::string::npos ? std::string() : page.substr(begin, end - begin);
  }

  files::ScratchFolder folder_;
  SiteProject project_;
  /// Code by module, UTF-8.
  std::map<std::string, std::string> originals_;
  /// By module; those of the second project.
  std::map<std::string, std::vector<codedb::ControlFact>> controls_;
  std::set<std::string> inSecondProject_;
  std::vector<symbols::DocumentProperty> properties_;
  std::vector<symbols::Omission> omissions_;
  bool hasSecondProject_ = false;
  std::int32_t routineNumber_ = 0;
};

}  // namespace quillmate::output
