#include <filesystem>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <quillmate/codedb/code_database.h>
#include <quillmate/codedb/notes.h>
#include <quillmate/files/paths.h>

#include "files/scratch.h"

namespace quillmate::codedb {
namespace {

namespace fs = std::filesystem;

/// A project may come from anywhere: what bears the name of the notes is neither waited for nor written through.
TEST(NotesFile, IsAFileOrNotThere) {
  const std::vector<Note> some = {{"P", "M", "R", "x = 1", 0, "warum?", false}};
  const struct {
    const char* name;
    void (*make)(const fs::path& file);
  } cases[] = {{"pipe", [](const fs::path& file) { ASSERT_EQ(mkfifo(file.c_str(), 0600), 0); }},
               {"folder", [](const fs::path& file) { fs::create_directory(file); }},
               {"endless", [](const fs::path& file) { fs::create_symlink("/dev/zero", file); }},
               {"link to nowhere", [](const fs::path& file) { fs::create_symlink("woanders", file); }},
               {"link to itself", [](const fs::path& file) { fs::create_symlink(kNotesFile, file); }}};
  for (const auto& [name, make] : cases) {
    const files::ScratchFolder folder;
    make(folder / std::string(kNotesFile));
    EXPECT_THROW(LoadNotes(folder.Path()), files::Failure) << name;
    EXPECT_THROW(SaveNotes(folder.Path(), some), files::Failure) << name;
    EXPECT_THROW(SaveNotes(folder.Path(), {}), files::Failure) << name;
    EXPECT_FALSE(fs::exists(folder / "woanders")) << name;
  }
  const files::ScratchFolder folder;
  SaveNotes(folder.Path(), {});
  SaveNotes(folder.Path(), some);
  ASSERT_EQ(LoadNotes(folder.Path()).size(), 1U);
  EXPECT_EQ(LoadNotes(folder.Path())[0].text, "warum?");
  SaveNotes(folder.Path(), {});
  EXPECT_TRUE(fs::is_empty(folder.Path()));
}

}  // namespace
}  // namespace quillmate::codedb
