// Every service of the tables in one list, each called with arguments that it takes: what all of them have in common is
// what they do with a fault and with the effect_ref of somebody else.
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "HostTest.h"
#include "ae/AegpSuites.h"
#include "ae/AppSuites.h"
#include "ae/PixelSuites.h"
#include "host/Image.h"

namespace {

using scripted::Call;
using standin::Depth;
using standin::Image;
using standin::Matter;

/// A service and one call of it that succeeds.
struct Service {
  std::string name;  ///< as faults and the log name it
  std::function<PF_Err(PF_ProgPtr ref)> call;
  bool takesRef = true;
  bool noted = true;  ///< in the log; what is called once for each pixel is not
  PF_Err answer = PF_Err_NONE;
  PF_Cmd during = PF_Cmd_EVENT;
};

/// Two pictures and their worlds at one depth.
template <class Pixel>
struct Pictures {
  explicit Pictures(standin::StandInHost& host) {
    from = host.lendWorld(source, "source");
    to = host.lendWorld(target, "target");
    samples.src = &from;
  }
  static constexpr Depth depth = standin::PixelFacts<Pixel>::depth;
  Image source{depth, 2, 2, 0, 1};
  Image target{depth, 2, 2, 0, 2};
  PF_EffectWorld from{};
  PF_EffectWorld to{};
  PF_SampPB samples{};
  Pixel pixel{};
};

class EveryService : public scripted::HostTest {
 protected:
  EveryService() : small(host), deep(host), real(host) {
    scripted::declare(effect, {scripted::definition(PF_Param_SLIDER, "Size", 1)});
    EXPECT_EQ(host.start(), PF_Err_NONE);
    host.makeCurrent();
    addPixelServices();
    addLoops();
    addColorsAndSamples();
    addMemory();
    addParameters();
    addApplication();
    host.log().clear();
  }

  // The answer to one call, made by an effect that is running.
  PF_Err answerOf(const Service& service, PF_ProgPtr ref) {
    PF_Err answer = -1;
    effect.on[service.during] = [&](const Call&) {
      answer = service.call(ref);
      return PF_Err{PF_Err_NONE};
    };
    host.call(service.during);
    return answer;
  }

  // What the log says of the last call of a service; -1 when it says nothing.
  PF_Err notedOf(const std::string& name) {
    PF_Err noted = -1;
    for (const standin::Call& call : host.log().calls) {
      if (call.service == name) noted = call.result;
    }
    return noted;
  }

