// The entry around a filter that fails on command, and the base filter's own forms of the frame commands.
#include "tests/module/HostedModule.h"
#include "tests/module/ProbeCommands.h"
#include "tests/support/PopupItems.h"

namespace {

using standin::Depth;
using standin::Matter;

class Probe : public vindrel::test::LoadedOnly {
 protected:
  Probe() : LoadedOnly(vindrel::test::plainHost(), VINDREL_PROBE_PATH) {}

  void SetUp() override { ASSERT_EQ(host.start(), 0); }

  void TearDown() override {
    LoadedOnly::TearDown();
    if (!takenDown) {
      ASSERT_EQ(host.sequenceSetdown(), 0);
      EXPECT_EQ(host.globalSetdown(), probe::setdownError);
    }
  }

  standin::FrameRequest frame() const {
    standin::FrameRequest request;
    request.input = vindrel::test::opaquePicture(Depth::k8, 12, 8);
    return request;
  }

  bool takenDown = false;
};

TEST_F(Probe, anErrorOfTheSetDownIsReturnedAfterEverythingIsTakenDown) {
  ASSERT_EQ(host.sequenceSetdown(), 0);
  EXPECT_EQ(host.globalSetdown(), probe::setdownError);
  EXPECT_EQ(owed(), "");
  takenDown = true;
}

TEST_F(Probe, anExceptionInTheSetDownLeavesEverythingForTheNextOne) {
  ASSERT_EQ(host.sequenceSetdown(), 0);
  const int32_t handles = host.books().openCount(Matter::kHandle);
  const int32_t suites = host.books().openCount(Matter::kSuite);
  host.onAbort = [] { return PF_Err{1}; };
  EXPECT_EQ(host.globalSetdown(), PF_Err_INTERNAL_STRUCT_DAMAGED);
  EXPECT_EQ(host.books().openCount(Matter::kHandle), handles);
  EXPECT_EQ(host.books().openCount(Matter::kSuite), suites);
  host.onAbort = nullptr;
  EXPECT_EQ(host.globalSetdown(), probe::setdownError);
  EXPECT_EQ(owed(), "");
  takenDown = true;
}

TEST_F(Probe, aSwallowedAllocationFailureReachesTheHostAsFour) {
  host.faults().fail("host_new_handle", 1, PF_Err_OUT_OF_MEMORY);
  EXPECT_EQ(host.call(probe::swallowFailure), PF_Err_OUT_OF_MEMORY);
}

TEST_F(Probe, aSwallowedFailureOfALockReachesTheHostAsFour) {
  host.faults().fail("host_lock_handle", 1, 0);
  EXPECT_EQ(host.call(probe::swallowFailure), PF_Err_OUT_OF_MEMORY);
}

TEST_F(Probe, whatWasSwallowedIsForgottenAtTheNextCall) {
  host.faults().fail("host_new_handle", 1, PF_Err_OUT_OF_MEMORY);
  ASSERT_EQ(host.call(probe::swallowFailure), PF_Err_OUT_OF_MEMORY);
  EXPECT_EQ(host.call(probe::swallowFailure), 0);
}

TEST_F(Probe, moreSwallowedFailuresThanTheListHasRoomForEndWell) {
  host.onAbort = [this] {
    host.faults().clear();
    return PF_Err_NONE;
  };
  host.faults().failFrom("host_new_handle", 1, PF_Err_OUT_OF_MEMORY);
  EXPECT_EQ(host.call(probe::swallowManyFailures), PF_Err_OUT_OF_MEMORY);
}

TEST_F(Probe, theOldestPendingErrorIsTheResult) {
  EXPECT_EQ(host.call(probe::pushTwo), 9);
}

TEST_F(Probe, aResultOfTheCommandComesBeforePendingErrors) {
  EXPECT_EQ(host.call(probe::pushAndFail), 5);
}

TEST_F(Probe, readingPendingErrorsLeavesNoBlockBehind) {
  const int32_t handles = host.books().openCount(Matter::kHandle);
  ASSERT_EQ(host.call(probe::pushTwo), 9);
  EXPECT_EQ(host.books().openCount(Matter::kHandle), handles);
}

TEST_F(Probe, aFailureThatCantEvenBeCopiedIsToldAsDamage) {
  host.faults().fail("host_new_handle", 1, PF_Err_OUT_OF_MEMORY);
  EXPECT_EQ(host.call(probe::pushTwo), PF_Err_INTERNAL_STRUCT_DAMAGED);
}

TEST_F(Probe, theEffectsOwnExceptionBringsItsCode) {
  EXPECT_EQ(host.call(probe::throwOwnException), 123);
}

TEST_F(Probe, aStandardExceptionIsDamage) {
  EXPECT_EQ(host.call(probe::throwStandardException), PF_Err_INTERNAL_STRUCT_DAMAGED);
}

TEST_F(Probe, aBareNumberIsDamage) {
  EXPECT_EQ(host.call(probe::throwNumber), PF_Err_INTERNAL_STRUCT_DAMAGED);
}

TEST_F(Probe, exceptionsLeaveNothingBehind) {
  const int32_t handles = host.books().openCount(Matter::kHandle);
  host.call(probe::throwOwnException);
  host.call(probe::throwStandardException);
  host.call(probe::throwNumber);
  EXPECT_EQ(host.books().openCount(Matter::kHandle), handles);
}

TEST_F(Probe, theBaseFilterCannotDrawAndSaysSo) {
  EXPECT_EQ(host.renderClassic(frame(), host.defaults()).error, PF_Err_INTERNAL_STRUCT_DAMAGED);
  EXPECT_EQ(host.log().newWorlds.size(), 0U) << "it makes no canvas";
  EXPECT_EQ(host.books().openCount(Matter::kParameter), 0);
}

TEST_F(Probe, theBaseFilterGivesValuesBackAfterAFailedFetch) {
  host.faults().fail("checkout_param", 5, 33);
  EXPECT_EQ(host.renderClassic(frame(), host.defaults()).error, 33);
  EXPECT_GT(host.log().count("checkin_param"), 0);
  EXPECT_EQ(host.books().openCount(Matter::kParameter), 0);
}

TEST_F(Probe, theBaseFilterLeavesTheFlagsAlone) {
  const PF_OutFlags before = host.outFlags();
  EXPECT_EQ(host.queryDynamicFlags(host.defaults()), 0);
  EXPECT_EQ(host.outFlags(), before);
  EXPECT_EQ(host.log().params.size(), 0U);
}

TEST_F(Probe, theBaseFilterAsksForNoMoreThanItsInput) {
  standin::ParameterValues values = host.defaults();
  values.setPopup("Mask", vindrel::test::maskNone);
  standin::FrameRequest request = frame();
  request.layerWidth = 40;
  request.layerHeight = 30;
  request.input.originX = 5;
  request.input.originY = 6;
  const standin::PreRendered made = host.preRender(request, values);
  EXPECT_EQ(made.error(), 0);
  const PF_LRect rect = made.resultRect();
  EXPECT_EQ(rect.left, 5);
  EXPECT_EQ(rect.top, 6);
  EXPECT_EQ(rect.right, 17);
  EXPECT_EQ(rect.bottom, 14);
  EXPECT_EQ(made.flags(), 0);
}

TEST_F(Probe, theBaseFiltersSmartRoadEndsAtItsDrawingToo) {
  EXPECT_EQ(host.renderSmart(frame(), host.defaults()).error, PF_Err_INTERNAL_STRUCT_DAMAGED);
  EXPECT_EQ(host.log().newWorlds.size(), 0U);
}

}  // namespace
