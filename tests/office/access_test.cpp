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

AccessWriter Database(bool old) {
  AccessWriter writer = AccessWith(Project(), old);
  writer.objects = {{70001, AccessWriter::kForm, u"Kunden"}, {70002, AccessWriter::kReport, u"Liste"}};
  return writer;
}

/// "name type lines" of each module, then the warnings; of a file that can't be read the reason.
std::string Shown(const std::string& bytes) {
  MemorySource source(bytes);
  const OfficeFile file = ReadOfficeFile(source);
  if (file.state != State::kRead) return std::to_string(static_cast<int>(file.state)) + " " + file.reason;
  std::string shown = file.project.name;
  for (const VbaModule& module : file.project.modules) {
    shown += " " + module.name + " " + std::to_string(module.type) + " " + std::to_string(module.lineCount);
  }
  for (const std::string& warning : file.project.warnings) shown += " " + warning;
  return shown;
}

TEST(AccessFile, ProjectsOfAllFormats) {
  const std::string all = "Lager Modul1 1 929 Form_Kunden 100 2 Report_Liste 100 1 Report_Fremd 2 1";
  for (const bool old : {false, true}) {
    EXPECT_EQ(Shown(Database(old).File()), all) << old;
    for (int i = 0; i < 16; ++i) {
      AccessWriter writer = Database(old);
      writer.moved = (i & 1) != 0;
      writer.noMaps = (i & 2) != 0;
      writer.longMaps = (i & 4) != 0;
      writer.pageKey = (i & 8) != 0 ? 0x5A17C3E9 : 0;
      EXPECT_EQ(Shown(writer.File()), all) << old << " " << i;
    }
  }
}

TEST(AccessFile, WhatCannotBeReadSaysWhy) {
  AccessWriter locked = Database(false);
  locked.password = true;
  EXPECT_EQ(Shown(locked.File()), "3 Datei ist mit einem Kennwort verschlüsselt");
  WrittenProject compiled = Project();
  for (WrittenModule& module : compiled.modules) module.text.clear();
  EXPECT_EQ(Shown(AccessWith(compiled, false).File()), "3 Datei ist kompiliert und enthält keinen Quelltext");
  AccessWriter empty;
  empty.objects = {{70001, AccessWriter::kForm, u"Kunden"}};
  EXPECT_EQ(Shown(empty.File()), "1 Datei enthält keine Makros");
  AccessWriter loops = Database(false);
  loops.loops = true;
  EXPECT_EQ(Shown(loops.File()),
            "Lager Modul1 1 374 Form_Kunden 100 2 Report_Liste 100 1 Report_Fremd 2 1 "
            "Modul Modul1: Quelltext ist beschädigt oder zu groß und wurde nur zum Teil gelesen");
}

/// Cut off anywhere, and with any of its bytes changed, a file gives what is left or a reason.
TEST(AccessFile, DamageIsNoTrap) {
  for (const bool old : {false, true}) {
    const std::string whole = Database(old).File();
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
