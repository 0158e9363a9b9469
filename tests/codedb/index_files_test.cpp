#include <gtest/gtest.h>
#include <sys/stat.h>

#include <quillmate/codedb/codes.h>
#include <quillmate/codedb/index_files.h>

#include "scratch.h"

namespace quillmate::codedb {
namespace {

namespace fs = std::filesystem;

TEST(Codes, Keys) {
  EXPECT_EQ(ModuleKey(kOtherKind), "M32");
  EXPECT_EQ(RoutineKey(17), "R17");
  EXPECT_EQ(RoutineImageKey(kDeclareFunction, kPublic), "R12O1");
  const struct {
    const char* key;
    int number;
  } cases[] = {{"M1", 1}, {"R40000", 40000}, {"", 0}, {"M", 0}, {"Mx", 0}, {"M2x", 2}, {"M99999999999", 0}};
  for (const auto& c : cases) EXPECT_EQ(KeyNumber(c.key), c.number) << c.key;
}

TEST(PrepareCodeDatabase, EarlierFilesGoLinksAreNotFollowed) {
  const ScratchFolder folder;
  const fs::path database = DatabasePath(folder.Path());
  const fs::path foreign = folder.Path() / "fremd.txt";
  const fs::path readOnly = folder.Path() / "vorlage.mdb";
  const std::string empty = ReadWholeFile(TemplateFile());
  WriteWholeFile(foreign, "fremd");
  WriteWholeFile(readOnly, empty);
  fs::permissions(readOnly, fs::perms(0444));
  fs::create_symlink(foreign, database);
  for (const char* const rest : {"-journal", "-wal", "-shm"}) WriteWholeFile(fs::path(database) += rest, "alt");

  const PrepareResult result = PrepareCodeDatabase(folder.Path(), readOnly);
  EXPECT_TRUE(result.ok);
  EXPECT_EQ(result.message, "");
  EXPECT_EQ(ReadWholeFile(foreign), "fremd");
  EXPECT_EQ(ReadWholeFile(database), empty);
  EXPECT_EQ(fs::status(database).permissions() & fs::perms::owner_write, fs::perms::owner_write);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), {}), 3);
}

TEST(PrepareCodeDatabase, FailuresLeaveTheEarlierFile) {
  const ScratchFolder folder;
  WriteWholeFile(DatabasePath(folder.Path()), "alt");
  const fs::path missing = folder.Path() / "weg" / kTemplateFile;
  const PrepareResult noTemplate = PrepareCodeDatabase(folder.Path(), missing);
  EXPECT_FALSE(noTemplate.ok);
  EXPECT_EQ(noTemplate.message, "Die notwendige Datenbank\r\n" + PathText(missing) +
                                    "\r\nexistiert nicht !!!\r\nBitte kopieren Sie diese wieder an diese Stelle");
  EXPECT_EQ(ReadWholeFile(DatabasePath(folder.Path())), "alt");

  for (const auto& [target, source] :
       {std::pair(folder.Path() / "weg", TemplateFile()), std::pair(folder.Path(), folder.Path())}) {
    const PrepareResult result = PrepareCodeDatabase(target, source);
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.message, "");
  }
}

TEST(Template, EveryBuildMakesTheSameSmallFile) {
  const ScratchFolder folder;
  const fs::path again = folder.Path() / kTemplateFile;
  WriteWholeFile(again, "alt");
  const fs::path tool = fs::path(QUILLMATE_BIN_DIR).parent_path() / "tools" / "make_template";
  ASSERT_EQ(std::system(("'" + PathText(tool) + "' '" + PathText(again) + "'").c_str()), 0);
  EXPECT_TRUE(ReadWholeFile(again) == ReadWholeFile(TemplateFile()));
  EXPECT_LE(fs::file_size(again), 20480U);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), {}), 1);
}

TEST(ModuleText, ExactlyOneLineBreakIsAdded) {
  const ScratchFolder folder;
  EXPECT_EQ(ModuleTextPath(folder.Path(), 12).filename(), "M12.txt");
  std::string all;
  for (int i = 0; i < 3000; ++i) all += static_cast<char>(i % 256);
  for (const std::string& text :
       {std::string(), std::string("A\r\nB\r\n"), std::string("A"), all, std::string(200000, 'x')}) {
    WriteModuleText(folder.Path(), 12, text);
    EXPECT_TRUE(ReadModuleText(folder.Path(), 12) == text + "\r\n");
  }
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), {}), 1);
}

