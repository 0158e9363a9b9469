#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <quillmate/office/vba_compression.h>
#include <quillmate/office/vba_project.h>

#include "office/vba_writer.h"

namespace quillmate::office {
namespace {

using namespace std::string_view_literals;
using Lines = std::vector<std::string>;

constexpr std::string_view kCode = "Sub A()\r\nEnd Sub\r\n";

/// "name type lines: code" of each module, then the warnings.
Lines Shown(const VbaProject& project) {
  Lines lines{project.name + (project.protection.Locked() ? " locked" : "")};
  for (const VbaModule& module : project.modules) {
    lines.push_back(module.name + " " + std::to_string(module.type) + " " + std::to_string(module.lineCount) + ": " +
                    module.code);
  }
  lines.insert(lines.end(), project.warnings.begin(), project.warnings.end());
  return lines;
}

Lines Read(const CompoundWriter& writer) {
  const std::string bytes = writer.File();
  MemorySource source(bytes);
  const std::optional<CompoundFile> file = CompoundFile::Open(source);
  const std::optional<CompoundId> storage = file.has_value() ? FindVbaProject(*file) : std::nullopt;
  return storage.has_value() ? Shown(ReadVbaProject(*file, *storage)) : Lines{"nothing"};
}

Lines Read(const WrittenProject& project, const std::string& storage = "") {
  CompoundWriter writer;
  project.AddTo(writer, storage);
  return Read(writer);
}

/// Replaces a stream that is there.
void Replace(CompoundWriter& writer, const std::string& path, const std::string& bytes) {
  for (auto& [name, content] : writer.streams) {
    if (name == path) content = bytes;
  }
}

TEST(VbaProject, KindsAndTheOrderOfTheEditor) {
  WrittenProject project;
  project.name = "Auftr\344ge";
  project.modules = {{"Module", "Helfer", StandardModule("Helfer", kCode)},
                     {"Document", "Tabelle1", DocumentModule("Tabelle1", "")},
                     {"BaseClass", "frmKunde", StandardModule("frmKunde", "a\r\n Attribute x.VB_x = 1\r\nb")},
                     {"Class", "\334bersicht", StandardModule("\334bersicht", "a\nb\rc\r\n\r\n")}};
  // dir and PROJECT differ in their order.
  WrittenProject other = project;
  std::swap(other.modules[0], other.modules[1]);
  CompoundWriter writer;
  project.AddTo(writer, "Macros/");
  Replace(writer, "Macros/PROJECT", other.ProjectStream());
  EXPECT_EQ(Read(writer), (Lines{"Auftr\xC3\xA4ge", "Tabelle1 100 0: ", "Helfer 1 2: Sub A()\r\nEnd Sub",
                                 "frmKunde 3 2: a\r\nb", "\303\234bersicht 2 4: a\r\nb\r\nc\r\n"}));
}

TEST(VbaProject, WhatProjectDoesNotNameComesLastByItsContent) {
  WrittenProject project;
  project.modules = {{"", "Mod", StandardModule("Mod", "1")},
                     {"Class", "Kl", StandardModule("Kl", "2")},
                     {"Document", "Dok", DocumentModule("Dok", "3")},
                     {"BaseClass", "Frm", StandardModule("Frm", "4")}};
  CompoundWriter writer;
  project.AddTo(writer, "");
  Replace(writer, "PROJECT", "Class=kl\r\nModule=Fehlt\r\nClass=KL\r\n[x]\r\nModule=Mod");
  EXPECT_EQ(Read(writer), (Lines{"VBAProject", "Kl 2 1: 2", "Fehlt 1 0: ", "Mod 1 1: 1", "Dok 100 1: 3", "Frm 3 1: 4",
                                 "Modul Fehlt: Quelltext fehlt"}));
}

TEST(VbaProject, CodePages) {
  const struct {
    int codePage;
    std::string name;
    std::string code;
    std::string shownName;
    std::string shownCode;
  } cases[] = {
      {1252, "\304\337", "' \200\344\201", "\xC3\x84\xC3\x9F", "' \200\344\201"},
      {1251, "\314\356\344", "' \317\360 \251 \271", "\xD0\x9C\xD0\xBE\xD0\xB4", "' ?? \251 ?"},
      {10000, "\200", "' \212\237", "\xC3\x84", "' \344\374"},
      {932, "\202\240", "' \202\240\\ \201", "\xE3\x81\x82", "' ?\\ ?"},
      {949, "\260\241", "' \241\300 \260\241 \377", "\xEA\xB0\x80", "' \367 ? ?"},
      {874, "\241", "' \200\225 \333", "\xE0\xB8\x81", "' \200\225 ?"},
      {65001, "\xC3\xA4", "' \xC3\xA4\xFF", "\xC3\xA4", "' \344?"},
      {4711, "\304", "' \344", "\xC3\x84", "' \344"},
      {0, "\304", "' \344", "\xC3\x84", "' \344"},
  };
  for (const auto& [codePage, name, code, shownName, shownCode] : cases) {
    WrittenProject project;
    project.codePage = codePage;
    project.modules = {{"Class", name, ""}};
    CompoundWriter writer;
    writer.Add("PROJECT", project.ProjectStream());
    writer.Add("VBA/dir", PackVba(project.Dir()));
    EXPECT_EQ(Read(writer)[1], shownName + " 2 0: ") << codePage;
    // Where dir has the Unicode names too, they count; PROJECT knows the others only.
    project.modules[0].unicodeName = u"Modul";
    Replace(writer, "VBA/dir", PackVba(project.Dir()));
    writer.Add("VBA/Modul", project.compiled + PackVba(StandardModule(name, code)));
    EXPECT_EQ(Read(writer)[1], "Modul 2 1: " + shownCode) << codePage;
  }
}

TEST(VbaProject, TextsAreSearchedFor) {
  WrittenProject project;
  project.modules = {{"Module", "Vorn", StandardModule("Vorn", kCode), {}, 0},
                     {"Module", "Mitten", StandardModule("Mitten", kCode), {}, 55},
                     {"Module", "Draussen", StandardModule("Draussen", kCode), {}, 4000000000},
                     {"Module", "Ohne", std::string(kCode)},
                     {"Module", "Nichts", std::string(kCode), {}, 3}};
  EXPECT_EQ(Read(project, "irgendwo/tief/"),
            (Lines{"VBAProject", "Vorn 1 2: Sub A()\r\nEnd Sub", "Mitten 1 2: Sub A()\r\nEnd Sub",
                   "Draussen 1 2: Sub A()\r\nEnd Sub", "Ohne 1 2: Sub A()\r\nEnd Sub",
                   "Nichts 1 0: ", "Modul Nichts: Quelltext kann nicht entpackt werden"}));
}

TEST(VbaProject, ReadsAsFarAsItGoes) {
  WrittenProject project;
  std::string code;
  for (int line = 1; line <= 2000; ++line) code += "Zeile " + std::to_string(line * line) + "\r\n";
  project.modules = {{"Module", "Lang", StandardModule("Lang", code)},
                     {"Class", "Kurz", StandardModule("Kurz", kCode)}};
  CompoundWriter good;
  project.AddTo(good, "");
  CompoundWriter writer = good;
  const std::string packed = writer.streams[3].second;
  Replace(writer, "VBA/Lang", packed.substr(0, packed.size() / 2));
  Lines lines = Read(writer);
  ASSERT_EQ(lines.size(), 4U);
  EXPECT_TRUE(lines[1].starts_with("Lang 1 ")) << lines[1];
  EXPECT_NE(lines[1].find("Zeile 4000"), std::string::npos);
  EXPECT_EQ(lines[3], "Modul Lang: Quelltext ist beschädigt oder zu groß und wurde nur zum Teil gelesen");

  // Without dir the names of PROJECT lead to the streams.
  const std::string dir = PackVba(project.Dir());
  for (const std::string& broken : {std::string("x"), dir.substr(0, dir.size() / 2)}) {
    writer = good;
    Replace(writer, "VBA/dir", broken);
    lines = Read(writer);
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_TRUE(lines[1].starts_with("Lang 1 2000: Zeile 1\r\n"));
    EXPECT_EQ(lines[2], "Kurz 2 2: Sub A()\r\nEnd Sub");
    EXPECT_EQ(lines[3], "Das Verzeichnis der Module (dir) ist beschädigt");
  }
}

TEST(VbaProject, LockedOnesStayShut) {
  WrittenProject project;
  project.modules = {{"Module", "M", StandardModule("M", kCode)}};
  project.locked = true;
  EXPECT_EQ(Read(project), (Lines{"VBAProject locked"}));

  const struct {
    const char* lines;
    bool locked;
  } cases[] = {
      {"CMG=\"0705D8E3D8EDDBF1DBF1DBF1DBF1\"\r\nDPB=\"0E0CD1ECDFF4E7F5E7F5E7\"\r\nGC=\"1517CAF1D6F9D7F9D706\"", false},
      {"", false},
      {"cmg=\"0705d8e3d8eddbf1dbf1dbf1dbf1\"", false},
      {"CMG=\"\"", true},
      {"CMG=\"0705D8E3\"", true},
      {"CMG=\"0705D8E3D8EDDBF1DBF1DBF1DBFx\"", true},
      {"CMG=\"0706D8E3D8EDDBF1DBF1DBF1DBF1\"", true},
      {"DPx=\"0E0CD1ECDFF4E7F5E7F5E7\"", false},
  };
  for (const auto& [lines, locked] : cases) EXPECT_EQ(ParseProjectText(lines).protection.Locked(), locked) << lines;
  for (unsigned bits = 0; bits < 8; ++bits) {
    for (const char seed : {'\0', '\2', '\4', '\6', '\377'}) {
      const VbaProtection protection =
          ParseProjectText("CMG=\"" + EncipherVbaData(Bytes<4>(bits), static_cast<unsigned char>(seed)) + "\"")
              .protection;
      EXPECT_EQ(protection.byUser + 2 * protection.byHost + 4 * protection.byEditor, static_cast<int>(bits));
      EXPECT_FALSE(protection.unclear);
    }
  }
  // A password alone asks nobody anything yet.
  const VbaProtection password =
      ParseProjectText("DPB=\"" + EncipherVbaData(std::string(29, 'h'), 1) + "\"").protection;
  EXPECT_TRUE(password.password);
  EXPECT_FALSE(password.Locked());
}

TEST(VbaProject, ReferencesAndConstants) {
  WrittenProject project;
  project.codePage = 1251;
  project.constants = "\317 = 1 : B = -1";
  project.references = {{"VBA", "*\\G{000204EF-0}#4.2#9#C:\\VBE7.DLL#Visual Basic For Applications"},
                        {"msforms", "*\\G{0D452EE1-0}#2.a#0#C:\\FM20.DLL#Forms"},
                        {"\317\360", "*\\CD:\\\317\\Mappe.v2.xlsm"},
                        {"kurz", "*\\G"}};
  CompoundWriter writer;
  project.AddTo(writer, "");
  const std::string bytes = writer.File();
  MemorySource source(bytes);
  const auto file = CompoundFile::Open(source);
  const VbaProject read = ReadVbaProject(*file, CompoundFile::kRoot);
  EXPECT_EQ(read.codePage, 1251);
  EXPECT_EQ(read.constants, "\320\237 = 1 : B = -1");
  std::string shown;
  for (const VbaReference& reference : read.references) {
    shown +=
        (reference.toProject ? "P " : "L ") + reference.name + "|" + reference.version + "|" + reference.path + "\n";
  }
  EXPECT_EQ(shown,
            "L stdole||\nL VBA|4.2|C:\\VBE7.DLL\nL msforms|2.10|C:\\FM20.DLL\n"
            "P \320\237\321\200||D:\\\320\237\\Mappe.v2.xlsm\nL kurz||\n");
  EXPECT_EQ(ParseLibid("*\\A..\\Werkzeug.vbp").name, "Werkzeug");
}

TEST(VbaProject, DirRecordsInAnyOrder) {
  const auto record = [](unsigned id, const std::string& data) { return Bytes<2>(id) + Bytes<4>(data.size()) + data; };
  const std::string bytes = record(0x31, Bytes<4>(9)) + record(0x47, Utf16Bytes(u"\u00C4x")) + record(0x1A, "s1") +
                            record(0x19, "?x") + record(0x21, "") + record(0x99, "unbekannt") + record(0x19, "zwei") +
                            record(0x2B, "") + record(0x2B, "") + record(0x03, Bytes<2>(1250)) + record(0x04, "P") +
                            record(0x47, Utf16Bytes(u"drei"));
  const DirStream dir = ParseDirStream(bytes);
  EXPECT_TRUE(dir.complete);
  EXPECT_EQ(dir.codePage, 1250);
  EXPECT_EQ(dir.projectName, "P");
  ASSERT_EQ(dir.modules.size(), 3U);
  EXPECT_EQ(dir.modules[0].name + dir.modules[0].unicodeName + dir.modules[0].streamName, "?x\xC3\x84xs1");
  EXPECT_EQ(dir.modules[0].textOffset, 9U);
  EXPECT_TRUE(dir.modules[0].procedural);
  EXPECT_EQ(dir.modules[1].name, "zwei");
  EXPECT_FALSE(dir.modules[1].procedural || dir.modules[1].textOffset.has_value());
  EXPECT_EQ(dir.modules[2].unicodeName, "drei");
  // A record longer than the stream ends it.
  EXPECT_FALSE(ParseDirStream(bytes + record(0x19, "x") + Bytes<2>(0x19) + Bytes<4>(0xFFFFFFFF) + "x").complete);
}

/// A small file must not take memory or time out of all proportion.
TEST(VbaProject, BoundsHold) {
  // All modules of a project in one stream that is read once: the others find nothing left.
  WrittenProject project;
  const std::string text = StandardModule("M", std::string(200000, 'x'));
  project.modules.assign(2000, {"Module", "", "", u"strom"});
  for (std::size_t i = 0; i < project.modules.size(); ++i) project.modules[i].name = "M" + std::to_string(i);
  CompoundWriter writer;
  writer.Add("PROJECT", "");
  writer.Add("VBA/dir", PackVba(project.Dir()));
  writer.Add("VBA/strom", project.compiled + StoreVba(text));
  const Lines lines = Read(writer);
  std::size_t read = 0;
  for (const std::string& line : lines) read += line.size() > 100000 ? 1 : 0;
  EXPECT_EQ(read, 1U);

  // More modules than an index holds.
  std::string names;
  for (int i = 0; i < 40000; ++i) names += "Module=M" + std::to_string(i) + "\r\n";
  CompoundWriter many;
  many.Add("PROJECT", names);
  many.Add("VBA/dir", PackVba(WrittenProject().Dir()));
  const Lines cut = Read(many);
  EXPECT_EQ(cut[1 + kMostVbaModules], "Mehr als 32767 Module: die übrigen wurden ausgelassen");
}

}  // namespace
}  // namespace quillmate::office
