#include <gtest/gtest.h>

#include <cstddef>

#include "ae/Callbacks.h"
#include "ae/InOutData.h"
#include "ae/Params.h"
#include "ae/Suites.h"

namespace {

constexpr size_t slotBytes = 8;

TEST(Tables, theAskedForAppSuiteHasTheRenderEngineQuestionInSlotFive) {
  // The table that is asked for by 6 has 11 members; newer ones have another question in slot 5.
  EXPECT_EQ(offsetof(PFAppSuite4, PF_IsRenderEngine), 5 * slotBytes);
  EXPECT_EQ(sizeof(PFAppSuite4), 11 * slotBytes);
}

TEST(Tables, theAskedForParamUtilsSuiteHasTheGreyingCallInFront) {
  EXPECT_EQ(offsetof(PF_ParamUtilsSuite1, PF_UpdateParamUI), 0u);
  EXPECT_EQ(sizeof(PF_ParamUtilsSuite1), 10 * slotBytes);
}

TEST(Tables, theTextFunctionsLieInsideTheServices) {
  EXPECT_EQ(offsetof(PF_UtilCallbacks, ansi) + offsetof(PF_ANSICallbacks, sprintf), 328u);
  EXPECT_EQ(offsetof(PF_UtilCallbacks, ansi) + offsetof(PF_ANSICallbacks, strcpy), 336u);
  EXPECT_EQ(offsetof(PF_UtilCallbacks, get_platform_data), 432u);
}

TEST(Tables, everyFormOfAParameterBeginsAtTheSameByte) {
  const PF_ParamDef def{};
  const void* const start = &def.u;
  EXPECT_EQ(start, static_cast<const void*>(&def.u.ld));
  EXPECT_EQ(start, static_cast<const void*>(&def.u.fs_d.value));
  EXPECT_EQ(start, static_cast<const void*>(&def.u.cd.value.alpha));
  EXPECT_EQ(start, static_cast<const void*>(&def.u.pd.value));
}

TEST(Tables, theIdAndTheChangeFlagsAreTheSameFourBytes) {
  PF_ParamDef def{};
  def.uu.id = 201;
  EXPECT_EQ(static_cast<const void*>(&def.uu.id), static_cast<const void*>(&def.uu.change_flags));
}

}  // namespace
