#include <algorithm>
#include <fstream>

#include <gtest/gtest.h>

#include <quillmate/files/command_word.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>

#include "scratch.h"

namespace quillmate::files {
namespace {

namespace fs = std::filesystem;

/// Names and contents of the files in a folder, by name.
std::string Content(const fs::path& folder) {
  std::error_code error;
  std::string content;
  std::vector<FolderEntry> entries = FolderEntries(folder, error);
  std::sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) { return a.path < b.path; });
  for (const FolderEntry& entry : entries) {
    content += PathText(entry.path.filename()) + (entry.isFolder ? "/ " : "=" + ReadWholeFile(entry.path) + " ");
  }
  return content;
}

/// What the runtime of a program takes apart again: a backslash counts in front of a quote only.
TEST(CommandWords, AreQuotedSoThatTheyComeBack) {
  const struct {
    const wchar_t *word, *quoted;
  } cases[] = {
      {L"", LR"("")"},          {L"a b", LR"("a b")"},          {LR"(C:\a\)", LR"("C:\a\\")"}, {LR"(")", LR"("\"")"},
      {LR"(\")", LR"("\\\"")"}, {LR"(\\x\\)", LR"("\\x\\\\")"}, {L"%A% & ^", L"\"%A% & ^\""}};
  std::wstring all, together;
  for (const auto& [word, quoted] : cases) {
    std::wstring line;
    AppendCommandWord(line, word);
    EXPECT_TRUE(line == quoted) << PathText(fs::path(line));
    AppendCommandWord(all, word);
    together += (together.empty() ? L"" : L" ") + line;
  }
  EXPECT_TRUE(all == together);
}

TEST(Paths, NamesInAllScripts) {
  EXPECT_EQ(PathText(PathFromText("Über/ß €")), "Über/ß €");
  const ScratchFolder folder;
  const fs::path file = folder.Path() / PathFromText("Übung_日本 😀.txt");
  WriteWholeFile(file, "x");
  fs::create_directory(folder.Path() / PathFromText("Ω"));
  EXPECT_EQ(Content(folder.Path()), "Übung_日本 😀.txt=x Ω/ ");
  EXPECT_EQ(RealPath(file).filename(), file.filename());
  EXPECT_EQ(PathAsNamed(file).filename(), file.filename());
  const fs::path missing = folder.Path() / "Fehlt";
  EXPECT_EQ(PathAsNamed(missing), missing);
}

TEST(CleanName, DropsWhatNoFileNameMayHold) {
  EXPECT_EQ(CleanName("a:b*c"), "abc");
  EXPECT_EQ(CleanName("/\\:*?<>|\""), "");
  EXPECT_EQ(CleanName("Größe 1"), "Größe 1");
  EXPECT_EQ(CleanName(" ..\\.. "), "") << "the folder above";
  EXPECT_EQ(CleanName("..a."), "..a.");
}

TEST(Paths, LongOnes) {
  const ScratchFolder folder;
  fs::path deep = folder.Path();
  while (deep.native().size() < 300) deep /= "ein langer Name eines Ordners";
  fs::create_directories(deep);
  WriteWholeFile(deep / "alt", "x");
  RenamePath(deep / "alt", deep / "neu");
  EXPECT_EQ(ReadWholeFile(deep / "neu"), "x");
  std::error_code error;
  EXPECT_EQ(FolderEntries(deep, error).size(), 1U);
  EXPECT_TRUE(fs::equivalent(RealPath(deep), deep));
  // The standard library does not get down there on every system.
  for (; deep != folder.Path(); deep = deep.parent_path()) {
    for (const FolderEntry& entry : FolderEntries(deep, error)) RemovePath(entry.path, error);
  }
}

TEST(Paths, WhatIsMissingFollowsByName) {
  const ScratchFolder folder;
  const fs::path real = RealPath(folder.Path());
  EXPECT_EQ(RealPath(folder.Path() / "neu" / "x" / ".." / "y"), real / "neu" / "y");
  EXPECT_EQ(RealPath(folder.Path() / "." / ".." / folder.Path().filename()), real);
  std::error_code error;
  EXPECT_TRUE(FolderEntries(folder.Path() / "neu", error).empty());
  EXPECT_EQ(error, std::errc::no_such_file_or_directory);
  EXPECT_FALSE(RemovePath(folder.Path() / "neu", error));
  EXPECT_FALSE(error);
}

TEST(Paths, RemoveAndRename) {
  const ScratchFolder folder;
  const fs::path file = folder.Path() / "a";
  const fs::path other = folder.Path() / "b";
  WriteWholeFile(file, "1");
  WriteWholeFile(other, "2");
  RenamePath(file, other);
  EXPECT_EQ(Content(folder.Path()), "b=1 ");
  EXPECT_THROW(RenamePath(file, other), fs::filesystem_error);
  fs::permissions(other, fs::perms(0444));
  std::error_code error;
  EXPECT_TRUE(RemovePath(other, error));
  fs::create_directory(other);
  WriteWholeFile(other / "a", "1");
  EXPECT_FALSE(RemovePath(other, error));
  EXPECT_TRUE(error);
  RemovePath(other / "a", error);
  EXPECT_TRUE(RemovePath(other, error));
  EXPECT_EQ(Content(folder.Path()), "");
}

TEST(RemoveFolder, TakesAllButWhatLinksPointAt) {
  const ScratchFolder folder;
  const fs::path gone = folder.Path() / "weg";
  fs::create_directories(gone / std::string(120, 'a') / std::string(120, 'b'));
  fs::create_directories(folder.Path() / "bleibt");
  WriteWholeFile(gone / std::string(120, 'a') / std::string(120, 'b') / std::string(120, 'c'), "1");
  WriteWholeFile(folder.Path() / "bleibt" / "d", "1");
  std::error_code unsupported;
  fs::create_directory_symlink(folder.Path() / "bleibt", gone / "link", unsupported);
  std::error_code error;
  RemoveFolder(gone, error);
  EXPECT_FALSE(error) << error.message();
  RemoveFolder(gone, error);
  EXPECT_FALSE(error) << "what is gone is gone";
  EXPECT_EQ(Content(folder.Path()), "bleibt/ ");
  EXPECT_EQ(Content(folder.Path() / "bleibt"), "d=1 ");
}

}  // namespace
}  // namespace quillmate::files
