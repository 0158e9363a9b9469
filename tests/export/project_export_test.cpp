#include <filesystem>

#include <gtest/gtest.h>

#include <quillmate/export/html.h>
#include <quillmate/export/module_header.h>
#include <quillmate/export/plain_text.h>
#include <quillmate/export/project_export.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/settings/options.h>

#include "codedb/scratch.h"

namespace quillmate::output {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kFirst = "|\237x||\237f|Sub|n\237| A()|y\237|\r\n\t{}\r\n";
constexpr std::string_view kSecond = "|\237k|' \344|n\237|";

/// An index folder with two modules; it goes away with the test.
class ProjectExport : public testing::Test {
 protected:
  ProjectExport() {
    codedb::WriteModuleText(folder_, {1}, kFirst);
    codedb::WriteModuleText(folder_, {2}, kSecond);
  }

  files::ScratchFolder scratch_;
  const fs::path& folder_ = scratch_.Path();
  const std::vector<ModuleEntry> modules_ = {{1, "mdlA", "M2"}, {2, "Tabelle1", "M5"}};
};

std::string Collect(const auto& produce) {
  std::string all;
  produce([&](std::string_view bytes) { all += bytes; });
  return all;
}

TEST_F(ProjectExport, OneFrameAroundAllModules) {
  const std::string first = std::string(kFirst) + "\r\n";
  const std::string second = std::string(kSecond) + "\r\n";
  for (const bool headers : {false, true}) {
    std::string marked;
    if (headers) marked += HeaderBlock("mdlA", "M2");
    marked += first;
    if (headers) marked += HeaderBlock("Tabelle1", "M5");
    marked += second;
    const text::CodeLook look = settings::LookOf({});
    EXPECT_EQ(Collect([&](const Sink& sink) { ProjectRtf(folder_, modules_, headers, look, sink); }),
              RtfDocument(marked, look));
    EXPECT_EQ(Collect([&](const Sink& sink) { ProjectText(folder_, modules_, headers, sink); }), PlainText(marked));
  }
  EXPECT_EQ(Collect([&](const Sink& sink) { ModuleText(folder_, {2}, sink); }), "' \344\r\n");
}

TEST_F(ProjectExport, HtmlHasOnePiecePerModule) {
  const text::CodeLook look = settings::LookOf({});
  const std::string first = std::string(kFirst) + "\r\n";
  const std::string second = std::string(kSecond) + "\r\n";
  EXPECT_EQ(Collect([&](const Sink& sink) { ModuleHtml(folder_, {2}, look, sink); }), BuildHtml(second, look));
  EXPECT_EQ(Collect([&](const Sink& sink) { ProjectHtml(folder_, modules_, false, look, sink); }),
            BuildHtml(first, look) + BuildHtml(second, look));
  const std::string headed = Collect([&](const Sink& sink) { ProjectHtml(folder_, modules_, true, look, sink); });
  EXPECT_EQ(headed, BuildHtml(HeaderBlock("mdlA", "M2") + first, look) +
                        BuildHtml(HeaderBlockWithType("Tabelle1", "M5") + second, look));
  EXPECT_NE(headed.find("'  Modul&#58;  Tabelle1  M5\r\n"), std::string::npos);
  EXPECT_EQ(HtmlTypeLine("M3"), "Typ = Klassenmodul");
  EXPECT_EQ(HtmlTypeLine("M32"), "");
}

TEST_F(ProjectExport, FilesAreReplacedWholeOrNotAtAll) {
  const text::CodeLook look = settings::LookOf({});
  const fs::path target = folder_ / "projekt.RTF";
  ExportModuleRtf(folder_, {1}, look, target);
  const std::string module = RtfDocument(std::string(kFirst) + "\r\n", look);
  EXPECT_EQ(files::ReadWholeFile(target), module);
  EXPECT_THROW(ExportProjectRtf(folder_, {modules_[0], {{3}, "weg", "M2"}}, true, look, target), files::Failure);
  EXPECT_THROW(ExportModuleRtf(folder_, {1}, look, folder_ / "fehlt" / "a.RTF"), files::Failure);
  const std::string message = codedb::MessageOf([&] { ExportModuleRtf(folder_, {1}, look, folder_); });
  EXPECT_TRUE(message.ends_with("Das ist ein Ordner")) << message;
  EXPECT_EQ(files::ReadWholeFile(target), module);
  EXPECT_EQ(files::Names(folder_), "M1.txt M2.txt projekt.RTF");
}

TEST_F(ProjectExport, ModulesByNumber) {
  codedb::PrepareCodeDatabase(folder_, codedb::TemplateFile());
  codedb::CodeDatabase database;
  database.OpenCodeDatabase(folder_);
  for (const std::string_view values :
       {"'10' AS AX1, 'a' AS AX2, '32' AS AX3", "'9' AS AX1, '\304' AS AX2, '1' AS AX3"}) {
    database.ExecuteSql("INSERT INTO td_mod(mod_num,mod_name,mod_typ) SELECT " + std::string(values));
  }
  std::string found;
  for (const ModuleEntry& module : ReadModules(database)) {
    found += std::to_string(module.number.value) + module.name + module.imageKey + ";";
  }
  EXPECT_EQ(found, "9\304M1;10aM32;");
}

}  // namespace
}  // namespace quillmate::output
