#include <QAbstractButton>
#include <QMainWindow>
#include <QPointer>
#include <QProgressDialog>
#include <QTest>
#include <latch>
#include <memory>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include "background_tasks.h"
#include "recording_platform.h"

namespace quillmate::testing {
namespace {

using ui::BackgroundJob;

class BackgroundTest : public ::testing::Test {
 protected:
  void Start(BackgroundJob::Work work) {
    tasks.Start({QStringLiteral("frmProbe"), QStringLiteral("Probe"), std::move(work), [this] { ++done; }});
  }
  QProgressDialog* Progress() { return window.findChild<QProgressDialog*>(QStringLiteral("frmProbe")); }
  bool Await() {
    return QTest::qWaitFor([&] { return Progress() == nullptr; }, 60'000);
  }

  QMainWindow window;
  RecordingPlatform platform;
  ui::Interaction interaction{platform, QStringLiteral("Prüfung")};
  ui::BackgroundTasks tasks{window, interaction};
  int done = 0;
};

TEST_F(BackgroundTest, EveryEndIsTold) {
  const struct {
    const char* what;
    BackgroundJob::Work work;
    int done;
    const char* message;
  } kCases[] = {
      {"made", [](BackgroundJob& job) { job.Tell(1, 2); }, 1, ""},
      {"failed", [](BackgroundJob&) { throw std::runtime_error("Kein Platz"); }, 0, "Kein Platz"},
      {"of an unknown kind", [](BackgroundJob&) { throw 1; }, 0, "Unbekannter Fehler"},
      {"given up", [](BackgroundJob& job) { job.Cancel(), job.Tell(1, 2); }, 0, ""},
      {"given up between steps", [](BackgroundJob& job) { job.Cancel(), job.Begin("weiter"); }, 0, ""},
  };
  for (const auto& c : kCases) {
    done = 0;
    Start(c.work);
    ASSERT_TRUE(Await()) << c.what;
    EXPECT_EQ(done, c.done) << c.what;
    EXPECT_EQ(platform.TakeText(), QString::fromUtf8(c.message)) << c.what;
    EXPECT_TRUE(tasks.IsFree(QStringLiteral("frmProbe"))) << c.what;
  }
}

TEST_F(BackgroundTest, ButtonEndsIt) {
  std::latch pressed(1);
  Start([&pressed](BackgroundJob& job) {
    job.Begin("Erster Teil");
    pressed.wait();
    job.Tell(1, 1);
  });
  EXPECT_FALSE(tasks.IsFree(QStringLiteral("frmProbe"))) << "one at a time";
  EXPECT_TRUE(Progress()->isVisible()) << "the one that runs is shown";
  EXPECT_EQ(tasks.Titles(), QStringList{QStringLiteral("Probe")});
  EXPECT_TRUE(QTest::qWaitFor([&] { return Progress()->labelText() == "Erster Teil"; }, 60'000));
  Progress()->findChild<QAbstractButton*>()->click();
  EXPECT_FALSE(Progress()->isVisible());
  EXPECT_FALSE(tasks.IsFree(QStringLiteral("frmProbe"))) << "it has not ended yet";
  EXPECT_FALSE(Progress()->isVisible()) << "nothing to press any more";
  pressed.count_down();
  ASSERT_TRUE(Await());
  EXPECT_EQ(done, 0);
  EXPECT_EQ(platform.TakeText(), "");
}

TEST_F(BackgroundTest, ProjectMayGoWhenItIsRead) {
  std::latch goesOn(1);
  bool hasRead = false;
  Start([&](BackgroundJob& job) {
    hasRead = true;
    job.EndReading();
    goesOn.wait();
  });
  tasks.FinishReading();
  EXPECT_TRUE(hasRead);
  goesOn.count_down();
  ASSERT_TRUE(Await());
  // Whoever fails before has read all that it will.
  Start([](BackgroundJob&) { throw std::runtime_error("Lesefehler"); });
  tasks.FinishReading();
  ASSERT_TRUE(Await());
  EXPECT_EQ(platform.TakeText(), "Lesefehler");
}

TEST_F(BackgroundTest, MessageWaitsForWhatRuns) {
  interaction.Guarded([this] {
    Start([](BackgroundJob&) { throw std::runtime_error("Kein Platz"); });
    ASSERT_TRUE(Await());
    EXPECT_EQ(platform.messages.size(), 0U);
  });
  EXPECT_TRUE(QTest::qWaitFor([&] { return platform.messages.size() == 1; }, 60'000));
}

TEST_F(BackgroundTest, GivingUpWaitsForTheEnd) {
  const auto held = std::make_shared<int>(1);
  Start([held](BackgroundJob& job) {
    while (!job.IsCancelled()) std::this_thread::yield();
  });
  tasks.GiveUp();
  EXPECT_EQ(held.use_count(), 1);
  EXPECT_EQ(Progress(), nullptr);
  EXPECT_EQ(done, 0);
}

}  // namespace
}  // namespace quillmate::testing
