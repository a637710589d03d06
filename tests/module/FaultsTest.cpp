// Each host call of each command failed once: what the host is told, what is then owed, and that the next frame is as
// if nothing had been.
//
// A service's calls are failed one after the other, the first, the second, ... until a run has no such call any more.
#include <array>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include "tests/module/RandomFrame.h"
#include "tests/module/WholeFrame.h"

namespace vindrel::test {
namespace {

using standin::Depth;
using standin::FrameRequest;
using standin::Image;
using standin::LayerValue;
using standin::Matter;
using standin::ParameterValues;
using standin::RenderResult;

constexpr PF_Err planned = 77;

/// Every service that a module asks for itself.
const std::vector<std::string> allServices = {"host_new_handle",
                                              "host_lock_handle",
                                              "host_resize_handle",
                                              "AcquireSuite",
                                              "ReleaseSuite",
                                              "PF_NewWorld",
                                              "PF_DisposeWorld",
                                              "PF_GetPixelFormat",
                                              "new_world",
                                              "dispose_world",
                                              "fill",
                                              "fill16",
                                              "fill_float",
                                              "copy",
                                              "copy_hq",
                                              "transfer_rect",
                                              "add_param",
                                              "checkout_param",
                                              "checkin_param",
                                              "PF_UpdateParamUI",
                                              "progress",
                                              "abort",
                                              "checkout_layer",
                                              "checkout_layer_pixels",
                                              "checkin_layer_pixels",
                                              "checkout_output",
                                              "get_platform_data",
                                              "PF_IsRenderEngine"};

/// Calls failed by all tests of this program, printed once at its end.
class FailedCalls : public testing::Environment {
 public:
  void TearDown() override { std::cout << "host calls failed one by one: " << count << std::endl; }
  static inline int32_t count = 0;
};
const testing::Environment* const failedCalls = testing::AddGlobalTestEnvironment(new FailedCalls);

FrameRequest smallFrame(Depth depth) {
  FrameRequest request;
  request.input = opaquePicture(depth, 20, 14);
  return request;
}

/// All side layers, three effectors, and a mask: a frame of the most host calls.
ParameterValues busyValues(const standin::StandInHost& host) {
  ParameterValues values = host.defaults();
  values.setPopup("Dot Shape", star);
  values.setNumber("Dot Size", 7);
  values.setPopup("Mask", maskLayer);
  values.setLayer("Mask Target Layer", LayerValue::of(opaquePicture(Depth::k8, 20, 14)));
  for (int32_t n = 1; n <= 3; ++n) {
    values.setCheckbox(numbered("Enable Effector", n), true);
    values.setPopup(numbered("Effect Map", n), customMap);
    values.setLayer(numbered("Custom Map Layer", n), LayerValue::of(opaquePicture(Depth::k8, 9, 6)));
  }
  return values;
}

struct Case {
  Depth depth;
  bool smart;
};

void PrintTo(const Case& item, std::ostream* out) {
  *out << (item.smart ? "smart road" : "classic road") << bitsOf(item.depth);
}

/// What may come of a failure of one call. Either the host is told, or the result is as whole as without it.
bool isRightAnswer(const std::string& service, PF_Err error) {
  // Memory that is refused, or can't be locked, is damage.
  if (service == "host_new_handle" || service == "host_lock_handle") return error == PF_Err_INTERNAL_STRUCT_DAMAGED;
  // A missing suite is damage as well; one that worlds can do without is not told, and a depth that nobody could ask
  // for is a bad argument.
  if (service == "AcquireSuite") {
    return error == PF_Err_NONE || error == PF_Err_INTERNAL_STRUCT_DAMAGED || error == PF_Err_BAD_CALLBACK_PARAM;
  }
  // A suite given back after a world was made or asked for its depth is part of that call; one that was given back
  // after a world was disposed of is not looked at.
  if (service == "ReleaseSuite") return error == PF_Err_NONE || error == planned;
  if (service == "PF_DisposeWorld") return error == PF_Err_NONE;
  if (service == "PF_GetPixelFormat") return error == PF_Err_BAD_CALLBACK_PARAM;
  return error == planned;
}

/// What is owed at a moment, of the matters that no failure of a frame may add to.
std::array<int32_t, 4> owedNow(standin::StandInHost& host) {
  const standin::Books& books = host.books();
  return {books.openCount(Matter::kHandle), books.openCount(Matter::kHandleLock), books.openCount(Matter::kWorld),
          books.openCount(Matter::kSuite)};
}

class FaultsInAFrame : public LoadedOnly, public testing::WithParamInterface<Case> {
 protected:
  RenderResult render() {
    const FrameRequest request = smallFrame(GetParam().depth);
    return GetParam().smart ? host.renderSmart(request, values) : host.renderClassic(request, values);
  }

