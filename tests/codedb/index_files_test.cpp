#include <gtest/gtest.h>

#include <quillmate/codedb/codes.h>
#include <quillmate/codedb/index_files.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>

#include "places.h"
#include "scratch.h"

namespace quillmate::codedb {
namespace {

namespace fs = std::filesystem;

TEST(Codes, Keys) {
  EXPECT_EQ(ModuleImageKey(kOtherKind), "M32");
  EXPECT_EQ(RoutineKey({17}), "R17");
  EXPECT_EQ(RoutineImageKey(kDeclareFunction, kPublic), "R12O1");
}

TEST(PrepareCodeDatabase, EarlierFilesGo) {
  const ScratchFolder folder;
  const fs::path database = CodeDbPath(folder.Path());
  const fs::path readOnly = folder.Path() / "vorlage.mdb";
  const std::string empty = files::ReadWholeFile(TemplateFile());
  files::WriteWholeFile(readOnly, empty);
  for (const char* const rest : {"", "-journal", "-wal", "-shm"})
    files::WriteWholeFile(fs::path(database) += rest, "alt");
  for (const fs::path& file : {readOnly, database}) fs::permissions(file, fs::perms(0444));

  const PrepareResult result = PrepareCodeDatabase(folder.Path(), readOnly);
  EXPECT_TRUE(result.ok);
  EXPECT_EQ(result.message, "");
  EXPECT_EQ(files::ReadWholeFile(database), empty);
  EXPECT_EQ(fs::status(database).permissions() & fs::perms::owner_write, fs::perms::owner_write);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), {}), 2);
  fs::permissions(readOnly, fs::perms(0644));
}

TEST(PrepareCodeDatabase, FailuresLeaveTheEarlierFile) {
  const ScratchFolder folder;
  files::WriteWholeFile(CodeDbPath(folder.Path()), "alt");
  const fs::path missing = folder.Path() / "weg" / kTemplateFile;
  const PrepareResult noTemplate = PrepareCodeDatabase(folder.Path(), missing);
  EXPECT_FALSE(noTemplate.ok);
  EXPECT_EQ(noTemplate.message, "Die notwendige Datenbank\r\n" + files::PathText(missing) +
                                    "\r\nexistiert nicht !!!\r\nBitte kopieren Sie diese wieder an diese Stelle");
  EXPECT_EQ(files::ReadWholeFile(CodeDbPath(folder.Path())), "alt");

  for (const auto& [target, source] :
       {std::pair(folder.Path() / "weg", TemplateFile()), std::pair(folder.Path(), folder.Path())}) {
    const PrepareResult result = PrepareCodeDatabase(target, source);
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.message, "");
  }
}

TEST(PrepareCodeDatabase, InADeepFolder) {
  const ScratchFolder folder;
  fs::path deep = folder.Path();
  while (deep.native().size() < 300) deep /= "ein langer Name eines Ordners";
  fs::create_directories(deep);
  EXPECT_TRUE(PrepareCodeDatabase(deep, TemplateFile()).ok);
  CodeDatabase database;
  database.OpenCodeDatabase(deep);
  database.CloseCodeDatabase();
  // The standard library does not get down there on every system.
  std::error_code error;
  for (; deep != folder.Path(); deep = deep.parent_path()) {
    for (const files::FolderEntry& entry : files::FolderEntries(deep, error)) files::RemovePath(entry.path, error);
  }
}

TEST(Template, EveryBuildMakesTheSameSmallFile) {
  const ScratchFolder folder;
  const fs::path again = folder.Path() / kTemplateFile;
  files::WriteWholeFile(again, "alt");
  // A relative name, for which no shell needs to know umlauts.
  const fs::path tool = fs::absolute(tests::ProgramFolder()).parent_path() / "tools" / "make_template";
  const std::string command =
      '"' + files::PathText(fs::path(tool).make_preferred()) + "\" " + std::string(kTemplateFile);
  const fs::path before = fs::current_path();
  fs::current_path(folder.Path());
  const int status = std::system(command.c_str());
  fs::current_path(before);
  ASSERT_EQ(status, 0) << command;
  EXPECT_TRUE(files::ReadWholeFile(again) == files::ReadWholeFile(TemplateFile()));
  EXPECT_LE(fs::file_size(again), 20480U);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), {}), 1);
}