TEST(WholeFile, FailuresNameFileAndReason) {
  const ScratchFolder folder;
  const fs::path missing = folder.Path() / "weg" / "Datei.txt";
  const fs::path full = folder.Path() / "voll.txt";
  fs::create_symlink("/dev/full", full);
  const struct {
    fs::path file;
    std::size_t size;
    const char* reason;
  } cases[] = {{missing, 1, "existiert nicht"},
               {folder.Path(), 1, "einen Ordner"},
               {full, 1, "kein Platz mehr"},
               {full, 1 << 20, "kein Platz mehr"}};
  for (const auto& c : cases) {
    const std::string message =
        MessageOf<std::runtime_error>([&] { WriteWholeFile(c.file, std::string(c.size, 'x')); });
    EXPECT_NE(message.find(PathText(c.file)), std::string::npos) << message;
    EXPECT_NE(message.find(c.reason), std::string::npos) << message;
  }
  EXPECT_TRUE(fs::exists("/dev/full"));
  for (const fs::path& file : {missing, folder.Path()}) {
    const std::string message = MessageOf<std::runtime_error>([&] { ReadWholeFile(file); });
    EXPECT_NE(message.find(PathText(file)), std::string::npos) << message;
  }
}

TEST(WholeFile, SizesAroundTheBufferAndPipes) {
  const ScratchFolder folder;
  const fs::path file = folder.Path() / "Datei";
  for (const std::size_t size : {0U, 1U, 4095U, 4096U, 4097U, 8191U, 8192U, 100000U}) {
    WriteWholeFile(file, std::string(size, 'x'));
    EXPECT_EQ(ReadWholeFile(file).size(), size);
  }
  EXPECT_GT(ReadWholeFile("/proc/self/status").size(), 100U);
}

TEST(DeleteScratchFiles, OnlyFilesOfTheScratchRoot) {
  const ScratchFolder folder;
  const fs::path root = folder.Path() / "TempDateien";
  const fs::path run = root / "T_1";
  const fs::path project = folder.Path() / "Projekt";
  fs::create_directories(run / "Unterordner");
  fs::create_directories(project);
  fs::create_directories(folder.Path() / "TempDateien alt");
  for (const fs::path& where : {run, run / "Unterordner", root, project, folder.Path() / "TempDateien alt"}) {
    WriteWholeFile(where / "Quillmate.mdb", "x");
  }
  fs::create_symlink(project / "Quillmate.mdb", run / "M1.txt");
  fs::create_directory_symlink(project, run / "M2.txt");
  fs::create_symlink("nirgends", run / "M3.txt");
  fs::create_directory_symlink(project, root / "T_2");

  DeleteScratchFiles(project);
  DeleteScratchFiles(folder.Path() / "TempDateien alt");
  DeleteScratchFiles(root / "T_2");
  DeleteScratchFiles(root / "T_2" / "");
  DeleteScratchFiles(root / ".." / "Projekt");
  DeleteScratchFiles(root / "fehlt");
  DeleteScratchFiles(run / "Quillmate.mdb");
  DeleteScratchFiles({});
  EXPECT_TRUE(fs::exists(run / "Quillmate.mdb"));

  DeleteScratchFiles(run / "");
  EXPECT_EQ(std::distance(fs::directory_iterator(run), {}), 1);
  for (const fs::path& left : {run / "Unterordner", root, project, folder.Path() / "TempDateien alt"}) {
    EXPECT_TRUE(fs::exists(left / "Quillmate.mdb")) << left;
  }
}

TEST(Paths, TextAndMessages) {
  EXPECT_EQ(PathText(PathFromText("Über/ß €")), "Über/ß €");
  EXPECT_EQ(BrokenProjectMessage("/tmp/TempDateien/T_5/"), "Projekt in /tmp/TempDateien/T_5/\r\nist nicht mehr intakt");
  EXPECT_EQ(BrokenProjectMessage("/tmp/P"), "Projekt in /tmp/P/\r\nist nicht mehr intakt");
}

}  // namespace
}  // namespace quillmate::codedb
