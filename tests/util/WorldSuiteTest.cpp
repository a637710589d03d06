#include "effect/share/util/WorldSuite.h"

#include <gtest/gtest.h>

#include "effect/share/util/Errors.h"
#include "tests/util/SmallHost.h"

namespace {

using AEUtil::EffectWorldPtr;
using AEUtil::WorldSuite;
using smallhost::SmallHost;
using Lines = std::vector<std::string>;

EffectWorldPtr makeWorld(PF_PixelFormat format, PF_Boolean clear = 1) {
  return WorldSuite::newWorld(nullptr, 20, 10, clear, format);
}

/// Lines of the log that begin with `start`.
Lines linesFrom(const SmallHost& host, const std::string& start) {
  Lines lines;
  for (const std::string& line : host.log) {
    if (line.compare(0, start.size(), start) == 0) {
      lines.push_back(line);
    }
  }
  return lines;
}

TEST(NewWorld, isMadeAndDisposedOfByVersionTwoWhereTheHostHasIt) {
  SmallHost host;
  {
    const EffectWorldPtr made = makeWorld(PF_PixelFormat_ARGB32);
    ASSERT_NE(made.world(), nullptr);
    EXPECT_EQ(made.world()->width, 20);
    EXPECT_EQ(made.world()->height, 10);
    EXPECT_EQ(host.log, (Lines{"acquire PF World Suite 2", "PF_NewWorld clear 1", "release PF World Suite 2"}));
    host.log.clear();
  }
  EXPECT_EQ(host.log, (Lines{"acquire PF World Suite 2", "PF_DisposeWorld", "release PF World Suite 2"}));
}

TEST(NewWorld, isMadeByVersionTwoWheneverAPointerComesWhateverTheCode) {
  SmallHost host;
  host.givenWithError = {"PF World Suite 2"};
  const EffectWorldPtr made = makeWorld(PF_PixelFormat_ARGB32);
  EXPECT_NE(made.world(), nullptr);
  EXPECT_EQ(host.count("PF_NewWorld clear 1"), 1);
}

TEST(NewWorld, isClearedEvenWhenNotAskedTo) {
  SmallHost host;
  const EffectWorldPtr made = makeWorld(PF_PixelFormat_ARGB32, 0);
  EXPECT_EQ(host.count("PF_NewWorld clear 1"), 1);
}

TEST(NewWorld, ofFloatUnderVersionOneIsAHandleWithoutAWorldAndNoError) {
  SmallHost host;
  host.withheld = {"PF World Suite 2"};
  const EffectWorldPtr made = makeWorld(PF_PixelFormat_ARGB128);
  EXPECT_TRUE(made);
  EXPECT_EQ(made.world(), nullptr);
  EXPECT_EQ(host.log, Lines{"acquire PF World Suite 2"});
}

TEST(NewWorld, withoutAWorldAsksTheHostNothingWhenItIsDropped) {
  SmallHost host;
  host.withheld = {"PF World Suite 2"};
  EffectWorldPtr made = makeWorld(PF_PixelFormat_ARGB128);
  host.log.clear();
  made.drop();
  EXPECT_TRUE(host.log.empty());
  EXPECT_FALSE(made);
}

TEST(NewWorld, ofSixteenBitsUnderVersionOneHasFlagsThree) {
  SmallHost host;
  host.withheld = {"PF World Suite 2"};
  const EffectWorldPtr made = makeWorld(PF_PixelFormat_ARGB64);
  EXPECT_NE(made.world(), nullptr);
  EXPECT_EQ(linesFrom(host, "new_world"), Lines{"new_world flags 3"});
}

TEST(NewWorld, ofEightBitsUnderVersionOneHasFlagsOne) {
  SmallHost host;
  host.withheld = {"PF World Suite 2"};
  const EffectWorldPtr made = makeWorld(PF_PixelFormat_ARGB32);
  EXPECT_NE(made.world(), nullptr);
  EXPECT_EQ(linesFrom(host, "new_world"), Lines{"new_world flags 1"});
}

TEST(NewWorld, ofVersionOneIsDisposedOfByVersionOne) {
  SmallHost host;
  host.withheld = {"PF World Suite 2"};
  makeWorld(PF_PixelFormat_ARGB32).drop();
  EXPECT_EQ(host.count("dispose_world"), 1);
  EXPECT_EQ(host.count("acquire PF World Suite 1"), 1) << "version 1 stays in the global record";
  EXPECT_EQ(host.count("release PF World Suite 1"), 0);
}

TEST(NewWorld, twoCopiesNeedTwoDropsBeforeTheWorldIsDisposedOfOnce) {
  SmallHost host;
  EffectWorldPtr first = makeWorld(PF_PixelFormat_ARGB32);
  EffectWorldPtr second = first;
  EXPECT_EQ(second.world(), first.world());
  first.drop();
  EXPECT_EQ(host.count("PF_DisposeWorld"), 0);
  EXPECT_NE(second.world(), nullptr);
  second.drop();
  EXPECT_EQ(host.count("PF_DisposeWorld"), 1);
  second.drop();
  EXPECT_EQ(host.count("PF_DisposeWorld"), 1);
}

TEST(NewWorld, anAssignmentDropsTheOldWorldAndSharesTheNew) {
  SmallHost host;
  EffectWorldPtr kept = makeWorld(PF_PixelFormat_ARGB32);
  {
    const EffectWorldPtr other = makeWorld(PF_PixelFormat_ARGB64);
    kept = other;
    EXPECT_EQ(host.count("PF_DisposeWorld"), 1);
    EXPECT_EQ(kept.world(), other.world());
  }
  EXPECT_EQ(host.count("PF_DisposeWorld"), 1);
  kept = EffectWorldPtr();
  EXPECT_EQ(host.count("PF_DisposeWorld"), 2);
}

TEST(NewWorld, anAssignmentToItselfKeepsTheWorld) {
  SmallHost host;
  EffectWorldPtr kept = makeWorld(PF_PixelFormat_ARGB32);
  const EffectWorldPtr& same = kept;
  kept = same;
  EXPECT_EQ(host.count("PF_DisposeWorld"), 0);
  EXPECT_NE(kept.world(), nullptr);
}

TEST(NewWorld, anEmptyHandleHasNothing) {
  const EffectWorldPtr empty;
  const EffectWorldPtr copy = empty;  // NOLINT(performance-unnecessary-copy-initialization): it is the subject
  EXPECT_FALSE(copy);
  EXPECT_EQ(copy.world(), nullptr);
}

TEST(NewWorld, aFailureCarriesTheHostsErrorAndTheKnownMessage) {
  SmallHost host;
  host.newWorldError = 4;
  try {
    makeWorld(PF_PixelFormat_ARGB32);
    FAIL() << "nothing was thrown";
  } catch (const AEUtil::AEException& thrown) {
    EXPECT_EQ(thrown.code(), 4);
    EXPECT_STREQ(thrown.what(),
                 ".\\share\\util\\AEWorldSuite(151): class AEUtil::EffectWorldPtr __cdecl "
                 "AEUtil::WorldSuite::newWorld(struct PF_ProgressInfo *,long,long,char,long)");
  }
}

TEST(NewWorld, aWorldThatCouldNotBeMadeIsDisposedOfLikeAnyOther) {
  SmallHost host;
  host.newWorldError = 4;
  EXPECT_THROW(makeWorld(PF_PixelFormat_ARGB32), AEUtil::AEException);
  EXPECT_EQ(host.count("PF_DisposeWorld"), 1);
}

TEST(NewWorld, aFailureOfVersionOneIsThrownToo) {
  SmallHost host;
  host.withheld = {"PF World Suite 2"};
  host.newWorldError = 77;
  try {
    makeWorld(PF_PixelFormat_ARGB64);
    FAIL() << "nothing was thrown";
  } catch (const AEUtil::AEException& thrown) {
    EXPECT_EQ(thrown.code(), 77);
  }
  EXPECT_EQ(host.count("dispose_world"), 1);
}

TEST(NewWorld, anErrorOfGivingBackTheSuiteCountsWhenTheWorldWasMade) {
  SmallHost host;
  host.releaseError = 99;
  try {
    makeWorld(PF_PixelFormat_ARGB32);
    FAIL() << "nothing was thrown";
  } catch (const AEUtil::AEException& thrown) {
    EXPECT_EQ(thrown.code(), 99);
  }
}

TEST(NewWorld, anErrorOfMakingTheWorldComesBeforeThatOfGivingBackTheSuite) {
  SmallHost host;
  host.releaseError = 99;
  host.newWorldError = 5;
  try {
    makeWorld(PF_PixelFormat_ARGB32);
    FAIL() << "nothing was thrown";
  } catch (const AEUtil::AEException& thrown) {
    EXPECT_EQ(thrown.code(), 5);
  }
}

TEST(NewWorld, withNeitherVersionTheBareNumberIsThrown) {
  SmallHost host;
  host.withheld = {"PF World Suite 1", "PF World Suite 2"};
  try {
    makeWorld(PF_PixelFormat_ARGB32);
    FAIL() << "nothing was thrown";
  } catch (long thrown) {
    EXPECT_EQ(thrown, 516);
  }
}

TEST(NewWorld, aDropWithNeitherVersionLeftIsSilent) {
  SmallHost host;
  EffectWorldPtr made = makeWorld(PF_PixelFormat_ARGB32);
  host.withheld = {"PF World Suite 1", "PF World Suite 2"};
  made.drop();
  EXPECT_FALSE(made);
  EXPECT_EQ(host.count("acquire PF World Suite 1"), 1);
}

TEST(NewWorld, aDropAfterTheSetDownAsksNothing) {
  SmallHost host;
  EffectWorldPtr made = makeWorld(PF_PixelFormat_ARGB32);
  AEUtil::closeGlobalSuites();
  host.log.clear();
  made.drop();
  EXPECT_TRUE(host.log.empty());
}

TEST(ReadPixelFormat, isTheHostsAnswerUnderVersionTwo) {
  SmallHost host;
  host.pixelFormat = PF_PixelFormat_ARGB128;
  PF_EffectWorld world{};
  PF_PixelFormat tag = PF_PixelFormat_INVALID;
  EXPECT_EQ(AEUtil::read_pixel_format(&world, &tag), 0);
  EXPECT_EQ(tag, PF_PixelFormat_ARGB128);
  EXPECT_EQ(host.log, (Lines{"acquire PF World Suite 2", "PF_GetPixelFormat", "release PF World Suite 2"}));
}

TEST(ReadPixelFormat, givesTheFirstErrorOfTheTwoCalls) {
  SmallHost host;
  PF_EffectWorld world{};
  PF_PixelFormat tag = PF_PixelFormat_INVALID;
  host.releaseError = 9;
  EXPECT_EQ(AEUtil::read_pixel_format(&world, &tag), 9);
  host.pixelFormatError = 7;
  EXPECT_EQ(AEUtil::read_pixel_format(&world, &tag), 7);
}

TEST(ReadPixelFormat, goesByTheDeepFlagWithoutVersionTwo) {
  SmallHost host;
  host.withheld = {"PF World Suite 2"};
  PF_EffectWorld world{};
  PF_PixelFormat tag = PF_PixelFormat_INVALID;
  EXPECT_EQ(AEUtil::read_pixel_format(&world, &tag), 0);
  EXPECT_EQ(tag, PF_PixelFormat_ARGB32);
  world.world_flags = PF_WorldFlag_DEEP | PF_WorldFlag_WRITEABLE;
  EXPECT_EQ(AEUtil::read_pixel_format(&world, &tag), 0);
  EXPECT_EQ(tag, PF_PixelFormat_ARGB64);
}

}  // namespace
