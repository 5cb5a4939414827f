// Long work in several threads.
#include "cli/work.h"

#include <gtest/gtest.h>

#include <atomic>
#include <new>
#include <vector>

TEST(InThreads, DoesEachItemOnce) {
  std::vector<int> done(100, 0);
  zorvela::inThreads(done.size(), 4, [&done](std::size_t item) { ++done[item]; });
  EXPECT_EQ(done, std::vector<int>(100, 1));
}

TEST(InThreads, PassesOnAnExceptionAndEndsTheWork) {
  std::atomic<int> calls{0};
  const auto work = [&calls](std::size_t) {
    ++calls;
    throw std::bad_alloc();
  };
  EXPECT_THROW(zorvela::inThreads(100, 4, work), std::bad_alloc);
  EXPECT_LE(calls, 4);
}

TEST(Progress, SaysHowLongTheRestTakes) {
  EXPECT_EQ(zorvela::timeLeft(10, 1, 5), ", 40 s left");
  EXPECT_EQ(zorvela::timeLeft(60, 100, 1300), ", 12 min left");
  EXPECT_EQ(zorvela::timeLeft(3600, 1, 4), ", 3 h left");
  EXPECT_EQ(zorvela::timeLeft(5, 5, 5), "");
  EXPECT_EQ(zorvela::timeLeft(5, 0, 5), "");
}
