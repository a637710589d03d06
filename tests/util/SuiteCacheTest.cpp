#include "effect/share/util/SuiteCache.h"

#include <gtest/gtest.h>

#include "tests/util/SmallHost.h"

namespace {

using smallhost::SmallHost;
using Lines = std::vector<std::string>;

/// The bare number that `act` throws, or 0.
template <class Act>
long thrownNumber(Act act) {
  try {
    act();
  } catch (long thrown) {
    return thrown;
  }
  return 0;
}

TEST(SuiteCache, noSuiteIsAskedForBeforeItIsNeeded) {
  SmallHost host;
  { AEUtil::SuiteScope suites(host.basic()); }
  EXPECT_TRUE(host.log.empty());
}

TEST(SuiteCache, eachSuiteIsAskedForByItsNameAndVersionOnce) {
  SmallHost host;
  AEUtil::SuiteScope suites(host.basic());
  for (int i = 0; i < 2; ++i) {
    suites->handleSuite();
    suites->worldSuite1();
    suites->fillMatteSuite();
    suites->worldTransformSuite();
    suites->appSuite();
  }
  EXPECT_EQ(host.log, (Lines{"acquire PF Handle Suite 2", "acquire PF World Suite 1", "acquire PF Fill Matte Suite 2",
                             "acquire PF World Transform Suite 1", "acquire PF AE App Suite 6"}));
}

TEST(SuiteCache, releaseAllGivesBackEachFilledSlotOnceAndNoOther) {
  SmallHost host;
  AEUtil::SuiteCache suites;
  suites.basic = host.basic();
  suites.worldTransformSuite();
  suites.handleSuite();
  suites.appSuite();
  host.log.clear();
  suites.releaseAll();
  EXPECT_EQ(host.log,
            (Lines{"release PF Handle Suite 2", "release PF World Transform Suite 1", "release PF AE App Suite 6"}));
}

TEST(SuiteCache, releaseAllLeavesTheSlotsFilled) {
  SmallHost host;
  AEUtil::SuiteCache suites;
  suites.basic = host.basic();
  const auto* const suite = &suites.fillMatteSuite();
  suites.releaseAll();
  EXPECT_EQ(suites.slots[AEUtil::SuiteCache::fillMatteSlot], suite);
}

TEST(SuiteCache, releaseAllOfAnEmptyRecordAsksNothing) {
  SmallHost host;
  AEUtil::SuiteCache suites;
  suites.basic = host.basic();
  suites.releaseAll();
  EXPECT_TRUE(host.log.empty());
}

TEST(SuiteCache, aSuiteThatIsRefusedThrowsTheBareNumberAndOwesNothing) {
  SmallHost host;
  host.withheld = {"PF Fill Matte Suite 2"};
  {
    AEUtil::SuiteScope suites(host.basic());
    EXPECT_EQ(thrownNumber([&] { suites->fillMatteSuite(); }), 516);
  }
  EXPECT_EQ(host.log, Lines{"acquire PF Fill Matte Suite 2"});
}

TEST(SuiteCache, aSuiteThatComesAsNullThrowsTheBareNumber) {
  SmallHost host;
  host.givenAsNull = {"PF World Transform Suite 1"};
  AEUtil::SuiteScope suites(host.basic());
  EXPECT_EQ(thrownNumber([&] { suites->worldTransformSuite(); }), 516);
}

TEST(SuiteCache, aSuiteThatComesWithAnErrorThrowsTheBareNumber) {
  SmallHost host;
  host.givenWithError = {"PF World Transform Suite 1"};
  AEUtil::SuiteScope suites(host.basic());
  EXPECT_EQ(thrownNumber([&] { suites->worldTransformSuite(); }), 516);
}

TEST(SuiteCache, aRefusedSuiteIsAskedForAgainAtTheNextNeed) {
  SmallHost host;
  host.withheld = {"PF Handle Suite 2"};
  AEUtil::SuiteScope suites(host.basic());
  EXPECT_EQ(thrownNumber([&] { suites->handleSuite(); }), 516);
  host.withheld.clear();
  EXPECT_EQ(thrownNumber([&] { suites->handleSuite(); }), 0);
}

TEST(SuiteCache, aScopeWithoutABasicSuiteThrowsTheBareNumber) {
  EXPECT_EQ(thrownNumber([] { AEUtil::SuiteScope suites(nullptr); }), 516);
}

TEST(SuiteCache, aScopeGivesBackWhenAnExceptionPasses) {
  SmallHost host;
  try {
    AEUtil::SuiteScope suites(host.basic());
    suites->handleSuite();
    throw 1;
  } catch (int) {
  }
  EXPECT_EQ(host.count("release PF Handle Suite 2"), 1);
}

TEST(SuiteCache, theGlobalRecordNeedsABasicSuite) {
  AEUtil::openGlobalSuites(nullptr);
  EXPECT_EQ(AEUtil::globalSuites(), nullptr);
  EXPECT_EQ(thrownNumber([] { AEUtil::requireGlobalSuites(); }), 516);
}

TEST(SuiteCache, closingTheGlobalRecordGivesBackItsSuites) {
  SmallHost host;
  AEUtil::requireGlobalSuites().handleSuite();
  AEUtil::closeGlobalSuites();
  EXPECT_EQ(host.count("release PF Handle Suite 2"), 1);
  EXPECT_EQ(AEUtil::globalSuites(), nullptr);
  AEUtil::closeGlobalSuites();
  EXPECT_EQ(host.count("release PF Handle Suite 2"), 1);
}

TEST(SuiteCache, aReopenedGlobalRecordBeginsWithEmptySlots) {
  SmallHost host;
  AEUtil::requireGlobalSuites().handleSuite();
  AEUtil::closeGlobalSuites();
  AEUtil::openGlobalSuites(host.basic());
  AEUtil::requireGlobalSuites().handleSuite();
  EXPECT_EQ(host.count("acquire PF Handle Suite 2"), 2);
}

TEST(SuiteCache, anOpenGlobalRecordKeepsItsBasicSuite) {
  SmallHost host;
  SPBasicSuite other{};
  AEUtil::openGlobalSuites(&other);
  EXPECT_EQ(AEUtil::requireGlobalSuites().basic, host.basic());
}

}  // namespace
