#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
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

/// "' Schaltfläche ... ruft Makro auf": something outside that calls a routine.
bool TakeBinding(std::string_view line, symbols::Sources& sources) {
  constexpr std::string_view kCalls = " ruft ", kEnd = " auf\n";
  const std::size_t calls = line.find(kCalls);
  if (!line.starts_with("' ") || calls == std::string_view::npos || !line.ends_with(kEnd)) return false;
  symbols::ExternalBinding& binding = sources.bindings.emplace_back();
  binding.place = line.substr(2, calls - 2);
  binding.text = line.substr(calls + kCalls.size(), line.size() - kEnd.size() - calls - kCalls.size());
  binding.kind = symbols::BindingKind::kButton;
  sources.projects.back().outsideKnown = true;
  return true;
}

/// "' Modul X", "' Formular X mit a, b": what follows is its code.
bool TakeModule(std::string_view line, symbols::Sources& sources) {
  constexpr std::string_view kModule = "' Modul ", kForm = "' Formular ", kWith = " mit ";
  if (!line.starts_with(kModule) && !line.starts_with(kForm)) return false;
  symbols::ModuleSource& module = sources.modules.emplace_back();
  if (line.starts_with(kModule)) {
    module.name = line.substr(kModule.size(), line.size() - kModule.size() - 1);
    return true;
  }
  const std::size_t with = line.find(kWith);
  module.name = line.substr(kForm.size(), with - kForm.size());
  module.kind = language::ModuleKind::kForm;
  module.controlsKnown = true;
  std::istringstream controls{std::string(line.substr(with + kWith.size()))};
  for (std::string control; controls >> control;) {
    if (control.ends_with(',')) control.pop_back();
    module.controls.push_back({control, "CommandButton"});
  }
  return true;
}

/// Without a line that says so there is but one module, a standard one of Excel.
symbols::ReferenceIndex Understand(const std::string& example) {
  symbols::Sources sources;
  sources.projects.emplace_back().name = "P";
  sources.projects.back().host = symbols::Host::kExcel;
  std::string_view rest = example;
  while (!rest.empty()) {
    const std::string_view line = rest.substr(0, std::min(rest.find('\n') + 1, rest.size()));
    rest.remove_prefix(line.size());
    if (TakeModule(line, sources) || TakeBinding(line, sources)) continue;
    if (sources.modules.empty()) sources.modules.emplace_back().name = "M";
    sources.modules.back().text += line;
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
