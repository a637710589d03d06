// What services say to arguments that they can't work with: a code, a complaint where the books know a matter for it,
// and nothing done.
#include <functional>
#include <string>
#include <vector>

#include "HostTest.h"
#include "ae/AegpSuites.h"
#include "ae/AppSuites.h"
#include "ae/PixelSuites.h"
#include "host/Image.h"

namespace {

using standin::Depth;
using standin::Image;

/// A call that is refused.
struct Refusal {
  std::function<PF_Err()> call;
  std::string complaint;  ///< empty where the code is all that is said
  PF_Err answer = PF_Err_BAD_CALLBACK_PARAM;
};

class ServicesRefuse : public scripted::HostTest {
 protected:
  void expectRefused(const std::vector<Refusal>& refusals) {
    for (size_t i = 0; i < refusals.size(); ++i) {
      EXPECT_EQ(refusals[i].call(), refusals[i].answer) << "at " << i;
      const auto& complaints = host.books().complaints();
      EXPECT_EQ(complaints.empty() ? "" : complaints.front().text, refusals[i].complaint) << "at " << i;
      EXPECT_LE(complaints.size(), 1U) << "at " << i << "\n" << report();
      host.books().clear();
    }
  }

  PF_EffectWorld lend(const Image& image) { return host.lendWorld(image, "picture"); }

