// Frames of one module drawn on several threads at once: each looks as it does when it is drawn alone.
//
// The stand-in host serves one thread, so a small host of this test's own lends what a frame needs. It keeps nothing
// between calls that threads could share: a frame's values come from its effect_ref, memory from the C library.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "ae/Constants.h"
#include "ae/InOutData.h"
#include "ae/SmartRender.h"
#include "ae/Suites.h"
#include "host/LoadedModule.h"
#include "tests/support/PopupItems.h"

namespace {

constexpr int32_t side = 40;  ///< pixels of every world
constexpr size_t bytesOfAWorld = size_t{side} * side * sizeof(PF_Pixel);

using Picture = std::vector<PF_Pixel>;

bool sameBytes(const Picture& left, const Picture& right) {
  if (left.size() != right.size()) return false;
  return left.empty() || std::memcmp(left.data(), right.data(), left.size() * sizeof(PF_Pixel)) == 0;
}

/// One frame: the values of its controls and what was drawn. Its address is the effect_ref.
struct Frame {
  std::vector<PF_ParamDef> values;  ///< by host index
  Picture side1, side2;             ///< the pixels of the mask layer and of a custom map
  Picture drawn;                    ///< the canvas as it came to the transfer
  Picture mask;                     ///< likewise; empty without one
  bool smartRoad = false;
  int32_t open = 0;       ///< values that were checked out and not in
  int32_t strangers = 0;  ///< check-ins of a value that isn't this frame's
  bool operator==(const Frame& other) const { return sameBytes(drawn, other.drawn) && sameBytes(mask, other.mask); }
};

Frame& frameOf(PF_ProgPtr ref) {
  return *reinterpret_cast<Frame*>(ref);
}

PF_EffectWorld worldOn(Picture& pixels) {
  PF_EffectWorld world{};
  world.data = reinterpret_cast<PF_PixelPtr>(pixels.data());
  world.rowbytes = side * static_cast<int32_t>(sizeof(PF_Pixel));
  world.width = side;
  world.height = side;
  return world;
}

Picture pixelsOf(const PF_EffectWorld& world) {
  const auto* const first = reinterpret_cast<const PF_Pixel*>(world.data);
  return {first, first + size_t{side} * side};
}

// Memory: a handle points at the address of its block.
PF_Handle newHandle(size_t size) {
  auto* const handle = static_cast<void**>(std::malloc(sizeof(void*)));
  *handle = std::calloc(1, size);
  return handle;
}
void disposeHandle(PF_Handle handle) {
  std::free(*handle);
  std::free(handle);
}

PF_HandleSuite1 handleSuite() {
  PF_HandleSuite1 suite{};
  suite.host_new_handle = [](A_HandleSize size) { return newHandle(static_cast<size_t>(size)); };
  suite.host_lock_handle = [](PF_Handle handle) -> void* { return *handle; };
  suite.host_unlock_handle = [](PF_Handle) {};
  suite.host_dispose_handle = disposeHandle;
  return suite;
}

PF_WorldSuite2 worldSuite() {
  PF_WorldSuite2 suite{};
  suite.PF_NewWorld = [](PF_ProgPtr, A_long, A_long, PF_Boolean, PF_PixelFormat, PF_EffectWorld* world) -> PF_Err {
    *world = {};
    world->data = static_cast<PF_PixelPtr>(std::calloc(1, bytesOfAWorld));
    world->rowbytes = side * static_cast<int32_t>(sizeof(PF_Pixel));
    world->width = side;
    world->height = side;
    return PF_Err_NONE;
  };
  suite.PF_DisposeWorld = [](PF_ProgPtr, PF_EffectWorld* world) -> PF_Err {
    std::free(world->data);
    return PF_Err_NONE;
  };
  suite.PF_GetPixelFormat = [](const PF_EffectWorld*, PF_PixelFormat* tag) -> PF_Err {
    *tag = PF_PixelFormat_ARGB32;
    return PF_Err_NONE;
  };
  return suite;
}

PF_FillMatteSuite2 fillSuite() {
  PF_FillMatteSuite2 suite{};
  suite.fill = [](PF_ProgPtr, const PF_Pixel*, const PF_Rect*, PF_EffectWorld*) -> PF_Err { return PF_Err_NONE; };
  return suite;
}

PF_WorldTransformSuite1 transformSuite() {
  PF_WorldTransformSuite1 suite{};
  const auto copy = [](PF_ProgPtr, PF_EffectWorld*, PF_EffectWorld*, PF_Rect*, PF_Rect*) -> PF_Err {
    return PF_Err_NONE;
  };
  suite.copy = copy;
  suite.copy_hq = copy;
  suite.transfer_rect = [](PF_ProgPtr ref, PF_Quality, PF_ModeFlags, PF_Field, const PF_Rect*,
                           const PF_EffectWorld* canvas, const PF_CompositeMode*, const PF_MaskWorld* mask, A_long,
                           A_long, PF_EffectWorld*) -> PF_Err {
    Frame& frame = frameOf(ref);
    frame.drawn = pixelsOf(*canvas);
    frame.mask = mask == nullptr || mask->mask.data == nullptr ? Picture{} : pixelsOf(mask->mask);
    return PF_Err_NONE;
  };
  return suite;
}

const PF_HandleSuite1 handles = handleSuite();
const PF_WorldSuite2 worlds = worldSuite();
const PF_FillMatteSuite2 fills = fillSuite();
const PF_WorldTransformSuite1 transforms = transformSuite();

SPErr acquire(const char* name, int32 version, const void** suite) {
  const std::string wanted = name;
  *suite = nullptr;
  if (wanted == kPFHandleSuite) *suite = &handles;
  if (wanted == kPFWorldSuite && version == kPFWorldSuiteVersion2) *suite = &worlds;
  if (wanted == kPFFillMatteSuite) *suite = &fills;
  if (wanted == kPFWorldTransformSuite) *suite = &transforms;
  return *suite == nullptr ? kSPSuiteNotFoundError : kSPNoError;
}
SPErr giveBack(const char*, int32) {
  return kSPNoError;
}

/// The controls as the effect added them, from place 1 on.
std::vector<PF_ParamDef> declared;

/// The module with the calls that it is given at every command.
class SideBySide : public testing::Test {
 protected:
  void SetUp() override {
    declared.assign(1, PF_ParamDef{});
    PF_OutData out{};
    ASSERT_EQ(command(PF_Cmd_GLOBAL_SETUP, nullptr, &out), 0);
    ASSERT_EQ(command(PF_Cmd_PARAMS_SETUP, nullptr, &out), 0);
    ASSERT_EQ(declared.size(), 123U);
  }
  void TearDown() override {
    PF_OutData out{};
    EXPECT_EQ(command(PF_Cmd_GLOBAL_SETDOWN, nullptr, &out), 0);
  }

