#include <gtest/gtest.h>

#include <string>

#include "effect/share/util/Errors.h"
#include "effect/share/util/HostMemory.h"
#include "tests/util/SmallHost.h"

namespace {

using smallhost::SmallHost;
using Lines = std::vector<std::string>;

TEST(AEException, tellsFileLineAndTheFormattedText) {
  const AEUtil::AEException exception(7, "file", 42, "%d of %s", 3, "four");
  EXPECT_EQ(exception.code(), 7);
  EXPECT_STREQ(exception.what(), "file(42): 3 of four");
}

TEST(AEException, aCopyKeepsCodeAndText) {
  const AEUtil::AEException exception(-3, "a", 1, "%s", "b");
  const AEUtil::AEException copy = exception;  // NOLINT(performance-unnecessary-copy-initialization): it is the subject
  EXPECT_EQ(copy.code(), -3);
  EXPECT_STREQ(copy.what(), "a(1): b");
}

TEST(AEException, eachOfTheTwoPartsIsCutToItsBuffer) {
  const std::string longText(3000, 'x');
  const AEUtil::AEException exception(1, "f", 2, "%s", longText.c_str());
  EXPECT_EQ(exception.what(), "f(2): " + std::string(2047, 'x'));
  const AEUtil::AEException longFile(1, longText.c_str(), 2, "%s", "end");
  EXPECT_EQ(longFile.what(), std::string(2047, 'x') + "end");
}

using Errors = std::vector<PF_Err>;

TEST(PendingErrors, keepTheOldestInFront) {
  AEUtil::PendingErrors list;
  list.reserve();
  EXPECT_TRUE(list.empty());
  list.push(4);
  list.push(5);
  EXPECT_EQ(list.entries(), (Errors{4, 5}));
}

TEST(PendingErrors, beyondTheirRoomAreLeftOut) {
  AEUtil::PendingErrors list;
  list.reserve();
  for (int i = 0; i < 1000; ++i) list.push(i);
  const Errors entries = list.entries();
  ASSERT_EQ(entries.size(), 256U);
  EXPECT_EQ(entries.front(), 0);
  EXPECT_EQ(entries.back(), 255);
}

TEST(PendingErrors, areForgottenWhenEmptied) {
  AEUtil::PendingErrors list;
  list.reserve();
  list.push(4);
  list.clear();
  EXPECT_TRUE(list.empty());
  EXPECT_EQ(list.entries(), Errors{});
  list.push(7);
  EXPECT_EQ(list.entries(), Errors{7});
}

TEST(PendingErrors, makeTheirRoomAtTheFirstEntryWhenTheFirstCallFoundNoMemory) {
  AEUtil::PendingErrors list;
  list.push(4);
  EXPECT_EQ(list.entries(), Errors{4});
}

TEST(LockedHandle, isUnlockedOnEveryWayOut) {
  SmallHost host;
  void* block = nullptr;
  PF_Handle handle = &block;
  block = &host;
  try {
    const AEUtil::LockedHandle lock(handle);
    EXPECT_EQ(lock.block(), &host);
    throw 1;
  } catch (int) {
  }
  EXPECT_EQ(host.log, (Lines{"acquire PF Handle Suite 2", "lock", "unlock"}));
}

TEST(LockedHandle, ofNullLocksNothing) {
  SmallHost host;
  { const AEUtil::LockedHandle lock(nullptr); }
  EXPECT_TRUE(host.log.empty());
}

TEST(LockedHandle, thatCouldNotBeLockedIsNotUnlocked) {
  SmallHost host;
  host.locksFail = true;
  void* block = nullptr;
  {
    const AEUtil::LockedHandle lock(&block);
    EXPECT_EQ(lock.block(), nullptr);
  }
  EXPECT_EQ(host.log, (Lines{"acquire PF Handle Suite 2", "lock"}));
}

}  // namespace
