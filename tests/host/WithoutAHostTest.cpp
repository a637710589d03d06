// Services that a module calls when no host is there any more, through tables that it has kept: each answers with a
// code.
#include <gmock/gmock.h>

#include <vector>

#include "ScriptedEffect.h"
#include "ae/AegpSuites.h"
#include "ae/AppSuites.h"
#include "ae/PixelSuites.h"
#include "ae/Suites.h"
#include "host/Image.h"

namespace {

using testing::Each;

/// The service's answer to nothing at all.
template <class Answer, class... Arguments>
Answer of(Answer (*service)(Arguments...)) {
  return service(Arguments{}...);
}

template <class... Services>
std::vector<PF_Err> codes(Services... services) {
  return {of(services)...};
}

class WithoutAHost : public testing::Test {
 protected:
  WithoutAHost() {
    scripted::Effect effect;
    standin::StandInHost host(scripted::Effect::entry);
    effect.on[PF_Cmd_EVENT] = [&](const scripted::Call& call) {
      basic_ = call.in->pica_basicP;
      utils_ = call.in->utils;
      inter_ = call.in->inter;
      return PF_Err{PF_Err_NONE};
    };
    EXPECT_EQ(host.call(PF_Cmd_EVENT), PF_Err_NONE);
    effect.on[PF_Cmd_SMART_PRE_RENDER] = [&](const scripted::Call& call) {
      preRender_ = *call.preRender().cb;
      call.preRender().output->result_rect = call.preRender().output->max_result_rect = {0, 0, 1, 1};
      return PF_Err{PF_Err_NONE};
    };
    effect.on[PF_Cmd_SMART_RENDER] = [&](const scripted::Call& call) {
      smartRender_ = *call.smartRender().cb;
      return PF_Err{PF_Err_NONE};
    };
    standin::FrameRequest frame;
    frame.input = standin::Image(standin::Depth::k8, 1, 1);
    EXPECT_EQ(host.renderSmart(frame, host.defaults()).error, PF_Err_NONE);
    get(handles_, kPFHandleSuite, kPFHandleSuiteVersion2);
    get(worlds1_, kPFWorldSuite, kPFWorldSuiteVersion1);
    get(worlds2_, kPFWorldSuite, kPFWorldSuiteVersion2);
    get(fill_, kPFFillMatteSuite, kPFFillMatteSuiteVersion2);
    get(transform_, kPFWorldTransformSuite, kPFWorldTransformSuiteVersion1);
    get(app_, kPFAppSuite, kPFAppSuiteVersion1);
    get(params_, kPFParamUtilsSuite, kPFParamUtilsSuiteVersion3);
    get(iterate8_, kPFIterate8Suite, 1);
    get(iterate16_, kPFIterate16Suite, 1);
    get(iterateFloat_, kPFIterateFloatSuite, 1);
    get(data_, kPFPixelDataSuite, 2);
    get(color8_, kPFColorSuite, 1);
    get(color16_, kPFColor16Suite, 1);
    get(colorFloat_, kPFColorFloatSuite, 1);
    get(sample8_, kPFSampling8Suite, 1);
    get(sample16_, kPFSampling16Suite, 1);
    get(sampleFloat_, kPFSamplingFloatSuite, 1);
    get(ui_, kPFEffectUISuite, 1);
    get(utility_, kAEGPUtilitySuite, 7);
    get(queue_, kAEGPRenderQueueSuite, 1);
    get(memory_, kAEGPMemorySuite, 1);
    get(bridge_, kAEGPPFInterfaceSuite, 1);
    get(loops_, kAEGPIterateSuite, 1);
  }

  template <class Table>
  void get(const Table*& table, const char* name, int32 version) {
    const void* found = nullptr;
    ASSERT_EQ(basic_->AcquireSuite(name, version, &found), kSPNoError) << name;
    table = static_cast<const Table*>(found);
  }