  const PF_FillMatteSuite2* fills = suite<PF_FillMatteSuite2>(kPFFillMatteSuite, 2);
  const PF_WorldTransformSuite1* moves = suite<PF_WorldTransformSuite1>(kPFWorldTransformSuite, 1);
  const PF_WorldSuite2* worlds = suite<PF_WorldSuite2>(kPFWorldSuite, 2);
  const PF_PixelDataSuite* data = suite<PF_PixelDataSuite>(kPFPixelDataSuite, 2);
  const AEGP_MemorySuite* memory = suite<AEGP_MemorySuite>(kAEGPMemorySuite, 1);
};

TEST_F(ServicesRefuse, worldsThatHaveNoPixels) {
  PF_EffectWorld narrow{};
  narrow.width = -1;
  PF_EffectWorld low{};
  low.height = -1;
  PF_EffectWorld withoutData{};
  withoutData.width = 2;
  withoutData.height = 2;
  std::vector<Refusal> refusals;
  for (PF_EffectWorld* world : {static_cast<PF_EffectWorld*>(nullptr), &narrow, &low, &withoutData}) {
    const auto add = [&](const char* service, std::function<PF_Err()> call) {
      refusals.push_back({std::move(call), std::string(service) + " got a world without pixels"});
    };
    add("fill", [=, this] { return fills->fill(ref(), nullptr, nullptr, world); });
    add("fill16", [=, this] { return fills->fill16(ref(), nullptr, nullptr, world); });
    add("fill_float", [=, this] { return fills->fill_float(ref(), nullptr, nullptr, world); });
    add("get_pixel_data8", [=, this] {
      PF_Pixel* pixels = nullptr;
      return data->get_pixel_data8(world, nullptr, &pixels);
    });
    add("get_pixel_data16", [=, this] {
      PF_Pixel16* pixels = nullptr;
      return data->get_pixel_data16(world, nullptr, &pixels);
    });
    add("get_pixel_data_float", [=, this] {
      PF_PixelFloat* pixels = nullptr;
      return data->get_pixel_data_float(world, nullptr, &pixels);
    });
    add("PF_GetPixelFormat", [=, this] {
      PF_PixelFormat format = PF_PixelFormat_ARGB32;
      const PF_Err err = worlds->PF_GetPixelFormat(world, &format);
      EXPECT_EQ(format, PF_PixelFormat_INVALID);
      return err;
    });
  }
  expectRefused(refusals);
}

TEST_F(ServicesRefuse, aWorldThatWasGivenBack) {
  PF_EffectWorld world{};
  ASSERT_EQ(worlds->PF_NewWorld(ref(), 2, 2, 1, PF_PixelFormat_ARGB32, &world), PF_Err_NONE);
  ASSERT_EQ(worlds->PF_DisposeWorld(ref(), &world), PF_Err_NONE);
  expectRefused({{[&] { return fills->fill(ref(), nullptr, nullptr, &world); }, "fill got a world that is gone"},
                 {[&] { return worlds->PF_DisposeWorld(ref(), &world); },
                  "PF_DisposeWorld of a world that is gone or never was"}});
}

TEST_F(ServicesRefuse, worldsThatCantBeMadeOrAreNoEffectsToDrop) {
  const Image image(Depth::k8, 2, 2);
  PF_EffectWorld lent = lend(image);
  PF_EffectWorld world{};
  const auto make = [&](A_long width, A_long height) {
    return [=, this, &world] { return host.utils()->new_world(ref(), width, height, 0, &world); };
  };
  expectRefused(
      {{make(-1, 2), "new_world of -1 x 2 pixels"},
       {make(2, -1), "new_world of 2 x -1 pixels"},
       {make(30001, 1), "new_world of 30001 x 1 pixels"},
       {make(1, 30001), "new_world of 1 x 30001 pixels"},
       {[&] { return host.utils()->new_world(ref(), 2, 2, 0, nullptr); }, "new_world of 2 x 2 pixels"},
       {[&] { return worlds->PF_NewWorld(ref(), 2, 2, 1, PF_PixelFormat_INVALID, &world); },
        "PF_NewWorld of no known pixel format"},
       {[&] { return worlds->PF_GetPixelFormat(&lent, nullptr); }, ""},
       {[&] { return worlds->PF_DisposeWorld(ref(), nullptr); }, "PF_DisposeWorld of no world"},
       {[&] { return host.utils()->dispose_world(ref(), nullptr); }, "dispose_world of no world"},
       {[&] { return host.utils()->dispose_world(ref(), &lent); }, "dispose_world of the host's own picture"}});
  EXPECT_EQ(world.data, nullptr);
}

TEST_F(ServicesRefuse, anUnknownPixelFormatOnlyWhenNoFaultComesFirst) {
  PF_EffectWorld world{};
  host.faults().fail("PF_NewWorld", 1, PF_Err_OUT_OF_MEMORY);
  EXPECT_EQ(worlds->PF_NewWorld(ref(), 2, 2, 1, PF_PixelFormat_INVALID, &world), PF_Err_OUT_OF_MEMORY);
  EXPECT_EQ(report(), "");
}

TEST_F(ServicesRefuse, pixelDataWithoutAPlaceForIt) {
  const Image image(Depth::k8, 2, 2);
  PF_EffectWorld world = lend(image);
  expectRefused({{[&] { return data->get_pixel_data8(&world, nullptr, nullptr); }, ""},
                 {[&] { return data->get_pixel_data16(&world, nullptr, nullptr); }, ""},
                 {[&] { return data->get_pixel_data_float(&world, nullptr, nullptr); }, ""},
                 {[&] { return data->get_pixel_data_float_gpu(&world, nullptr); }, ""}});
}

TEST_F(ServicesRefuse, transfersThatTheHostDoesNotDraw) {
  const Image source(Depth::k8, 2, 2, 0, 1);
  const Image target(Depth::k8, 2, 2, 0, 2);
  const Image deep(Depth::k16, 2, 2);
  PF_EffectWorld from = lend(source);
  PF_EffectWorld to = lend(target);
  const PF_CompositeMode copies{PF_Xfer_COPY, 0, 255, 0, 32768};
  const PF_CompositeMode adds{PF_Xfer_ADD, 0, 255, 0, 32768};
  PF_MaskWorld deepMask{};
  deepMask.mask = lend(deep);
  PF_MaskWorld goneMask{};
  goneMask.mask = lend(source);
  goneMask.mask.reserved0 = &goneMask;
  const auto drawn = [&](PF_ModeFlags flags, PF_EffectWorld* one, const PF_CompositeMode* mode,
                         const PF_MaskWorld* mask, PF_EffectWorld* other) {
    return [=, this] {
      return moves->transfer_rect(ref(), PF_Quality_HI, flags, PF_Field_FRAME, nullptr, one, mode, mask, 0, 0, other);
    };
  };
  constexpr PF_ModeFlags straight = PF_MF_Alpha_STRAIGHT;
  expectRefused(
      {{drawn(straight, nullptr, &copies, nullptr, &to), "transfer_rect got a world without pixels"},
       {drawn(straight, &from, &copies, nullptr, nullptr), "transfer_rect got a world without pixels"},
       {drawn(straight, &from, nullptr, nullptr, &to), "transfer_rect of colours that are multiplied by alpha"},
       {drawn(PF_MF_Alpha_PREMUL, &from, &copies, nullptr, &to),
        "transfer_rect of colours that are multiplied by alpha"},
       {drawn(straight, &from, &copies, &deepMask, &to), "transfer_rect through a mask of another depth"},
       {drawn(straight, &from, &copies, &goneMask, &to), "transfer_rect got a world that is gone"},
       {drawn(straight, &from, &adds, nullptr, &to), "transfer_rect with the mode 4"},
       {[&] { return moves->composite_rect(ref(), nullptr, 255, &from, 0, 0, PF_Field_FRAME, PF_Xfer_ADD, &to); },
        "composite_rect with the mode 4"}});
  EXPECT_TRUE(standin::samePixels(target, Image(Depth::k8, 2, 2, 0, 2)));
}

TEST_F(ServicesRefuse, mixesBetweenWorldsThatDontFit) {
  const Image source(Depth::k8, 2, 2, 0, 1);
  const Image target(Depth::k8, 2, 2, 0, 2);
  const Image deep(Depth::k16, 2, 2);
  PF_EffectWorld from = lend(source);
  PF_EffectWorld to = lend(target);
  PF_EffectWorld other = lend(deep);
  const PF_FloatMatrix matrix{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
  const PF_CompositeMode mode{PF_Xfer_COPY, 0, 255, 0, 32768};
  const auto convolved = [&](A_long size, PF_EffectWorld* one) {
    return [=, this, &to] {
      return moves->convolve(ref(), one, nullptr, 0, size, nullptr, nullptr, nullptr, nullptr, &to);
    };
  };
  const auto transformed = [&](PF_EffectWorld* one, const PF_FloatMatrix* matrices, A_long count) {
    return [=, this, &to, &mode] {
      return moves->transform_world(ref(), PF_Quality_HI, PF_MF_Alpha_STRAIGHT, PF_Field_FRAME, one, &mode, nullptr,
                                    matrices, count, 1, nullptr, &to);
    };
  };
  expectRefused(
      {{[&] { return moves->blend(ref(), &other, &from, 0, &to); }, "blend between worlds of different depth"},
       {[&] { return moves->blend(ref(), &from, &other, 0, &to); }, "blend between worlds of different depth"},
       {[&] { return fills->premultiply_color(ref(), &other, nullptr, 1, &to); },
        "premultiply_color between worlds of different depth"},
       {[&] { return fills->premultiply_color16(ref(), &other, nullptr, 1, &to); },
        "premultiply_color16 between worlds of different depth"},
       {[&] { return fills->premultiply_color_float(ref(), &other, nullptr, 0, &to); },
        "premultiply_color_float between worlds of different depth"},
       {convolved(1, &other), "convolve between worlds of different depth"},
       {convolved(0, &from), ""},
       {convolved(1025, &from), ""},
       {transformed(&other, &matrix, 1), "transform_world between worlds of different depth"},
       {transformed(&from, nullptr, 1), ""},
       {transformed(&from, &matrix, 0), ""}});
  EXPECT_TRUE(standin::samePixels(target, Image(Depth::k8, 2, 2, 0, 2)));
}

TEST_F(ServicesRefuse, loopsOverWorldsThatTheirFunctionCantRead) {
  const Image small(Depth::k8, 1, 1, 0, 1);
  const Image deep(Depth::k16, 1, 1, 0, 2);
  PF_EffectWorld fitting8 = lend(small);
  PF_EffectWorld fitting16 = lend(deep);
  std::vector<Refusal> refusals;
  const auto addLoops = [&]<class Pixel>(const auto* loops, PF_EffectWorld& fitting, PF_EffectWorld& other, Pixel) {
    using Function = PF_Err (*)(void*, A_long, A_long, Pixel*, Pixel*);
    const Function fails = [](void*, A_long, A_long, Pixel*, Pixel*) { return PF_Err{99}; };
    const auto add = [&](PF_EffectWorld* source, Function function, PF_EffectWorld* target, const std::string& wrong) {
      const auto told = [&](const char* service) { return wrong.empty() ? "" : service + wrong; };
      refusals.push_back({[=, this] { return loops->iterate(in(), 0, 0, source, nullptr, nullptr, function, target); },
                          told("iterate")});
      refusals.push_back(
          {[=, this] { return loops->iterate_origin(in(), 0, 0, source, nullptr, nullptr, nullptr, function, target); },
           told("iterate_origin")});
      refusals.push_back({[=, this] {
                            return loops->iterate_origin_non_clip_src(in(), 0, 0, source, nullptr, nullptr, nullptr,
                                                                      function, target);
                          },
                          told("iterate_origin_non_clip_src")});
    };
    add(&fitting, nullptr, &fitting, "");
    add(&fitting, fails, nullptr, " got a world without pixels");
    add(&fitting, fails, &other, " of a world of another depth");
    add(&other, fails, &fitting, " of a world of another depth");
  };
  const Image real(Depth::k32, 1, 1);
  PF_EffectWorld fittingFloat = lend(real);
  addLoops(suite<PF_Iterate8Suite>(kPFIterate8Suite, 2), fitting8, fitting16, PF_Pixel{});
  addLoops(suite<PF_Iterate16Suite>(kPFIterate16Suite, 2), fitting16, fitting8, PF_Pixel16{});
  addLoops(suite<PF_IterateFloatSuite>(kPFIterateFloatSuite, 2), fittingFloat, fitting8, PF_PixelFloat{});
  const auto addTable = [&](PF_EffectWorld* source, PF_EffectWorld* target, const char* complaint) {
    refusals.push_back({[=, this] {
                          return host.utils()->iterate_lut(in(), 0, 0, source, nullptr, nullptr, nullptr, nullptr,
                                                           nullptr, target);
                        },
                        complaint});
  };
  addTable(&fitting8, nullptr, "iterate_lut got a world without pixels");
  addTable(&fitting8, &fitting16, "iterate_lut of a world of another depth");
  addTable(&fitting16, &fitting8, "iterate_lut of a world of another depth");
  refusals.push_back({[&] { return host.utils()->iterate_generic(2, nullptr, nullptr); }, ""});
  refusals.push_back({[&] { return suite<AEGP_IterateSuite>(kAEGPIterateSuite, 2)->AEGP_GetNumThreads(nullptr); }, ""});
  expectRefused(refusals);
}

// Each of the eight calls without its pixel, then without its other place.
template <class Table, class Pixel, class Number>
void addColors(std::vector<Refusal>& refusals, const Table* colors, PF_ProgPtr ref, Pixel* pixel, PF_Fixed* three,
               Number* number) {
  for (const auto service : {colors->RGBtoHLS, colors->RGBtoYIQ}) {
    refusals.push_back({[=] { return service(ref, nullptr, three); }, ""});
    refusals.push_back({[=] { return service(ref, pixel, nullptr); }, ""});
  }
  for (const auto service : {colors->HLStoRGB, colors->YIQtoRGB}) {
    refusals.push_back({[=] { return service(ref, nullptr, pixel); }, ""});
    refusals.push_back({[=] { return service(ref, three, nullptr); }, ""});
  }
  for (const auto service : {colors->Luminance, colors->Hue, colors->Lightness, colors->Saturation}) {
    refusals.push_back({[=] { return service(ref, nullptr, number); }, ""});
    refusals.push_back({[=] { return service(ref, pixel, nullptr); }, ""});
  }
}

TEST_F(ServicesRefuse, coloursWithoutAPlaceToReadOrToWrite) {
  PF_Pixel pixel{1, 2, 3, 4};
  PF_Pixel16 pixel16{1, 2, 3, 4};
  PF_PixelFloat pixelFloat{1.0F, 2.0F, 3.0F, 4.0F};
  PF_Fixed three[3] = {5, 6, 7};
  A_long number = 8;
  PF_FpShort fraction = 9.0F;
  std::vector<Refusal> refusals;
  addColors(refusals, suite<PF_ColorSuite>(kPFColorSuite, 1), ref(), &pixel, three, &number);
  addColors(refusals, suite<PF_Color16Suite>(kPFColor16Suite, 1), ref(), &pixel16, three, &number);
  addColors(refusals, suite<PF_ColorFloatSuite>(kPFColorFloatSuite, 1), ref(), &pixelFloat, three, &fraction);
  expectRefused(refusals);
  EXPECT_TRUE(pixel.red == 2 && pixel16.red == 2 && pixelFloat.red == 2.0F);
  EXPECT_TRUE(three[0] == 5 && number == 8 && fraction == 9.0F);
}

template <class Sampler, class Pixel>
void addSampler(std::vector<Refusal>& refusals, const char* name, Sampler sampler, PF_ProgPtr ref, PF_SampPB* fitting,
                PF_SampPB* other, PF_SampPB* none, Pixel* pixel) {
  refusals.push_back({[=] { return sampler(ref, 0, 0, nullptr, pixel); }, ""});
  refusals.push_back({[=] { return sampler(ref, 0, 0, fitting, nullptr); }, ""});
  refusals.push_back(
      {[=] { return sampler(ref, 0, 0, none, pixel); }, std::string(name) + " got a world without pixels"});
  refusals.push_back(
      {[=] { return sampler(ref, 0, 0, other, pixel); }, std::string(name) + " of a world of another depth"});
}

TEST_F(ServicesRefuse, samplesOfNothingOrOfAnotherDepth) {
  const Image images[] = {Image(Depth::k8, 1, 1), Image(Depth::k16, 1, 1), Image(Depth::k32, 1, 1)};
  PF_EffectWorld lent[3];
  PF_SampPB samples[3] = {};
  for (int i = 0; i < 3; ++i) {
    lent[i] = lend(images[i]);
    samples[i].src = &lent[i];
  }
  PF_SampPB none{};
  PF_Pixel pixel{};
  PF_Pixel16 pixel16{};
  PF_PixelFloat pixelFloat{};
  const auto* eight = suite<PF_Sampling8Suite>(kPFSampling8Suite, 1);
  const auto* sixteen = suite<PF_Sampling16Suite>(kPFSampling16Suite, 1);
  const auto* floats = suite<PF_SamplingFloatSuite>(kPFSamplingFloatSuite, 1);
  std::vector<Refusal> refusals;
  const auto add = [&](const char* name, auto one, auto two, auto three) {
    addSampler(refusals, name, one, ref(), &samples[0], &samples[1], &none, &pixel);
    addSampler(refusals, name, two, ref(), &samples[1], &samples[2], &none, &pixel16);
    addSampler(refusals, name, three, ref(), &samples[2], &samples[0], &none, &pixelFloat);
  };
  add("nn_sample", eight->nn_sample, sixteen->nn_sample16, floats->nn_sample_float);
  add("subpixel_sample", eight->subpixel_sample, sixteen->subpixel_sample16, floats->subpixel_sample_float);
  add("area_sample", eight->area_sample, sixteen->area_sample16, floats->area_sample_float);
  expectRefused(refusals);
}

TEST_F(ServicesRefuse, memoryWithoutAPlaceForTheAnswerOrWithAWrongHandle) {
  AEGP_MemHandle handle = nullptr;
  ASSERT_EQ(memory->AEGP_NewMemHandle(1, "label", 8, AEGP_MemFlag_NONE, &handle), PF_Err_NONE);
  AEGP_MemHandle freed = nullptr;
  ASSERT_EQ(memory->AEGP_NewMemHandle(1, "label", 8, AEGP_MemFlag_NONE, &freed), PF_Err_NONE);
  ASSERT_EQ(memory->AEGP_FreeMemHandle(freed), PF_Err_NONE);
  PF_Handle plain = host.utils()->host_new_handle(8);
  void* block = nullptr;
  void* noHandle = nullptr;
  A_long number = 0;
  expectRefused(
      {{[&] { return memory->AEGP_NewMemHandle(1, "label", 8, AEGP_MemFlag_NONE, nullptr); }, ""},
       {[&] { return memory->AEGP_LockMemHandle(handle, nullptr); }, ""},
       {[&] { return memory->AEGP_GetMemHandleSize(handle, nullptr); }, ""},
       {[&] { return memory->AEGP_GetMemStats(1, nullptr, &number); }, ""},
       {[&] { return memory->AEGP_GetMemStats(1, &number, nullptr); }, ""},
       {[&] { return memory->AEGP_UnlockMemHandle(handle); }, "AEGP_UnlockMemHandle of handle 1, which is not locked"},
       {[&] { return memory->AEGP_LockMemHandle(nullptr, &block); }, "AEGP_LockMemHandle of what never was a handle"},
       {[&] { return memory->AEGP_FreeMemHandle(&noHandle); }, "AEGP_FreeMemHandle of what never was a handle"},
       {[&] { return memory->AEGP_LockMemHandle(freed, &block); }, "AEGP_LockMemHandle of handle 2, which was freed"},
       {[&] { return memory->AEGP_ResizeMemHandle("label", 16, plain); },
        "AEGP_ResizeMemHandle of handle 3, which is none of this suite"}});
  EXPECT_EQ(block, nullptr);
  host.utils()->host_dispose_handle(plain);
  EXPECT_EQ(memory->AEGP_FreeMemHandle(handle), PF_Err_NONE);
}

TEST_F(ServicesRefuse, aResizeOfALockedHandleOrOfNone) {
  PF_Handle handle = host.utils()->host_new_handle(8);
  host.utils()->host_lock_handle(handle);
  PF_Handle none = nullptr;
  const auto resize = host.utils()->host_resize_handle;
  expectRefused({{[&] { return resize(16, &handle); }, "host_resize_handle of handle 1, which is locked"},
                 {[&] { return resize(16, nullptr); }, ""},
                 {[&] { return resize(16, &none); }, "host_resize_handle of what never was a handle"}});
  EXPECT_EQ(host.utils()->host_get_handle_size(handle), 8U);
  host.utils()->host_unlock_handle(handle);
  host.utils()->host_dispose_handle(handle);
}

TEST_F(ServicesRefuse, questionsToTheApplicationWithoutAPlaceForTheAnswer) {
  const auto* app = suite<PFAppSuite6>(kPFAppSuite, 1);
  const auto* bridge = suite<AEGP_PFInterfaceSuite>(kAEGPPFInterfaceSuite, 1);
  A_Time time{};
  expectRefused(
      {{[&] { return app->PF_AppGetBgColor(nullptr); }, ""},
       {[&] { return app->PF_AppGetColor(1, nullptr); }, ""},
       {[&] { return app->PF_AppGetLanguage(nullptr); }, ""},
       {[&] { return app->PF_GetPersonalInfo(nullptr); }, ""},
       {[&] { return app->PF_CreateNewAppProgressDialog(nullptr, nullptr, 0, nullptr); }, ""},
       {[&] { return suite<PF_EffectUISuite>(kPFEffectUISuite, 1)->PF_SetOptionsButtonName(ref(), nullptr); }, ""},
       {[&] {
          const auto* utility = suite<AEGP_UtilitySuite>(kAEGPUtilitySuite, 3);
          return utility->AEGP_RegisterWithAEGP(nullptr, "name", nullptr);
        },
        ""},
       {[&] {
          const auto* queue = suite<AEGP_RenderQueueSuite>(kAEGPRenderQueueSuite, 1);
          return queue->AEGP_GetRenderQueueState(nullptr);
        },
        ""},
       {[&] { return bridge->AEGP_GetEffectLayer(ref(), nullptr); }, ""},
       {[&] { return bridge->AEGP_ConvertEffectToCompTime(ref(), 0, 30, nullptr); }, ""},
       {[&] { return bridge->AEGP_GetEffectCamera(ref(), &time, nullptr); }, ""}});
}

TEST_F(ServicesRefuse, questionsAboutParametersWithoutAPlaceForTheAnswer) {
  const auto* utils = suite<PF_ParamUtilsSuite3>(kPFParamUtilsSuite, 3);
  PF_State state{};
  A_Boolean same = 5;
  expectRefused(
      {{[&] { return utils->PF_GetCurrentState(ref(), 0, nullptr, nullptr, nullptr); }, ""},
       {[&] { return utils->PF_AreStatesIdentical(ref(), nullptr, &state, &same); }, ""},
       {[&] { return utils->PF_AreStatesIdentical(ref(), &state, nullptr, &same); }, ""},
       {[&] { return utils->PF_AreStatesIdentical(ref(), &state, &state, nullptr); }, ""},
       {[&] { return utils->PF_IsIdenticalCheckout(ref(), 0, 0, 1, 30, 0, 1, 30, nullptr); }, ""},
       {[&] { return utils->PF_FindKeyframeTime(ref(), 0, 0, 30, 0, nullptr, nullptr, nullptr, nullptr); }, ""},
       {[&] { return utils->PF_GetKeyframeCount(ref(), 0, nullptr); }, ""}});
  EXPECT_EQ(int{same}, 5);
}

TEST_F(ServicesRefuse, questionsAboutAParameterThatIsNotThere) {
  const auto* utils = suite<PF_ParamUtilsSuite3>(kPFParamUtilsSuite, 3);
  PF_Boolean yes = 5;
  PF_KeyIndex count = 5;
  std::vector<Refusal> refusals;
  for (const PF_ParamIndex index : {-1, 1}) {
    const std::string what = " of index " + std::to_string(index);
    const auto add = [&](const std::string& service, std::function<PF_Err()> call) {
      refusals.push_back({std::move(call), service + what, PF_Err_INVALID_INDEX});
    };
    add("PF_IsIdenticalCheckout",
        [=, this, &yes] { return utils->PF_IsIdenticalCheckout(ref(), index, 0, 1, 30, 0, 1, 30, &yes); });
    add("PF_FindKeyframeTime", [=, this, &yes] {
      return utils->PF_FindKeyframeTime(ref(), index, 0, 30, 0, &yes, nullptr, nullptr, nullptr);
    });
    add("PF_GetKeyframeCount", [=, this, &count] { return utils->PF_GetKeyframeCount(ref(), index, &count); });
    add("PF_CheckoutKeyframe",
        [=, this] { return utils->PF_CheckoutKeyframe(ref(), index, 0, nullptr, nullptr, nullptr); });
    add("PF_KeyIndexToTime", [=, this] { return utils->PF_KeyIndexToTime(ref(), index, 0, nullptr, nullptr); });
  }
  expectRefused(refusals);
  EXPECT_TRUE(yes == 5 && count == 5);
}

TEST_F(ServicesRefuse, suitesWithoutANameOrAPlace) {
  const void* table = &table;
  constexpr PF_Err wrong = kSPBadParameterError;
  expectRefused({{[&] { return host.basicSuite()->AcquireSuite(nullptr, 1, &table); }, "", wrong},
                 {[&] { return host.basicSuite()->AcquireSuite(kPFHandleSuite, 2, nullptr); }, "", wrong},
                 {[&] { return host.basicSuite()->ReleaseSuite(nullptr, 1); }, "", wrong}});
  EXPECT_EQ(table, &table);
}

TEST_F(ServicesRefuse, whatTheHostDoesNotHaveAndNameIt) {
  constexpr PF_Err refused = PF_Err_INVALID_CALLBACK;
  const auto told = [](const char* service) {
    return std::string(service) + ", which this host does not have, was called";
  };
  expectRefused(
      {{[&] { return host.utils()->app(ref(), 1); }, told("app"), refused},
       {[&] { return host.basicSuite()->FreeBlock(nullptr); }, told("FreeBlock"), refused},
       {[&] { return host.interact().checkin_layer_audio(ref(), nullptr); }, told("checkin_layer_audio"), refused}});
  EXPECT_EQ(host.log().names().back(), "checkin_layer_audio");
  EXPECT_EQ(host.log().calls.back().arguments, "refused");
  EXPECT_EQ(host.log().calls.back().result, refused);
}

}  // namespace
