#include <chrono>

#include <gtest/gtest.h>

#ifndef _WIN32
#include <sys/stat.h>
#include <unistd.h>
#endif

#include <quillmate/files/failure.h>
#include <quillmate/files/identity.h>
#include <quillmate/files/replacement.h>
#include <quillmate/files/stamp.h>
#include <quillmate/files/work_folder.h>
#include <quillmate/text/operations.h>

#include "scratch.h"

namespace quillmate::files {
namespace {

namespace fs = std::filesystem;
using Files = std::map<std::string, std::string>;

void Fill(const fs::path& folder, const Files& files) {
  fs::create_directories(folder);
  for (const auto& [name, bytes] : files) WriteWholeFile(folder / PathFromText(name), bytes);
}

void Replace(const fs::path& target, const Files& files, const std::vector<fs::path>& own) {
  FolderReplacement folder(target);
  Fill(folder.Path(), files);
  folder.Commit(own);
}

TEST(FolderReplacement, OwnFilesAndNoOthers) {
  const ScratchFolder folder;
  const fs::path target = folder / "Projekt";
  Replace(target, {{"a", "1"}, {"b", "1"}}, {});
  EXPECT_EQ(FilesIn(target), (Files{{"a", "1"}, {"b", "1"}}));
  Fill(target, {{"fremd", "f"}});
  Fill(target / "c", {{"x", "f"}});
  const auto before = IdentityOf(target);
  Replace(target, {{"a", "2"}, {"d", "2"}}, {"a", "b", "c", "fehlt"});
  EXPECT_EQ(FilesIn(target), (Files{{"a", "2"}, {"d", "2"}, {"fremd", "f"}}));
  EXPECT_EQ(Names(target / "c"), "x") << "a folder is never the program's";
  EXPECT_EQ(IdentityOf(target), before);
  for (const char* const taken : {"fremd", "c"}) {
    try {
      Replace(target, {{"a", "3"}, {taken, "3"}}, {"a", "d", "c"});
      ADD_FAILURE() << taken;
    } catch (const Failure& error) {
      EXPECT_EQ(error.Code(), std::errc::file_exists);
      EXPECT_EQ(error.Path().filename(), taken);
    }
  }
  EXPECT_EQ(FilesIn(target), (Files{{"a", "2"}, {"d", "2"}, {"fremd", "f"}}));
  EXPECT_EQ(Names(target), "a c d fremd");
  EXPECT_EQ(Names(folder.Path()), "Projekt");
}

TEST(FolderReplacement, FoldersComeInANewFolderOnly) {
  const ScratchFolder folder;
  const fs::path target = folder / "neu";
  for (const bool isNew : {true, false}) {
    FolderReplacement made(target);
    Fill(made.Path() / "tief" / "tiefer", {{"a", "1"}, {"b", "2"}});
    Fill(made.Path(), {{"oben", "3"}});
    if (isNew) {
      made.Commit();
    } else {
      EXPECT_THROW(made.Commit({"oben", "tief"}), Failure);
    }
  }
  EXPECT_EQ(FilesIn(target / "tief" / "tiefer"), (Files{{"a", "1"}, {"b", "2"}}));
  EXPECT_EQ(Names(target), "oben tief");
}

TEST(FolderReplacement, TheCurrentFolderStaysTheCurrentOne) {
  const ScratchFolder folder;
  const fs::path target = folder / "hier";
  Fill(target, {{"a", "1"}});
  const fs::path before = fs::current_path();
  fs::current_path(target);
  Replace(".", {{"a", "2"}}, {"a"});
  EXPECT_EQ(ReadWholeFile("a"), "2");
  EXPECT_EQ(IdentityOf("."), IdentityOf(target));
  fs::current_path(before);
}

TEST(FileReplacement, WithoutCommitNothingHappens) {
  const ScratchFolder folder;
  const fs::path file = folder.Write("alt", "bleibt");
  for (const fs::path& target : {file, folder / "neu"}) {
    FileReplacement replacement(target);
    replacement.Write(std::string(100000, 'x'));
  }
  EXPECT_EQ(FilesIn(folder.Path()), (Files{{"alt", "bleibt"}}));
  EXPECT_EQ(Names(folder.Path()), "alt");
  EXPECT_THROW(ReplaceFile(folder.Path(), "x"), Failure);
  EXPECT_THROW(ReplaceFile(folder / "fehlt/x", "x"), Failure);
  ReplaceFile(file, "neu");
  EXPECT_EQ(ReadWholeFile(file), "neu");
}

/// A run that was killed after some steps of an exchange: "a" is replaced, "b" goes, "c" comes.
TEST(MendFolder, GoesOnFromEveryStep) {
  constexpr const char* kWork = ".Quillmate-TempDateien-abc";
  const std::string record = "Quillmate 1\nalt a\nalt b\nneu a\nneu c\nende\n";
  const Files before{{"a", "1"}, {"b", "1"}};
  const Files after{{"a", "2"}, {"c", "2"}};
  struct Step {
    const char* from;
    const char* to;
  };
  const std::vector<Step> steps{{"a", "alt/a"}, {"neu/a", "a"}, {"b", "alt/b"}, {"neu/c", "c"}};
  for (const bool back : {false, true}) {
    for (std::size_t taken = 0; taken <= steps.size(); ++taken) {
      const ScratchFolder folder;
      const fs::path work = folder / kWork;
      const auto path = [&](const std::string& name) {
        return name.size() == 1 ? folder / name : work / PathFromText(name);
      };
      Fill(folder.Path(), before);
      Fill(work / "alt", {});
      Fill(work / "neu", after);
      Fill(work, {{back ? "zurueck" : "plan", record}, {"lock", ""}});
      for (std::size_t i = 0; i < taken; ++i) RenamePath(path(steps[i].from), path(steps[i].to));
      MendFolder(folder.Path());
      EXPECT_EQ(FilesIn(folder.Path()), back ? before : after) << taken;
      EXPECT_FALSE(fs::exists(work));
    }
  }
}

TEST(MendFolder, RecordsLeadNowhereElse) {
  for (const std::string line : {"alt ../a", "alt ..", "alt x/a", "alt ", "alt .", "datei NUMBER FILE"}) {
    const ScratchFolder folder("ordner");
    const fs::path foreign = folder.Path().parent_path() / "a";
    Fill(foreign.parent_path(), {{"a", "fremd"}});
    const auto number = IdentityOf(foreign)->number;
    std::string record = text::ReplaceAll(line, "FILE", PathText(foreign));
    record = text::ReplaceAll(record, "NUMBER", std::to_string(number[0]) + "-" + std::to_string(number[1]));
    const fs::path work = folder / ".Quillmate-TempDateien-abc";
    Fill(work, {{"plan", "Quillmate 1\n" + record + "\nende\n"}, {"neu", "1"}});
    MendFolder(folder.Path());
    EXPECT_EQ(ReadWholeFile(foreign), "fremd") << line;
    EXPECT_TRUE(fs::exists(work)) << line;
  }
}

TEST(WorkFolder, OnlyThoseOfTheDeadAreRemoved) {
  const ScratchFolder folder;
  const WorkFolder living(folder.Path());
  Fill(living.Path(), {{"x", "1"}});
  Fill(folder / ".Quillmate-TempDateien-tot" / "unter", {{"x", "1"}});
  Fill(folder / ".Quillmate-TempDateien-leer", {});
  Fill(folder / ".Quillmate-anders", {{"x", "1"}});
  MendFolder(folder.Path());
  EXPECT_EQ(ReadWholeFile(living.Path() / "x"), "1");
  EXPECT_EQ(Names(folder.Path()), PathText(living.Path().filename()) + " .Quillmate-anders");
}

TEST(Identity, OneFileBehindManyNames) {
  const ScratchFolder folder;
  const fs::path file = folder.Write("a", "1");
  fs::create_hard_link(file, folder / "b");
  IdentitySet set;
  set.Add(file);
  set.Add(folder / "fehlt");
  EXPECT_TRUE(set.Contains(folder / "b"));
  EXPECT_TRUE(set.Contains(folder.Path() / "." / "a"));
  EXPECT_FALSE(set.Contains(folder.Write("c", "1")));
  EXPECT_FALSE(set.Contains(folder / "fehlt"));
}

#ifndef _WIN32
fs::perms Rights(const fs::path& path) { return fs::status(path).permissions(); }

TEST(Stamp, TellsChangesApart) {
  const files::ScratchFolder temp;
  const fs::path file = temp.Write("a", "eins");
  const auto then = fs::file_time_type::clock::now() - std::chrono::hours(1);
  const auto write = [&](const char* bytes, std::chrono::seconds later) {
    temp.Write("a", bytes);
    fs::last_write_time(file, then + later);
  };
  write("eins", std::chrono::seconds(0));
  const FileStamp stamp = StampOf(file);
  EXPECT_TRUE(stamp.settled);
  EXPECT_EQ(stamp.size, 4U);
  EXPECT_TRUE(IsUnchanged(file, stamp));
  write("zwei", std::chrono::seconds(1));
  EXPECT_FALSE(IsUnchanged(file, stamp));
  write("drei!", std::chrono::seconds(0));
  EXPECT_FALSE(IsUnchanged(file, stamp));
  // Just written: the next change may bear the same time.
  temp.Write("a", "eins");
  EXPECT_FALSE(StampOf(file).settled);
  EXPECT_FALSE(IsUnchanged(file, StampOf(file)));
  EXPECT_FALSE(StampOf(temp.Path() / "fehlt").settled);
}

TEST(Replacement, RightsAreNeverLoosened) {
  const ScratchFolder folder;
  const fs::path target = folder / "Projekt";
  Fill(target, {{"a", "1"}, {"b", "1"}});
  fs::permissions(target, fs::perms(0700));
  fs::permissions(target / "a", fs::perms(0640));
  fs::permissions(target / "b", fs::perms(0600));
  Replace(target, {{"a", "2"}, {"c", "2"}}, {"a", "b"});
  EXPECT_EQ(Rights(target), fs::perms(0700));
  EXPECT_EQ(Rights(target / "a"), fs::perms(0640));
  EXPECT_EQ(Rights(target / "c"), fs::perms(0640)) << "what comes is no more open than what it comes to";
  if (geteuid() == 0) {
    for (const char* const name : {"a", "c"}) EXPECT_EQ(chown((target / name).c_str(), 12345, 2345), 0);
    Replace(target, {{"a", "3"}, {"d", "3"}}, {"a", "c"});
    for (const char* const name : {"a", "d"}) {
      struct stat status {};
      EXPECT_EQ(stat((target / name).c_str(), &status), 0);
      EXPECT_EQ(std::make_pair(status.st_uid, status.st_gid), std::make_pair(12345U, 2345U)) << name;
    }
  }
  const fs::path file = folder.Write("d", "1");
  fs::permissions(file, fs::perms(0600));
  ReplaceFile(file, "2");
  EXPECT_EQ(Rights(file), fs::perms(0600));
  ReplaceFile(folder / "e", "2");
  EXPECT_EQ(Rights(folder / "e"), Rights(folder.Write("f", ""))) << "what is new follows the process";
}

/// Written over halfway by a killed run; then its user has put another one in its place.
TEST(MendFolder, AFileThatIsAnotherByNowStays) {
  const ScratchFolder folder;
  const fs::path file = folder.Write("a", "halb");
  const fs::path work = folder / ".Quillmate-TempDateien-abc";
  const auto record = [&] {
    return "Quillmate 1\ndatei " + std::to_string(IdentityOf(file)->number[0]) + "-0 " + PathText(file) + "\nende\n";
  };
  Fill(work, {{"plan", record()}, {"neu", "ganz"}, {"lock", ""}});
  setenv("TMPDIR", folder.Path().c_str(), 1);
  RenamePath(folder.Write("b", "wichtig"), file);
  MendFolder(folder.Path());
  EXPECT_EQ(ReadWholeFile(file), "wichtig");
  Fill(work, {{"plan", record()}});
  MendFolder(folder.Path());
  unsetenv("TMPDIR");
  EXPECT_EQ(ReadWholeFile(file), "ganz");
  EXPECT_EQ(Names(folder.Path()), "a");
}

TEST(Replacement, LinksAreFollowedAndOwnOnesGo) {
  const ScratchFolder folder;
  const fs::path elsewhere = folder.Write("dort/M7.txt", "fremd");
  fs::create_symlink("neu.txt", folder / "ins Leere");
  ReplaceFile(folder / "ins Leere", "x");
  EXPECT_EQ(ReadWholeFile(folder / "neu.txt"), "x");
  fs::create_directory(folder / "Projekt");
  fs::create_directory_symlink("Projekt", folder / "Link");
  fs::create_symlink(elsewhere, folder / "Projekt/M7.txt");
  Replace(folder / "Link", {{"M7.txt", "neu"}}, {"M7.txt"});
  EXPECT_TRUE(fs::is_symlink(folder / "Link"));
  EXPECT_EQ(ReadWholeFile(folder / "Projekt/M7.txt"), "neu");
  EXPECT_EQ(ReadWholeFile(elsewhere), "fremd");
}
#endif

}  // namespace
}  // namespace quillmate::files
