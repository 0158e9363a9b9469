#include <atomic>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <quillmate/workers/ordered_work.h>

namespace quillmate::workers {
namespace {

/// Keeps a thread busy for a while that no clock measures; pieces of very different length end out of order.
std::size_t Turn(std::size_t piece) {
  volatile std::size_t sum = 0;
  for (std::size_t i = 0; i < piece * 7919 % 5000; ++i) sum = sum + i;
  return 1;
}

std::string TextOf(const std::exception_ptr& failure) {
  if (!failure) return "-";
  try {
    std::rethrow_exception(failure);
  } catch (const std::exception& error) {
    return error.what();
  }
}

TEST(OrderedWork, EveryPieceIsDoneOnceAndFinishedInItsOrderByTheOwner) {
  constexpr std::size_t kPieces = 500;
  OrderedWork work;
  std::vector<std::atomic<int>> done(kPieces);
  std::vector<std::size_t> finished;
  const std::thread::id owner = std::this_thread::get_id();
  for (std::size_t piece = 0; piece < kPieces; ++piece) {
    while (work.IsFull()) ASSERT_TRUE(work.FinishFirst());
    work.Add(
        [&done, piece] {
          ++done[piece];
          return Turn(piece);
        },
        [&, piece](const std::exception_ptr& failure) {
          EXPECT_FALSE(failure);
          EXPECT_EQ(done[piece], 1);
          EXPECT_EQ(std::this_thread::get_id(), owner);
          EXPECT_EQ(finished.size(), piece);
          finished.push_back(piece);
        });
  }
  work.FinishAll();
  EXPECT_EQ(finished.size(), kPieces);
  EXPECT_FALSE(work.FinishFirst()) << "nothing is left";
}

TEST(OrderedWork, WhatAPieceThrowsIsItsOwn) {
  OrderedWork work;
  std::string told;
  for (int piece = 0; piece < 6; ++piece) {
    work.Add(
        [piece]() -> std::size_t {
          if (piece % 2 == 1) throw std::runtime_error("Stück " + std::to_string(piece));
          return 0;
        },
        [&told, piece](const std::exception_ptr& failure) {
          told += TextOf(failure) + ";";
          if (piece == 3) throw std::logic_error("genug");
        });
  }
  EXPECT_THROW(work.FinishAll(), std::logic_error);
  EXPECT_EQ(told, "-;Stück 1;-;Stück 3;");
  work.FinishAll();
  EXPECT_EQ(told, "-;Stück 1;-;Stück 3;-;Stück 5;") << "the next ones go on";
}

TEST(OrderedWork, WhatAFinishAddsComesAfterWhatIsThere) {
  OrderedWork work;
  std::string told;
  const auto add = [&](const std::string& name, auto more) {
    work.Add([] { return std::size_t{0}; },
             [&told, name, more](const std::exception_ptr&) {
               told += name;
               more();
             });
  };
  add("a", [&] { add("A", [] {}); });
  add("b", [&] { add("B", [] {}); });
  work.FinishAll();
  EXPECT_EQ(told, "abAB");
}

/// Results that wait for their turn are bounded however much there is to do, and one that is larger than the bound gets
/// through.
TEST(OrderedWork, HoldsNoMoreThanItsBound) {
  constexpr std::size_t kMegabyte = std::size_t{1} << 20U;
  constexpr std::size_t kBound = 8;
  constexpr std::size_t kSize = 5;
  constexpr std::size_t kMostInWork = 8;
  OrderedWork work;
  std::atomic<std::size_t> held = 0;
  std::atomic<std::size_t> most = 0;
  std::size_t finished = 0;
  const bool hasHelp = std::thread::hardware_concurrency() > 1;
  for (std::size_t piece = 0; piece < 100; ++piece) {
    const std::size_t size = piece == 50 ? 2 * kBound : kSize;
    work.Add(
        [&, size] {
          held += size;
          for (std::size_t seen = most; seen < held && !most.compare_exchange_weak(seen, held);) {
          }
          return size * kMegabyte;
        },
        [&, size](const std::exception_ptr&) {
          // The helpers may run ahead.
          while (hasHelp && finished == 0 && held < 3 * kSize) std::this_thread::yield();
          EXPECT_LE(most, kBound + (kMostInWork + 1) * 2 * kBound);
          held -= size;
          ++finished;
        });
  }
  EXPECT_TRUE(work.IsFull());
  work.FinishAll();
  EXPECT_EQ(finished, 100U);
  EXPECT_FALSE(work.IsFull()) << "what is finished is held no longer";
}

/// First the owner has nothing to do any more and waits until the helper is done, then the helper waits for the owner.
TEST(OrderedWork, WhoeverWaitsIsWoken) {
  if (std::thread::hardware_concurrency() < 2) GTEST_SKIP() << "there is no helper";
  OrderedWork work;
  std::atomic<bool> begun = false;
  std::atomic<bool> others = false;
  std::string told;
  work.Add(
      [&] {
        begun = true;
        while (!others) std::this_thread::yield();
        for (std::size_t turn = 0; turn < 2000; ++turn) Turn(turn);
        return std::size_t{0};
      },
      [&told](const std::exception_ptr&) { told += "1"; });
  work.Add(
      [&others] {
        others = true;
        return std::size_t{0};
      },
      [&told](const std::exception_ptr&) { told += "2"; });
  while (!begun) std::this_thread::yield();
  work.FinishAll();
  EXPECT_EQ(told, "12");
  begun = false;
  work.Add(
      [&begun] {
        begun = true;
        return std::size_t{0};
      },
      [&told](const std::exception_ptr&) { told += "3"; });
  while (!begun) std::this_thread::yield();
  work.FinishAll();
  EXPECT_EQ(told, "123");
}

TEST(OrderedWork, KeepsNothingOfWhatIsDone) {
  OrderedWork work;
  const auto used = std::make_shared<int>(0);
  for (int piece = 0; piece < 20; ++piece)
    work.Add([used] { return std::size_t{0}; }, [](const std::exception_ptr&) {});
  work.FinishAll();
  EXPECT_EQ(used.use_count(), 1);
}

TEST(OrderedWork, StopDropsWhatHasNotBegun) {
  const auto used = std::make_shared<std::atomic<int>>(0);
  std::atomic<int> ended = 0;
  {
    OrderedWork work;
    for (std::size_t piece = 0; piece < 50; ++piece) {
      work.Add(
          [used, &ended, piece] {
            ++*used;
            Turn(piece);
            ++ended;
            return std::size_t{0};
          },
          [](const std::exception_ptr&) { ADD_FAILURE() << "nothing is finished after it"; });
    }
    work.Stop();
    EXPECT_EQ(*used, ended) << "what has begun is waited for";
    EXPECT_EQ(used.use_count(), 1) << "the rest is gone";
    EXPECT_FALSE(work.FinishFirst());
  }
  EXPECT_EQ(*used, ended);
}

}  // namespace
}  // namespace quillmate::workers
