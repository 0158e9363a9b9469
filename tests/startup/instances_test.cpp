#ifndef _WIN32

#include <csignal>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <quillmate/startup/session.h>

#include "settings/temp_folder.h"

namespace quillmate::startup {
namespace {

namespace fs = std::filesystem;

/// An instance of the program in a process of its own. It starts when it is made and runs until it is ended or killed.
class Instance {
 public:
  explicit Instance(const fs::path& programFolder) {
    int news[2], orders[2];
    if (pipe(news) != 0 || pipe(orders) != 0) std::abort();
    process_ = fork();
    if (process_ == 0) {
      close(orders[1]);
      Run(programFolder, news[1], orders[0]);
      _exit(0);
    }
    close(news[1]);
    close(orders[0]);
    news_ = news[0];
    orders_ = orders[1];
  }
  ~Instance() { End(); }
  Instance(const Instance&) = delete;
  Instance& operator=(const Instance&) = delete;

  /// Waits for the end of the start.
  void AwaitStart() {
    std::string text(4096, '\0');
    text.resize(static_cast<std::size_t>(std::max<ssize_t>(read(news_, text.data(), text.size()), 1)));
    alone = text.front() == '1';
    folder = text.substr(1);
  }
  void End() {
    if (process_ > 0 && write(orders_, "e", 1) == 1) Reap();
  }
  void Kill() {
    kill(process_, SIGKILL);
    Reap();
  }

  bool alone = false;
  fs::path folder;

 private:
  static void Run(const fs::path& programFolder, int news, int orders) {
    const auto store = settings::MemorySettings();
    AppGlobals globals;
    BeginStart(globals, 1, {.programFolder = programFolder, .templateFile = {}}, *store);
    InstanceMark mark(globals.TempFolder);
    MakeRunFolder(globals, mark, *store);
    std::ofstream(globals.RunTempFolder / "M1.txt") << "x";
    const std::string text = (mark.IsAlone() ? "1" : "0") + globals.RunTempFolder.string();
    char order = 0;
    if (write(news, text.data(), text.size()) > 0 && read(orders, &order, 1) == 1) EndRun(globals);
  }
  void Reap() {
    waitpid(process_, nullptr, 0);
    close(news_);
    close(orders_);
    process_ = 0;
  }

  pid_t process_ = 0;
  int news_ = 0, orders_ = 0;
};

std::unique_ptr<Instance> Started(const fs::path& programFolder) {
  auto instance = std::make_unique<Instance>(programFolder);
  instance->AwaitStart();
  return instance;
}

bool IsWhole(const Instance& instance) { return fs::exists(instance.folder / "M1.txt"); }

TEST(Instances, LaterOnesLeaveTheScratchFoldersAlone) {
  const testing::TempFolder program;
  const auto first = Started(program.Path());
  const auto second = Started(program.Path());
  EXPECT_TRUE(first->alone);
  EXPECT_FALSE(second->alone);
  EXPECT_NE(first->folder, second->folder);
  EXPECT_TRUE(IsWhole(*first) && IsWhole(*second));
  first->End();
  EXPECT_FALSE(fs::exists(first->folder));
  const auto third = Started(program.Path());
  EXPECT_FALSE(third->alone) << "the second still runs";
  EXPECT_TRUE(IsWhole(*second));
  second->End();
  third->End();
  EXPECT_TRUE(Started(program.Path())->alone);
}

TEST(Instances, LeftoversOfCrashedOnesGoAtTheNextLoneStart) {
  const testing::TempFolder program;
  const auto crashed = Started(program.Path());
  const auto other = Started(program.Path());
  crashed->Kill();
  EXPECT_TRUE(IsWhole(*crashed));
  const auto third = Started(program.Path());
  EXPECT_TRUE(IsWhole(*crashed)) << "nobody may clean while another runs";
  other->Kill();
  third->Kill();
  const auto lone = Started(program.Path());
  EXPECT_TRUE(lone->alone);
  for (const Instance* gone : {crashed.get(), other.get(), third.get()}) EXPECT_FALSE(fs::exists(gone->folder));
  EXPECT_TRUE(IsWhole(*lone));
}

/// What a newcomer would get.
std::string FreeLocks(const fs::path& root) {
  const int file = open((root / kInstanceFile).c_str(), O_RDONLY | O_CLOEXEC);
  std::string free;
  if (flock(file, LOCK_EX | LOCK_NB) == 0) free += "exclusive ";
  if (flock(file, LOCK_SH | LOCK_NB) == 0) free += "shared";
  close(file);
  return free;
}

TEST(Instances, NewcomersWaitUntilTheLoneOneAdmitsThem) {
  const testing::TempFolder folder;
  {
    InstanceMark mark(folder.Path());
    EXPECT_TRUE(mark.IsAlone());
    EXPECT_EQ(FreeLocks(folder.Path()), "");
    mark.AdmitOthers();
    EXPECT_TRUE(mark.IsAlone());
    EXPECT_EQ(FreeLocks(folder.Path()), "shared");
    InstanceMark second(folder.Path());
    EXPECT_FALSE(second.IsAlone());
    second.AdmitOthers();
    EXPECT_EQ(FreeLocks(folder.Path()), "shared");
  }
  EXPECT_EQ(FreeLocks(folder.Path()), "exclusive shared");
}

TEST(Instances, StartingAllAtOnceNoneLosesItsFolder) {
  for (int round = 0; round < 10; ++round) {
    const testing::TempFolder program;
    const fs::path root = program.Path() / "TempDateien";
    for (int old = 0; old < 40; ++old) fs::create_directories(root / ("T_" + std::to_string(old)));
    std::vector<std::unique_ptr<Instance>> instances(6);
    for (auto& instance : instances) instance = std::make_unique<Instance>(program.Path());
    for (const auto& instance : instances) instance->AwaitStart();
    for (const auto& instance : instances) EXPECT_TRUE(IsWhole(*instance)) << instance->folder;
    EXPECT_EQ(std::distance(fs::directory_iterator(root), fs::directory_iterator()), 7) << "six folders and the marks";
  }
}

}  // namespace
}  // namespace quillmate::startup

#endif