TEST(ModuleText, ExactlyOneLineBreakIsAdded) {
  const ScratchFolder folder;
  EXPECT_EQ(ModuleTextPath(folder.Path(), {12}).filename(), "M12.txt");
  std::string all;
  for (int i = 0; i < 3000; ++i) all += static_cast<char>(i % 256);
  for (const std::string& text :
       {std::string(), std::string("A\r\nB\r\n"), std::string("A"), all, std::string(200000, 'x')}) {
    WriteModuleText(folder.Path(), {12}, text);
    EXPECT_TRUE(ReadModuleText(folder.Path(), {12}) == text + "\r\n");
  }
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), {}), 1);
}

TEST(DeleteAllFiles, OnlyFilesOfTheScratchRoot) {
  const ScratchFolder folder;
  const fs::path root = folder.Path() / "TempDateien";
  const fs::path run = root / "T_1";
  const fs::path project = folder.Path() / "Projekt";
  fs::create_directories(run / "Unterordner");
  fs::create_directories(project);
  fs::create_directories(folder.Path() / "TempDateien alt");
  for (const fs::path& where : {run, run / "Unterordner", root, project, folder.Path() / "TempDateien alt"}) {
    files::WriteWholeFile(where / "Quillmate.mdb", "x");
  }
#ifndef _WIN32
  fs::create_symlink(project / "Quillmate.mdb", run / "M1.txt");
  fs::create_directory_symlink(project, run / "M2.txt");
  fs::create_symlink("nirgends", run / "M3.txt");
  fs::create_directory_symlink(project, root / "T_2");
#endif

  DeleteAllFiles(project);
  DeleteAllFiles(folder.Path() / "TempDateien alt");
  DeleteAllFiles(root / "T_2");
  DeleteAllFiles(root / "T_2" / "");
  DeleteAllFiles(root / ".." / "Projekt");
  DeleteAllFiles(root / "fehlt");
  DeleteAllFiles(run / "Quillmate.mdb");
  DeleteAllFiles({});
  EXPECT_TRUE(fs::exists(run / "Quillmate.mdb"));

  DeleteAllFiles(run / "");
  EXPECT_EQ(std::distance(fs::directory_iterator(run), {}), 1);
  for (const fs::path& left : {run / "Unterordner", root, project, folder.Path() / "TempDateien alt"}) {
    EXPECT_TRUE(fs::exists(left / "Quillmate.mdb")) << left;
  }
}

TEST(BrokenProject, FolderWithASeparator) {
  const std::string separator(1, static_cast<char>(fs::path::preferred_separator));
  for (const std::string& folder : {"/P" + separator, std::string("/P")}) {
    EXPECT_EQ(BrokenProject(folder).what(), "Projekt in /P" + separator + "\r\nist nicht mehr intakt");
  }
}

#ifndef _WIN32  // where files are on disks and links need rights
TEST(PrepareCodeDatabase, LinksAreNotFollowed) {
  const ScratchFolder folder;
  const fs::path foreign = folder.Path() / "fremd.txt";
  files::WriteWholeFile(foreign, "fremd");
  fs::create_symlink(foreign, CodeDbPath(folder.Path()));
  EXPECT_TRUE(PrepareCodeDatabase(folder.Path(), TemplateFile()).ok);
  EXPECT_EQ(files::ReadWholeFile(foreign), "fremd");
  EXPECT_EQ(files::ReadWholeFile(CodeDbPath(folder.Path())), files::ReadWholeFile(TemplateFile()));
}
#endif

}  // namespace
}  // namespace quillmate::codedb