  PF_InData inData(Frame* frame) {
    PF_InData data{};
    data.effect_ref = reinterpret_cast<PF_ProgPtr>(frame);
    data.appl_id = 0x54455354;  // a host that isn't asked whether it is a render engine
    data.utils = &utils_;
    data.pica_basicP = &basic_;
    data.width = side;
    data.height = side;
    data.downsample_x = {1, 1};
    data.downsample_y = {1, 1};
    data.time_scale = 1;
    data.time_step = 1;
    data.inter.add_param = [](PF_ProgPtr, PF_ParamIndex, PF_ParamDefPtr def) -> PF_Err {
      declared.push_back(*def);
      return PF_Err_NONE;
    };
    data.inter.checkout_param = [](PF_ProgPtr ref, PF_ParamIndex index, A_long, A_long, A_u_long,
                                   PF_ParamDef* def) -> PF_Err {
      Frame& from = frameOf(ref);
      *def = from.values[static_cast<size_t>(index)];
      // A mark by which the check-in knows whose value comes back.
      std::memcpy(&def->name, &ref, sizeof(void*));
      ++from.open;
      return PF_Err_NONE;
    };
    data.inter.checkin_param = [](PF_ProgPtr ref, PF_ParamDef* def) -> PF_Err {
      PF_ProgPtr owner = nullptr;
      std::memcpy(&owner, &def->name, sizeof(void*));
      Frame& from = frameOf(ref);
      from.strangers += owner == ref ? 0 : 1;
      --from.open;
      return PF_Err_NONE;
    };
    data.inter.progress = [](PF_ProgPtr, A_long, A_long) -> PF_Err { return PF_Err_NONE; };
    return data;
  }

