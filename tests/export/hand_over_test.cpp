#include <string>

#include <gtest/gtest.h>
#include <zip.h>

#include <quillmate/export/cover_page.h>
#include <quillmate/export/zip_folder.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>

#include "codedb/scratch.h"

namespace quillmate::output {
namespace {

namespace fs = std::filesystem;

std::string Packed(const fs::path& file) {
  zip_t* zip = zip_open(files::PathText(file).c_str(), ZIP_RDONLY, nullptr);
  if (zip == nullptr) return "no zip";
  std::string text;
  for (zip_int64_t i = 0; i < zip_get_num_entries(zip, 0); ++i) {
    zip_stat_t stat;
    zip_stat_index(zip, static_cast<zip_uint64_t>(i), 0, &stat);
    std::string bytes(stat.size, '\0');
    zip_file_t* entry = zip_fopen_index(zip, static_cast<zip_uint64_t>(i), 0);
    zip_fread(entry, bytes.data(), bytes.size());
    zip_fclose(entry);
    text += std::string(stat.name) + "=" + bytes + "\n";
  }
  zip_discard(zip);
  return text;
}

TEST(ZipFolder, PacksEverythingOrLeavesTheTargetAlone) {
  const files::ScratchFolder scratch;
  const fs::path folder = scratch.Path() / "Mappe";
  fs::create_directories(folder / "Teil");
  files::WriteWholeFile(folder / "a.txt", "eins");
  files::WriteWholeFile(folder / "Teil" / files::PathFromText("Übersicht.html"), "zwei");
  const fs::path target = scratch.Path() / "Mappe.zip";
  files::WriteWholeFile(target, "alt");
  EXPECT_THROW(ZipFolder(folder, target, [](int) { throw std::runtime_error("genug"); }), std::runtime_error);
  EXPECT_EQ(files::ReadWholeFile(target), "alt");
  int last = -1;
  ZipFolder(folder, target, [&last](int percent) {
    EXPECT_GE(percent, last);
    last = percent;
  });
  EXPECT_EQ(last, 100);
  EXPECT_EQ(Packed(target), "Mappe/Teil/Übersicht.html=zwei\nMappe/a.txt=eins\n");
}

TEST(CoverPage, TellsWhatIsKnown) {
  symbols::Sources sources;
  sources.projects.emplace_back();
  symbols::ModuleSource module;
  module.name = "M";
  module.text = "Sub A()\nx = 1\n' nichts\nEnd Sub\n";
  sources.modules.push_back(module);
  const auto index = symbols::ReferenceIndex::Build(std::move(sources));
  const checks::Metrics metrics = checks::Measure(index);
  const std::vector<checks::Finding> findings = checks::RunChecks(index);
  ASSERT_FALSE(findings.empty());
  codedb::Facts facts;
  facts.projects.emplace_back();
  facts.projects[0].name = "Lager";
  facts.projects[0].file = "/gibt/es/<nicht>.xlsm";
  facts.projects[0].hash = "abc123";
  const files::ScratchFolder folder;
  files::WriteWholeFile(folder / "M.bas", "abc");
  facts.modules.resize(2);
  facts.modules[0].name = "Innen";
  facts.modules[1].name = "Außen";
  facts.modules[1].file = files::PathText(folder / "M.bas");
  facts.omissions.push_back({"x.xls", "", "", "verschlüsselt"});
  const std::string html = CoverHtml(
      {"A & B", "1.2.2026", &facts, index, metrics, findings, {{"Code.pdf", "Der Code"}}, {{"M.A", "eins\nzwei"}}});
  for (const char* part : {"<h1>A &amp; B</h1>", "<a href=\"Code.pdf\">Der Code</a>", "/gibt/es/&lt;nicht&gt;.xlsm",
                           "abc123", "verschlüsselt", "<td>Routinen</td><td class=\"n\">1</td>",
                           "<td>davon Kommentar</td><td class=\"n\">1</td>", "<td>eins<br>zwei</td>", "<td>Außen</td>",
                           "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"}) {
    EXPECT_NE(html.find(part), std::string::npos) << part;
  }
  EXPECT_EQ(html.find("Innen"), std::string::npos) << "it is no file of its own";
  const std::string unknown = CoverHtml({"A", "1.2.2026", nullptr, index, metrics, {}, {}, {}});
  EXPECT_NE(unknown.find("Woher der Code kommt, ist nicht bekannt"), std::string::npos);
  EXPECT_NE(unknown.find("Es gibt keine Befunde"), std::string::npos);
}

}  // namespace
}  // namespace quillmate::output
