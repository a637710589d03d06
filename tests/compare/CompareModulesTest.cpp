// The comparison itself: nothing is found between a module and its copy, and each thing that a host could see is found
// when it is planted in the copy.
#include "tests/compare/CompareModules.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "ae/Constants.h"
#include "ae/SmartRender.h"
#include "ae/Suites.h"
#include "host/LoadedModule.h"
#include "tests/support/TemporaryFolder.h"

namespace compare {
namespace {

using Fault = std::function<PF_Err(PF_Cmd, PF_InData*, PF_OutData*, PF_LayerDef*)>;

// The planted module's own entry, and what is done behind it. An entry is a plain function, so these are global.
PF_EffectEntryPoint innerEntry = nullptr;
Fault fault;

PF_Err plantedEntry(PF_Cmd command, PF_InData* inData, PF_OutData* outData, PF_ParamDef* params[], PF_LayerDef* output,
                    void* extra) {
  const PF_Err err = innerEntry(command, inData, outData, params, output, extra);
  if (err != PF_Err_NONE) return err;
  return fault(command, inData, outData, output);
}

class Comparing : public ::testing::Test {
 protected:
  Comparing() {
    // A file that is loaded twice is one module, so the second one is a copy.
    std::filesystem::copy_file(VINDREL_MODULE_PATH, copy_);
  }

  Outcome run(Calls calls, Fault planted = {}) {
    fault = std::move(planted);
    Options options;
    options.frames = 150;
    options.calls = calls;
    const auto loadOne = [this] {
      one_.reset();
      one_.emplace(VINDREL_MODULE_PATH);
      return one_->entry();
    };
    const auto loadOther = [this] {
      other_.reset();
      other_.emplace(copy_.string());
      innerEntry = other_->entry();
      return fault ? plantedEntry : innerEntry;
    };
    return compareModules(loadOne, loadOther, options);
  }

  std::string difference(Calls calls, Fault planted) { return run(calls, std::move(planted)).difference.value_or(""); }

