#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <quillmate/startup/session.h>

#include "codedb/scratch.h"
#include "startup/instance_process.h"

namespace quillmate::startup {
namespace {

namespace fs = std::filesystem;

std::unique_ptr<Instance> Started(const fs::path& programFolder) {
  auto instance = std::make_unique<Instance>(programFolder);
  instance->AwaitStart();
  return instance;
}

bool IsWhole(const Instance& instance) { return fs::exists(instance.folder / "M1.txt"); }

TEST(Instances, LaterOnesLeaveTheScratchFoldersAlone) {
  const files::ScratchFolder program;
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
  const files::ScratchFolder program;
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

TEST(Instances, NewcomersWaitUntilTheLoneOneAdmitsThem) {
  const files::ScratchFolder folder;
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
    const files::ScratchFolder program;
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
