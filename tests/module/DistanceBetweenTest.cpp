// How a change of "Distance Between" rewrites the two distances, so that the grid does not jump.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "tests/module/HostedModule.h"

namespace vindrel::test {
namespace {

using standin::ChangedParams;
using standin::Matter;

constexpr int32_t dots = 1;
constexpr int32_t centers = 2;

class DistanceBetween : public HostedModule {
 protected:
  void SetUp() override {
    HostedModule::SetUp();
    values = host.defaults();
    values.setNumber("Dot Size", 10);
    values.setNumber("Dot Distance X", 20);
    values.setNumber("Dot Distance Y", 4);
  }
  void TearDown() override {
    // Greying names index 0, which a host may wonder about.
    if (leavesALock) {
      finishOwing({Matter::kLayerParamUi, Matter::kHandleLock});
    } else {
      finishOwing({Matter::kLayerParamUi});
    }
    HostedModule::TearDown();
  }

  void update() { ASSERT_EQ(host.updateParamsUi(values), 0); }

  ChangedParams changeTo(int32_t mode) {
    values.setPopup("Distance Between", mode);
    return host.userChangedParam("Distance Between", values);
  }

  /// Two places in the sequence record.
  bool modeKnown() { return host.sequenceBytes().at(24) != 0; }
  int32_t mode() {
    int32_t result = 0;
    std::memcpy(&result, host.sequenceBytes().data() + 28, sizeof result);
    return result;
  }

  bool leavesALock = false;
  const std::vector<int32_t> both = {9, 10};
  standin::ParameterValues values;
};

TEST_F(DistanceBetween, fromDotsToCentersAddsTheSizeOfADotAndBackTakesItOff) {
  update();
  ChangedParams changed = changeTo(centers);
  EXPECT_EQ(changed.error, 0);
  EXPECT_EQ(changed.indices, both);
  EXPECT_EQ(values.number("Dot Distance X"), 30.0);
  EXPECT_EQ(values.number("Dot Distance Y"), 14.0);
  changed = changeTo(dots);
  EXPECT_EQ(changed.indices, both);
  EXPECT_EQ(values.number("Dot Distance X"), 20.0);
  EXPECT_EQ(values.number("Dot Distance Y"), 4.0);
}

TEST_F(DistanceBetween, losesWhatTheClampAtZeroTakes) {
  values.setPopup("Distance Between", centers);
  values.setNumber("Dot Distance X", 5);
  update();
  changeTo(dots);
  EXPECT_EQ(values.number("Dot Distance X"), 0.0);
  changeTo(centers);
  EXPECT_EQ(values.number("Dot Distance X"), 10.0);
}

TEST_F(DistanceBetween, keepsADistanceThatIsHardlyMoreThanNothing) {
  values.setPopup("Distance Between", centers);
  values.setNumber("Dot Distance X", 10.005);
  values.setNumber("Dot Distance Y", 10 + 0x1p-40);
  update();
  changeTo(dots);
  EXPECT_EQ(values.number("Dot Distance X"), 10.005 - 10.0);
  EXPECT_EQ(values.number("Dot Distance Y"), 0x1p-40);
}

TEST_F(DistanceBetween, remembersTheModeOfTheFirstUpdate) {
  EXPECT_FALSE(modeKnown());
  values.setPopup("Distance Between", centers);
  update();
  EXPECT_TRUE(modeKnown());
  EXPECT_EQ(mode(), centers);
  values.setPopup("Distance Between", dots);
  update();
  EXPECT_EQ(mode(), centers);
}

TEST_F(DistanceBetween, changedBeforeTheFirstUpdateChangesNothingAndLeavesTheSequenceLocked) {
  const ChangedParams changed = changeTo(centers);
  EXPECT_EQ(changed.error, 0);
  EXPECT_TRUE(changed.indices.empty());
  EXPECT_EQ(values.number("Dot Distance X"), 20.0);
  EXPECT_EQ(host.books().openCount(Matter::kHandleLock), 1);
  leavesALock = true;
}

TEST_F(DistanceBetween, setToTheSameModeChangesNothingAndUnlocks) {
  update();
  const ChangedParams changed = changeTo(dots);
  EXPECT_TRUE(changed.indices.empty());
  EXPECT_EQ(values.number("Dot Distance X"), 20.0);
  EXPECT_EQ(host.books().openCount(Matter::kHandleLock), 0);
}

TEST_F(DistanceBetween, setToAnUnknownModeMarksTheDistancesAndLeavesThem) {
  update();
  const ChangedParams changed = changeTo(3);
  EXPECT_EQ(changed.indices, both);
  EXPECT_EQ(values.number("Dot Distance X"), 20.0);
  EXPECT_EQ(values.number("Dot Distance Y"), 4.0);
  EXPECT_EQ(mode(), 3);
}

TEST_F(DistanceBetween, isTheOnlyControlWhoseChangeCounts) {
  update();
  values.setPopup("Distance Between", centers);
  const ChangedParams changed = host.userChangedParam("Dot Size", values);
  EXPECT_TRUE(changed.indices.empty());
  EXPECT_EQ(values.number("Dot Distance X"), 20.0);
}

TEST_F(DistanceBetween, isTheOnlyControlThatTheHostReports) {
  for (const standin::Control& control : host.controls()) {
    EXPECT_EQ((control.definition.flags & PF_ParamFlag_SUPERVISE) != 0, control.name == "Distance Between")
        << control.name;
  }
}

// A frame of the two modes.

class DistanceFrames : public HostedModule {
 protected:
  void TearDown() override {
    finishOwing({Matter::kParameter, Matter::kLayerPixels});  // the smart road gives nothing back
    HostedModule::TearDown();
  }

  standin::Image render(int32_t mode, double size, double distance) {
    standin::ParameterValues values = host.defaults();
    values.setPopup("Distance Between", mode);
    values.setNumber("Dot Size", size);
    values.setNumber("Dot Distance X", distance);
    values.setNumber("Dot Distance Y", distance);
    values.setNumber("Dot Opacity", 50);
    standin::FrameRequest request;
    request.input = opaquePicture(standin::Depth::k8, 48, 32);
    standin::RenderResult result = host.renderSmart(request, values);
    EXPECT_EQ(result.error, 0);
    return result.output;
  }
};

TEST_F(DistanceFrames, areTheSameAfterTheConversion) {
  const standin::Image between = render(dots, 6, 8);
  EXPECT_TRUE(samePixels(between, render(centers, 6, 14)));
  EXPECT_FALSE(samePixels(between, render(centers, 6, 8)));
}

TEST_F(DistanceFrames, withNoDistanceBetweenCentersHaveAPitchOfOnePixel) {
  const standin::Image none = render(centers, 0.5, 0);
  EXPECT_TRUE(samePixels(none, render(centers, 0.5, 1)));
  EXPECT_FALSE(samePixels(none, render(centers, 0.5, 2)));
}

TEST_F(DistanceFrames, clampAnAspectThatAnExpressionDroveBeyondItsLimit) {
  const auto withAspect = [this](double aspect) {
    standin::ParameterValues values = host.defaults();
    values.setNumber("Dot Aspect", aspect);
    standin::FrameRequest request;
    request.input = opaquePicture(standin::Depth::k8, 48, 32);
    return host.renderSmart(request, values).output;
  };
  EXPECT_TRUE(samePixels(withAspect(250), withAspect(100)));
  EXPECT_TRUE(samePixels(withAspect(-250), withAspect(-100)));
  EXPECT_FALSE(samePixels(withAspect(100), withAspect(40)));
}

}  // namespace
}  // namespace vindrel::test
