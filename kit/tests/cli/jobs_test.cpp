// Work in several threads.
#include "cli/jobs.h"

#include <gtest/gtest.h>

#include <atomic>
#include <new>
#include <vector>

TEST(InThreads, DoesEachItemOnce) {
  std::vector<int> done(100, 0);
  zorvela::inThreads(done.size(), 4, [&done](std::size_t item, std::size_t) { ++done[item]; });
  EXPECT_EQ(done, std::vector<int>(100, 1));
}

TEST(InThreads, PassesOnAnExceptionAndEndsTheWork) {
  std::atomic<int> calls{0};
  const auto work = [&calls](std::size_t, std::size_t) {
    ++calls;
    throw std::bad_alloc();
  };
  EXPECT_THROW(zorvela::inThreads(100, 4, work), std::bad_alloc);
  EXPECT_LE(calls, 4);
}
