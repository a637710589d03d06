// The services that other makers' modules ask for, through their tables; what each answers is worked out by hand.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <vector>

#include "HostTest.h"
#include "ae/AegpSuites.h"
#include "ae/AppSuites.h"
#include "ae/PixelSuites.h"
#include "ae/Suites.h"
#include "host/Image.h"

namespace {

using standin::Depth;
using standin::Image;
using standin::Matter;

class Suites : public scripted::HostTest {};

struct Visit {
  A_long x, y;
  int in, out;
  bool operator==(const Visit&) const = default;
};

// Writes down where it was, with the two blue channels.
PF_Err visit(void* refcon, A_long x, A_long y, PF_Pixel* in, PF_Pixel* out) {
  static_cast<std::vector<Visit>*>(refcon)->push_back({x, y, in->blue, out->blue});
  return PF_Err_NONE;
}

Image numbered(int32_t width, int32_t height, int first) {
  Image image(Depth::k8, width, height);
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      image.at<PF_Pixel>(x, y) = {255, 0, 0, static_cast<A_u_char>(first + y * width + x)};
    }
  }
  return image;
}

TEST_F(Suites, iterateGoesRowByRowOverWhatBothWorldsHave) {
  const Image source = numbered(2, 3, 10);
  const Image target = numbered(3, 2, 50);
  PF_EffectWorld from = host.lendWorld(source, "source");
  PF_EffectWorld to = host.lendWorld(target, "target");
  std::vector<Visit> seen;
  for (const int32 version : {1, 2}) {
    seen.clear();
    const auto* loops = suite<PF_Iterate8Suite>(kPFIterate8Suite, version);
    EXPECT_EQ(loops->iterate(in(), 0, 0, &from, nullptr, &seen, visit, &to), PF_Err_NONE);
    EXPECT_EQ(seen, (std::vector<Visit>{{0, 0, 10, 50}, {1, 0, 11, 51}, {0, 1, 12, 53}, {1, 1, 13, 54}}));
  }
  seen.clear();
  const PF_Rect area{1, -4, 9, 1};
  EXPECT_EQ(host.utils()->iterate(in(), 0, 0, &from, &area, &seen, visit, &to), PF_Err_NONE);
  EXPECT_EQ(seen, (std::vector<Visit>{{1, 0, 11, 51}}));
}

TEST_F(Suites, iterateWithoutASourceReadsTheDestination) {
  const Image target = numbered(2, 1, 50);
  PF_EffectWorld to = host.lendWorld(target, "target");
  std::vector<Visit> seen;
  EXPECT_EQ(host.utils()->iterate(in(), 0, 0, nullptr, nullptr, &seen, visit, &to), PF_Err_NONE);
  EXPECT_EQ(seen, (std::vector<Visit>{{0, 0, 50, 50}, {1, 0, 51, 51}}));
}

TEST_F(Suites, theOriginFormsShiftTheSourceAndOnlyOneLeavesOutWhatHasNone) {
  const Image source = numbered(2, 1, 10);
  const Image target = numbered(3, 1, 50);
  PF_EffectWorld from = host.lendWorld(source, "source");
  PF_EffectWorld to = host.lendWorld(target, "target");
  std::vector<Visit> seen;
  const PF_Point origin{2, 0};
  EXPECT_EQ(host.utils()->iterate_origin(in(), 0, 0, &from, nullptr, &origin, &seen, visit, &to), PF_Err_NONE);
  EXPECT_EQ(seen, (std::vector<Visit>{{2, 0, 10, 52}}));
  seen.clear();
  EXPECT_EQ(host.utils()->iterate_origin_non_clip_src(in(), 0, 0, &from, nullptr, &origin, &seen, visit, &to),
            PF_Err_NONE);
  EXPECT_EQ(seen, (std::vector<Visit>{{0, 0, 0, 50}, {1, 0, 0, 51}, {2, 0, 10, 52}}));
}

TEST_F(Suites, aLoopEndsWithWhatItsFunctionOrTheProgressAnswers) {
  const Image target = numbered(2, 3, 50);
  PF_EffectWorld to = host.lendWorld(target, "target");
  const auto stopAtRow1 = [](void*, A_long, A_long y, PF_Pixel*, PF_Pixel*) { return y == 1 ? PF_Err{99} : PF_Err{0}; };
  EXPECT_EQ(host.utils()->iterate(in(), 0, 0, nullptr, nullptr, nullptr, stopAtRow1, &to), 99);
  std::vector<std::pair<A_long, A_long>> told;
  host.onProgress = [&](A_long current, A_long total) {
    told.emplace_back(current, total);
    return current == 11 ? PF_Err{PF_Interrupt_CANCEL} : PF_Err{PF_Err_NONE};
  };
  std::vector<Visit> seen;
  EXPECT_EQ(host.utils()->iterate(in(), 10, 40, nullptr, nullptr, &seen, visit, &to), PF_Interrupt_CANCEL);
  EXPECT_EQ(told, (std::vector<std::pair<A_long, A_long>>{{10, 40}, {11, 40}}));
  EXPECT_EQ(seen.size(), 2u);
  host.onAbort = [] { return PF_Err{PF_Interrupt_CANCEL}; };
  EXPECT_EQ(host.utils()->iterate(in(), 0, 0, nullptr, nullptr, &seen, visit, &to), PF_Interrupt_CANCEL);
}

