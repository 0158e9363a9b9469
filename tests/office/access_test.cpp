#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <quillmate/office/component_type.h>
#include <quillmate/office/office_file.h>

#include "office/access_writer.h"

namespace quillmate::office {
namespace {

using State = OfficeFile::State;

WrittenProject Project() {
  WrittenProject project = LargeProject(1, 30000);
  project.name = "Lager";
  project.modules.push_back({"DocClass", "Form_Kunden", StandardModule("Form_Kunden", "Sub A()\r\nEnd Sub\r\n")});
  // Only the list of objects tells that this one belongs to a report.
  project.modules.push_back({"Class", "Report_Liste", StandardModule("Report_Liste", "x\r\n")});
  project.modules.push_back({"Class", "Report_Fremd", StandardModule("Report_Fremd", "y\r\n")});
  return project;
}

AccessWriter Database(AccessFormat format) {
  AccessWriter writer = AccessWith(Project(), format);
  writer.objects = {{70001, AccessWriter::kForm, u"Kunden"}, {70002, AccessWriter::kReport, u"Liste"}};
  return writer;
}

/// "name type lines" of each module, then the warnings; of a file that can't be read the reason.
std::string Shown(const std::string& bytes) {
  MemorySource source(bytes);
  const OfficeFile file = ReadOfficeFile(source);
  if (file.state != State::kRead) return std::to_string(static_cast<int>(file.state)) + " " + file.ReasonText();
  std::string shown = file.project.name;
  for (const VbaModule& module : file.project.modules) {
    shown += " " + module.name + " " + std::to_string(module.type) + " " + std::to_string(module.lineCount);
  }
  for (const std::string& warning : file.project.warnings) shown += " " + warning;
  return shown;
}

TEST(AccessFile, ProjectsOfAllFormats) {
  const std::string all = "Lager Modul1 1 929 Form_Kunden 100 2 Report_Liste 100 1 Report_Fremd 2 1";
  for (const AccessFormat format : kAccessFormats) {
    const auto name = static_cast<int>(format);
    EXPECT_EQ(Shown(Database(format).File()), all) << name;
    for (int i = 0; i < 16; ++i) {
      AccessWriter writer = Database(format);
      writer.moved = (i & 1) != 0;
      writer.noMaps = (i & 2) != 0;
      writer.longMaps = (i & 4) != 0;
      writer.pageKey = (i & 8) != 0 ? 0x5A17C3E9 : 0;
      EXPECT_EQ(Shown(writer.File()), all) << name << " " << i;
    }
  }
}

TEST(AccessFile, WhatCannotBeReadSaysWhy) {
  AccessWriter locked = Database(AccessFormat::k2003);
  locked.password = true;
  EXPECT_EQ(Shown(locked.File()), "3 Datei ist mit einem Kennwort verschlüsselt");
  WrittenProject compiled = Project();
  for (WrittenModule& module : compiled.modules) module.text.clear();
  EXPECT_EQ(Shown(AccessWith(compiled, AccessFormat::k2003).File()),
            "3 Datei ist kompiliert und enthält keinen Quelltext");
  AccessWriter empty;
  empty.objects = {{70001, AccessWriter::kForm, u"Kunden"}};
  EXPECT_EQ(Shown(empty.File()), "1 Datei enthält keine Makros");
  CompoundWriter noProject;
  noProject.Add("Forms/DirData", "f");
  AccessWriter without;
  without.format = AccessFormat::k2000;
  without.tables = {AccessTableOf(noProject, without.format)};
  EXPECT_EQ(Shown(without.File()), "1 Datei enthält keine Makros");
  AccessWriter loops = Database(AccessFormat::k2003);
  loops.loops = true;
  EXPECT_EQ(Shown(loops.File()),
            "Lager Modul1 1 374 Form_Kunden 100 2 Report_Liste 100 1 Report_Fremd 2 1 "
            "Modul Modul1: Quelltext ist beschädigt oder zu groß und wurde nur zum Teil gelesen");
}

std::string Utf16(std::u16string_view text) {
  std::string bytes;
  for (const char16_t unit : text) bytes += Bytes<2>(unit);
  return bytes;
}

std::string Folder(std::u16string_view name, unsigned number) {
  return Bytes<4>(0) + Bytes<1>(4) + Bytes<1>(name.size() * 2 + 4) + Utf16(name) + Bytes<4>(number);
}

std::string Controls(const std::vector<std::pair<unsigned, std::string>>& controls) {
  std::string bytes = Bytes<4>(0xACCDEAF7) + Bytes<8>(150) + Bytes<4>(controls.size()) + std::string(16, 'g');
  for (const auto& [type, name] : controls)
    bytes += Bytes<8>(type) + name + std::string(1, '\0') + std::string(1, '\0');
  return bytes;
}

std::string Text(unsigned property, std::u16string_view value) {
  return Bytes<4>(0xDC) + Bytes<2>(property) + Bytes<4>(12) + Bytes<4>(4) + Bytes<4>(value.size() * 2) + Utf16(value);
}

std::string Begin(unsigned type) { return Bytes<4>(0xFD) + Bytes<2>(type); }

/// Controls as "module.name type caption", bindings as "module target: place", then what is not readable.
std::vector<std::string> Facts(const AccessWriter& writer) {
  const std::string bytes = writer.File();
  MemorySource source(bytes);
  const OfficeFile file = ReadOfficeFile(source, {.facts = true});
  std::vector<std::string> lines;
  for (const Control& control : file.facts.controls) {
    lines.push_back(control.module + "." + control.name + " " + control.type + " " + control.caption);
  }
  for (const Binding& binding : file.facts.bindings) {
    lines.push_back(binding.module + " " + binding.target + ": " + binding.place);
  }
  lines.insert(lines.end(), file.facts.notices.begin(), file.facts.notices.end());
  return lines;
}

TEST(AccessFile, FormsMacrosAndRibbons) {
  WrittenProject project;
  project.modules = {
      {"Module", "Modul1", StandardModule("Modul1", "Function Rechne(x)\r\nEnd Function\r\n")},
      {"DocClass", "Form_Kunden", StandardModule("Form_Kunden", "Private Function Hier()\r\nEnd Function\r\n")}};
  const std::string blob = std::string(10, 'k') + Text(17, u"Unsere Kunden") + Begin(152) + Text(20, u"Detail") +
                           Begin(104) + Text(20, u"Los geht's") + Text(22, u"Los_geht_s") + Text(17, u"Los") +
                           Text(126, u"=Hier()") + Bytes<4>(0xFF) + Bytes<4>(109) + Text(20, u"Summe") +
                           Text(27, u"=Rechne([Ort])+Summe([x])") + Text(126, u"[Event Procedure]") + Bytes<4>(0xFD);
  const std::string typeInfo = Controls({{152, "Detail"}, {104, "Los_geht_s"}, {109, "Summe"}, {255, "Ort"}});
  const auto database = [&](const std::string& form, AccessFormat format) {
    AccessWriter writer;
    writer.format = format;
    CompoundWriter streams;
    project.AddTo(streams, "VBA/VBAProject/");
    streams.Add("Forms/\3DirData", Folder(u"Kunden", 10));
    streams.Add("Forms/10/TypeInfo", typeInfo);
    streams.Add("Forms/10/Blob", form);
    streams.Add("Scripts/DirData", Folder(u"Nachts", 0));
    streams.Add("Scripts/0/Blob", Utf16(u"0 RunCode Rechne(2) Fremd(1)"));
    writer.tables = {AccessTableOf(streams, format),
                     {"USysRibbons",
                      {{"RibbonXML", 12}},
                      {{AccessCell(u"<customUI><button label='B' onAction='Klick'/></customUI>")}}}};
    return Facts(writer);
  };
  const std::vector<std::string> controls{"Form_Kunden.Detail Section ", "Form_Kunden.Los_geht_s CommandButton Los",
                                          "Form_Kunden.Summe TextBox "};
  const std::vector<std::string> rest{" Rechne: Makro 'Nachts'"};
  const std::string ribbon = " Klick: Schaltfläche 'B' im Menüband";
  std::vector<std::string> all{ribbon, "Form_Kunden Hier: Ereignis Click von Los geht's in Formular Kunden",
                               "Form_Kunden Rechne: Eigenschaft von Summe in Formular Kunden"};
  all.insert(all.begin(), controls.begin(), controls.end());
  all.insert(all.end(), rest.begin(), rest.end());
  for (const AccessFormat format : kAccessFormats) EXPECT_EQ(database(blob, format), all);
  // One byte too many, and nothing of it is believed.
  EXPECT_EQ(database(blob + "x", AccessFormat::k2003),
            (std::vector<std::string>{"Form_Kunden.Detail Section ", "Form_Kunden.Los_geht_s CommandButton ",
                                      "Form_Kunden.Summe TextBox ", ribbon, rest[0],
                                      "Formular Form_Kunden: Steuerelemente unbekannt"}));
}

/// Cut off anywhere, and with any of its bytes changed, a file gives what is left or a reason.
TEST(AccessFile, DamageIsNoTrap) {
  for (const AccessFormat format : kAccessFormats) {
    const std::string whole = Database(format).File();
    for (std::size_t size = 0; size < whole.size(); size += 1777) EXPECT_FALSE(Shown(whole.substr(0, size)).empty());
    std::mt19937 random(7);
    for (int round = 0; round < 300; ++round) {
      std::string damaged = whole;
      for (int i = 0; i < 20; ++i) damaged[random() % damaged.size()] = static_cast<char>(random());
      EXPECT_FALSE(Shown(damaged).empty());
    }
  }
}

}  // namespace
}  // namespace quillmate::office
