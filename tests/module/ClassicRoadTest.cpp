// The classic road of a frame: the render command and the canvas that it makes.
#include "tests/module/HostedModule.h"
#include "tests/support/PopupItems.h"

namespace {

using standin::Depth;
using standin::FrameRequest;
using standin::Matter;
using standin::RenderResult;
using vindrel::test::HostedModule;
using vindrel::test::LoadedOnly;
using vindrel::test::opaquePicture;
using vindrel::test::plainHost;

class ClassicRoad : public HostedModule {
 protected:
  FrameRequest frame(Depth depth = Depth::k8, int32_t width = 24, int32_t height = 16) const {
    FrameRequest request;
    request.input = opaquePicture(depth, width, height);
    return request;
  }

  PF_Err render(const FrameRequest& request) { return host.renderClassic(request, host.defaults()).error; }

  /// Names of the pixel services that were called.
  std::vector<std::string> drawing() {
    std::vector<std::string> names;
    for (const std::string& name : host.log().names()) {
      if (name == "fill" || name == "copy" || name == "copy_hq" || name == "transfer_rect") {
        names.push_back(name);
      }
    }
    return names;
  }
};

class UnderPremiere : public LoadedOnly {
 protected:
  UnderPremiere() : LoadedOnly(settings()) {}
  static standin::HostSettings settings() {
    standin::HostSettings settings = plainHost();
    settings.applId = kAppIdPremiere;
    return settings;
  }
};

TEST_F(UnderPremiere, theOutputIsACopyOfTheInputWhateverTheControlsSay) {
  ASSERT_EQ(host.start(), 0);
  standin::ParameterValues values = host.defaults();
  values.setCheckbox("Clear Background", true);
  values.setNumber("Dot Size", 100);
  for (const Depth depth : {Depth::k8, Depth::k16}) {
    FrameRequest request;
    request.input = opaquePicture(depth, 24, 16);
    const RenderResult result = host.renderClassic(request, values);
    EXPECT_EQ(result.error, 0);
    EXPECT_TRUE(samePixels(result.output, request.input));
  }
  EXPECT_EQ(host.log().count("checkout_param"), 0);
  EXPECT_EQ(host.log().count("PF_NewWorld"), 0);
  EXPECT_EQ(host.finish(), 0);
  EXPECT_EQ(owed(), "");
}

TEST_F(UnderPremiere, anErrorOfTheCopyIsTheResult) {
  ASSERT_EQ(host.start(), 0);
  host.faults().fail("copy", 1, 91);
  FrameRequest request;
  request.input = opaquePicture(Depth::k8, 24, 16);
  EXPECT_EQ(host.renderClassic(request, host.defaults()).error, 91);
  EXPECT_EQ(host.finish(), 0);
}

TEST_F(ClassicRoad, aFrameAtEachDepthLeavesNothingBehind) {
  for (const Depth depth : standin::kAllDepths) {
    const RenderResult result = host.renderClassic(frame(depth), host.defaults());
    EXPECT_EQ(result.error, 0);
    EXPECT_FALSE(samePixels(result.output, frame(depth).input)) << "there must be a dot";
  }
}

TEST_F(ClassicRoad, theCanvasHasTheSizeOfTheDownsampledLayerRoundedToNearest) {
  FrameRequest request = frame(Depth::k8, 40, 20);
  request.layerWidth = 1921;
  request.layerHeight = 1079;
  request.downsampleX = {1, 2};
  request.downsampleY = {1, 4};
  ASSERT_EQ(render(request), 0);
  ASSERT_EQ(host.log().newWorlds.size(), 1U);
  EXPECT_EQ(host.log().newWorlds[0].width, 961);   // 960.5 + 0.5
  EXPECT_EQ(host.log().newWorlds[0].height, 270);  // 269.75 + 0.5, truncated
}

TEST_F(ClassicRoad, theCanvasComesClearedAndAtTheDepthOfTheInput) {
  for (const Depth depth : standin::kAllDepths) {
    host.log().clear();
    ASSERT_EQ(render(frame(depth)), 0);
    ASSERT_EQ(host.log().newWorlds.size(), 1U);
    EXPECT_EQ(host.log().newWorlds[0].suiteVersion, 2);
    EXPECT_NE(host.log().newWorlds[0].flags, 0);
    EXPECT_EQ(host.log().newWorlds[0].format, standin::pixelFormat(depth));
    EXPECT_EQ(host.log().count("PF_DisposeWorld"), 1);
  }
}

TEST_F(ClassicRoad, versionOneMakesADeepCanvasWithFlagsThree) {
  host.settings().withheld = {{"PF World Suite", 2}};
  ASSERT_EQ(render(frame(Depth::k16)), 0);
  ASSERT_EQ(host.log().newWorlds.size(), 1U);
  EXPECT_EQ(host.log().newWorlds[0].suiteVersion, 1);
  EXPECT_EQ(host.log().newWorlds[0].flags, 3);
}

TEST_F(ClassicRoad, versionOneMakesAnEightBitCanvasWithFlagsOne) {
  host.settings().withheld = {{"PF World Suite", 2}};
  ASSERT_EQ(render(frame(Depth::k8)), 0);
  ASSERT_EQ(host.log().newWorlds.size(), 1U);
  EXPECT_EQ(host.log().newWorlds[0].suiteVersion, 1);
  EXPECT_EQ(host.log().newWorlds[0].flags, 1);
  EXPECT_EQ(host.log().count("dispose_world"), 1);
}

TEST_F(ClassicRoad, aFrameOfVersionOneLooksTheSame) {
  const RenderResult usual = host.renderClassic(frame(), host.defaults());
  host.settings().withheld = {{"PF World Suite", 2}};
  const RenderResult old = host.renderClassic(frame(), host.defaults());
  ASSERT_EQ(old.error, 0);
  EXPECT_TRUE(samePixels(usual.output, old.output));
}

TEST_F(ClassicRoad, aFloatFrameWithoutACanvasGetsItsBackgroundAndDamage) {
  // The second version is there for reading the format, and gone when the canvas is asked for.
  host.faults().failFrom("AcquireSuite:PF World Suite 2", 2, kSPSuiteNotFoundError);
  const FrameRequest request = frame(Depth::k32);
  const RenderResult result = host.renderClassic(request, host.defaults());
  EXPECT_EQ(result.error, PF_Err_INTERNAL_STRUCT_DAMAGED);
  EXPECT_EQ(drawing(), (std::vector<std::string>{"fill", "copy_hq"}));
  EXPECT_EQ(host.log().count("new_world"), 0);
  EXPECT_EQ(host.log().count("dispose_world"), 0);
  EXPECT_EQ(host.books().openCount(Matter::kParameter), 0);
  host.faults().clear();
}

TEST_F(ClassicRoad, aCanvasThatTheHostCantMakeBringsTheHostsError) {
  host.faults().fail("PF_NewWorld", 1, PF_Err_OUT_OF_MEMORY);
  EXPECT_EQ(render(frame()), PF_Err_OUT_OF_MEMORY);
  EXPECT_EQ(host.log().count("PF_DisposeWorld"), 1) << "it is dropped like any other";
  EXPECT_EQ(host.log().count("checkout_param"), 0);
}

TEST_F(ClassicRoad, aHostWithNeitherWorldSuiteHearsOfDamage) {
  host.settings().withheld = {{"PF World Suite", 1}, {"PF World Suite", 2}};
  EXPECT_EQ(render(frame()), PF_Err_INTERNAL_STRUCT_DAMAGED);
}

TEST_F(ClassicRoad, theCanvasAndItsBlockGoBackOnce) {
  const int32_t handles = host.books().openCount(Matter::kHandle);
  ASSERT_EQ(render(frame()), 0);
  EXPECT_EQ(host.log().count("PF_DisposeWorld"), 1);
  EXPECT_EQ(host.books().openCount(Matter::kWorld), 0);
  EXPECT_EQ(host.books().openCount(Matter::kHandle), handles);
}

TEST_F(ClassicRoad, anUnreadableFormatIsTheErrorThoughTheCanvasIsMade) {
  // A host that fails after it has told the format.
  host.faults().fail("ReleaseSuite:PF World Suite 2", 1, 61);
  EXPECT_EQ(render(frame()), 61);
  EXPECT_EQ(host.log().count("PF_NewWorld"), 1);
  EXPECT_EQ(host.log().count("checkout_param"), 0);
  EXPECT_EQ(host.log().count("checkin_param"), 0);
  EXPECT_TRUE(drawing().empty());
}

TEST_F(ClassicRoad, aFailedFetchEndsTheFrameAndGivesNothingBack) {
  host.faults().fail("checkout_param", 6, 55);
  EXPECT_EQ(render(frame()), 55);
  EXPECT_TRUE(drawing().empty());
  EXPECT_EQ(host.log().count("checkin_param"), 0);
  EXPECT_EQ(host.books().openCount(Matter::kParameter), 5);
  finishOwing({Matter::kParameter});
}

TEST_F(ClassicRoad, aFailedDrawingStillGivesTheValuesBack) {
  host.faults().fail("fill", 1, 56);
  EXPECT_EQ(render(frame()), 56);
  EXPECT_GT(host.log().count("checkin_param"), 0);
  EXPECT_EQ(host.books().openCount(Matter::kParameter), 0);
}

TEST_F(ClassicRoad, aFrameWithoutABasicSuiteIsDamageBeforeAnythingIsDrawn) {
  host.settings().withoutBasicSuite = true;
  EXPECT_EQ(render(frame()), PF_Err_INTERNAL_STRUCT_DAMAGED);
  EXPECT_EQ(host.log().newWorlds.size(), 1U) << "worlds come by the suites of the first call";
  EXPECT_TRUE(drawing().empty());
  EXPECT_EQ(host.log().count("checkin_param"), 0);
  host.settings().withoutBasicSuite = false;
  finishOwing({Matter::kParameter});  // the exception passes by the giving back of values
}

TEST_F(ClassicRoad, aGreyedMaskLayerIsAnAllZeroMask) {
  standin::ParameterValues values = host.defaults();
  values.setLayer("Mask Target Layer", standin::LayerValue::of(opaquePicture(Depth::k8, 24, 16)));
  ASSERT_EQ(host.updateParamsUi(values), 0);  // "Mask" isn't on "Layer": the layer's control goes grey
  values.setPopup("Mask", vindrel::test::maskLayer);
  ASSERT_EQ(host.renderClassic(frame(), values).error, 0);
  ASSERT_EQ(host.log().transfers.size(), 1U);
  const std::optional<PF_MaskWorld>& mask = host.log().transfers[0].mask;
  ASSERT_TRUE(mask.has_value());
  EXPECT_EQ(mask->mask.data, nullptr);
  EXPECT_EQ(mask->mask.width, 0);
  EXPECT_EQ(mask->offset.h, 0);
  EXPECT_EQ(mask->offset.v, 0);
  EXPECT_EQ(mask->what_is_mask, PF_MaskFlag_NONE);
  finishOwing({Matter::kStrayCheckin, Matter::kLayerParamUi});
}

TEST_F(ClassicRoad, aGreyedLayerIsNotFetchedButGivenBack) {
  // With the controls as they are declared no layer is in use, and all four are greyed.
  ASSERT_EQ(host.updateParamsUi(host.defaults()), 0);
  host.log().clear();
  ASSERT_EQ(render(frame()), 0);
  EXPECT_EQ(host.log().count("checkout_param"), 110);
  EXPECT_EQ(host.log().count("checkin_param"), 114);
  EXPECT_EQ(host.books().complaintCount(Matter::kStrayCheckin), 4);
  finishOwing({Matter::kStrayCheckin, Matter::kLayerParamUi});
}

TEST_F(ClassicRoad, anErrorOfGivingBackIsToldWhenThereIsNoOther) {
  host.faults().fail("checkin_param", 3, 57);
  EXPECT_EQ(render(frame()), 57);
  // The walk ends at the third value.
  EXPECT_EQ(host.log().count("checkin_param"), 3);
  finishOwing({Matter::kParameter});
}

TEST_F(ClassicRoad, anErrorOfTheDrawingComesBeforeOneOfGivingBack) {
  host.faults().fail("fill", 1, 56);
  host.faults().fail("checkin_param", 3, 57);
  EXPECT_EQ(render(frame()), 56);
  finishOwing({Matter::kParameter});
}

TEST_F(ClassicRoad, anUnknownFormatIsRefusedAndDrawsNothing) {
  // The host says that all went well, but tells no format, and makes a world of it.
  host.faults().fail("PF_GetPixelFormat", 1, 0);
  host.faults().fail("PF_NewWorld", 1, 0);
  EXPECT_EQ(render(frame()), PF_Err_UNRECOGNIZED_PARAM_TYPE);
  EXPECT_TRUE(drawing().empty());
  EXPECT_EQ(host.books().openCount(Matter::kParameter), 0);
}

TEST_F(ClassicRoad, aFrameDoesNotDependOnTheOneBefore) {
  const RenderResult first = host.renderClassic(frame(), host.defaults());
  standin::ParameterValues other = host.defaults();
  other.setNumber("Dot Size", 3);
  other.setAngle("Global Rotation", 33);
  ASSERT_EQ(host.renderClassic(frame(Depth::k16, 50, 20), other).error, 0);
  const RenderResult again = host.renderClassic(frame(), host.defaults());
  EXPECT_TRUE(samePixels(first.output, again.output));
}

}  // namespace