  void addPixelServices() {
    const auto* fills = suite<PF_FillMatteSuite2>(kPFFillMatteSuite, 2);
    const auto* moves = suite<PF_WorldTransformSuite1>(kPFWorldTransformSuite, 1);
    const auto* data = suite<PF_PixelDataSuite>(kPFPixelDataSuite, 2);
    all.push_back({"fill", [=, this](auto ref) { return fills->fill(ref, nullptr, nullptr, &small.to); }});
    all.push_back({"fill16", [=, this](auto ref) { return fills->fill16(ref, nullptr, nullptr, &deep.to); }});
    all.push_back({"fill_float", [=, this](auto ref) { return fills->fill_float(ref, nullptr, nullptr, &real.to); }});
    all.push_back({"premultiply", [=, this](auto ref) { return fills->premultiply(ref, 1, &small.to); }});
    all.push_back({"premultiply_color",
                   [=, this](auto ref) { return fills->premultiply_color(ref, &small.from, nullptr, 1, &small.to); }});
    all.push_back({"premultiply_color16",
                   [=, this](auto ref) { return fills->premultiply_color16(ref, &deep.from, nullptr, 1, &deep.to); }});
    all.push_back({"premultiply_color_float", [=, this](auto ref) {
                     return fills->premultiply_color_float(ref, &real.from, nullptr, 1, &real.to);
                   }});
    all.push_back({"composite_rect", [=, this](auto ref) {
                     return moves->composite_rect(ref, nullptr, 255, &small.from, 0, 0, PF_Field_FRAME, PF_Xfer_COPY,
                                                  &small.to);
                   }});
    all.push_back({"blend", [=, this](auto ref) { return moves->blend(ref, &small.from, &small.from, 0, &small.to); }});
    all.push_back({"convolve", [=, this](auto ref) {
                     return moves->convolve(ref, &small.from, nullptr, 0, 1, nullptr, nullptr, nullptr, nullptr,
                                            &small.to);
                   }});
    all.push_back({"copy", [=, this](auto ref) { return moves->copy(ref, &small.from, &small.to, nullptr, nullptr); }});
    all.push_back(
        {"copy_hq", [=, this](auto ref) { return moves->copy_hq(ref, &small.from, &small.to, nullptr, nullptr); }});
    all.push_back({"transfer_rect", [=, this](auto ref) {
                     return moves->transfer_rect(ref, PF_Quality_HI, PF_MF_Alpha_STRAIGHT, PF_Field_FRAME, nullptr,
                                                 &small.from, &mode, nullptr, 0, 0, &small.to);
                   }});
    all.push_back({"transform_world", [=, this](auto ref) {
                     return moves->transform_world(ref, PF_Quality_HI, PF_MF_Alpha_STRAIGHT, PF_Field_FRAME,
                                                   &small.from, &mode, nullptr, &asItIs, 1, 1, nullptr, &small.to);
                   }});
    all.push_back({.name = "get_pixel_data8",
                   .call = [=, this](auto) { return data->get_pixel_data8(&small.from, nullptr, &pixels8); },
                   .takesRef = false});
    all.push_back({.name = "get_pixel_data16",
                   .call = [=, this](auto) { return data->get_pixel_data16(&deep.from, nullptr, &pixels16); },
                   .takesRef = false});
    all.push_back({.name = "get_pixel_data_float",
                   .call = [=, this](auto) { return data->get_pixel_data_float(&real.from, nullptr, &pixelsFloat); },
                   .takesRef = false});
    addWorlds();
  }

  void addWorlds() {
    const auto* one = suite<PF_WorldSuite1>(kPFWorldSuite, 1);
    const auto* two = suite<PF_WorldSuite2>(kPFWorldSuite, 2);
    all.push_back({"new_world", [=, this](auto ref) {
                     PF_EffectWorld made{};
                     const PF_Err err = one->new_world(ref, 2, 2, 0, &made);
                     return one->dispose_world(host.effectRef(), &made), err;
                   }});
    all.push_back({"dispose_world", [=, this](auto ref) {
                     PF_EffectWorld made{};
                     one->new_world(host.effectRef(), 2, 2, 0, &made);
                     return one->dispose_world(ref, &made);
                   }});
    all.push_back({"PF_NewWorld", [=, this](auto ref) {
                     PF_EffectWorld made{};
                     const PF_Err err = two->PF_NewWorld(ref, 2, 2, 1, PF_PixelFormat_ARGB128, &made);
                     return two->PF_DisposeWorld(host.effectRef(), &made), err;
                   }});
    all.push_back({"PF_DisposeWorld", [=, this](auto ref) {
                     PF_EffectWorld made{};
                     two->PF_NewWorld(host.effectRef(), 2, 2, 1, PF_PixelFormat_ARGB128, &made);
                     return two->PF_DisposeWorld(ref, &made);
                   }});
    all.push_back({.name = "PF_GetPixelFormat",
                   .call = [=, this](auto) { return two->PF_GetPixelFormat(&real.from, &format); },
                   .takesRef = false});
  }

  template <class Table, class Pixel>
  void addLoopsOver(const Table* loops, Pictures<Pixel>& pictures) {
    const auto leave = [](void*, A_long, A_long, Pixel*, Pixel*) { return PF_Err{PF_Err_NONE}; };
    all.push_back({"iterate", [=, this, &pictures](auto ref) {
                     return loops->iterate(inOf(ref), 0, 0, &pictures.from, nullptr, nullptr, leave, &pictures.to);
                   }});
    all.push_back({"iterate_origin", [=, this, &pictures](auto ref) {
                     return loops->iterate_origin(inOf(ref), 0, 0, &pictures.from, nullptr, nullptr, nullptr, leave,
                                                  &pictures.to);
                   }});
    all.push_back({"iterate_origin_non_clip_src", [=, this, &pictures](auto ref) {
                     return loops->iterate_origin_non_clip_src(inOf(ref), 0, 0, &pictures.from, nullptr, nullptr,
                                                               nullptr, leave, &pictures.to);
                   }});
  }