  const SPBasicSuite* basic_ = nullptr;
  const PF_UtilCallbacks* utils_ = nullptr;
  PF_InteractCallbacks inter_{};
  const PF_HandleSuite1* handles_ = nullptr;
  const PF_WorldSuite1* worlds1_ = nullptr;
  const PF_WorldSuite2* worlds2_ = nullptr;
  const PF_FillMatteSuite2* fill_ = nullptr;
  const PF_WorldTransformSuite1* transform_ = nullptr;
  const PFAppSuite6* app_ = nullptr;
  const PF_ParamUtilsSuite3* params_ = nullptr;
  const PF_Iterate8Suite* iterate8_ = nullptr;
  const PF_Iterate16Suite* iterate16_ = nullptr;
  const PF_IterateFloatSuite* iterateFloat_ = nullptr;
  const PF_PixelDataSuite* data_ = nullptr;
  const PF_ColorSuite* color8_ = nullptr;
  const PF_Color16Suite* color16_ = nullptr;
  const PF_ColorFloatSuite* colorFloat_ = nullptr;
  const PF_Sampling8Suite* sample8_ = nullptr;
  const PF_Sampling16Suite* sample16_ = nullptr;
  const PF_SamplingFloatSuite* sampleFloat_ = nullptr;
  const PF_EffectUISuite* ui_ = nullptr;
  const AEGP_UtilitySuite* utility_ = nullptr;
  const AEGP_RenderQueueSuite* queue_ = nullptr;
  const AEGP_MemorySuite* memory_ = nullptr;
  const AEGP_PFInterfaceSuite* bridge_ = nullptr;
  const AEGP_IterateSuite* loops_ = nullptr;
  PF_PreRenderCallbacks preRender_{};
  PF_SmartRenderCallbacks smartRender_{};
};

TEST_F(WithoutAHost, noSuiteIsHandedOutOrTakenBack) {
  const void* table = nullptr;
  EXPECT_EQ(basic_->AcquireSuite(kPFHandleSuite, kPFHandleSuiteVersion2, &table), kSPBadParameterError);
  EXPECT_EQ(table, nullptr);
  EXPECT_EQ(basic_->ReleaseSuite(kPFHandleSuite, kPFHandleSuiteVersion2), kSPBadParameterError);
}

TEST_F(WithoutAHost, noMemoryIsLent) {
  EXPECT_EQ(handles_->host_new_handle(16), nullptr);
  EXPECT_EQ(handles_->host_lock_handle(nullptr), nullptr);
  handles_->host_unlock_handle(nullptr);
  handles_->host_dispose_handle(nullptr);
  EXPECT_EQ(handles_->host_get_handle_size(nullptr), 0);
  PF_Handle handle = nullptr;
  EXPECT_EQ(handles_->host_resize_handle(16, &handle), PF_Err_BAD_CALLBACK_PARAM);
}

TEST_F(WithoutAHost, worldsAreRefused) {
  PF_PixelFormat format{};
  PF_EffectWorld world{};
  EXPECT_EQ(worlds2_->PF_GetPixelFormat(&world, &format), PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_THAT(codes(worlds1_->new_world, worlds1_->dispose_world, worlds2_->PF_NewWorld, worlds2_->PF_DisposeWorld,
                    worlds2_->PF_GetPixelFormat),
              Each(PF_Err_BAD_CALLBACK_PARAM));
  EXPECT_THAT(codes(fill_->fill, fill_->fill16, fill_->fill_float, fill_->premultiply, fill_->premultiply_color,
                    fill_->premultiply_color16, fill_->premultiply_color_float),
              Each(PF_Err_BAD_CALLBACK_PARAM));
  EXPECT_THAT(codes(transform_->composite_rect, transform_->blend, transform_->convolve, transform_->copy,
                    transform_->copy_hq, transform_->transfer_rect, transform_->transform_world),
              Each(PF_Err_BAD_CALLBACK_PARAM));
}

TEST_F(WithoutAHost, pixelsAreRefused) {
  EXPECT_THAT(codes(iterate8_->iterate, iterate8_->iterate_origin, iterate8_->iterate_lut,
                    iterate8_->iterate_origin_non_clip_src, iterate8_->iterate_generic, iterate16_->iterate,
                    iterate16_->iterate_origin, iterate16_->iterate_origin_non_clip_src, iterateFloat_->iterate,
                    iterateFloat_->iterate_origin, iterateFloat_->iterate_origin_non_clip_src),
              Each(PF_Err_BAD_CALLBACK_PARAM));
  PF_EffectWorld world{};
  PF_Pixel8* pixels8 = nullptr;
  PF_Pixel16* pixels16 = nullptr;
  PF_PixelFloat* pixelsFloat = nullptr;
  EXPECT_EQ(data_->get_pixel_data8(&world, nullptr, &pixels8), PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_EQ(data_->get_pixel_data16(&world, nullptr, &pixels16), PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_EQ(data_->get_pixel_data_float(&world, nullptr, &pixelsFloat), PF_Err_BAD_CALLBACK_PARAM);
  PF_SampPB sampling{};
  sampling.src = &world;
  PF_Pixel pixel{};
  PF_Pixel16 pixel16{};
  PF_PixelFloat pixelFloat{};
  EXPECT_EQ(sample8_->nn_sample(nullptr, 0, 0, &sampling, &pixel), PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_EQ(sample16_->subpixel_sample16(nullptr, 0, 0, &sampling, &pixel16), PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_EQ(sampleFloat_->area_sample_float(nullptr, 0, 0, &sampling, &pixelFloat), PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_EQ(of(utils_->begin_sampling), PF_Err_BAD_CALLBACK_PARAM);
}

TEST_F(WithoutAHost, coloursAreRefused) {
  EXPECT_THAT(codes(color8_->RGBtoHLS, color8_->HLStoRGB, color8_->RGBtoYIQ, color8_->YIQtoRGB, color8_->Luminance,
                    color8_->Hue, color8_->Lightness, color8_->Saturation, color16_->RGBtoHLS, color16_->HLStoRGB,
                    color16_->RGBtoYIQ, color16_->YIQtoRGB, color16_->Luminance, color16_->Hue, color16_->Lightness,
                    color16_->Saturation, colorFloat_->RGBtoHLS, colorFloat_->HLStoRGB, colorFloat_->RGBtoYIQ,
                    colorFloat_->YIQtoRGB, colorFloat_->Luminance, colorFloat_->Hue, colorFloat_->Lightness,
                    colorFloat_->Saturation),
              Each(PF_Err_BAD_CALLBACK_PARAM));
}

TEST_F(WithoutAHost, valuesAndQuestionsAreRefused) {
  PF_Boolean answer = 7;
  EXPECT_EQ(app_->PF_IsRenderEngine(&answer), PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_EQ(int{answer}, 7);
  EXPECT_THAT(codes(app_->PF_SetCursor, app_->PF_CreateNewAppProgressDialog, app_->PF_AppProgressDialogUpdate,
                    app_->PF_DisposeAppProgressDialog, params_->PF_UpdateParamUI, params_->PF_GetCurrentState,
                    params_->PF_AreStatesIdentical),
              Each(PF_Err_BAD_CALLBACK_PARAM));
  EXPECT_THAT(codes(inter_.checkout_param, inter_.checkin_param, inter_.add_param), Each(PF_Err_BAD_CALLBACK_PARAM));
  // There is nobody who would stop a frame.
  EXPECT_THAT(codes(inter_.progress, inter_.abort), Each(PF_Err_NONE));
}

TEST_F(WithoutAHost, whatOtherModulesAskForIsRefused) {
  A_long number = 5;
  AEGP_PluginID id = 5;
  AEGP_RenderQueueState state = 5;
  AEGP_MemHandle handle = nullptr;
  void* card = &card;
  EXPECT_EQ(loops_->AEGP_GetNumThreads(&number), PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_EQ(utility_->AEGP_RegisterWithAEGP(nullptr, "name", &id), PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_EQ(queue_->AEGP_GetRenderQueueState(&state), PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_EQ(memory_->AEGP_NewMemHandle(1, "label", 8, AEGP_MemFlag_NONE, &handle), PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_EQ(memory_->AEGP_GetMemStats(1, &number, &number), PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_EQ(data_->get_pixel_data_float_gpu(nullptr, &card), PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_EQ(ui_->PF_SetOptionsButtonName(nullptr, "More"), PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_THAT(codes(memory_->AEGP_FreeMemHandle, memory_->AEGP_LockMemHandle, memory_->AEGP_UnlockMemHandle,
                    memory_->AEGP_GetMemHandleSize, memory_->AEGP_ResizeMemHandle, memory_->AEGP_SetMemReportingOn,
                    bridge_->AEGP_GetEffectLayer, bridge_->AEGP_ConvertEffectToCompTime, bridge_->AEGP_GetEffectCamera,
                    loops_->AEGP_IterateGeneric, app_->PF_AppColorPickerDialog, app_->PF_AppGetBgColor),
              Each(PF_Err_BAD_CALLBACK_PARAM));
  EXPECT_TRUE(number == 5 && id == 5 && state == 5 && handle == nullptr && card == &card);
}

TEST_F(WithoutAHost, whatNoHostHasIsRefusedAllTheSame) {
  EXPECT_THAT(codes(utils_->gaussian_kernel, utils_->get_callback_addr, inter_.checkin_layer_audio),
              Each(PF_Err_INVALID_CALLBACK));
}

TEST_F(WithoutAHost, frameServicesThatWereKeptAreRefused) {
  PF_EffectWorld* world = nullptr;
  EXPECT_EQ(of(preRender_.checkout_layer), PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_EQ(smartRender_.checkout_layer_pixels(nullptr, 0, &world), PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_EQ(smartRender_.checkout_output(nullptr, &world), PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_EQ(of(smartRender_.checkin_layer_pixels), PF_Err_BAD_CALLBACK_PARAM);
  PF_CustomUIInfo info{};
  EXPECT_EQ(inter_.register_ui(nullptr, &info), PF_Err_BAD_CALLBACK_PARAM);
  // A progress with a whole to it is not the question whether to go on; here, too, nobody would stop.
  EXPECT_EQ(inter_.progress(nullptr, 1, 2), PF_Err_NONE);
  PF_Boolean answer = 5;
  EXPECT_EQ(params_->PF_IsIdenticalCheckout(nullptr, 0, 0, 1, 1, 0, 1, 1, &answer), PF_Err_BAD_CALLBACK_PARAM);
  void* data = nullptr;
  EXPECT_EQ(utils_->get_platform_data(nullptr, PF_PlatData_MAIN_WND, &data), PF_Err_BAD_CALLBACK_PARAM);
}

}  // namespace