  /// Fails one call of a frame. False when the frame has no such call.
  bool failOne(const std::string& service, int32_t nth, const Image& whole) {
    const std::array<int32_t, 4> owedBefore = owedNow(host);
    const size_t complaintsBefore = host.books().complaints().size();
    const int32_t parameters = host.books().openCount(Matter::kParameter);
    host.faults().fail(service, nth, planned);
    const RenderResult failed = render();
    const bool happened = host.faults().waiting() == 0;
    host.faults().clear();
    host.log().clear();
    if (!happened) return false;
    ++FailedCalls::count;
    if (service == "ReleaseSuite" && failed.error != PF_Err_NONE) ++releasesTold_;

    EXPECT_TRUE(isRightAnswer(service, failed.error)) << "answered " << failed.error;
    EXPECT_TRUE(failed.error != PF_Err_NONE || samePixels(failed.output, whole));
    EXPECT_TRUE(failed.output.guardsIntact());
    std::array<int32_t, 4> owedAfter = owedNow(host);
    // A world that was made or dropped by the older suite: that one stays in its slot until the set-down.
    if (service == "AcquireSuite" && owedAfter[3] == owedBefore[3] + 1) --owedAfter[3];
    EXPECT_EQ(owedAfter, owedBefore) << "handles, locks, worlds, suites";
    // The smart road never gives values back, and the classic one not after a failure.
    if (!GetParam().smart && failed.error == PF_Err_NONE) {
      EXPECT_EQ(host.books().openCount(Matter::kParameter), parameters);
    }
    for (size_t i = complaintsBefore; i < host.books().complaints().size(); ++i) {
      const standin::Entry& complaint = host.books().complaints()[i];
      // Where a world's depth can't be asked for, the module goes on with none, and the host refuses it.
      const bool ofTheDepth = (complaint.matter == Matter::kBadWorld || complaint.matter == Matter::kWrongArgument) &&
                              (service == "AcquireSuite" || service == "PF_GetPixelFormat");
      if (!ofTheDepth) ADD_FAILURE() << complaint.text;
    }

    const RenderResult next = render();
    EXPECT_EQ(next.error, PF_Err_NONE);
    EXPECT_TRUE(samePixels(next.output, whole)) << "the frame after it differs";
    return true;
  }

  ParameterValues values;
  int32_t releasesTold_ = 0;  ///< failed releases of a suite that became the frame's error
};

TEST_P(FaultsInAFrame, areToldLeaveNothingBehindAndDontReachTheNextFrame) {
  ASSERT_EQ(host.start(), 0);
  values = busyValues(host);
  ASSERT_EQ(host.updateParamsUi(values), 0);
  const RenderResult whole = render();
  ASSERT_EQ(whole.error, 0);
  for (const std::string& service : allServices) {
    int32_t nth = 0;
    bool happened = true;
    while (happened && !HasFailure()) {
      SCOPED_TRACE(service + ", call " + std::to_string(++nth));
      happened = failOne(service, nth, whole.output);
    }
  }
  EXPECT_EQ(releasesTold_, 2) << "the one after the canvas was made, and the one after its depth was asked for";
  EXPECT_EQ(host.finish(), 0);
  // The complaints about depths and greying are those of above.
  EXPECT_EQ(owed({Matter::kParameter, Matter::kLayerPixels, Matter::kLayerParamUi, Matter::kBadWorld,
                  Matter::kWrongArgument}),
            "");
}

std::vector<Case> allCases() {
  std::vector<Case> cases;
  for (const Depth depth : standin::kAllDepths) {
    for (const bool smart : {false, true}) cases.push_back({depth, smart});
  }
  return cases;
}
std::string caseName(const testing::TestParamInfo<Case>& item) {
  return std::string(item.param.smart ? "smart" : "classic") + "_at_" +
         std::to_string(static_cast<int32_t>(item.param.depth)) + "_bits";
}
INSTANTIATE_TEST_SUITE_P(Frames, FaultsInAFrame, testing::ValuesIn(allCases()), caseName);

/// Memory refused at each block that a frame asks for, whatever its shapes, jitter and layers, and from that block on.
class MemoryOfAFrame : public LoadedOnly, public testing::WithParamInterface<int32_t> {
 protected:
  RenderResult render(const RandomFrame& frame) {
    return frame.smartRoad ? host.renderSmart(frame.request, frame.values)
                           : host.renderClassic(frame.request, frame.values);
  }

