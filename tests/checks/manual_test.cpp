#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <quillmate/checks/checks.h>

#include "places.h"

namespace quillmate::checks {
namespace {

/// A page of the manual: its text and its two examples.
struct Page {
  std::string text;
  std::vector<std::string> examples;
};

Page ReadPage(std::string_view id) {
  std::ifstream file(tests::SourceFolder() / "help" / "seiten" / ("pruefung-" + std::string(id) + ".md"));
  Page page{std::string(std::istreambuf_iterator<char>(file), {}), {}};
  constexpr std::string_view kFence = "```\n";
  for (std::size_t at = page.text.find(kFence); at != std::string::npos;) {
    const std::size_t end = page.text.find(kFence, at + kFence.size());
    if (end == std::string::npos) break;
    page.examples.push_back(page.text.substr(at + kFence.size(), end - at - kFence.size()));
    at = page.text.find(kFence, end + kFence.size());
  }
  return page;
}

/// Modules as an example writes them: "' Modul X" begins one; else there is but one, a standard module of Excel.
symbols::ReferenceIndex Understand(const std::string& example) {
  constexpr std::string_view kModule = "' Modul ";
  symbols::Sources sources;
  sources.projects.emplace_back().name = "P";
  sources.projects.back().host = symbols::Host::kExcel;
  std::string_view rest = example;
  while (!rest.empty()) {
    const std::string_view line = rest.substr(0, std::min(rest.find('\n') + 1, rest.size()));
    rest.remove_prefix(line.size());
    const bool begins = line.starts_with(kModule);
    if (begins || sources.modules.empty()) {
      sources.modules.emplace_back().name =
          begins ? line.substr(kModule.size(), line.size() - kModule.size() - 1) : "M";
    }
    if (!begins) sources.modules.back().text += line;
  }
  return symbols::ReferenceIndex::Build(std::move(sources));
}

std::string Found(const std::string& example, const Check& check) {
  Selection only;
  only.Clear();
  only.Add(check.number);
  std::string text;
  for (const Finding& finding : RunChecks(Understand(example), only)) {
    text += std::to_string(finding.line) + ": " + finding.text + "\n";
  }
  return text;
}

/// Every check has its page; the bad example has the finding, the good one has not; title and advice are the table's.
TEST(Checks, Manual) {
  for (const Check& check : AllChecks()) {
    const Page page = ReadPage(check.id);
    ASSERT_EQ(page.examples.size(), 2U) << check.id;
    EXPECT_NE(Found(page.examples[0], check), "") << check.id;
    EXPECT_EQ(Found(page.examples[1], check), "") << check.id;
    EXPECT_TRUE(page.text.starts_with("# " + std::string(check.title) + "\n")) << check.id;
    for (const std::string_view part : {check.advice, Word(check.group)}) {
      EXPECT_NE(page.text.find(part), std::string::npos) << check.id << ": " << part;
    }
    EXPECT_EQ(page.text.find("läuft nur mit") == std::string::npos, check.byDefault) << check.id;
  }
}

}  // namespace
}  // namespace quillmate::checks
