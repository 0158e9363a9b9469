#include <algorithm>
#include <filesystem>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <quillmate/office/office_file.h>

#include "files/scratch.h"
#include "office/vba_writer.h"

#ifndef _WIN32
#include <unistd.h>
#endif

namespace quillmate::office {
namespace {

using namespace std::string_view_literals;
using State = OfficeFile::State;

WrittenProject SmallProject() {
  WrittenProject project;
  project.modules = {{"Document", "Tabelle1", DocumentModule("Tabelle1", "")},
                     {"Module", "Pr\374fung", StandardModule("Pr\374fung", "Sub A()\r\n  x = \"\374\"\r\nEnd Sub\r\n")},
                     {"BaseClass", "frm", StandardModule("frm", "Sub B()\r\nEnd Sub\r\n")}};
  return project;
}

OfficeFile Read(const std::string& bytes) {
  MemorySource source(bytes);
  return ReadOfficeFile(source);
}

/// "host: module lines, ..." of a file that could be read, else its state and the reason.
std::string Shown(const std::string& bytes) {
  const OfficeFile file = Read(bytes);
  if (file.state != State::kRead) return std::to_string(static_cast<int>(file.state)) + " " + file.ReasonText();
  std::string shown = std::to_string(static_cast<int>(file.host)) + ":";
  for (const VbaModule& module : file.project.modules) {
    shown += " " + module.name + " " + std::to_string(module.lineCount);
  }
  for (const std::string& warning : file.project.warnings) shown += " " + warning;
  return file.project.protection.Locked() ? shown + " locked" : shown;
}

std::string Compound(const std::string& storage, const std::vector<std::pair<std::string, std::string>>& others) {
  CompoundWriter writer;
  for (const auto& [path, bytes] : others) writer.Add(path, bytes);
  SmallProject().AddTo(writer, storage);
  return writer.File();
}

/// The records of a workbook up to the first sheet, with one of them in question.
std::string Workbook(unsigned record) {
  const auto one = [](unsigned id, std::size_t size) { return Bytes<2>(id) + Bytes<2>(size) + std::string(size, 'x'); };
  return one(0x0809, 16) + one(0x0086, 0) + one(record, 54) + one(0x0085, 12) + one(0x002F, 54);
}

std::string Document(unsigned flags) { return Bytes<2>(0xA5EC) + std::string(8, 'x') + Bytes<2>(flags); }

std::string Presentation(PresentationWriter writer) {
  writer.project = SmallProject().Bin();
  WrittenProject older;
  older.modules = {{"Module", "Alt", StandardModule("Alt", "1")}};
  writer.olderProject = older.Bin();
  return writer.File();
}

TEST(OfficeFile, KindsByContent) {
  const std::string types = "[Content_Types].xml";
  const std::string bin = SmallProject().Bin();
  const std::string modules = ": Tabelle1 0 Pr\303\274fung 3 frm 2";
  const std::string damaged = "3 Datei ist beschädigt: das Makroprojekt ist nicht lesbar";
  const std::string half = "3 Datei ist beschädigt: ein Teil ihres Verzeichnisses fehlt";
  // The FAT comes last: without it only the directory's first sector is found.
  const std::string oldWorkbook = Compound("_VBA_PROJECT_CUR/", {{"Workbook", Workbook(0x0042)}});
  const std::string manyStreams = CompoundWriter{{{"a", ""}, {"b", ""}, {"c", ""}, {"d", ""}}}.File();
  const std::string breaksOff = Bytes<4>(0x03E8000F) + Bytes<4>(5000) + "x";
  const struct {
    const char* what;
    std::string bytes;
    std::string shown;
  } cases[] = {
      {"workbook", ZipOf({{types, ""}, {"xl/vbaProject.bin", bin}}), "1" + modules},
      {"document, stored", ZipOf({{types, ""}, {"WORD/VBAPROJECT.BIN", bin, false}}), "2" + modules},
      {"presentation", ZipOf({{"ppt/vbaProject.bin", bin}}), "3" + modules},
      {"any folder", ZipOf({{types, ""}, {"a/b/vbaProject.bin", bin}}), "0" + modules},
      {"without macros", ZipOf({{types, ""}}), "1 Datei enthält keine Makros"},
      {"any zip", ZipOf({{"a.txt", ""}}), "2 Datei ist keine Office-Datei"},
      {"old workbook", Compound("_VBA_PROJECT_CUR/", {{"Workbook", Workbook(0x0042)}}), "1" + modules},
      {"old document", Compound("Macros/", {{"WordDocument", Document(0xFE00)}}), "2" + modules},
      {"bare project", bin, "0" + modules},
      {"old presentation", Presentation({}), "3" + modules},
      {"not packed", Presentation({.packed = false}), "3" + modules},
      {"way to the project broken", Presentation({.brokenEdits = true}), "3" + modules},
      {"macros removed", Presentation({.hasMacros = false}), "1 Datei enthält keine Makros"},
      {"compound file of anything", CompoundWriter{{{"a", "b"}}}.File(), "1 Datei enthält keine Makros"},
      {"encrypted zip in a compound file", CompoundWriter{{{"EncryptedPackage", "x"}}}.File(),
       "3 Datei ist mit einem Kennwort verschlüsselt"},
      {"encrypted workbook with its macros in the clear",
       Compound("_VBA_PROJECT_CUR/", {{"Workbook", Workbook(0x002F)}}), "1" + modules},
      {"encrypted workbook", CompoundWriter{{{"Workbook", Workbook(0x002F)}}}.File(),
       "3 Datei ist mit einem Kennwort verschlüsselt"},
      {"encrypted document", Compound("Macros/", {{"WordDocument", Document(0x0100)}}),
       "3 Datei ist mit einem Kennwort verschlüsselt"},
      {"encrypted presentation", Presentation({.encrypted = true}), "3 Datei ist mit einem Kennwort verschlüsselt"},
      {"encrypted zip", ZipOf({{.name = "xl/vbaProject.bin", .bytes = bin, .flags = 1}}),
       "3 Datei ist mit einem Kennwort verschlüsselt"},
      {"Access", std::string("\0\1\0\0Standard Jet DB\0"sv),
       "3 Datei ist beschädigt: das Verzeichnis der Datenbank ist nicht lesbar"},
      {"new Access", std::string("\0\1\0\0Standard ACE DB\0"sv),
       "3 Datei ist beschädigt: das Verzeichnis der Datenbank ist nicht lesbar"},
      {"empty", "", "3 Datei ist leer"},
      {"text", "Sub A()", "2 Datei ist keine Office-Datei"},
      {"zip cut off", ZipOf({{"xl/vbaProject.bin", bin}}).substr(0, 400),
       "3 Datei ist beschädigt: das Verzeichnis der Zip-Datei ist nicht lesbar"},
      {"compound file cut off", bin.substr(0, 600), "3 Datei ist beschädigt: ihr Verzeichnis ist nicht lesbar"},
      {"old workbook without its end", oldWorkbook.substr(0, oldWorkbook.size() - 512), half},
      {"anything without its end", manyStreams.substr(0, manyStreams.size() - 512), half},
      {"workbook of 95", CompoundWriter{{{"Book", Workbook(0x0042)}, {"_VBA_PROJECT/dir", "x"}}}.File(),
       "3 Makros im Format von Excel 5.0 und 95 lassen sich nicht lesen"},
      {"presentation that breaks off", CompoundWriter{{{"PowerPoint Document", breaksOff}}}.File(),
       "3 Datei ist beschädigt: die Präsentation ist nicht lesbar"},
      {"presentation of 95",
       CompoundWriter{{{"PowerPoint Document", breaksOff}, {"Current User", Bytes<4>(5) + "Meier"}}}.File(),
       "1 Datei enthält keine Makros"},
      {"project is none", ZipOf({{"xl/vbaProject.bin", "x"}}), damaged},
      {"project cut off", ZipOf({{"xl/vbaProject.bin", bin.substr(0, 700)}}), damaged},
      {"nothing in it", ZipOf({{"xl/vbaProject.bin", ""}}),
       "3 Datei ist beschädigt: das Makroprojekt lässt sich nicht entpacken"},
      {"project without modules", WrittenProject().Bin(), "1 Datei enthält keine Makros"},
      {"claims to be too large", ZipOf({{.name = "xl/vbaProject.bin", .bytes = bin, .claimedSize = 0x7FFFFFFF}}),
       "3 Makroprojekt ist zu groß (mehr als 128 MB)"},
      {"a zip bomb that claims to be small",
       ZipOf({{.name = "xl/vbaProject.bin", .bytes = std::string(kLargestVbaProject + 1, 'x'), .claimedSize = 100}}),
       "3 Makroprojekt ist zu groß (mehr als 128 MB)"},
  };
  for (const auto& [what, bytes, shown] : cases) EXPECT_EQ(Shown(bytes), shown) << what;
}

TEST(OfficeFile, DamagedProjectsAreReadAsFarAsTheyGo) {
  WrittenProject project = SmallProject();
  project.locked = true;
  EXPECT_EQ(Shown(project.Bin()), "0: locked");
  std::string zip = ZipOf({{"xl/vbaProject.bin", SmallProject().Bin(), false}});
  // A byte of the compiled code: only the checksum tells.
  zip[zip.find("cccc")] = 'd';
  EXPECT_EQ(Shown(zip),
            "1: Tabelle1 0 Pr\303\274fung 3 frm 2 Das Makroprojekt ist beschädigt und wurde nur zum Teil entpackt");

  // PROJECT goes on where the file does not, and what it still says decides.
  const auto withProjectStream = [](const std::string& text) {
    CompoundWriter writer;
    SmallProject().AddTo(writer, "");
    for (auto& [name, bytes] : writer.streams) {
      if (name == "PROJECT") bytes = text;
    }
    std::string file = writer.File();
    constexpr std::size_t kSizeAt = 120;
    file.replace(file.find(Utf16Bytes(u"PROJECT") + std::string(50, '\0')) + kSizeAt, 4, Bytes<4>(4000));
    return Shown(file);
  };
  const std::string text = SmallProject().ProjectStream();
  EXPECT_EQ(withProjectStream(text),
            "0: Tabelle1 0 Pr\303\274fung 3 frm 2 Die Beschreibung des Projekts (PROJECT) ist beschädigt");
  EXPECT_EQ(withProjectStream(text.substr(0, text.find("CMG=") + 8)),
            "3 Datei ist beschädigt: das Makroprojekt ist nicht lesbar");
}

TEST(OfficeFile, FilesThatCannotBeRead) {
  const files::ScratchFolder temp;
  const auto reason = [](const std::filesystem::path& file) { return ReadOfficeFile(file).ReasonText(); };
  EXPECT_EQ(reason(temp / "fehlt.xlsm"), "Datei existiert nicht");
  EXPECT_EQ(reason(temp.Path()), "Ist ein Ordner, keine Datei");
  const std::filesystem::path good = temp.Write("gut.xlsm", ZipOf({{"xl/vbaProject.bin", SmallProject().Bin()}}));
  EXPECT_EQ(ReadOfficeFile(good).state, State::kRead);
  EXPECT_TRUE(ReadOfficeFile(good).recognized);
  EXPECT_FALSE(ReadOfficeFile(temp.Write("a.xlsm", "Sub A()")).recognized);
#ifndef _WIN32
  std::filesystem::permissions(good, std::filesystem::perms::none);
  // Root may read everything.
  const uid_t user = geteuid();
  ASSERT_EQ(seteuid(user == 0 ? 65534 : user), 0);
  EXPECT_EQ(reason(good), "Kein Zugriff auf die Datei: die Rechte fehlen, oder ein anderes Programm hat sie gesperrt");
  ASSERT_EQ(seteuid(user), 0);
#endif
}

/// A small file must not burst into more text than anybody writes; code in a file that is large is read to its end.
TEST(OfficeFile, TextsAreBoundByTheFile) {
  const struct {
    std::uint64_t fileSize;
    std::size_t mostText;
  } bounds[] = {{0, 8U << 20U},          {131072, 8U << 20U},          {131073, (8U << 20U) + 64},
                {1U << 20U, 64U << 20U}, {2U << 20U, kLargestVbaText}, {~std::uint64_t{0}, kLargestVbaText}};
  for (const auto& [fileSize, mostText] : bounds) EXPECT_EQ(MostVbaText(fileSize), mostText) << fileSize;

  WrittenProject project;
  for (const char* const name : {"M1", "M2", "M3"}) {
    project.modules.push_back({"Module", name, StandardModule(name, std::string(5U << 20U, '\n'))});
  }
  const std::string document = ZipOf({{"word/vbaProject.bin", project.Bin(), true}});
  ASSERT_LT(document.size(), 131072U);
  const OfficeFile small = Read(document);
  ASSERT_EQ(small.project.modules.size(), 3U);
  EXPECT_EQ(small.project.modules[0].lineCount, 5 << 20);
  EXPECT_TRUE(small.project.modules[1].hasText);
  EXPECT_FALSE(small.project.modules[2].hasText);
  EXPECT_EQ(small.project.warnings,
            (std::vector<std::string>{
                "Modul M2: Quelltext ist beschädigt oder zu groß und wurde nur zum Teil gelesen",
                "Modul M3: Quelltext wurde ausgelassen, weil die Texte der Datei zusammen zu groß sind"}));
  std::string picture(1U << 20U, ' ');
  std::mt19937 random(3);
  for (char& byte : picture) byte = static_cast<char>(random());
  const OfficeFile large =
      Read(ZipOf({{"word/vbaProject.bin", project.Bin(), true}, {"word/media/bild.png", picture, false}}));
  EXPECT_EQ(large.project.warnings, std::vector<std::string>());
  EXPECT_EQ(large.project.modules[2].lineCount, 5 << 20);
}

/// A file that shrinks while it is read is not damaged, it can't be read.
TEST(OfficeFile, FileThatShrinks) {
  const files::ScratchFolder temp;
  const std::filesystem::path path = temp.Write("a.bin", std::string(5000, 'x'));
  FileSource source(path);
  EXPECT_EQ(ReadBytes(source, 4990, 100).size(), 10U);
  EXPECT_EQ(source.Problem(), Reason::kNone);
  std::filesystem::resize_file(path, 100);
  EXPECT_EQ(ReadBytes(source, 90, 100).size(), 10U);
  EXPECT_EQ(source.Problem(), Reason::kUnreadable);
}

/// Whatever happens to a file: it is read or it is not, in good time and in little memory.
TEST(OfficeFile, MutatedFiles) {
  constexpr int kRounds = 1500;
  WrittenProject project = SmallProject();
  project.modules.push_back({"Class", "Lang", StandardModule("Lang", std::string(9000, 'x') + "\r\n")});
  CompoundWriter long4;
  long4.version = 4;
  project.AddTo(long4, "Macros/");
  PresentationWriter presentation;
  presentation.project = project.Bin();
  const std::vector<std::string> seeds{
      ZipOf({{"[Content_Types].xml", "<x/>"}, {"xl/vbaProject.bin", project.Bin(), false}}),
      ZipOf({{"xl/vbaProject.bin", project.Bin()}}),
      project.Bin(),
      long4.File(),
      presentation.File(),
      Compound("_VBA_PROJECT_CUR/", {{"Workbook", Workbook(0x42)}})};
  std::mt19937 random(2024);
  const auto below = [&](std::size_t limit) { return static_cast<std::size_t>(random()) % limit; };
  std::size_t read = 0;
  for (const std::string& seed : seeds) {
    for (int round = 0; round < kRounds; ++round) {
      std::string bytes = seed;
      for (std::size_t change = below(5) + 1; change > 0; --change) {
        const std::string number = Bytes<4>(below(2) == 0 ? below(40) : random()).substr(0, below(4) + 1);
        const std::size_t at = below(bytes.size() - number.size());
        // Most changes keep their length, so that what is after stays in its place.
        bytes.replace(at, below(30) == 0 ? below(4) : number.size(), number);
      }
      if (below(20) == 0) bytes.resize(below(bytes.size()) + 1);
      const OfficeFile file = Read(bytes);
      std::size_t text = 0;
      for (const VbaModule& module : file.project.modules) text += module.code.size();
      ASSERT_LT(text, std::size_t{1} << 20U);
      ASSERT_EQ(file.reason == Reason::kNone, file.state == State::kRead);
      read += file.state == State::kRead ? 1 : 0;
    }
  }
  // Neither are all changes harmless, nor do all of them ruin the file.
  EXPECT_GT(read, seeds.size() * kRounds / 5);
  EXPECT_LT(read, seeds.size() * kRounds);
}

}  // namespace
}  // namespace quillmate::office
