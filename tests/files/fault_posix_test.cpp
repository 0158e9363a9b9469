#include <functional>
#include <map>
#include <optional>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <quillmate/files/failure.h>
#include <quillmate/files/identity.h>
#include <quillmate/files/replacement.h>
#include <quillmate/files/work_folder.h>

#include "faults/fault_points.h"
#include "scratch.h"

/// Each step of a replacement fails, or is the last one of the process.
namespace quillmate::files {
namespace {

namespace fs = std::filesystem;
using faults::Fault;

/// All that is in the test's files are runs of one character.
std::string Brief(const std::string& bytes) {
  return bytes.empty() ? "" : bytes.front() + std::to_string(bytes.size()) + bytes.back();
}

/// What is in a folder, its sub-folders too: names, kinds, rights, bytes.
std::string Content(const fs::path& folder) {
  std::map<std::string, std::string> lines;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    struct stat status {};
    lstat(entry.path().c_str(), &status);
    std::string& line = lines[PathText(fs::relative(entry.path(), folder))];
    line = " " + std::to_string(status.st_mode & 07777U) + (entry.is_symlink() ? " -> " : " ");
    if (entry.is_regular_file() && !entry.is_symlink()) line += Brief(ReadWholeFile(entry.path()));
  }
  std::string text;
  for (const auto& [name, line] : lines) text.append(name).append(line).append("\n");
  return text;
}

/// The numbers by which the system knows the folder and what is in it from others: they must not be copies.
std::vector<std::optional<FileIdentity>> Strangers(const fs::path& folder) {
  std::vector<std::optional<FileIdentity>> identities;
  for (const char* const name : {"", "fremd", "fremd/datei", "notiz.txt"}) {
    if (fs::exists(folder / "fremd")) identities.push_back(IdentityOf(folder / name));
  }
  return identities;
}

const std::vector<fs::path> kOwn{"Quillmate.mdb", "M1.txt", "M2.txt", "M3.txt"};

void ReplaceProject(const fs::path& target) {
  FolderReplacement project(target);
  WriteWholeFile(project.Path() / "Quillmate.mdb", "neu");
  WriteWholeFile(project.Path() / "M1.txt", std::string(3000, 'n'));
  WriteWholeFile(project.Path() / "M9.txt", "neu");
  project.Commit(kOwn);
}

/// The folder is one that exists, with files of the program and of others in it.
void FillProject(const fs::path& target) {
  fs::create_directories(target / "fremd");
  for (const fs::path& name : kOwn) WriteWholeFile(target / name, "alt");
  fs::permissions(target / "M1.txt", fs::perms(0600));
  for (const char* const name : {"fremd/datei", "notiz.txt"}) WriteWholeFile(target / name, "fremd");
  fs::permissions(target, fs::perms(0700));
}

struct Scenario {
  const char* name;
  std::function<void(const fs::path&)> prepare;
  std::function<void(const fs::path&)> run;
  bool secondNames = true;
  /// The target can't be renamed: it is mounted, or its folder belongs to somebody else.
  bool fixed = false;
};

void WriteLong(const fs::path& file) { ReplaceFile(file, std::string(70000, 'n')); }

const Scenario kScenarios[] = {
    {"project", FillProject, ReplaceProject},
    {"project without second names", FillProject, ReplaceProject, false},
    {"new folder", [](const fs::path&) {}, ReplaceProject},
    {"new file", [](const fs::path&) {}, WriteLong},
    {"file", [](const fs::path& file) { WriteWholeFile(file, std::string(80000, 'a')); }, WriteLong},
    {"file written over", [](const fs::path& file) { WriteWholeFile(file, std::string(80000, 'a')); }, WriteLong, true,
     true},
};

/// Runs it in a process of its own. The number of points that it passed; nothing when it was killed.
std::optional<int> RunChild(const Scenario& scenario, const fs::path& base, Fault fault, int at, bool& failed) {
  int channel[2];
  EXPECT_EQ(pipe(channel), 0);
  const pid_t child = fork();
  if (child == 0) {
    faults::Arm({fault, at, base.string(), scenario.secondNames, scenario.fixed ? (base / "ziel").string() : ""});
    int report[2] = {0, 0};
    try {
      scenario.run(base / "ziel");
    } catch (const Failure&) {
      report[1] = 1;
    }
    report[0] = faults::PointsPassed();
    faults::Arm({});
    _exit(::write(channel[1], report, sizeof report) == sizeof report ? 0 : 1);
  }
  close(channel[1]);
  int report[2] = {0, 0};
  const bool whole = read(channel[0], report, sizeof report) == sizeof report;
  close(channel[0]);
  int status = 0;
  waitpid(child, &status, 0);
  failed = report[1] != 0;
  return whole ? std::optional(report[0]) : std::nullopt;
}

class FaultTest : public testing::TestWithParam<Fault> {};

TEST_P(FaultTest, LeavesTheOldStateOrTheNew) {
  const ScratchFolder folder("faults", fs::is_directory("/dev/shm") ? "/dev/shm" : fs::temp_directory_path());
  faults::Arm({.below = folder.Path().string()});
  int number = 0;
  for (const Scenario& scenario : kScenarios) {
    const auto fresh = [&] {
      const fs::path base = folder.Path() / std::to_string(++number);
      fs::create_directories(base / "temp");
      scenario.prepare(base / "ziel");
      setenv("TMPDIR", (base / "temp").c_str(), 1);
      return base;
    };
    bool failed = false;
    const fs::path model = fresh();
    const std::string before = Content(model);
    const int points = RunChild(scenario, model, Fault::kNone, 0, failed).value_or(0);
    const std::string after = Content(model);
    EXPECT_FALSE(failed) << scenario.name;
    EXPECT_NE(before, after) << scenario.name;
    EXPECT_GE(points, 8) << scenario.name;
    for (int at = 1; at <= points; ++at) {
      const fs::path base = fresh();
      const auto strangers = Strangers(base / "ziel");
      const bool killed = !RunChild(scenario, base, GetParam(), at, failed);
      EXPECT_EQ(killed, GetParam() == Fault::kKill);
      EXPECT_EQ(Strangers(base / "ziel"), strangers) << scenario.name << " " << at;
      for (const fs::path& place : {base, base / "ziel", base / "temp"}) MendFolder(place);
      const std::string content = Content(base);
      if (killed) {
        EXPECT_TRUE(content == before || content == after) << scenario.name << " " << at << "\n" << content;
      } else {
        EXPECT_EQ(content, failed ? before : after) << scenario.name << " " << at;
      }
    }
  }
  faults::Arm({});
  unsetenv("TMPDIR");
}

INSTANTIATE_TEST_SUITE_P(, FaultTest, testing::Values(Fault::kKill, Fault::kError, Fault::kFullDisk));

}  // namespace
}  // namespace quillmate::files
