#include "effect/share/util/HostMemory.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <new>

#include "ae/Constants.h"
#include "tests/util/SmallHost.h"

namespace {

using smallhost::SmallHost;
using Lines = std::vector<std::string>;

TEST(HostMemory, releaseOfNullDoesNothing) {
  SmallHost host;
  AEUtil::release(nullptr);
  EXPECT_TRUE(host.log.empty());
}

TEST(HostMemory, withoutASuiteRecordThereIsNoBlockAndNoException) {
  SmallHost host(false);
  EXPECT_EQ(AEUtil::allocate(100), nullptr);
  EXPECT_TRUE(host.log.empty());
  EXPECT_TRUE(host.pending.empty());
}

TEST(HostMemory, withoutASuiteRecordReleaseLeavesTheBlockAlone) {
  SmallHost host;
  void* const block = AEUtil::allocate(100);
  AEUtil::closeGlobalSuites();
  host.log.clear();
  AEUtil::release(block);
  EXPECT_TRUE(host.log.empty());
  EXPECT_EQ(host.handles.size(), 1U);
}

TEST(HostMemory, theHandleStandsThirtyTwoBytesBeforeTheBlock) {
  SmallHost host;
  auto* const block = static_cast<unsigned char*>(AEUtil::allocate(5));
  ASSERT_EQ(host.handles.size(), 1U);
  PF_Handle found = nullptr;
  std::memcpy(&found, block - 32, sizeof(found));
  EXPECT_EQ(found, host.handles.begin()->first);
  EXPECT_EQ(static_cast<void*>(block - 32), *found);
  AEUtil::release(block);
}

TEST(HostMemory, theRestOfTheHeaderIsNotTouched) {
  SmallHost host;
  auto* const block = static_cast<unsigned char*>(AEUtil::allocate(5));
  for (int i = 8; i < 32; ++i) {
    EXPECT_EQ(block[i - 32], 0xA5) << "byte " << i;
  }
  AEUtil::release(block);
}

TEST(HostMemory, aBlockIsAHandleOfItsSizeAndThirtyTwoBytesMore) {
  SmallHost host;
  void* const block = AEUtil::allocate(1000);
  EXPECT_EQ(host.lastHandleSize, 1032U);
  AEUtil::release(block);
}

TEST(HostMemory, aBlockStaysLockedUntilItIsReleased) {
  SmallHost host;
  void* const block = AEUtil::allocate(8);
  EXPECT_EQ(host.log, (Lines{"acquire PF Handle Suite 2", "new", "lock"}));
  AEUtil::release(block);
  EXPECT_TRUE(host.handles.empty());
}

TEST(HostMemory, releaseUnlocksBeforeItDisposes) {
  SmallHost host;
  void* const block = AEUtil::allocate(8);
  host.log.clear();
  AEUtil::release(block);
  EXPECT_EQ(host.log, (Lines{"unlock", "dispose"}));
}

TEST(HostMemory, aBlockWithoutAHandleIsLeftAlone) {
  SmallHost host;
  auto* const block = static_cast<unsigned char*>(AEUtil::allocate(8));
  std::memset(block - 32, 0, 8);
  host.log.clear();
  AEUtil::release(block);
  EXPECT_TRUE(host.log.empty());
}

TEST(HostMemory, aHandleThatCantBeLockedIsDisposedOfBeforeTheFailureIsTold) {
  SmallHost host;
  host.locksFail = true;
  EXPECT_THROW(AEUtil::allocate(8), std::bad_alloc);
  EXPECT_EQ(host.log, (Lines{"acquire PF Handle Suite 2", "new", "lock", "dispose"}));
  EXPECT_TRUE(host.handles.empty());
  EXPECT_EQ(host.pending.entries(), std::vector<PF_Err>{PF_Err_OUT_OF_MEMORY});
}

TEST(HostMemory, exhaustedMemoryIsPendingAndThrows) {
  SmallHost host;
  host.outOfMemory = true;
  EXPECT_THROW(AEUtil::allocate(8), std::bad_alloc);
  EXPECT_EQ(host.log, (Lines{"acquire PF Handle Suite 2", "new"}));
  EXPECT_EQ(host.pending.entries(), std::vector<PF_Err>{4});
}

TEST(HostMemory, exhaustedMemoryThrowsWithoutAListToo) {
  SmallHost host;
  host.outOfMemory = true;
  AEUtil::pendingErrors = nullptr;
  EXPECT_THROW(AEUtil::allocate(8), std::bad_alloc);
  EXPECT_TRUE(host.pending.empty());
}

TEST(HostMemory, theLargestSizeTurnsIntoOneThatNoHostCanServe) {
  SmallHost host;
  EXPECT_THROW(AEUtil::allocate(std::numeric_limits<int32_t>::max()), std::bad_alloc);
  // 2^31 - 1 + 32 wraps to -2^31 + 31, which is then widened with its sign.
  EXPECT_EQ(host.lastHandleSize, 0xFFFFFFFF8000001FULL);
}

TEST(HostMemory, aMissingHandleSuiteThrowsTheBareNumber) {
  SmallHost host;
  host.withheld = {"PF Handle Suite 2"};
  try {
    AEUtil::allocate(8);
    FAIL() << "nothing was thrown";
  } catch (long thrown) {
    EXPECT_EQ(thrown, 516);
  }
  EXPECT_TRUE(host.pending.empty());
}

TEST(HostMemory, theHandleSuiteIsAskedForOnce) {
  SmallHost host;
  AEUtil::release(AEUtil::allocate(8));
  AEUtil::release(AEUtil::allocate(8));
  EXPECT_EQ(host.count("acquire PF Handle Suite 2"), 1);
}

}  // namespace
