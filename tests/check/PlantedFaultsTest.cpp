// Each planted fault is caught by the promise that is named for it, and a module without one keeps them all.
#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "tests/check/CheckedModule.h"

namespace {

using check::Result;
using check::Verdict;

struct Planted {
  const char* module;
  const char* promise;
  const char* seen;  ///< a pattern for what is seen
};

void PrintTo(const Planted& item, std::ostream* out) {
  *out << item.module;
}

const Planted kPlanted[] = {
    {"CountsItsFrames", "the-same-frame-twice", "*pixels differ*"},
    {"DeepIsDarker", "depths-agree", "while comparing * 16 bits with 8 bits: *pixels differ*"},
    {"DefaultBeyondTheRange", "defaults-are-in-range", "*\"Amount\" has the default 120 outside of 0 to 100"},
    {"DiesAtOnePixel", "every-size-from-1-x-1", "while drawing 1 x 1 pixels by the smart road at 8 bits: *"},
    {"DiesInItsSecondLife", "a-second-life", "while it is set up in a second life of one load: *"},
    {"ExitsWithoutALayer", "layers-missing", "*: the module ended its process, with exit code 3*"},
    {"FloatWithoutDeep", "flags-agree-with-each-other", "*FLOAT_COLOR_AWARE without DEEP_COLOR_AWARE"},
    {"ForgetsStoredData", "stored-data-survives-a-project", "*set up again in another load: it answers error*"},
    {"HangsAtLowResolution", "down-sampling", "while drawing at 1/2 by 1/1 * it hangs: no end after 3 seconds"},
    {"KeepsHandles", "handles-are-given-back", "*(64 bytes), lent in PF_Cmd_SMART_RENDER, never disposed of"},
    {"KeepsMemory", "memory-does-not-grow", "*the process holds * MB more after 160 frames"},
    {"KeepsSuites", "suites-are-released", "*(PF World Suite 2), lent in PF_Cmd_SMART_RENDER, never released"},
    {"NeedsItsSuite", "suites-withheld-one-by-one", "while drawing without PF World Suite 2: *"},
    {"ReadsATableByItsPopup", "values-beyond-their-ends-do-no-harm", "while drawing * with Kind = *: *"},
    {"RemembersTheFrameBefore", "any-order-of-frames", "*pixels differ*"},
    {"SharedId", "ids-are-unique", "*id 1 is that of parameter 1 \"Amount\" and of parameter 2 \"Kind\""},
    {"SharesItsScratch", "frames-side-by-side", "*it isn't as it is alone*"},
    {"SkipsTheLastRow", "the-whole-output-is-written", "*what stood in the output or in a new world shows*"},
    {"SmartIsDarker", "both-roads-agree", "while drawing one frame by both roads at 8 bits: *pixels differ*"},
    {"SwallowsErrors", "failed-calls-are-told", "*it answers 0, and the frame isn't whole*"},
    {"TakesAges", "a-frame-ends-in-time", "while drawing 320 x 240 pixels by * it hangs: no end after 6 seconds"},
    {"TellsMoreItems", "popups-name-their-items", "*\"Kind\" says that it has 4 items and names 3"},
    {"ThrowsAtItsSetUp", "set-up-succeeds", "while it gets the global set-up: *"},
    {"TrustsStoredData", "corrupted-stored-data-does-no-harm", "while setting up stored data *"},
    {"WritesBesideTheRows", "padded-rows", "*bytes outside *were changed*"},
};

class PlantedFaults : public testing::TestWithParam<Planted> {};

TEST_P(PlantedFaults, areCaughtByThePromiseThatIsNamedForThem) {
  const Planted& planted = GetParam();
  // A fault that takes its time must not take ours: the limits are for machines at work.
  const double timeFactor =
      std::string(planted.module) == "HangsAtLowResolution" || std::string(planted.module) == "TakesAges" ? 0.05 : 4;
  const Result result = checkOne(planted.module, planted.promise, {}, timeFactor);
  EXPECT_EQ(result.verdict, Verdict::kFail);
  ASSERT_FALSE(result.findings.empty());
  EXPECT_TRUE(check::matches(result.findings[0], planted.seen)) << result.findings[0];
  EXPECT_EQ(result.repeat, std::string("check it --only ") + planted.promise + " --seed 1");
}

INSTANTIATE_TEST_SUITE_P(Each, PlantedFaults, testing::ValuesIn(kPlanted),
                         [](const testing::TestParamInfo<Planted>& item) { return std::string(item.param.module); });

TEST(HonestModule, keepsEveryPromise) {
  for (const Result& result : checkAll("HonestEffect")) {
    EXPECT_TRUE(result.verdict == Verdict::kPass || result.verdict == Verdict::kSkip)
        << result.promise->name << ": "
        << (result.findings.empty() ? (result.warnings.empty() ? "" : result.warnings[0]) : result.findings[0]);
  }
}

}  // namespace