  void addLoops() {
    const auto* loops = suite<PF_Iterate8Suite>(kPFIterate8Suite, 1);
    addLoopsOver(loops, small);
    addLoopsOver(suite<PF_Iterate16Suite>(kPFIterate16Suite, 1), deep);
    addLoopsOver(suite<PF_IterateFloatSuite>(kPFIterateFloatSuite, 1), real);
    all.push_back({"iterate_lut", [=, this](auto ref) {
                     return loops->iterate_lut(inOf(ref), 0, 0, &small.from, nullptr, nullptr, nullptr, nullptr,
                                               nullptr, &small.to);
                   }});
    const auto* general = suite<AEGP_IterateSuite>(kAEGPIterateSuite, 1);
    const auto nothing = [](void*, A_long, A_long, A_long) { return PF_Err{PF_Err_NONE}; };
    all.push_back({.name = "iterate_generic",
                   .call = [=](auto) { return general->AEGP_IterateGeneric(2, nullptr, nothing); },
                   .takesRef = false});
    all.push_back({.name = "AEGP_GetNumThreads",
                   .call = [=, this](auto) { return general->AEGP_GetNumThreads(&number); },
                   .takesRef = false});
  }

  template <class Table, class Pixel, class Number>
  void addColorsOf(const Table* colors, Pictures<Pixel>& pictures, Number& answer) {
    const auto add = [&](const char* name, auto call) { all.push_back({.name = name, .call = call, .noted = false}); };
    add("RGBtoHLS", [=, this, &pictures](auto ref) { return colors->RGBtoHLS(ref, &pictures.pixel, threes); });
    add("HLStoRGB", [=, this, &pictures](auto ref) { return colors->HLStoRGB(ref, threes, &pictures.pixel); });
    add("RGBtoYIQ", [=, this, &pictures](auto ref) { return colors->RGBtoYIQ(ref, &pictures.pixel, threes); });
    add("YIQtoRGB", [=, this, &pictures](auto ref) { return colors->YIQtoRGB(ref, threes, &pictures.pixel); });
    add("Luminance", [=, &pictures, &answer](auto ref) { return colors->Luminance(ref, &pictures.pixel, &answer); });
    add("Hue", [=, &pictures, &answer](auto ref) { return colors->Hue(ref, &pictures.pixel, &answer); });
    add("Lightness", [=, &pictures, &answer](auto ref) { return colors->Lightness(ref, &pictures.pixel, &answer); });
    add("Saturation", [=, &pictures, &answer](auto ref) { return colors->Saturation(ref, &pictures.pixel, &answer); });
  }

  template <class Sampler, class Pixel>
  void addSampler(const char* name, Sampler sampler, Pictures<Pixel>& pictures) {
    all.push_back({.name = name,
                   .call = [=, &pictures](auto ref) { return sampler(ref, 0, 0, &pictures.samples, &pictures.pixel); },
                   .noted = false});
  }

  void addColorsAndSamples() {
    addColorsOf(suite<PF_ColorSuite>(kPFColorSuite, 1), small, number);
    addColorsOf(suite<PF_Color16Suite>(kPFColor16Suite, 1), deep, number);
    addColorsOf(suite<PF_ColorFloatSuite>(kPFColorFloatSuite, 1), real, fraction);
    const auto* eight = suite<PF_Sampling8Suite>(kPFSampling8Suite, 1);
    const auto* sixteen = suite<PF_Sampling16Suite>(kPFSampling16Suite, 1);
    const auto* floats = suite<PF_SamplingFloatSuite>(kPFSamplingFloatSuite, 1);
    addSampler("nn_sample", eight->nn_sample, small);
    addSampler("nn_sample", sixteen->nn_sample16, deep);
    addSampler("nn_sample", floats->nn_sample_float, real);
    addSampler("subpixel_sample", eight->subpixel_sample, small);
    addSampler("subpixel_sample", sixteen->subpixel_sample16, deep);
    addSampler("subpixel_sample", floats->subpixel_sample_float, real);
    addSampler("area_sample", eight->area_sample, small);
    addSampler("area_sample", sixteen->area_sample16, deep);
    addSampler("area_sample", floats->area_sample_float, real);
    for (const auto service : {host.utils()->begin_sampling, host.utils()->end_sampling}) {
      all.push_back({.name = "begin_sampling",
                     .call = [=, this](auto ref) { return service(ref, PF_Quality_HI, 0, &small.samples); },
                     .noted = false});
    }
  }

