// Which values a frame asks the host for, on either road, and which it gives back.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "tests/module/HostedModule.h"
#include "tests/support/PopupItems.h"

namespace vindrel::test {
namespace {

using standin::Matter;

class ControlValues : public HostedModule {
 protected:
  void SetUp() override {
    HostedModule::SetUp();
    values = host.defaults();
    request.input = opaquePicture(standin::Depth::k8, 32, 24);
    request.currentTime = 40;
    request.timeStep = 10;
    request.timeScale = 300;
  }
  void TearDown() override {
    // The looks of index 0, the check-ins of greyed layers, and on the smart road all that is never given back.
    finishOwing({Matter::kLayerParamUi, Matter::kStrayCheckin, Matter::kParameter, Matter::kLayerPixels});
    HostedModule::TearDown();
  }

  /// Host indices that were checked out (or in) since the log was cleared.
  std::vector<int32_t> asked(bool checkout) {
    std::vector<int32_t> indices;
    for (const standin::ParamCall& call : host.log().params) {
      if (call.checkout == checkout) indices.push_back(call.index);
    }
    return indices;
  }

  /// All host indices of controls with a value, but for those that are left out.
  static std::vector<int32_t> allBut(std::vector<int32_t> leftOut) {
    // Starts and ends of the four groups.
    leftOut.insert(leftOut.end(), {19, 32, 33, 62, 63, 92, 93, 122});
    std::vector<int32_t> indices;
    for (int32_t index = 1; index <= 122; ++index) {
      if (std::find(leftOut.begin(), leftOut.end(), index) == leftOut.end()) indices.push_back(index);
    }
    return indices;
  }

  standin::ParameterValues values;
  standin::FrameRequest request;
};

TEST_F(ControlValues, greyedLayersAreNotCheckedOutOnTheClassicRoad) {
  ASSERT_EQ(host.updateParamsUi(values), 0);  // all four layers are greyed by this
  host.log().clear();
  ASSERT_EQ(host.renderClassic(request, values).error, 0);
  EXPECT_EQ(asked(true), allBut({16, 40, 70, 100}));
  // Given back is every control with a value, the four layers included, of which the host knows nothing.
  EXPECT_EQ(asked(false).size(), 114U);
  EXPECT_EQ(host.books().complaintCount(Matter::kStrayCheckin), 4);
  EXPECT_EQ(host.books().openCount(Matter::kParameter), 0);
}

TEST_F(ControlValues, freeLayersAreCheckedOutAndGivenBackOnTheClassicRoad) {
  values.setPopup("Mask", maskLayer);
  values.setCheckbox("Enable Effector 2", true);
  values.setPopup("Effect Map 2", customMap);
  ASSERT_EQ(host.updateParamsUi(values), 0);
  host.log().clear();
  ASSERT_EQ(host.renderClassic(request, values).error, 0);
  EXPECT_EQ(asked(true), allBut({40, 100}));
  EXPECT_EQ(asked(false).size(), 114U);
  EXPECT_EQ(host.books().complaintCount(Matter::kStrayCheckin), 2);
  EXPECT_EQ(host.books().openCount(Matter::kParameter), 0);
}

TEST_F(ControlValues, areCheckedOutAtTheTimeOfTheFrame) {
  host.log().clear();
  ASSERT_EQ(host.renderClassic(request, values).error, 0);
  ASSERT_FALSE(host.log().params.empty());
  for (const standin::ParamCall& call : host.log().params) {
    if (!call.checkout) continue;
    EXPECT_EQ(call.time, 40);
    EXPECT_EQ(call.timeStep, 10);
    EXPECT_EQ(call.timeScale, 300U);
  }
}

TEST_F(ControlValues, layersAreRequestedAndNotCheckedOutOnTheSmartRoadGreyedOrNot) {
  ASSERT_EQ(host.updateParamsUi(values), 0);
  host.log().clear();
  standin::PreRendered pre = host.preRender(request, values);
  ASSERT_EQ(pre.error(), 0);
  EXPECT_EQ(asked(true), allBut({16, 40, 70, 100}));
  EXPECT_TRUE(asked(false).empty());
  std::vector<std::pair<int32_t, A_long>> requests;
  for (const standin::LayerCheckout& checkout : pre.checkouts()) {
    if (checkout.index != 0) requests.emplace_back(checkout.index, checkout.id);
  }
  const std::vector<std::pair<int32_t, A_long>> expected = {{16, 1000001}, {16, 1}, {40, 1000002},  {40, 2},
                                                            {70, 1000003}, {70, 3}, {100, 1000004}, {100, 4}};
  EXPECT_EQ(requests, expected);
}

TEST_F(ControlValues, areNeverGivenBackOnTheSmartRoad) {
  ASSERT_EQ(host.renderSmart(request, values).error, 0);
  EXPECT_TRUE(asked(false).empty());
  EXPECT_EQ(host.books().openCount(Matter::kParameter), 110);
  EXPECT_EQ(host.books().openCount(Matter::kLayerPixels), 3);  // the mask has no layer
}

TEST_F(ControlValues, thatCannotBeHadEndTheFrameWithoutGivingBack) {
  host.log().clear();
  host.faults().fail("checkout_param", 30, PF_Err_OUT_OF_MEMORY);
  EXPECT_EQ(host.renderClassic(request, values).error, PF_Err_OUT_OF_MEMORY);
  EXPECT_EQ(asked(true).size(), 30U);
  EXPECT_TRUE(asked(false).empty());
  EXPECT_EQ(host.log().count("transfer_rect"), 0);
}

TEST_F(ControlValues, thatCannotBeGivenBackAreTheErrorOfAFrameThatWentWell) {
  host.log().clear();
  host.faults().fail("checkin_param", 5, PF_Err_INVALID_INDEX);
  EXPECT_EQ(host.renderClassic(request, values).error, PF_Err_INVALID_INDEX);
  EXPECT_EQ(asked(false).size(), 5U);
  EXPECT_EQ(host.log().count("transfer_rect"), 1);
}

TEST_F(ControlValues, thatCannotBeGivenBackDoNotHideTheErrorOfTheFrame) {
  host.faults().fail("transfer_rect", 1, PF_Err_OUT_OF_MEMORY);
  host.faults().fail("checkin_param", 5, PF_Err_INVALID_INDEX);
  EXPECT_EQ(host.renderClassic(request, values).error, PF_Err_OUT_OF_MEMORY);
}

}  // namespace
}  // namespace vindrel::test
