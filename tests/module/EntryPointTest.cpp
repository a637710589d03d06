// The module's entry: first call, dispatch, set-down, and what becomes of failures on the way.
#include <array>
#include <cstring>
#include <limits>
#include <map>
#include <memory>

#include "tests/module/HostedModule.h"

namespace {

using standin::Matter;
using vindrel::test::HostedModule;
using vindrel::test::LoadedOnly;
using vindrel::test::plainHost;

constexpr std::array<PF_Cmd, 10> ignoredCommands = {PF_Cmd_UNUSED_0,
                                                    PF_Cmd_FRAME_SETUP,
                                                    PF_Cmd_FRAME_SETDOWN,
                                                    PF_Cmd_EVENT,
                                                    PF_Cmd_GET_EXTERNAL_DEPENDENCIES,
                                                    PF_Cmd_COMPLETELY_GENERAL,
                                                    PF_Cmd_AUDIO_RENDER,
                                                    PF_Cmd_AUDIO_SETUP,
                                                    PF_Cmd_AUDIO_SETDOWN,
                                                    PF_Cmd_ARBITRARY_CALLBACK};

constexpr std::array<PF_Cmd, 6> unknownCommands = {
    25, 33, 34, 1000, std::numeric_limits<PF_Cmd>::max(), std::numeric_limits<PF_Cmd>::min()};

/// Handles that the module has asked for and still holds.
int32_t openHandles(standin::StandInHost& host) {
  return host.books().openCount(Matter::kHandle);
}

using AnyCommand = LoadedOnly;

TEST_F(AnyCommand, thatHasNoNumberHereReturnsZeroAndTouchesNothing) {
  ASSERT_EQ(host.start(), 0);
  const PF_OutData before = host.outData();
  host.log().clear();
  host.log().handleCallsToo = true;
  for (const PF_Cmd command : unknownCommands) {
    EXPECT_EQ(host.call(command), 0) << command;
  }
  EXPECT_EQ(host.call(-1), 0);
  EXPECT_EQ(host.log().names(), std::vector<std::string>{});
  EXPECT_EQ(host.outData().my_version, before.my_version);
  EXPECT_EQ(host.outData().out_flags, before.out_flags);
  EXPECT_EQ(host.outData().out_flags2, before.out_flags2);
  EXPECT_EQ(host.outData().sequence_data, before.sequence_data);
  EXPECT_EQ(host.finish(), 0);
  EXPECT_EQ(owed(), "");
}

TEST_F(AnyCommand, buildsTheModuleWhenItComesFirst) {
  EXPECT_EQ(host.call(25), 0);
  // The list of pending errors and its room, 122 controls and the filter, each a block of its own.
  EXPECT_EQ(openHandles(host), 125);
  EXPECT_EQ(host.call(PF_Cmd_GLOBAL_SETDOWN), 0);
  EXPECT_EQ(owed(), "");
}

TEST_F(AnyCommand, ofFrameSetUpSetDownAndSoundReturnsZero) {
  ASSERT_EQ(host.start(), 0);
  host.log().clear();
  host.log().handleCallsToo = true;
  for (const PF_Cmd command : ignoredCommands) {
    EXPECT_EQ(host.call(command), 0) << command;
  }
  EXPECT_EQ(host.log().names(), std::vector<std::string>{});
  EXPECT_EQ(host.finish(), 0);
}

TEST_F(AnyCommand, findsTheModuleBuiltTheSecondTime) {
  EXPECT_EQ(host.call(PF_Cmd_EVENT), 0);
  const int32_t handles = openHandles(host);
  EXPECT_EQ(host.call(PF_Cmd_EVENT), 0);
  EXPECT_EQ(openHandles(host), handles);
  EXPECT_EQ(host.call(PF_Cmd_GLOBAL_SETDOWN), 0);
}

using SetDown = LoadedOnly;

TEST_F(SetDown, givesBackEveryHandleAndEverySuite) {
  ASSERT_EQ(host.start(), 0);
  EXPECT_GT(openHandles(host), 0);
  EXPECT_GT(host.books().openCount(Matter::kSuite), 0);
  ASSERT_EQ(host.sequenceSetdown(), 0);
  EXPECT_EQ(host.globalSetdown(), 0);
  EXPECT_EQ(owed(), "");
}

/// Running numbers of the handles that were made or disposed of, in order.
std::vector<int32_t> handlesOf(const standin::CallLog& log, standin::HandleCall::Step step) {
  std::vector<int32_t> handles;
  for (const standin::HandleCall& call : log.handles) {
    if (call.step == step) handles.push_back(call.handle);
  }
  return handles;
}

TEST_F(SetDown, takesDownTheFilterThenTheControlsByIdThenTheListAndLastTheSuites) {
  host.log().handleCallsToo = true;
  ASSERT_EQ(host.globalSetup(), 0);
  const std::vector<int32_t> made = handlesOf(host.log(), standin::HandleCall::Step::kNew);
  ASSERT_EQ(made.size(), 125U);  // the list and its room, the controls in the order of the list, the filter
  ASSERT_EQ(host.paramsSetup(), 0);
  std::map<int32_t, int32_t> controlsById;
  for (const standin::Control& control : host.controls()) {
    controlsById[control.id] = made.at(static_cast<size_t>(control.index) + 1);
  }
  std::vector<int32_t> expected = {made.back()};
  for (const auto& [id, handle] : controlsById) expected.push_back(handle);
  expected.push_back(made[1]);
  expected.push_back(made[0]);
  host.log().clear();
  ASSERT_EQ(host.globalSetdown(), 0);
  EXPECT_EQ(handlesOf(host.log(), standin::HandleCall::Step::kDispose), expected);
  for (const standin::SuiteCall& call : host.log().suites) {
    EXPECT_FALSE(call.acquire);
    EXPECT_GT(call.order, host.log().handles.back().order) << call.name;
  }
}

TEST_F(SetDown, isFollowedByANewLifeAtTheNextCommand) {
  ASSERT_EQ(host.start(), 0);
  ASSERT_EQ(host.finish(), 0);
  for (const PF_Cmd command : {PF_Cmd_ABOUT, PF_Cmd_EVENT, PF_Cmd_SEQUENCE_SETDOWN, 99}) {
    EXPECT_EQ(host.call(command), 0);
    EXPECT_EQ(openHandles(host), 125) << command;
    EXPECT_EQ(host.call(PF_Cmd_GLOBAL_SETDOWN), 0);
    EXPECT_EQ(owed(), "") << command;
  }
}

TEST_F(SetDown, givesBackTheRenderEngineSuiteThatTheFirstCallAskedFor) {
  ASSERT_EQ(host.call(PF_Cmd_EVENT), 0);
  EXPECT_EQ(host.log().count("AcquireSuite"), 2) << "handles, and the application that tells of the render engine";
  EXPECT_EQ(host.log().count("ReleaseSuite"), 0);
  ASSERT_EQ(host.globalSetdown(), 0);
  EXPECT_EQ(host.log().count("ReleaseSuite"), 2);
}

TEST_F(SetDown, thatComesFirstBuildsAndTakesDownInOneCall) {
  host.log().handleCallsToo = true;
  EXPECT_EQ(host.call(PF_Cmd_GLOBAL_SETDOWN), 0);
  EXPECT_EQ(host.log().count("host_new_handle"), 125);
  EXPECT_EQ(owed(), "");
}

TEST_F(SetDown, aSecondLifeGoesOnCountingTheControls) {
  ASSERT_EQ(host.start(), 0);
  EXPECT_EQ(host.numParams(), 123);
  ASSERT_EQ(host.finish(), 0);
  host.log().clear();
  ASSERT_EQ(host.globalSetup(), 0);
  ASSERT_EQ(host.call(PF_Cmd_PARAMS_SETUP), 0);
  EXPECT_EQ(host.outData().num_params, 245);
  EXPECT_EQ(host.log().count("add_param"), 122);
  EXPECT_EQ(host.globalSetdown(), 0);
}

TEST(AnotherLoad, ofTheModuleBeginsToCountAnew) {
  for (int i = 0; i < 2; ++i) {
    const standin::LoadedModule module(VINDREL_MODULE_PATH);
    standin::StandInHost host(module, plainHost());
    ASSERT_EQ(host.start(), 0);
    EXPECT_EQ(host.numParams(), 123) << "load " << i;
    EXPECT_EQ(host.finish(), 0);
  }
}

class FirstCall : public LoadedOnly {
 protected:
  void SetUp() override {
    // On Linux the module carries an unwinder of its own, but the frames of the process are left by the process's,
    // which aborts until a first throw of the process itself has filled its table of register sizes. Without this
    // throw, what the module throws ends the process although the test would catch it.
    try {
      throw 1;
    } catch (int) {
    }
  }
};

/// How many blocks the first call asks for.
int32_t blocksOfTheFirstCall() {
  const standin::LoadedModule module(VINDREL_MODULE_PATH);
  standin::StandInHost host(module, plainHost());
  host.log().handleCallsToo = true;
  EXPECT_EQ(host.call(PF_Cmd_EVENT), 0);
  const int32_t blocks = host.log().count("host_new_handle");
  EXPECT_EQ(host.call(PF_Cmd_GLOBAL_SETDOWN), 0);
  return blocks;
}

TEST_F(FirstCall, withoutMemoryForTheFilterReturnsFourAndKeepsTheRest) {
  const int32_t blocks = blocksOfTheFirstCall();
  host.faults().fail("host_new_handle", blocks, PF_Err_OUT_OF_MEMORY);
  EXPECT_EQ(host.call(PF_Cmd_EVENT), PF_Err_OUT_OF_MEMORY);
  EXPECT_EQ(openHandles(host), blocks - 1) << "the list and the controls stay";
  EXPECT_GT(host.books().openCount(Matter::kSuite), 0);
  EXPECT_EQ(host.call(PF_Cmd_EVENT), 0) << "the next call tries again";
  EXPECT_EQ(openHandles(host), blocks);
  EXPECT_EQ(host.call(PF_Cmd_GLOBAL_SETDOWN), 0);
  EXPECT_EQ(owed(), "");
}

// What is thrown while the first call builds leaves the module: the protected part begins behind it.
TEST_F(FirstCall, withoutMemoryForAnyOtherBlockThrowsAndIsTriedAgainByTheNext) {
  // The list of pending errors, its room, and 122 controls.
  for (int32_t block = 1; block <= 124; ++block) {
    SCOPED_TRACE("block " + std::to_string(block));
    host.faults().fail("host_new_handle", block, PF_Err_OUT_OF_MEMORY);
    EXPECT_ANY_THROW(host.call(PF_Cmd_EVENT));
    EXPECT_EQ(host.call(PF_Cmd_EVENT), 0);
    EXPECT_EQ(openHandles(host), 125) << "nothing of the first attempt is left";
    EXPECT_EQ(host.call(PF_Cmd_GLOBAL_SETDOWN), 0);
    EXPECT_EQ(owed(), "");
  }
}

TEST_F(FirstCall, withoutTheSuiteThatTellsOfTheRenderEngineThrowsTheBareNumber) {
  host.settings().withheld = {{"PF AE App Suite", 6}};
  try {
    host.call(PF_Cmd_EVENT);
    ADD_FAILURE() << "nothing was thrown";
  } catch (long thrown) {
    EXPECT_EQ(thrown, 516);
  }
  host.settings().withheld.clear();
  EXPECT_EQ(host.call(PF_Cmd_GLOBAL_SETDOWN), 0);
  EXPECT_EQ(owed(), "");
}

/// A host that lends no suites at all, and isn't asked whether it is a render engine.
class HostWithoutSuites : public LoadedOnly {
 protected:
  HostWithoutSuites() : LoadedOnly(settings()) {}
  static standin::HostSettings settings() {
    standin::HostSettings settings = plainHost();
    settings.withoutBasicSuite = true;
    settings.applId = 0x54455354;
    return settings;
  }
};

TEST_F(HostWithoutSuites, hearsOfMissingMemoryAtEveryCommand) {
  for (const PF_Cmd command : {PF_Cmd_GLOBAL_SETUP, PF_Cmd_RENDER, PF_Cmd_GLOBAL_SETDOWN, 99, PF_Cmd_SMART_RENDER}) {
    EXPECT_EQ(host.call(command), PF_Err_OUT_OF_MEMORY) << command;
  }
  EXPECT_EQ(owed(), "");
}

TEST_F(HostWithoutSuites, isServedOnceItLendsThem) {
  EXPECT_EQ(host.call(PF_Cmd_EVENT), PF_Err_OUT_OF_MEMORY);
  host.settings().withoutBasicSuite = false;
  EXPECT_EQ(host.start(), 0);
  EXPECT_EQ(host.finish(), 0);
  EXPECT_EQ(owed(), "");
}

using Failures = HostedModule;

TEST_F(Failures, ofMemoryThatNobodyStopsReachTheHostAsDamage) {
  // The first handle that a flattening asks for is the effect's own byte vector.
  host.faults().fail("host_new_handle", 1, PF_Err_OUT_OF_MEMORY);
  EXPECT_EQ(host.sequenceFlatten(), PF_Err_INTERNAL_STRUCT_DAMAGED);
}

TEST_F(Failures, ofASuiteReachTheHostAsDamageAndNotAsTheirOwnNumber) {
  host.settings().withheld = {{"PF Fill Matte Suite", 2}};
  standin::FrameRequest request;
  request.input = vindrel::test::opaquePicture(standin::Depth::k8, 8, 8);
  EXPECT_EQ(host.renderClassic(request, host.defaults()).error, PF_Err_INTERNAL_STRUCT_DAMAGED);
  finishOwing({Matter::kParameter});  // the exception passes by the giving back of values
}

TEST_F(Failures, leaveNoMessageForTheUser) {
  host.settings().withheld = {{"PF Fill Matte Suite", 2}};
  standin::FrameRequest request;
  request.input = vindrel::test::opaquePicture(standin::Depth::k8, 8, 8);
  ASSERT_NE(host.renderClassic(request, host.defaults()).error, 0);
  EXPECT_STREQ(host.outData().return_msg, "");
  EXPECT_EQ(host.outData().out_flags & PF_OutFlag_DISPLAY_ERROR_MESSAGE, 0);
  finishOwing({Matter::kParameter});
}

TEST_F(Failures, ofOneCommandDontReachTheNext) {
  host.faults().fail("host_new_handle", 1, PF_Err_OUT_OF_MEMORY);
  ASSERT_NE(host.sequenceFlatten(), 0);
  EXPECT_EQ(host.call(PF_Cmd_EVENT), 0);
}

TEST_F(Failures, theProcessKeepsItsOwnMemoryOperators) {
  const int32_t handles = openHandles(host);
  const auto block = std::make_unique<std::array<char, 5000>>();
  block->fill(1);
  EXPECT_EQ(openHandles(host), handles);
}

}  // namespace
