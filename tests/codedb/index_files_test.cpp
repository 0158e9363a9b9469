#include <gtest/gtest.h>

#include <quillmate/codedb/codes.h>
#include <quillmate/codedb/index_files.h>

#include "places.h"
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

TEST(PrepareCodeDatabase, EarlierFilesGo) {
  const ScratchFolder folder;
  const fs::path database = DatabasePath(folder.Path());
  const fs::path readOnly = folder.Path() / "vorlage.mdb";
  const std::string empty = ReadWholeFile(TemplateFile());
  WriteWholeFile(readOnly, empty);
  for (const char* const rest : {"", "-journal", "-wal", "-shm"}) WriteWholeFile(fs::path(database) += rest, "alt");
  for (const fs::path& file : {readOnly, database}) fs::permissions(file, fs::perms(0444));

  const PrepareResult result = PrepareCodeDatabase(folder.Path(), readOnly);
  EXPECT_TRUE(result.ok);
  EXPECT_EQ(result.message, "");
  EXPECT_EQ(ReadWholeFile(database), empty);
  EXPECT_EQ(fs::status(database).permissions() & fs::perms::owner_write, fs::perms::owner_write);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), {}), 2);
  fs::permissions(readOnly, fs::perms(0644));
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
  // A relative name, for which no shell needs to know umlauts.
  const fs::path tool = tests::ProgramFolder().parent_path() / "tools" / "make_template";
  const std::string command = '"' + PathText(fs::path(tool).make_preferred()) + "\" " + std::string(kTemplateFile);
  const fs::path before = fs::current_path();
  fs::current_path(folder.Path());
  const int status = std::system(command.c_str());
  fs::current_path(before);
  ASSERT_EQ(status, 0) << command;
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
  const struct {
    fs::path file;
    const char* reason;
  } cases[] = {{missing, "existiert nicht"}, {folder.Path(), "einen Ordner"}};
  for (const auto& c : cases) {
    const std::string message = MessageOf<std::runtime_error>([&] { WriteWholeFile(c.file, "x"); });
    EXPECT_NE(message.find(PathText(c.file)), std::string::npos) << message;
    EXPECT_NE(message.find(c.reason), std::string::npos) << message;
  }
  for (const fs::path& file : {missing, folder.Path()}) {
    const std::string message = MessageOf<std::runtime_error>([&] { ReadWholeFile(file); });
    EXPECT_NE(message.find(PathText(file)), std::string::npos) << message;
  }
}

TEST(WholeFile, SizesAroundTheBuffer) {
  const ScratchFolder folder;
  const fs::path file = folder.Path() / "Datei";
  for (const std::size_t size : {0U, 1U, 4095U, 4096U, 4097U, 8191U, 8192U, 100000U}) {
    WriteWholeFile(file, std::string(size, 'x'));
    EXPECT_EQ(ReadWholeFile(file).size(), size);
  }
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
#ifndef _WIN32
  fs::create_symlink(project / "Quillmate.mdb", run / "M1.txt");
  fs::create_directory_symlink(project, run / "M2.txt");
  fs::create_symlink("nirgends", run / "M3.txt");
  fs::create_directory_symlink(project, root / "T_2");
#endif

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

TEST(BrokenProject, FolderWithASeparator) {
  const std::string separator(1, static_cast<char>(fs::path::preferred_separator));
  for (const std::string& folder : {"/P" + separator, std::string("/P")}) {
    EXPECT_EQ(BrokenProjectMessage(folder), "Projekt in /P" + separator + "\r\nist nicht mehr intakt");
  }
}

#ifndef _WIN32  // where files are on disks and links need rights
TEST(PrepareCodeDatabase, LinksAreNotFollowed) {
  const ScratchFolder folder;
  const fs::path foreign = folder.Path() / "fremd.txt";
  WriteWholeFile(foreign, "fremd");
  fs::create_symlink(foreign, DatabasePath(folder.Path()));
  EXPECT_TRUE(PrepareCodeDatabase(folder.Path(), TemplateFile()).ok);
  EXPECT_EQ(ReadWholeFile(foreign), "fremd");
  EXPECT_EQ(ReadWholeFile(DatabasePath(folder.Path())), ReadWholeFile(TemplateFile()));
}

TEST(WholeFile, FullDisk) {
  const ScratchFolder folder;
  const fs::path full = folder.Path() / "voll.txt";
  fs::create_symlink("/dev/full", full);
  for (const std::size_t size : {1U, 1U << 20U}) {
    const std::string message = MessageOf<std::runtime_error>([&] { WriteWholeFile(full, std::string(size, 'x')); });
    EXPECT_NE(message.find("kein Platz mehr"), std::string::npos) << message;
  }
  EXPECT_TRUE(fs::exists("/dev/full"));
}

TEST(WholeFile, FilesWithoutASize) { EXPECT_GT(ReadWholeFile("/proc/self/status").size(), 100U); }
#endif

}  // namespace
}  // namespace quillmate::codedb