  /// False when the frame takes fewer blocks.
  bool refuse(const RandomFrame& frame, int32_t nth, bool forGood, const Image& whole) {
    const std::array<int32_t, 4> owedBefore = owedNow(host);
    const size_t complaintsBefore = host.books().complaints().size();
    if (forGood) {
      host.faults().failFrom("host_new_handle", nth, PF_Err_OUT_OF_MEMORY);
    } else {
      host.faults().fail("host_new_handle", nth, PF_Err_OUT_OF_MEMORY);
    }
    const RenderResult refused = render(frame);
    const bool happened = host.faults().waiting() == 0;
    host.faults().clear();
    host.log().clear();
    if (!happened) return false;
    ++FailedCalls::count;
    EXPECT_EQ(refused.error, PF_Err_INTERNAL_STRUCT_DAMAGED);
    EXPECT_TRUE(refused.output.guardsIntact());
    EXPECT_EQ(owedNow(host), owedBefore) << "handles, locks, worlds, suites";
    EXPECT_EQ(host.books().complaints().size(), complaintsBefore);
    const RenderResult next = render(frame);
    EXPECT_EQ(next.error, PF_Err_NONE);
    EXPECT_TRUE(samePixels(next.output, whole)) << "the frame after it differs";
    return true;
  }
};

TEST_P(MemoryOfAFrame, thatIsRefusedIsToldAndTheNextFrameIsWhole) {
  ASSERT_EQ(host.start(), 0);
  RandomFrames frames(static_cast<uint64_t>(GetParam()), host.controls());
  for (int32_t i = 0; i < 3; ++i) {
    const RandomFrame frame = frames.next();
    SCOPED_TRACE("seed " + std::to_string(GetParam()) + "\n" + frame.text());
    const RenderResult whole = render(frame);
    ASSERT_EQ(whole.error, 0);
    for (const bool forGood : {false, true}) {
      int32_t nth = 0;
      bool happened = true;
      while (happened && !HasFailure()) {
        SCOPED_TRACE((forGood ? "from block " : "block ") + std::to_string(++nth));
        happened = refuse(frame, nth, forGood, whole.output);
      }
    }
  }
  EXPECT_EQ(host.finish(), 0);
}
INSTANTIATE_TEST_SUITE_P(Seeds, MemoryOfAFrame, testing::Range(1, 17));

/// A command outside of frames, in the life of an instance that is otherwise well.
struct OtherCommand {
  const char* name;
  bool noFrameFollows;                                ///< a set-up that failed, or a set-down
  bool replacesTheRecord;                             ///< leaves the handle of the sequence data that it found
  bool locksTheRecord;                                ///< may leave it locked
  std::function<void(standin::StandInHost&)> before;  ///< brings the life up to it
  std::function<PF_Err(standin::StandInHost&)> run;
};

void PrintTo(const OtherCommand& item, std::ostream* out) {
  *out << item.name;
}

std::vector<OtherCommand> otherCommands() {
  using Host = standin::StandInHost;
  // A failure while the very first call builds the module has tests among those of the entry.
  const auto built = [](Host& host) { ASSERT_EQ(host.call(PF_Cmd_EVENT), 0); };
  const auto started = [](Host& host) { ASSERT_EQ(host.start(), 0); };
  return {
      {"globalSetup", true, false, false, built, [](Host& host) { return host.globalSetup(); }},
      {"paramsSetup", true, false, false, [](Host& host) { ASSERT_EQ(host.globalSetup(), 0); },
       [](Host& host) { return host.paramsSetup(); }},
      {"sequenceSetup", true, false, false,
       [](Host& host) {
         ASSERT_EQ(host.globalSetup(), 0);
         ASSERT_EQ(host.paramsSetup(), 0);
       },
       [](Host& host) { return host.sequenceSetup(); }},
      {"sequenceFlatten", false, true, false, started, [](Host& host) { return host.sequenceFlatten(); }},
      {"sequenceResetup", false, true, false, started, [](Host& host) { return host.sequenceResetup(); }},
      {"updateParamsUi", false, false, false, started, [](Host& host) { return host.updateParamsUi(host.defaults()); }},
      {"queryDynamicFlags", false, false, false, started,
       [](Host& host) { return host.queryDynamicFlags(host.defaults()); }},
      {"userChangedParam", false, false, true, started,
       [](Host& host) {
         ParameterValues values = host.defaults();
         values.setPopup("Distance Between", betweenCenters);
         return host.userChangedParam("Distance Between", values).error;
       }},
      {"about", false, false, false, started, [](Host& host) { return host.call(PF_Cmd_ABOUT); }},
      {"doDialog", false, false, false, started, [](Host& host) { return host.doDialog(host.defaults()); }},
      {"sequenceSetdown", true, false, false, started, [](Host& host) { return host.sequenceSetdown(); }},
      {"globalSetdown", true, false, false,
       [](Host& host) {
         ASSERT_EQ(host.start(), 0);
         ASSERT_EQ(host.sequenceSetdown(), 0);
       },
       [](Host& host) { return host.globalSetdown(); }},
  };
}

/// What no command goes on without.
bool isAlwaysTold(const std::string& service) {
  return service == "host_new_handle" || service == "AcquireSuite" || service == "add_param";
}

/// What commands ask for without looking at the answer's code.
bool isNeverTold(const std::string& service) {
  return service == "PF_UpdateParamUI" || service == "ReleaseSuite" || service == "PF_IsRenderEngine" ||
         service == "get_platform_data";
}

class FaultsOfACommand : public testing::TestWithParam<OtherCommand> {
 protected:
  /// One whole life in a module of its own, in which one call fails. False when the command has no such call.
  static bool failOne(const std::string& service, int32_t nth, const Image& whole) {
    const OtherCommand& command = GetParam();
    const standin::LoadedModule module(VINDREL_MODULE_PATH);
    standin::StandInHost host(module, plainHost());
    command.before(host);
    host.faults().fail(service, nth, planned);
    const bool told = command.run(host) != PF_Err_NONE;
    const bool happened = host.faults().waiting() == 0;
    host.faults().clear();
    if (happened) {
      ++FailedCalls::count;
      EXPECT_TRUE(told || !isAlwaysTold(service));
      EXPECT_FALSE(told && isNeverTold(service));
    } else {
      EXPECT_FALSE(told);
    }
    if (!command.noFrameFollows) {
      const RenderResult next = host.renderSmart(smallFrame(Depth::k8), host.defaults());
      EXPECT_EQ(next.error, 0);
      EXPECT_TRUE(samePixels(next.output, whole)) << "the frame after it differs";
    }
    EXPECT_EQ(host.finish(), 0);
    // The record that a flatten or a resetup replaces stays, and a lock of the record after a change that nothing was
    // remembered of; each has a test of its own.
    EXPECT_EQ(host.books().openCount(Matter::kWorld), 0);
    EXPECT_EQ(host.books().openCount(Matter::kSuite), 0);
    EXPECT_LE(host.books().openCount(Matter::kHandle), command.replacesTheRecord ? 1 : 0);
    EXPECT_LE(host.books().openCount(Matter::kHandleLock), command.locksTheRecord ? 1 : 0);
    return happened;
  }
};

TEST_P(FaultsOfACommand, leaveTheModuleWell) {
  Image whole;
  {
    const standin::LoadedModule module(VINDREL_MODULE_PATH);
    standin::StandInHost host(module, plainHost());
    ASSERT_EQ(host.start(), 0);
    whole = host.renderSmart(smallFrame(Depth::k8), host.defaults()).output;
  }
  for (const std::string& service : allServices) {
    int32_t nth = 0;
    bool happened = true;
    while (happened && !HasFailure()) {
      SCOPED_TRACE(service + ", call " + std::to_string(++nth));
      happened = failOne(service, nth, whole);
    }
  }
}
INSTANTIATE_TEST_SUITE_P(Commands, FaultsOfACommand, testing::ValuesIn(otherCommands()),
                         [](const testing::TestParamInfo<OtherCommand>& item) { return std::string(item.param.name); });

// A runtime that takes a thread-local index of the process for its exceptions, and keeps it, ends a Windows process
// after 1,086 such lives.
TEST(ManyLives, anExceptionInEachTakesNothingOfTheProcessForGood) {
  for (int life = 1; life <= 1200; ++life) {
    const standin::LoadedModule module(VINDREL_MODULE_PATH);
    standin::StandInHost host(module, plainHost());
    ASSERT_EQ(host.start(), 0) << "life " << life;
    host.faults().fail("host_new_handle", 1, planned);
    const RenderResult frame = host.renderSmart(smallFrame(Depth::k8), host.defaults());
    ASSERT_EQ(frame.error, PF_Err_INTERNAL_STRUCT_DAMAGED) << "life " << life;
    ASSERT_EQ(host.finish(), 0) << "life " << life;
  }
}

}  // namespace
}  // namespace vindrel::test