  // Calls work with an open handle of the memory suite, and frees it in the end.
  PF_Err withHandle(const std::function<PF_Err(AEGP_MemHandle)>& work) {
    const auto* memory = suite<AEGP_MemorySuite>(kAEGPMemorySuite, 1);
    AEGP_MemHandle handle = nullptr;
    memory->AEGP_NewMemHandle(1, "label", 8, AEGP_MemFlag_NONE, &handle);
    const PF_Err answer = work(handle);
    memory->AEGP_FreeMemHandle(handle);
    return answer;
  }

  void addMemory() {
    const auto* memory = suite<AEGP_MemorySuite>(kAEGPMemorySuite, 1);
    const auto add = [&](const char* name, const std::function<PF_Err(AEGP_MemHandle)>& work) {
      all.push_back({.name = name, .call = [=, this](auto) { return withHandle(work); }, .takesRef = false});
    };
    all.push_back({.name = "AEGP_NewMemHandle",
                   .call =
                       [=](auto) {
                         AEGP_MemHandle handle = nullptr;
                         const PF_Err err = memory->AEGP_NewMemHandle(1, nullptr, 8, AEGP_MemFlag_CLEAR, &handle);
                         if (handle != nullptr) memory->AEGP_FreeMemHandle(handle);
                         return err;
                       },
                   .takesRef = false});
    all.push_back({.name = "AEGP_FreeMemHandle",
                   .call =
                       [=](auto) {
                         AEGP_MemHandle handle = nullptr;
                         memory->AEGP_NewMemHandle(1, nullptr, 8, AEGP_MemFlag_NONE, &handle);
                         const PF_Err err = memory->AEGP_FreeMemHandle(handle);
                         if (err != PF_Err_NONE) memory->AEGP_FreeMemHandle(handle);
                         return err;
                       },
                   .takesRef = false,
                   .noted = false});  // the second call, which cleans up, stands behind it
    add("AEGP_LockMemHandle", [=, this](AEGP_MemHandle handle) { return memory->AEGP_LockMemHandle(handle, &block); });
    add("AEGP_UnlockMemHandle", [=, this](AEGP_MemHandle handle) {
      memory->AEGP_LockMemHandle(handle, &block);
      return memory->AEGP_UnlockMemHandle(handle);
    });
    add("AEGP_GetMemHandleSize",
        [=, this](AEGP_MemHandle handle) { return memory->AEGP_GetMemHandleSize(handle, &size); });
    add("AEGP_ResizeMemHandle",
        [=](AEGP_MemHandle handle) { return memory->AEGP_ResizeMemHandle("label", 16, handle); });
    add("AEGP_GetMemStats", [=, this](AEGP_MemHandle) { return memory->AEGP_GetMemStats(1, &number, &number); });
  }

