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
    {"SharedId", "ids-are-unique", "*id 1 is that of parameter 1 \"Amount\" and of parameter 2 \"Kind\""},
    {"DiesAtOnePixel", "every-size-from-1-x-1",
     "while drawing 1 x 1 pixels by the smart road at 8 bits: it crashes: *"},
    {"RemembersTheFrameBefore", "any-order-of-frames", "*pixels differ*"},
};

class PlantedFaults : public testing::TestWithParam<Planted> {};

TEST_P(PlantedFaults, areCaughtByThePromiseThatIsNamedForThem) {
  const Planted& planted = GetParam();
  const Result result = checkOne(planted.module, planted.promise);
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