  PF_Err command(PF_Cmd number, Frame* frame, PF_OutData* out, PF_ParamDef** params = nullptr,
                 PF_LayerDef* output = nullptr, void* extra = nullptr) {
    PF_InData data = inData(frame);
    return module_.entry()(number, &data, out, params, output, extra);
  }

  /// Draws by the classic road.
  PF_Err drawClassic(Frame& frame) {
    Picture input(size_t{side} * side, PF_Pixel{255, 90, 60, 30}), output(size_t{side} * side);
    std::vector<PF_ParamDef> defs = frame.values;
    defs[0].u.ld = worldOn(input);
    std::vector<PF_ParamDef*> params;
    params.reserve(defs.size() + 1);
    for (PF_ParamDef& def : defs) params.push_back(&def);
    params.push_back(nullptr);
    PF_EffectWorld world = worldOn(output);
    PF_OutData out{};
    return command(PF_Cmd_RENDER, &frame, &out, params.data(), &world);
  }

  /// Draws by the smart road. A layer's pixels are those of the frame.
  PF_Err drawSmart(Frame& frame) {
    PF_OutData out{};
    PF_PreRenderInput request{};
    PF_PreRenderOutput answer{};
    PF_PreRenderCallbacks asks{};
    asks.checkout_layer = [](PF_ProgPtr, PF_ParamIndex, A_long, const PF_RenderRequest*, A_long, A_long, A_u_long,
                             PF_CheckoutResult*) -> PF_Err { return PF_Err_NONE; };
    PF_PreRenderExtra before{&request, &answer, &asks};
    PF_Err err = command(PF_Cmd_SMART_PRE_RENDER, &frame, &out, nullptr, nullptr, &before);
    if (err != 0) return err;
    PF_SmartRenderInput input{};
    input.pre_render_data = answer.pre_render_data;
    PF_SmartRenderCallbacks gives{};
    // Worlds of this thread, good until its next frame.
    static thread_local Picture pixels;
    static thread_local std::array<PF_EffectWorld, 3> given;
    pixels.assign(size_t{side} * side, PF_Pixel{255, 90, 60, 30});
    given = {worldOn(pixels), worldOn(frame.side1), worldOn(frame.side2)};
    gives.checkout_layer_pixels = [](PF_ProgPtr, A_long id, PF_EffectWorld** world) -> PF_Err {
      *world = &given[id < 2 ? static_cast<size_t>(id) : 2];
      return PF_Err_NONE;
    };
    gives.checkout_output = [](PF_ProgPtr, PF_EffectWorld** world) -> PF_Err {
      *world = given.data();
      return PF_Err_NONE;
    };
    gives.checkin_layer_pixels = [](PF_ProgPtr, A_long) -> PF_Err { return PF_Err_NONE; };
    PF_SmartRenderExtra render{&input, &gives};
    err = command(PF_Cmd_SMART_RENDER, &frame, &out, nullptr, nullptr, &render);
    answer.delete_pre_render_data_func(answer.pre_render_data);
    return err;
  }

  PF_Err draw(Frame& frame) { return frame.smartRoad ? drawSmart(frame) : drawClassic(frame); }

