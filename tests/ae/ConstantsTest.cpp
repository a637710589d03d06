#include "ae/Constants.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>
#include <type_traits>

#include "ae/Suites.h"

namespace {

// The four bytes as they lie in memory.
std::string memoryBytesOf(int32_t value) {
  std::array<char, 4> bytes{};
  std::memcpy(bytes.data(), &value, bytes.size());
  return {bytes.begin(), bytes.end()};
}

TEST(Constants, pixelFormatsReadAsTheirLettersInMemory) {
  EXPECT_EQ(memoryBytesOf(PF_PixelFormat_ARGB32), "argb");
  EXPECT_EQ(memoryBytesOf(PF_PixelFormat_ARGB64), "ae16");
  EXPECT_EQ(memoryBytesOf(PF_PixelFormat_ARGB128), "ae32");
  EXPECT_EQ(memoryBytesOf(PF_PixelFormat_INVALID), "badf");
}

TEST(Constants, applicationIdsHaveTheirFirstLetterInTheHighestByte) {
  EXPECT_EQ(memoryBytesOf(kAppIdAfterEffects), "CTXF");
  EXPECT_EQ(memoryBytesOf(kAppIdPremiere), "rMrP");
}

TEST(Constants, commandsCountFromAboutToSmartRenderWithoutAGap) {
  constexpr PF_Cmd inOrder[] = {PF_Cmd_ABOUT,
                                PF_Cmd_GLOBAL_SETUP,
                                PF_Cmd_UNUSED_0,
                                PF_Cmd_GLOBAL_SETDOWN,
                                PF_Cmd_PARAMS_SETUP,
                                PF_Cmd_SEQUENCE_SETUP,
                                PF_Cmd_SEQUENCE_RESETUP,
                                PF_Cmd_SEQUENCE_FLATTEN,
                                PF_Cmd_SEQUENCE_SETDOWN,
                                PF_Cmd_DO_DIALOG,
                                PF_Cmd_FRAME_SETUP,
                                PF_Cmd_RENDER,
                                PF_Cmd_FRAME_SETDOWN,
                                PF_Cmd_USER_CHANGED_PARAM,
                                PF_Cmd_UPDATE_PARAMS_UI,
                                PF_Cmd_EVENT,
                                PF_Cmd_GET_EXTERNAL_DEPENDENCIES,
                                PF_Cmd_COMPLETELY_GENERAL,
                                PF_Cmd_QUERY_DYNAMIC_FLAGS,
                                PF_Cmd_AUDIO_RENDER,
                                PF_Cmd_AUDIO_SETUP,
                                PF_Cmd_AUDIO_SETDOWN,
                                PF_Cmd_ARBITRARY_CALLBACK,
                                PF_Cmd_SMART_PRE_RENDER,
                                PF_Cmd_SMART_RENDER};
  PF_Cmd expected = 0;
  for (const PF_Cmd command : inOrder) EXPECT_EQ(command, expected++);
  EXPECT_EQ(expected, 25);
}

TEST(Constants, errorsHaveTheHostsNumbers) {
  EXPECT_EQ(PF_Err_NONE, 0);
  EXPECT_EQ(PF_Err_OUT_OF_MEMORY, 4);
  EXPECT_EQ(PF_Err_INTERNAL_STRUCT_DAMAGED, 512);
  EXPECT_EQ(PF_Err_UNRECOGNIZED_PARAM_TYPE, 514);
  EXPECT_EQ(PF_Err_BAD_CALLBACK_PARAM, 516);
  EXPECT_EQ(PF_Interrupt_CANCEL, 517);
}

TEST(Constants, theHighestFlagBitIsTheSmallestInteger) {
  EXPECT_EQ(PF_OutFlag_AUDIO_EFFECT_ONLY, -2147483647 - 1);
  static_assert(std::is_same_v<decltype(PF_OutFlag_AUDIO_EFFECT_ONLY), const PF_OutFlags>);
}

TEST(Constants, flagsStandAtTheirBits) {
  EXPECT_EQ(PF_OutFlag_WIDE_TIME_INPUT, 1 << 1);
  EXPECT_EQ(PF_OutFlag_I_DO_DIALOG, 1 << 5);
  EXPECT_EQ(PF_OutFlag_USE_OUTPUT_EXTENT, 1 << 6);
  EXPECT_EQ(PF_OutFlag_DEEP_COLOR_AWARE, 1 << 25);
  EXPECT_EQ(PF_OutFlag_SEND_UPDATE_PARAMS_UI, 1 << 26);
  EXPECT_EQ(PF_OutFlag2_SUPPORTS_QUERY_DYNAMIC_FLAGS, 1 << 0);
  EXPECT_EQ(PF_OutFlag2_PARAM_GROUP_START_COLLAPSED_FLAG, 1 << 3);
  EXPECT_EQ(PF_OutFlag2_I_AM_THREADSAFE, 1 << 4);
  EXPECT_EQ(PF_OutFlag2_SUPPORTS_SMART_RENDER, 1 << 10);
  EXPECT_EQ(PF_OutFlag2_FLOAT_COLOR_AWARE, 1 << 12);
  EXPECT_EQ(PF_ParamFlag_CANNOT_INTERP, 1 << 2);
  EXPECT_EQ(PF_ParamFlag_COLLAPSE_TWIRLY, PF_ParamFlag_START_COLLAPSED);
  EXPECT_EQ(PF_ParamFlag_SUPERVISE, 1 << 6);
  EXPECT_EQ(PF_PUI_DISABLED, 1 << 5);
  EXPECT_EQ(PF_WorldFlag_DEEP, 1);
  EXPECT_EQ(PF_WorldFlag_WRITEABLE, 2);
  EXPECT_EQ(PF_NewWorldFlag_CLEAR_PIXELS, 1);
  EXPECT_EQ(PF_NewWorldFlag_DEEP_PIXELS, 2);
}

TEST(Constants, parameterTypesHaveTheHostsNumbers) {
  EXPECT_EQ(PF_Param_LAYER, 0);
  EXPECT_EQ(PF_Param_SLIDER, 1);
  EXPECT_EQ(PF_Param_ANGLE, 3);
  EXPECT_EQ(PF_Param_CHECKBOX, 4);
  EXPECT_EQ(PF_Param_COLOR, 5);
  EXPECT_EQ(PF_Param_POINT, 6);
  EXPECT_EQ(PF_Param_POPUP, 7);
  EXPECT_EQ(PF_Param_FLOAT_SLIDER, 10);
  EXPECT_EQ(PF_Param_GROUP_START, 13);
  EXPECT_EQ(PF_Param_GROUP_END, 14);
}

TEST(Constants, fullScaleOfSixteenBitsIsAPowerOfTwo) {
  EXPECT_EQ(PF_MAX_CHAN8, 255);
  EXPECT_EQ(PF_MAX_CHAN16, 1 << 15);
}

TEST(Constants, suiteErrorsReadAsTheirLettersFromTheHighestByte) {
  EXPECT_EQ(memoryBytesOf(kSPSuiteNotFoundError), "dF!S");
  EXPECT_EQ(memoryBytesOf(kSPBadParameterError), "mraP");
  EXPECT_EQ(memoryBytesOf(kSPUnimplementedError), "PMI!");
  EXPECT_EQ(kSPOutOfMemoryError, -148);  // 0xFFFFFF6C is 148 below 2 to the 32
}

}  // namespace