TEST_F(Suites, aLoopOverAPartCountsItsRowsFromThePartsOwnTop) {
  const Image target = numbered(2, 9, 0);
  PF_EffectWorld to = host.lendWorld(target, "target");
  std::vector<A_long> told;
  host.onProgress = [&](A_long current, A_long) {
    told.push_back(current);
    return PF_Err{PF_Err_NONE};
  };
  const PF_Rect part{0, 4, 2, 7};
  std::vector<Visit> seen;
  EXPECT_EQ(host.utils()->iterate(in(), 10, 40, nullptr, &part, &seen, visit, &to), PF_Err_NONE);
  EXPECT_EQ(told, (std::vector<A_long>{10, 11, 12}));
  ASSERT_EQ(seen.size(), 6U);
  EXPECT_EQ(seen.front().y, 4);
}

TEST_F(Suites, aLoopOverAWorldOfAnotherDepthIsRefused) {
  const Image deep(Depth::k16, 2, 2);
  PF_EffectWorld to = host.lendWorld(deep, "deep");
  std::vector<Visit> seen;
  EXPECT_EQ(host.utils()->iterate(in(), 0, 0, nullptr, nullptr, &seen, visit, &to), PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_TRUE(seen.empty());
  EXPECT_EQ(host.books().complaintCount(Matter::kBadWorld), 1) << report();
}

TEST_F(Suites, theGeneralLoopCountsAndOnceAProcessorIsOnce) {
  using Seen = std::vector<std::array<A_long, 3>>;
  Seen seen;
  const auto work = [](void* refcon, A_long thread, A_long i, A_long count) {
    static_cast<Seen*>(refcon)->push_back({thread, i, count});
    return PF_Err{PF_Err_NONE};
  };
  EXPECT_EQ(host.utils()->iterate_generic(2, &seen, work), PF_Err_NONE);
  EXPECT_EQ(host.utils()->iterate_generic(PF_Iterations_ONCE_PER_PROCESSOR, &seen, work), PF_Err_NONE);
  EXPECT_EQ(host.utils()->iterate_generic(0, &seen, work), PF_Err_NONE);
  EXPECT_EQ(host.utils()->iterate_generic(-2, &seen, work), PF_Err_NONE);
  EXPECT_EQ(seen, (Seen{{0, 0, 2}, {0, 1, 2}, {0, 0, 1}}));
}

TEST_F(Suites, pixelDataOfAnotherDepthIsNullAndNoError) {
  const Image image(Depth::k16, 2, 2);
  PF_EffectWorld world = host.lendWorld(image, "deep");
  const auto* data = suite<PF_PixelDataSuite>(kPFPixelDataSuite, 2);
  PF_Pixel16* deep = nullptr;
  EXPECT_EQ(data->get_pixel_data16(&world, nullptr, &deep), PF_Err_NONE);
  EXPECT_EQ(static_cast<void*>(deep), static_cast<void*>(world.data));
  PF_Pixel elsewhere{};
  EXPECT_EQ(data->get_pixel_data16(&world, &elsewhere, &deep), PF_Err_NONE);
  EXPECT_EQ(static_cast<void*>(deep), static_cast<void*>(&elsewhere));
  PF_Pixel8* small = &elsewhere;
  EXPECT_EQ(host.utils()->get_pixel_data8(&world, nullptr, &small), PF_Err_NONE);
  EXPECT_EQ(small, nullptr);
  EXPECT_EQ(host.utils()->get_pixel_data8(&world, nullptr, nullptr), PF_Err_BAD_CALLBACK_PARAM);
}

TEST_F(Suites, registrationNumbersNamesAndEveryOtherSlotIsRefusedByName) {
  const auto* utility = suite<AEGP_UtilitySuite>(kAEGPUtilitySuite, 7);
  AEGP_PluginID one = 0;
  AEGP_PluginID two = 0;
  AEGP_PluginID again = 0;
  EXPECT_EQ(utility->AEGP_RegisterWithAEGP(nullptr, "one", &one), PF_Err_NONE);
  EXPECT_EQ(utility->AEGP_RegisterWithAEGP(nullptr, "two", &two), PF_Err_NONE);
  EXPECT_EQ(utility->AEGP_RegisterWithAEGP(nullptr, "one", &again), PF_Err_NONE);
  EXPECT_GT(one, 0);
  EXPECT_NE(one, two);
  EXPECT_EQ(one, again);
  EXPECT_EQ(utility->AEGP_WriteToOSConsole("text"), PF_Err_INVALID_CALLBACK);
  ASSERT_EQ(host.books().complaintCount(Matter::kUnknownService), 1) << report();
  EXPECT_NE(host.books().complaints().back().text.find("AEGP_WriteToOSConsole"), std::string::npos);
  EXPECT_EQ(host.log().names().back(), "AEGP_WriteToOSConsole");
}

TEST_F(Suites, memoryOfTheGeneralSuiteKeepsItsHandleWhenItIsResized) {
  const auto* memory = suite<AEGP_MemorySuite>(kAEGPMemorySuite, 1);
  AEGP_MemHandle handle = nullptr;
  ASSERT_EQ(memory->AEGP_NewMemHandle(1, "label", 40, AEGP_MemFlag_CLEAR, &handle), PF_Err_NONE);
  void* block = nullptr;
  EXPECT_EQ(memory->AEGP_LockMemHandle(handle, &block), PF_Err_NONE);
  EXPECT_EQ(static_cast<char*>(block)[39], 0);
  std::memcpy(block, "abc", 4);
  EXPECT_EQ(memory->AEGP_ResizeMemHandle("label", 4000, handle), PF_Err_BAD_CALLBACK_PARAM) << "it is locked";
  EXPECT_EQ(memory->AEGP_UnlockMemHandle(handle), PF_Err_NONE);
  EXPECT_EQ(memory->AEGP_ResizeMemHandle("label", 4000, handle), PF_Err_NONE);
  AEGP_MemSize size = 0;
  EXPECT_EQ(memory->AEGP_GetMemHandleSize(handle, &size), PF_Err_NONE);
  EXPECT_EQ(size, 4000u);
  A_long count = 0;
  A_long bytes = 0;
  EXPECT_EQ(memory->AEGP_GetMemStats(1, &count, &bytes), PF_Err_NONE);
  EXPECT_EQ(count, 1);
  EXPECT_EQ(bytes, 4000);
  EXPECT_EQ(memory->AEGP_LockMemHandle(handle, &block), PF_Err_NONE);
  EXPECT_STREQ(static_cast<char*>(block), "abc");
  EXPECT_EQ(memory->AEGP_UnlockMemHandle(handle), PF_Err_NONE);
  EXPECT_EQ(memory->AEGP_FreeMemHandle(handle), PF_Err_NONE);
  EXPECT_EQ(memory->AEGP_FreeMemHandle(handle), PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_EQ(host.books().complaintCount(Matter::kBadHandle), 2) << report();
}

TEST_F(Suites, premultiplyTakesColorsToAlphaAndBack) {
  Image image(Depth::k8, 3, 1);
  image.at<PF_Pixel>(0, 0) = {128, 200, 255, 1};
  image.at<PF_Pixel>(1, 0) = {0, 9, 9, 9};
  image.at<PF_Pixel>(2, 0) = {255, 7, 8, 9};
  PF_EffectWorld world = host.lendWorld(image, "picture");
  EXPECT_EQ(host.utils()->premultiply(ref(), 1, &world), PF_Err_NONE);
  // 200 * 128 / 255 = 100.39, 255 * 128 / 255 = 128, 1 * 128 / 255 = 0.502.
  const PF_Pixel there = image.at<PF_Pixel>(0, 0);
  EXPECT_TRUE(there.alpha == 128 && there.red == 100 && there.green == 128 && there.blue == 1);
  EXPECT_EQ(int{image.at<PF_Pixel>(1, 0).red}, 0);
  EXPECT_EQ(int{image.at<PF_Pixel>(2, 0).red}, 7);
  EXPECT_EQ(host.utils()->premultiply(ref(), 0, &world), PF_Err_NONE);
  // 100 * 255 / 128 = 199.2, and the 1 becomes 1.99.
  const PF_Pixel back = image.at<PF_Pixel>(0, 0);
  EXPECT_TRUE(back.red == 199 && back.green == 255 && back.blue == 2);
  const PF_Pixel white{255, 255, 255, 255};
  image.at<PF_Pixel>(0, 0) = {51, 100, 0, 255};
  EXPECT_EQ(host.utils()->premultiply_color(ref(), &world, &white, 1, &world), PF_Err_NONE);
  // (100 * 51 + 255 * 204) / 255 = 224, (0 + 255 * 204) / 255 = 204, 255.
  const PF_Pixel over = image.at<PF_Pixel>(0, 0);
  EXPECT_TRUE(over.alpha == 51 && over.red == 224 && over.green == 204 && over.blue == 255);
  EXPECT_EQ(host.utils()->premultiply_color(ref(), &world, &white, 0, &world), PF_Err_NONE);
  EXPECT_EQ(int{image.at<PF_Pixel>(0, 0).red}, 100);
  EXPECT_EQ(int{image.at<PF_Pixel>(0, 0).green}, 0);
}

TEST_F(Suites, blendWeighsColorsByTheirAlpha) {
  Image one(Depth::k16, 1, 1);
  Image other(Depth::k16, 1, 1);
  one.at<PF_Pixel16>(0, 0) = {32768, 1000, 0, 0};
  other.at<PF_Pixel16>(0, 0) = {16384, 4000, 0, 0};
  const Image result(Depth::k16, 1, 1);
  PF_EffectWorld a = host.lendWorld(one, "one");
  PF_EffectWorld b = host.lendWorld(other, "other");
  PF_EffectWorld to = host.lendWorld(result, "result");
  EXPECT_EQ(host.utils()->blend(ref(), &a, &b, 32768, &to), PF_Err_NONE);
  // (32768 + 16384) / 2; (1000 * 2 + 4000 * 1) / 3.
  EXPECT_EQ(result.at<PF_Pixel16>(0, 0).alpha, 24576);
  EXPECT_EQ(result.at<PF_Pixel16>(0, 0).red, 2000);
  EXPECT_EQ(host.utils()->blend(ref(), &a, &b, 0, &to), PF_Err_NONE);
  EXPECT_TRUE(standin::samePixels(result, one));
  EXPECT_EQ(host.utils()->blend(ref(), &a, &b, 65536, &to), PF_Err_NONE);
  EXPECT_TRUE(standin::samePixels(result, other));
}

TEST_F(Suites, convolveDividesByTheEntriesOrTheirSum) {
  Image source(Depth::k8, 3, 3);
  source.at<PF_Pixel>(1, 1) = {255, 90, 200, 30};
  const Image result(Depth::k8, 3, 3);
  PF_EffectWorld from = host.lendWorld(source, "source");
  PF_EffectWorld to = host.lendWorld(result, "result");
  A_long same[9] = {0, 0, 0, 0, 9 * 255, 0, 0, 0, 0};  // 255 times nine entries: the picture as it is
  EXPECT_EQ(host.utils()->convolve(ref(), &from, nullptr, 0, 3, same, same, same, same, &to), PF_Err_NONE);
  EXPECT_TRUE(standin::samePixels(result, source));
  A_long right[3] = {2, 1, 0};  // two thirds of the pixel to the left and a third of its own
  EXPECT_EQ(host.utils()->convolve(ref(), &from, nullptr, PF_KernelFlag_1D | PF_KernelFlag_NORMALIZED, 3, nullptr,
                                   right, nullptr, nullptr, &to),
            PF_Err_NONE);
  EXPECT_EQ(int{result.at<PF_Pixel>(1, 1).red}, 30);
  EXPECT_EQ(int{result.at<PF_Pixel>(2, 1).red}, 60);
  EXPECT_EQ(int{result.at<PF_Pixel>(0, 1).red}, 0);
  EXPECT_EQ(int{result.at<PF_Pixel>(1, 1).alpha}, 255) << "a null kernel leaves the channel";
  A_long twice[1] = {2};
  const auto down = PF_KernelFlag_1D | PF_KernelFlag_VERTICAL;
  A_long below[3] = {0, 0, 510 * 3};  // doubles the pixel below: 90 becomes 180 and 200 is held at 255
  EXPECT_EQ(host.utils()->convolve(ref(), &from, nullptr, down, 3, below, below, below, below, &to), PF_Err_NONE);
  EXPECT_EQ(int{result.at<PF_Pixel>(1, 0).red}, 180);
  EXPECT_EQ(int{result.at<PF_Pixel>(1, 0).green}, 255);
  EXPECT_EQ(host.utils()->convolve(ref(), &from, nullptr, 0, 1, twice, twice, twice, twice, &from),
            PF_Err_BAD_CALLBACK_PARAM)
      << "into itself";
  EXPECT_EQ(host.utils()->convolve(ref(), &from, nullptr, PF_KernelFlag_USE_CHAR, 1, twice, twice, twice, twice, &to),
            PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_NE(report().find("convolve with the kernel flags 8"), std::string::npos) << report();
}

/// Two opaque pixels beside each other.
Image reds100And200() {
  Image source(Depth::k8, 2, 1);
  source.at<PF_Pixel>(0, 0) = {255, 100, 0, 0};
  source.at<PF_Pixel>(1, 0) = {255, 200, 0, 0};
  return source;
}

TEST_F(Suites, transformWorldMovesByAMatrixInWholeAndHalfPixels) {
  const Image source = reds100And200();
  PF_EffectWorld from = host.lendWorld(source, "source");
  const PF_CompositeMode mode{PF_Xfer_COPY, 0, 255, 0, 32768};
  const auto moved = [&](double x, PF_Quality quality, PF_Boolean sourceToTarget) {
    auto result = std::make_unique<Image>(Depth::k8, 4, 1);
    PF_EffectWorld to = host.lendWorld(*result, "result");
    PF_FloatMatrix matrix{{{1, 0, 0}, {0, 1, 0}, {x, 0, 1}}};
    EXPECT_EQ(host.utils()->transform_world(ref(), quality, PF_MF_Alpha_STRAIGHT, PF_Field_FRAME, &from, &mode, nullptr,
                                            &matrix, 1, sourceToTarget, nullptr, &to),
              PF_Err_NONE);
    return result;
  };
  const auto whole = moved(1.0, PF_Quality_LO, 1);
  EXPECT_EQ(int{whole->at<PF_Pixel>(0, 0).alpha}, 0);
  EXPECT_EQ(int{whole->at<PF_Pixel>(1, 0).red}, 100);
  EXPECT_EQ(int{whole->at<PF_Pixel>(2, 0).red}, 200);
  const auto inverse = moved(-1.0, PF_Quality_HI, 0);
  EXPECT_EQ(int{inverse->at<PF_Pixel>(1, 0).red}, 100) << "from the target to the source";
  const auto half = moved(0.5, PF_Quality_HI, 1);
  // Halves of nothing and 100, of 100 and 200, of 200 and nothing; colours go by alpha.
  EXPECT_EQ(int{half->at<PF_Pixel>(0, 0).alpha}, 128);
  EXPECT_EQ(int{half->at<PF_Pixel>(0, 0).red}, 100);
  EXPECT_EQ(int{half->at<PF_Pixel>(1, 0).alpha}, 255);
  EXPECT_EQ(int{half->at<PF_Pixel>(1, 0).red}, 150);
  EXPECT_EQ(int{half->at<PF_Pixel>(2, 0).red}, 200);
}

TEST_F(Suites, transformWorldTurnsByAQuarter) {
  const Image source = reds100And200();
  PF_EffectWorld from = host.lendWorld(source, "source");
  const PF_CompositeMode mode{PF_Xfer_COPY, 0, 255, 0, 32768};
  const Image result(Depth::k8, 1, 2);
  PF_EffectWorld to = host.lendWorld(result, "result");
  // A point x, y goes to 1 - y, x: the first pixel's middle stays, the second's goes below it.
  PF_FloatMatrix matrix{{{0, 1, 0}, {-1, 0, 0}, {1, 0, 1}}};
  EXPECT_EQ(host.utils()->transform_world(ref(), PF_Quality_HI, PF_MF_Alpha_STRAIGHT, PF_Field_FRAME, &from, &mode,
                                          nullptr, &matrix, 1, 1, nullptr, &to),
            PF_Err_NONE);
  EXPECT_EQ(int{result.at<PF_Pixel>(0, 0).red}, 100);
  EXPECT_EQ(int{result.at<PF_Pixel>(0, 1).red}, 200);
  EXPECT_EQ(int{result.at<PF_Pixel>(0, 1).alpha}, 255);
}

TEST_F(Suites, samplesMixFourPixelsByAlphaAndAreClearOutside) {
  Image source(Depth::k8, 2, 1);
  source.at<PF_Pixel>(0, 0) = {255, 100, 0, 0};
  source.at<PF_Pixel>(1, 0) = {51, 220, 0, 0};
  PF_EffectWorld from = host.lendWorld(source, "source");
  PF_SampPB params{};
  params.src = &from;
  const auto* sampling = suite<PF_Sampling8Suite>(kPFSampling8Suite, 1);
  PF_Pixel pixel{};
  EXPECT_EQ(sampling->nn_sample(ref(), 32768, 0, &params, &pixel), PF_Err_NONE);
  EXPECT_EQ(int{pixel.red}, 220) << "a half goes to the right";
  EXPECT_EQ(sampling->nn_sample(ref(), 32767, 0, &params, &pixel), PF_Err_NONE);
  EXPECT_EQ(int{pixel.red}, 100);
  EXPECT_EQ(sampling->nn_sample(ref(), -32769, 0, &params, &pixel), PF_Err_NONE);
  EXPECT_EQ(int{pixel.alpha}, 0);
  host.settings();
  standin::FrameRequest frame;
  frame.input = Image(Depth::k8, 1, 1);
  effect.on[PF_Cmd_RENDER] = [&](const scripted::Call&) {
    // (255 + 51) / 2; (100 * 5 + 220) / 6.
    EXPECT_EQ(sampling->subpixel_sample(ref(), 32768, 0, &params, &pixel), PF_Err_NONE);
    EXPECT_EQ(int{pixel.alpha}, 153);
    EXPECT_EQ(int{pixel.red}, 120);
    // A square of two pixels' side around the first: 255 whole and half of 51 of four pixels' area.
    params.x_radius = 65536;
    params.y_radius = 65536;
    EXPECT_EQ(sampling->area_sample(ref(), 0, 0, &params, &pixel), PF_Err_NONE);
    EXPECT_EQ(int{pixel.alpha}, 70);  // (255 + 51 / 2) / 4 = 70.1
    EXPECT_EQ(int{pixel.red}, 111);   // (100 * 255 + 220 * 25.5) / 280.5 = 110.9
    return PF_Err{PF_Err_NONE};
  };
  EXPECT_EQ(host.renderClassic(frame, host.defaults()).error, PF_Err_NONE);
}

TEST_F(Suites, samplesOfAnotherDepthAndOfNothingAreRefused) {
  const Image deep(Depth::k16, 2, 2);
  PF_EffectWorld world = host.lendWorld(deep, "deep");
  PF_SampPB params{};
  params.src = &world;
  const auto* sampling = suite<PF_Sampling8Suite>(kPFSampling8Suite, 1);
  PF_Pixel pixel{1, 2, 3, 4};
  EXPECT_EQ(sampling->nn_sample(ref(), 0, 0, &params, &pixel), PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_EQ(host.books().complaintCount(Matter::kBadWorld), 1) << report();
  params.src = nullptr;
  EXPECT_EQ(sampling->nn_sample(ref(), 0, 0, &params, &pixel), PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_EQ(sampling->nn_sample(ref(), 0, 0, nullptr, &pixel), PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_EQ(sampling->nn_sample(ref(), 0, 0, &params, nullptr), PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_TRUE(pixel.alpha == 1 && pixel.red == 2 && pixel.green == 3 && pixel.blue == 4);
}

TEST_F(Suites, colorsGoToHueAndBackAtThreeDepths) {
  const auto* colors = suite<PF_ColorSuite>(kPFColorSuite, 1);
  PF_Pixel orange{77, 255, 128, 0};
  PF_Fixed hls[3];
  EXPECT_EQ(colors->RGBtoHLS(ref(), &orange, hls), PF_Err_NONE);
  // Hue 128 / 255 / 6 of a turn, lightness a half, saturation full.
  EXPECT_EQ(hls[0], 5483);  // 65536 * 128 / 1530 = 5482.8
  EXPECT_EQ(hls[1], 32768);
  EXPECT_EQ(hls[2], 65536);
  PF_Pixel back{9, 0, 0, 0};
  EXPECT_EQ(colors->HLStoRGB(ref(), hls, &back), PF_Err_NONE);
  EXPECT_TRUE(back.alpha == 9 && back.red == 255 && back.green == 128 && back.blue == 0);
  A_long number = 0;
  EXPECT_EQ(colors->Luminance(ref(), &orange, &number), PF_Err_NONE);
  EXPECT_EQ(number, 15138);  // (299 * 255 + 587 * 128) / 10 = 15138.1
  EXPECT_EQ(colors->Hue(ref(), &orange, &number), PF_Err_NONE);
  EXPECT_EQ(number, 21);  // 128 / 6 = 21.3
  EXPECT_EQ(colors->Lightness(ref(), &orange, &number), PF_Err_NONE);
  EXPECT_EQ(number, 128);
  EXPECT_EQ(host.utils()->colorCB.Saturation(ref(), &orange, &number), PF_Err_NONE);
  EXPECT_EQ(number, 255);
  PF_Fixed yiq[3];
  PF_Pixel16 white{32768, 32768, 32768, 32768};
  const auto* colors16 = suite<PF_Color16Suite>(kPFColor16Suite, 1);
  EXPECT_EQ(colors16->RGBtoYIQ(ref(), &white, yiq), PF_Err_NONE);
  EXPECT_EQ(yiq[0], 65536);
  EXPECT_EQ(yiq[1], 0);
  EXPECT_EQ(yiq[2], 0);
  EXPECT_EQ(colors16->Lightness(ref(), &white, &number), PF_Err_NONE);
  EXPECT_EQ(number, 32768);
  PF_PixelFloat blue{1.0F, 0.0F, 0.0F, 1.0F};
  PF_FpShort value = 0;
  const auto* colorsFloat = suite<PF_ColorFloatSuite>(kPFColorFloatSuite, 1);
  EXPECT_EQ(colorsFloat->Hue(ref(), &blue, &value), PF_Err_NONE);
  EXPECT_EQ(value, 240.0F);
  EXPECT_EQ(colorsFloat->Luminance(ref(), &blue, &value), PF_Err_NONE);
  EXPECT_EQ(value, 0.114F);
}

TEST_F(Suites, theHostApplicationAnswersInEachOfItsLayouts) {
  const auto* seven = suite<PFAppSuite5>(kPFAppSuite, 7);
  const auto* one = suite<PFAppSuite6>(kPFAppSuite, 1);
  char language[6] = "?????";
  EXPECT_EQ(seven->PF_AppGetLanguage(language), PF_Err_NONE);
  EXPECT_STREQ(language, "en_US");
  PF_Boolean engine = 5;
  EXPECT_EQ(one->PF_IsRenderEngine(&engine), PF_Err_NONE);
  EXPECT_EQ(int{engine}, 0);
  PF_App_Color color{};
  EXPECT_EQ(seven->PF_AppGetColor(12345, &color), PF_Err_NONE);
  EXPECT_EQ(color.green, 0x8080);
  PF_PixelFloat picked{};
  EXPECT_EQ(one->PF_AppColorPickerDialog("", &picked, 0, &picked), PF_Interrupt_CANCEL);
  PF_AppProgressDialogP dialog = nullptr;
  EXPECT_EQ(one->PF_CreateNewAppProgressDialog(nullptr, nullptr, 0, &dialog), PF_Err_NONE);
  EXPECT_NE(dialog, nullptr);
  EXPECT_EQ(one->PF_AppProgressDialogUpdate(dialog, 1, 2), PF_Err_NONE);
  EXPECT_EQ(one->PF_DisposeAppProgressDialog(dialog), PF_Err_NONE);
  PF_Point mouse{};
  EXPECT_EQ(seven->PF_GetMouse(&mouse), PF_Err_INVALID_CALLBACK);
  EXPECT_NE(report().find("PF_GetMouse"), std::string::npos) << report();
}

TEST_F(Suites, theLayerOfAnEffectIsThereAndItsTimeIsTheCompositions) {
  const auto* bridge = suite<AEGP_PFInterfaceSuite>(kAEGPPFInterfaceSuite, 1);
  AEGP_LayerH layer = nullptr;
  EXPECT_EQ(bridge->AEGP_GetEffectLayer(ref(), &layer), PF_Err_NONE);
  EXPECT_NE(layer, nullptr);
  A_Time time{};
  EXPECT_EQ(bridge->AEGP_ConvertEffectToCompTime(ref(), -7, 30, &time), PF_Err_NONE);
  EXPECT_EQ(time.value, -7);
  EXPECT_EQ(time.scale, 30u);
  AEGP_LayerH camera = layer;
  EXPECT_EQ(bridge->AEGP_GetEffectCamera(ref(), &time, &camera), PF_Err_NONE);
  EXPECT_EQ(camera, nullptr);
}

TEST_F(Suites, aStateChangesWithTheValueItStandsForAndNoOther) {
  PF_ParamDef size = scripted::definition(PF_Param_FLOAT_SLIDER, "Size", 1);
  PF_ParamDef count = scripted::definition(PF_Param_SLIDER, "Count", 2);
  PF_State states[4] = {};
  A_Boolean same = 9;
  scripted::declare(effect, {size, count});
  ASSERT_EQ(host.start(), PF_Err_NONE);
  const auto* utils = suite<PF_ParamUtilsSuite3>(kPFParamUtilsSuite, 3);
  standin::FrameRequest frame;
  frame.input = Image(Depth::k8, 1, 1);
  auto values = host.defaults();
  const auto take = [&](PF_State& one, PF_State& all) {
    effect.on[PF_Cmd_RENDER] = [&](const scripted::Call&) {
      EXPECT_EQ(utils->PF_GetCurrentState(ref(), 1, nullptr, nullptr, &one), PF_Err_NONE);
      return utils->PF_GetCurrentState(ref(), PF_ParamIndex_CHECK_ALL_EXCEPT_LAYER_PARAMS, nullptr, nullptr, &all);
    };
    EXPECT_EQ(host.renderClassic(frame, values).error, PF_Err_NONE);
  };
  take(states[0], states[1]);
  values.setNumber("Count", 5);
  take(states[2], states[3]);
  EXPECT_EQ(utils->PF_AreStatesIdentical(ref(), &states[0], &states[2], &same), PF_Err_NONE);
  EXPECT_EQ(int{same}, 1);
  EXPECT_EQ(utils->PF_AreStatesIdentical(ref(), &states[1], &states[3], &same), PF_Err_NONE);
  EXPECT_EQ(int{same}, 0);
  PF_KeyIndex keys = 5;
  EXPECT_EQ(utils->PF_GetKeyframeCount(ref(), 1, &keys), PF_Err_NONE);
  EXPECT_EQ(keys, PF_KeyIndex_NONE);
  PF_Boolean answer = 0;
  EXPECT_EQ(utils->PF_IsIdenticalCheckout(ref(), 1, 0, 1, 30, 9, 1, 30, &answer), PF_Err_NONE);
  EXPECT_EQ(int{answer}, 1);
  EXPECT_EQ(utils->PF_FindKeyframeTime(ref(), 2, 0, 30, 0, &answer, &keys, nullptr, nullptr), PF_Err_NONE);
  EXPECT_EQ(int{answer}, 0);
  EXPECT_EQ(utils->PF_GetKeyframeCount(ref(), 3, &keys), PF_Err_INVALID_INDEX);
  EXPECT_EQ(host.books().complaintCount(Matter::kWrongArgument), 1) << report();
  PF_State left{};
  left.reservedAL[0] = 5;
  for (const PF_ParamIndex index : {3, -1, PF_ParamIndex_CHECK_ALL_HONOR_EXCLUDE - 1}) {
    EXPECT_EQ(utils->PF_GetCurrentState(ref(), index, nullptr, nullptr, &left), PF_Err_INVALID_INDEX) << index;
  }
  EXPECT_EQ(left.reservedAL[0], 5);
  EXPECT_EQ(host.books().complaintCount(Matter::kWrongArgument), 4) << report();
}

TEST_F(Suites, customControlsAreHeardAndTheOptionsButtonMayBeNamed) {
  effect.on[PF_Cmd_PARAMS_SETUP] = [](const scripted::Call& call) {
    PF_CustomUIInfo info;
    std::memset(&info, 0xCC, sizeof info);
    info.events = PF_CustomEFlag_EFFECT;
    EXPECT_EQ(call.in->inter.register_ui(call.in->effect_ref, &info), PF_Err_NONE);
    EXPECT_EQ(call.in->inter.register_ui(call.in->effect_ref, nullptr), PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_EQ(call.suite<PF_EffectUISuite>(kPFEffectUISuite, 1)->PF_SetOptionsButtonName(call.in->effect_ref, "More"),
              PF_Err_NONE);
    call.out->num_params = 1;
    return PF_Err{PF_Err_NONE};
  };
  EXPECT_EQ(host.start(), PF_Err_NONE);
  EXPECT_EQ(host.log().count("register_ui"), 1);
  EXPECT_EQ(host.log().count("PF_SetOptionsButtonName"), 1);
  EXPECT_EQ(report(), "");
}

TEST_F(Suites, rowsBeyondAnEffectsOwnWorldHitGuardsAndAreTold) {
  PF_EffectWorld world{};
  ASSERT_EQ(host.utils()->new_world(ref(), 10, 10, PF_NewWorldFlag_CLEAR_PIXELS, &world), PF_Err_NONE);
  auto* pixels = reinterpret_cast<uint8_t*>(world.data);
  std::memset(pixels + 10 * world.rowbytes, 1, 3 * static_cast<size_t>(world.rowbytes));
  std::memset(pixels - 3 * world.rowbytes, 1, 3 * static_cast<size_t>(world.rowbytes));
  EXPECT_EQ(host.utils()->dispose_world(ref(), &world), PF_Err_NONE);
  EXPECT_EQ(host.books().complaintCount(Matter::kOutside), 1) << report();
}

TEST_F(Suites, aWideWorldHasGuardsOfSomeOfItsRows) {
  PF_EffectWorld world{};
  ASSERT_EQ(host.utils()->new_world(ref(), 2000, 2, PF_NewWorldFlag_CLEAR_PIXELS, &world), PF_Err_NONE);
  auto* pixels = reinterpret_cast<uint8_t*>(world.data);
  // In the fourth row behind the last.
  pixels[5 * world.rowbytes + 1] = 1;
  EXPECT_EQ(host.utils()->dispose_world(ref(), &world), PF_Err_NONE);
  EXPECT_EQ(host.books().complaintCount(Matter::kOutside), 1) << report();
}

TEST_F(Suites, preRenderDataOfAnUnknownKindIsToldAndLeftAlone) {
  void* data = std::malloc(16);
  effect.on[PF_Cmd_SMART_PRE_RENDER] = [&](const scripted::Call& call) {
    call.preRender().output->pre_render_data = data;
    return PF_Err{PF_Err_NONE};
  };
  standin::FrameRequest frame;
  frame.input = Image(Depth::k8, 1, 1);
  host.preRender(frame, host.defaults()).discard();
  EXPECT_EQ(host.books().complaintCount(Matter::kPreRender), 1) << report();
  std::free(data);  // still the effect's own
}

TEST_F(Suites, aHandleThatTheEffectDisposedOfItselfIsNoMatter) {
  PF_Handle handle = host.utils()->host_new_handle(8);
  effect.on[PF_Cmd_SMART_PRE_RENDER] = [&](const scripted::Call& call) {
    call.preRender().output->pre_render_data = handle;
    return PF_Err{PF_Err_NONE};
  };
  standin::FrameRequest frame;
  frame.input = Image(Depth::k8, 1, 1);
  {
    const auto pre = host.preRender(frame, host.defaults());
    host.utils()->host_dispose_handle(handle);
  }
  EXPECT_TRUE(host.books().clean()) << report();
}

TEST_F(Suites, theApplicationIsGreyNamelessAndWithoutAWindow) {
  const auto* app = suite<PFAppSuite6>(kPFAppSuite, 1);
  PF_App_Color background{};
  EXPECT_EQ(app->PF_AppGetBgColor(&background), PF_Err_NONE);
  EXPECT_TRUE(background.red == 0x8080 && background.green == 0x8080 && background.blue == 0x8080);
  PF_AppPersonalTextInfo person;
  std::memset(&person, 'x', sizeof person);
  EXPECT_EQ(app->PF_GetPersonalInfo(&person), PF_Err_NONE);
  EXPECT_STREQ(person.name, "");
  EXPECT_STREQ(person.org, "");
  EXPECT_STREQ(person.serial_str, "");
  EXPECT_EQ(app->PF_SetCursor(7), PF_Err_NONE);
  EXPECT_EQ(host.log().calls.back().service, "PF_SetCursor");
  EXPECT_EQ(host.log().calls.back().arguments, "7");
  EXPECT_EQ(report(), "");
}

TEST_F(Suites, aProgressDialogAsksWhetherToGoOn) {
  const auto* app = suite<PFAppSuite6>(kPFAppSuite, 1);
  host.onProgress = [](A_long current, A_long total) {
    EXPECT_EQ(total, 9);
    return current == 4 ? PF_Err{PF_Interrupt_CANCEL} : PF_Err{PF_Err_NONE};
  };
  EXPECT_EQ(app->PF_AppProgressDialogUpdate(nullptr, 3, 9), PF_Err_NONE);
  EXPECT_EQ(app->PF_AppProgressDialogUpdate(nullptr, 4, 9), PF_Interrupt_CANCEL);
  EXPECT_EQ(host.log().calls.back().arguments, "4 of 9");
  EXPECT_EQ(host.log().calls.back().result, PF_Interrupt_CANCEL);
}

TEST_F(Suites, theOptionsButtonIsNamedWithTheParametersOnly) {
  EXPECT_EQ(suite<PF_EffectUISuite>(kPFEffectUISuite, 1)->PF_SetOptionsButtonName(ref(), "More"), PF_Err_NONE);
  ASSERT_EQ(host.books().complaintCount(Matter::kWrongMoment), 1) << report();
  EXPECT_EQ(host.books().complaints()[0].text, "PF_SetOptionsButtonName outside the parameters' set-up");
}

TEST_F(Suites, memoryOfTheGeneralSuiteIsGuardedAndCountedAlone) {
  const auto* memory = suite<AEGP_MemorySuite>(kAEGPMemorySuite, 1);
  PF_Handle other = host.utils()->host_new_handle(100);
  AEGP_MemHandle handle = nullptr;
  ASSERT_EQ(memory->AEGP_NewMemHandle(1, nullptr, 8, AEGP_MemFlag_NONE, &handle), PF_Err_NONE);
  EXPECT_EQ(host.log().calls.back().arguments, "8 bytes for nothing told");
  A_long count = 0;
  A_long bytes = 0;
  EXPECT_EQ(memory->AEGP_GetMemStats(1, &count, &bytes), PF_Err_NONE);
  EXPECT_TRUE(count == 1 && bytes == 8) << count << " " << bytes;
  EXPECT_EQ(memory->AEGP_SetMemReportingOn(1), PF_Err_NONE);
  EXPECT_EQ(host.log().calls.back().service, "AEGP_SetMemReportingOn");
  void* block = nullptr;
  EXPECT_EQ(memory->AEGP_LockMemHandle(handle, &block), PF_Err_NONE);
  static_cast<uint8_t*>(block)[8] = 1;
  EXPECT_EQ(memory->AEGP_UnlockMemHandle(handle), PF_Err_NONE);
  ASSERT_EQ(host.books().complaintCount(Matter::kOutside), 1) << report();
  EXPECT_EQ(host.books().complaints()[0].text, "bytes outside handle 2 were changed");
  EXPECT_EQ(memory->AEGP_FreeMemHandle(handle), PF_Err_NONE);
  host.utils()->host_dispose_handle(other);
}

}  // namespace