  standin::LoadedModule module_{VINDREL_MODULE_PATH};
  PF_UtilCallbacks utils_ = [] {
    PF_UtilCallbacks calls{};
    calls.ansi.strcpy = [](A_char* to, const A_char* from) { return std::strcpy(to, from); };
    calls.get_platform_data = [](PF_ProgPtr, PF_PlatDataID, void*) -> PF_Err { return PF_Err_BAD_CALLBACK_PARAM; };
    return calls;
  }();
  SPBasicSuite basic_ = [] {
    SPBasicSuite suites{};
    suites.AcquireSuite = acquire;
    suites.ReleaseSuite = giveBack;
    return suites;
  }();
};

/// A frame of its own kind for each seed: shape, size, place, colours, effectors, a mask layer and a custom map. Its
/// controls of the random are as declared, all zero.
std::unique_ptr<Frame> frameOfSeed(uint64_t seed) {
  std::mt19937_64 engine(seed);
  const auto below = [&](uint64_t end) { return static_cast<int32_t>(engine() % end); };
  auto frame = std::make_unique<Frame>();
  frame->values = declared;
  frame->smartRoad = seed % 2 == 1;
  const auto picture = [&] {
    Picture pixels(size_t{side} * side);
    for (PF_Pixel& pixel : pixels) {
      pixel = {static_cast<A_u_char>(below(256)), static_cast<A_u_char>(below(256)), static_cast<A_u_char>(below(256)),
               static_cast<A_u_char>(below(256))};
    }
    return pixels;
  };
  frame->side1 = picture();
  frame->side2 = picture();
  for (PF_ParamDef& def : frame->values) {
    const std::string name = def.name;
    if (name == "Dot Shape") def.u.pd.value = 1 + below(6);
    if (name == "Dot Size" || name.rfind("Dot Distance", 0) == 0) def.u.fs_d.value = 4 + below(12);
    if (name == "Dot Color") def.u.cd.value = {255, 1, static_cast<A_u_char>(below(256)), 3};
    if (name == "Dot Rotation" || name == "Global Rotation") def.u.ad.value = below(360) * 65536;
    if (def.param_type == PF_Param_POINT) def.u.td.x_value = def.u.td.y_value = below(side) * 65536;
    if (name == "Mask") def.u.pd.value = 1 + below(3);
    if (name.rfind("Enable Effector", 0) == 0) def.u.bd.value = below(2);
    if (name.rfind("Effect Map", 0) == 0) def.u.pd.value = vindrel::test::customMap;
    if (name.rfind("Fit to Layer", 0) == 0 || name.rfind("Pick Source", 0) == 0) def.u.bd.value = 1;
    if (name.rfind("Custom Map Layer", 0) == 0) def.u.ld = worldOn(frame->side2);
    if (name == "Mask Target Layer") def.u.ld = worldOn(frame->side1);
  }
  return frame;
}

/// VINDREL_SIDE_BY_SIDE is the number of frames a thread draws in a longer run.
int32_t framesPerThread() {
  const char* const wanted = std::getenv("VINDREL_SIDE_BY_SIDE");  // NOLINT(concurrency-mt-unsafe): no thread runs yet
  return wanted == nullptr ? 1250 : std::atoi(wanted);
}

TEST_F(SideBySide, framesWithoutRandomnessLookAsTheyDoAlone) {
  constexpr size_t threads = 8, kinds = 48;
  std::vector<std::unique_ptr<Frame>> alone;
  for (uint64_t seed = 0; seed < kinds; ++seed) {
    alone.push_back(frameOfSeed(seed));
    ASSERT_EQ(draw(*alone.back()), 0);
  }
  ASSERT_FALSE(*alone[0] == *alone[2]) << "frames that all look alike would show nothing";
  const int32_t count = framesPerThread();
  std::array<std::string, threads> wrong;
  std::vector<std::thread> running;
  for (size_t thread = 0; thread < threads; ++thread) {
    running.emplace_back([&, thread] {
      for (int32_t i = 0; i < count && wrong[thread].empty(); ++i) {
        const size_t kind = (thread * 7 + static_cast<size_t>(i) * 5) % kinds;
        Frame frame = *alone[kind];
        frame.drawn.clear();
        const PF_Err err = draw(frame);
        const std::string what = "frame " + std::to_string(i) + " of seed " + std::to_string(kind);
        if (err != 0) wrong[thread] = what + " ends with " + std::to_string(err);
        if (err == 0 && !(frame == *alone[kind])) wrong[thread] = what + " looks otherwise";
        if (frame.strangers != 0) wrong[thread] = what + " gave back a value of another frame";
      }
    });
  }
  for (std::thread& thread : running) thread.join();
  for (const std::string& text : wrong) EXPECT_EQ(text, "");
  std::cout << "side by side: " << threads * static_cast<size_t>(count) << " frames of " << kinds << " kinds drawn by "
            << threads << " threads\n";
}

}  // namespace