 private:
  // The folder goes after the module in it is unloaded.
  vindrel::test::TemporaryFolder folder_;
  std::filesystem::path copy_ = folder_ / std::filesystem::path(VINDREL_MODULE_PATH).filename().string();
  std::optional<standin::LoadedModule> one_;
  std::optional<standin::LoadedModule> other_;
};

/// True when text holds part.
::testing::AssertionResult holds(const std::string& text, const std::string& part) {
  if (text.find(part) != std::string::npos) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << '"' << text << "\" does not hold \"" << part << '"';
}

TEST_F(Comparing, findsNothingBetweenAModuleAndItsCopy) {
  const Outcome outcome = run(Calls::kAll);
  EXPECT_EQ(outcome.difference.value_or(""), "");
  EXPECT_EQ(outcome.tally.frames, 150);
  for (const int32_t frames : outcome.tally.framesOfDepth) EXPECT_GT(frames, 20);
  EXPECT_GT(outcome.tally.smartFrames, 40);
  EXPECT_LT(outcome.tally.smartFrames, 110);
  EXPECT_GT(outcome.tally.drawn, 100);
  EXPECT_GT(outcome.tally.outputBytes, 100000);
  EXPECT_GT(outcome.tally.hostCalls, 50000);
  EXPECT_GT(outcome.tally.interrupted, 0);
  EXPECT_GT(outcome.tally.faults, 0);
  EXPECT_GT(outcome.tally.changes, 0);
  EXPECT_GT(outcome.tally.flattened, 0);
  EXPECT_EQ(outcome.tally.lives, 2);
}

TEST_F(Comparing, findsOnePixelThatIsOneLevelOff) {
  const Fault lastBit = [](PF_Cmd command, PF_InData*, PF_OutData*, PF_LayerDef* output) -> PF_Err {
    if (command != PF_Cmd_RENDER || output->width < 5 || output->height < 5) return PF_Err_NONE;
    // The lowest bit of the blue channel of a pixel of 8 bits; another one at another depth.
    reinterpret_cast<uint8_t*>(output->data)[2 * output->rowbytes + 4 * 3 + 3] ^= 1;
    return PF_Err_NONE;
  };
  for (const Calls calls : {Calls::kAll, Calls::kAllButMemory, Calls::kNone}) {
    const std::string found = difference(calls, lastBit);
    EXPECT_TRUE(holds(found, "in the frame of seed "));
    EXPECT_TRUE(holds(found, "pixel "));
    EXPECT_TRUE(holds(found, "Dot Size: ")) << "the frame's values are told";
  }
}

TEST_F(Comparing, findsOneCallMoreToAService) {
  const Fault acquire = [](PF_Cmd command, PF_InData* inData, PF_OutData*, PF_LayerDef*) -> PF_Err {
    if (command != PF_Cmd_SMART_RENDER) return PF_Err_NONE;
    const void* suite = nullptr;
    inData->pica_basicP->AcquireSuite(kPFHandleSuite, kPFHandleSuiteVersion2, &suite);
    inData->pica_basicP->ReleaseSuite(kPFHandleSuite, kPFHandleSuiteVersion2);
    return PF_Err_NONE;
  };
  EXPECT_TRUE(holds(difference(Calls::kAll, acquire), "other: AcquireSuite(PF Handle Suite"));
  EXPECT_TRUE(holds(difference(Calls::kAllButMemory, acquire), "other: AcquireSuite(PF Handle Suite"));
  EXPECT_EQ(difference(Calls::kNone, acquire), "");
}

TEST_F(Comparing, findsOneBlockOfMemoryMoreUnlessToldToLeaveMemoryOut) {
  const Fault block = [](PF_Cmd command, PF_InData* inData, PF_OutData*, PF_LayerDef*) -> PF_Err {
    if (command == PF_Cmd_RENDER) inData->utils->host_dispose_handle(inData->utils->host_new_handle(1));
    return PF_Err_NONE;
  };
  EXPECT_TRUE(holds(difference(Calls::kAll, block), "host_new_handle"));
  EXPECT_EQ(difference(Calls::kAllButMemory, block), "");
}

TEST_F(Comparing, findsABlockThatIsNotGivenBack) {
  const Fault leak = [](PF_Cmd command, PF_InData* inData, PF_OutData*, PF_LayerDef*) -> PF_Err {
    if (command == PF_Cmd_GLOBAL_SETDOWN) inData->utils->host_new_handle(1);
    return PF_Err_NONE;
  };
  EXPECT_TRUE(holds(difference(Calls::kAll, leak), "in the set-down"));
}

TEST_F(Comparing, findsOneProgressCallMore) {
  const Fault progress = [](PF_Cmd command, PF_InData* inData, PF_OutData*, PF_LayerDef*) -> PF_Err {
    if (command == PF_Cmd_RENDER) inData->inter.progress(inData->effect_ref, 1, 1);
    return PF_Err_NONE;
  };
  EXPECT_TRUE(holds(difference(Calls::kAllButMemory, progress), "progress call "));
}

TEST_F(Comparing, findsAnotherAnswer) {
  const Fault answer = [](PF_Cmd command, PF_InData*, PF_OutData*, PF_LayerDef*) -> PF_Err {
    return command == PF_Cmd_SMART_RENDER ? PF_Err_OUT_OF_MEMORY : PF_Err_NONE;
  };
  EXPECT_TRUE(holds(difference(Calls::kNone, answer), "error of the frame: 0 and 4"));
}

TEST_F(Comparing, findsAStoredByteThatDiffers) {
  const Fault stored = [](PF_Cmd command, PF_InData* inData, PF_OutData* outData, PF_LayerDef*) -> PF_Err {
    if (command != PF_Cmd_SEQUENCE_FLATTEN) return PF_Err_NONE;
    auto* const bytes = static_cast<uint8_t*>(inData->utils->host_lock_handle(outData->sequence_data));
    bytes[16] ^= 1;
    inData->utils->host_unlock_handle(outData->sequence_data);
    return PF_Err_NONE;
  };
  EXPECT_TRUE(holds(difference(Calls::kNone, stored), "flat sequence data"));
}

TEST_F(Comparing, findsAnotherFlagAtTheSetUp) {
  const Fault flag = [](PF_Cmd command, PF_InData*, PF_OutData* outData, PF_LayerDef*) -> PF_Err {
    if (command == PF_Cmd_GLOBAL_SETUP) outData->out_flags2 ^= 1;
    return PF_Err_NONE;
  };
  EXPECT_TRUE(holds(difference(Calls::kNone, flag), "out_flags2"));
}

}  // namespace
}  // namespace compare