  void addParameters() {
    const PF_InteractCallbacks inter = host.interact();
    const auto* utils = suite<PF_ParamUtilsSuite3>(kPFParamUtilsSuite, 3);
    all.push_back({.name = "add_param",
                   .call =
                       [=, this](auto ref) {
                         PF_ParamDef added = scripted::definition(PF_Param_SLIDER, "More", ++lastId);
                         return inter.add_param(ref, -1, &added);
                       },
                   .during = PF_Cmd_PARAMS_SETUP});
    all.push_back({"checkout_param", [=, this](auto ref) {
                     const PF_Err err = inter.checkout_param(ref, 1, 0, 1, 30, &definition);
                     if (err == PF_Err_NONE) inter.checkin_param(host.effectRef(), &definition);
                     return err;
                   }});
    all.push_back({"checkin_param", [=, this](auto ref) {
                     inter.checkout_param(host.effectRef(), 1, 0, 1, 30, &definition);
                     return inter.checkin_param(ref, &definition);
                   }});
    all.push_back({"abort", [=](auto ref) { return inter.abort(ref); }});
    all.push_back({.name = "progress", .call = [=](auto ref) { return inter.progress(ref, 1, 2); }, .noted = false});
    all.push_back({"register_ui", [=, this](auto ref) { return inter.register_ui(ref, &ui); }});
    all.push_back({"PF_UpdateParamUI", [=, this](auto ref) { return utils->PF_UpdateParamUI(ref, 1, &definition); }});
    all.push_back({"PF_GetCurrentState",
                   [=, this](auto ref) { return utils->PF_GetCurrentState(ref, 1, nullptr, nullptr, &state); }});
    all.push_back({"PF_AreStatesIdentical",
                   [=, this](auto ref) { return utils->PF_AreStatesIdentical(ref, &state, &state, &same); }});
    all.push_back({"PF_IsIdenticalCheckout",
                   [=, this](auto ref) { return utils->PF_IsIdenticalCheckout(ref, 1, 0, 1, 30, 1, 1, 30, &yes); }});
    all.push_back({"PF_FindKeyframeTime", [=, this](auto ref) {
                     return utils->PF_FindKeyframeTime(ref, 1, 0, 30, 0, &yes, nullptr, nullptr, nullptr);
                   }});
    all.push_back({"PF_GetKeyframeCount", [=, this](auto ref) { return utils->PF_GetKeyframeCount(ref, 1, &number); }});
    // There are no keyframes, so that every number of one is wrong.
    all.push_back({.name = "PF_CheckoutKeyframe",
                   .call = [=](auto ref) { return utils->PF_CheckoutKeyframe(ref, 1, 0, nullptr, nullptr, nullptr); },
                   .answer = PF_Err_INVALID_INDEX});
    all.push_back({.name = "PF_KeyIndexToTime",
                   .call = [=](auto ref) { return utils->PF_KeyIndexToTime(ref, 1, 0, nullptr, nullptr); },
                   .answer = PF_Err_INVALID_INDEX});
  }

  void addApplication() {
    const auto* app = suite<PFAppSuite6>(kPFAppSuite, 1);
    const auto* bridge = suite<AEGP_PFInterfaceSuite>(kAEGPPFInterfaceSuite, 1);
    const auto* button = suite<PF_EffectUISuite>(kPFEffectUISuite, 1);
    const auto* utility = suite<AEGP_UtilitySuite>(kAEGPUtilitySuite, 7);
    const auto* queue = suite<AEGP_RenderQueueSuite>(kAEGPRenderQueueSuite, 1);
    const auto add = [&](const char* name, const std::function<PF_Err()>& call) {
      all.push_back({.name = name, .call = [=](auto) { return call(); }, .takesRef = false});
    };
    add("PF_AppGetBgColor", [=, this] { return app->PF_AppGetBgColor(&grey); });
    add("PF_AppGetColor", [=, this] { return app->PF_AppGetColor(1, &grey); });
    add("PF_AppGetLanguage", [=, this] { return app->PF_AppGetLanguage(text); });
    add("PF_GetPersonalInfo", [=, this] { return app->PF_GetPersonalInfo(&person); });
    add("PF_IsRenderEngine", [=, this] { return app->PF_IsRenderEngine(&yes); });
    add("PF_CreateNewAppProgressDialog",
        [=, this] { return app->PF_CreateNewAppProgressDialog(nullptr, nullptr, 0, &dialog); });
    add("AEGP_RegisterWithAEGP", [=, this] { return utility->AEGP_RegisterWithAEGP(nullptr, nullptr, &number); });
    add("AEGP_GetRenderQueueState", [=, this] { return queue->AEGP_GetRenderQueueState(&queueState); });
    all.push_back({"AEGP_GetEffectLayer", [=, this](auto ref) { return bridge->AEGP_GetEffectLayer(ref, &layer); }});
    all.push_back({"AEGP_ConvertEffectToCompTime",
                   [=, this](auto ref) { return bridge->AEGP_ConvertEffectToCompTime(ref, 1, 30, &time); }});
    all.push_back(
        {"AEGP_GetEffectCamera", [=, this](auto ref) { return bridge->AEGP_GetEffectCamera(ref, &time, &layer); }});
    all.push_back({.name = "PF_SetOptionsButtonName",
                   .call = [=](auto ref) { return button->PF_SetOptionsButtonName(ref, "More"); },
                   .during = PF_Cmd_PARAMS_SETUP});
    all.push_back({"get_platform_data",
                   [=, this](auto ref) { return host.utils()->get_platform_data(ref, PF_PlatData_MAIN_WND, &block); }});
  }

  PF_InData* inOf(PF_ProgPtr ref) {
    PF_InData* data = in();
    data->effect_ref = ref;
    return data;
  }

  Pictures<PF_Pixel> small;
  Pictures<PF_Pixel16> deep;
  Pictures<PF_PixelFloat> real;
  const PF_CompositeMode mode{PF_Xfer_COPY, 0, 255, 0, 32768};
  const PF_FloatMatrix asItIs{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
  std::vector<Service> all;

  // Places for answers.
  PF_Pixel* pixels8 = nullptr;
  PF_Pixel16* pixels16 = nullptr;
  PF_PixelFloat* pixelsFloat = nullptr;
  PF_PixelFormat format{};
  A_long number = 0;
  PF_FpShort fraction = 0;
  PF_Fixed threes[3] = {};
  void* block = nullptr;
  AEGP_MemSize size = 0;
  PF_ParamDef definition{};
  A_long lastId = 1;
  PF_CustomUIInfo ui{};
  PF_State state{};
  PF_Boolean yes = 0;
  A_Boolean same = 0;
  PF_App_Color grey{};
  A_char text[8] = {};
  PF_AppPersonalTextInfo person{};
  PF_AppProgressDialogP dialog = nullptr;
  AEGP_RenderQueueState queueState = 0;
  AEGP_LayerH layer = nullptr;
  A_Time time{};
};

TEST_F(EveryService, answersItsOwnEffectAndIsNoted) {
  for (const Service& service : all) {
    EXPECT_EQ(answerOf(service, ref()), service.answer) << service.name;
    if (service.noted) {
      EXPECT_EQ(notedOf(service.name), service.answer) << service.name;
    }
    EXPECT_EQ(report(), "") << service.name;
    host.log().clear();
    host.books().clear();
  }
}

TEST_F(EveryService, answersAFaultWithItsCodeAndWritesNothingIntoPictures) {
  constexpr PF_Err code = 77;
  for (const Service& service : all) {
    host.faults().fail(service.name, 1, code);
    EXPECT_EQ(answerOf(service, ref()), code) << service.name;
    EXPECT_EQ(host.faults().waiting(), 0) << service.name;
    if (service.noted) {
      EXPECT_EQ(notedOf(service.name), code) << service.name;
    }
    EXPECT_EQ(report(), "") << service.name;
    host.faults().clear();
    host.log().clear();
    host.books().clear();
  }
  EXPECT_TRUE(standin::samePixels(small.target, Image(Depth::k8, 2, 2, 0, 2)));
  EXPECT_TRUE(standin::samePixels(deep.target, Image(Depth::k16, 2, 2, 0, 2)));
  EXPECT_TRUE(standin::samePixels(real.target, Image(Depth::k32, 2, 2, 0, 2)));
}

TEST_F(EveryService, isLikeBeforeWhenItsFaultIsOver) {
  for (const Service& service : all) {
    host.faults().fail(service.name, 1, 77);
    answerOf(service, ref());
    EXPECT_EQ(answerOf(service, ref()), service.answer) << service.name;
    EXPECT_EQ(report(), "") << service.name;
    host.faults().clear();
    host.books().clear();
  }
}

TEST_F(EveryService, servesAForeignEffectRefWithAComplaintThatNamesTheService) {
  for (const Service& service : all) {
    if (!service.takesRef) continue;
    EXPECT_EQ(answerOf(service, nullptr), service.answer) << service.name;
    ASSERT_EQ(host.books().complaints().size(), 1U) << service.name << "\n" << report();
    EXPECT_EQ(host.books().complaints()[0].matter, Matter::kWrongArgument) << service.name;
    EXPECT_EQ(host.books().complaints()[0].text, service.name + " with a foreign effect_ref");
    EXPECT_EQ(host.books().complaints()[0].command, service.during) << service.name;
    host.books().clear();
  }
}

}  // namespace
