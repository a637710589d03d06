// Whole frames through the built module in the stand-in host, 1920 x 1080, the host's share told apart.
//
//   frame_bench [--other=MODULE] [options of the benchmark library]
//
// With --other each frame is drawn by another module too, in the same run; its benchmarks are named "other".
#include <benchmark/benchmark.h>

#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "bench/HostClock.h"
#include "host/StandInHost.h"

namespace vindrel::bench {
namespace {

constexpr int32_t width = 1920;
constexpr int32_t height = 1080;

constexpr int32_t crossItem = 4;
constexpr int32_t starItem = 5;
constexpr int32_t betweenCenters = 2;
constexpr int32_t maskByLayer = 3;

struct Frame {
  std::string name;
  std::function<void(standin::ParameterValues&)> set;
};

void setField(standin::ParameterValues& values, double size, double pitch) {
  values.setNumber("Dot Size", size);
  values.setPopup("Distance Between", betweenCenters);
  values.setNumber("Dot Distance X", pitch);
  values.setNumber("Dot Distance Y", pitch);
  values.setAngle("Global Rotation", 15.0);
}

standin::Image ramp(standin::Depth depth) {
  standin::Image picture(standin::Depth::k8, width, height);
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      picture.at<PF_Pixel>(x, y) = {255, static_cast<A_u_char>(x * 255 / width),
                                    static_cast<A_u_char>(y * 255 / height), static_cast<A_u_char>((x + y) % 256)};
    }
  }
  return depth == standin::Depth::k8 ? picture : picture.converted(depth);
}

const std::vector<Frame>& frames() {
  static const std::vector<Frame> all{
      {"default", [](standin::ParameterValues&) {}},
      {"W2", [](standin::ParameterValues& values) { setField(values, 6.0, 6.0); }},
      {"stars",
       [](standin::ParameterValues& values) {
         setField(values, 20.0, 24.0);
         values.setPopup("Dot Shape", starItem);
       }},
      {"crosses",
       [](standin::ParameterValues& values) {
         setField(values, 12.0, 16.0);
         values.setPopup("Dot Shape", crossItem);
       }},
      {"jitter",
       [](standin::ParameterValues& values) {
         for (const char* amount : {"Size", "Aspect", "Rotation", "Opacity", "Distance X", "Distance Y"}) {
           values.setNumber(amount, 0.5);
         }
         values.setAngle("H", 90.0);
       }},
      {"three effectors",
       [](standin::ParameterValues& values) {
         for (const char* number : {"1", "2", "3"}) {
           const std::string suffix = std::string(" ") + number;
           values.setCheckbox("Enable Effector" + suffix, true);
           values.setNumber("Size" + suffix, 800.0);
           values.setNumber("Ratio Size" + suffix, 1.5);
           values.setAngle("Shift Hue" + suffix, 40.0);
         }
       }},
      {"mask",
       [](standin::ParameterValues& values) {
         values.setPopup("Mask", maskByLayer);
         values.setLayer("Mask Target Layer", standin::LayerValue::of(ramp(standin::Depth::k8)));
       }},
  };
  return all;
}

/// A module with its host, set up once for all its frames.
struct Player {
  explicit Player(const std::string& path) : module(path), host(timedEntry(module.entry()), settings()) {
    host.start();
  }
  static standin::HostSettings settings() {
    standin::HostSettings settings;
    settings.modulePath = "";
    return settings;
  }

  standin::LoadedModule module;
  standin::StandInHost host;
};

void drawFrame(benchmark::State& state, Player& player, const Frame& frame, standin::Depth depth) {
  timedEntry(player.module.entry());
  standin::FrameRequest request;
  request.input = ramp(depth);
  standin::ParameterValues values = player.host.defaults();
  frame.set(values);
  double effect = 0.0;
  double host = 0.0;
  for (auto _ : state) {
    player.host.log().clear();
    resetClocks();
    const standin::RenderResult result = player.host.renderClassic(request, values);
    if (result.error != 0) {
      state.SkipWithError("the frame ended with an error");
      break;
    }
    const FrameClocks clocks = readClocks();
    state.SetIterationTime(clocks.effect + clocks.host);
    effect += clocks.effect;
    host += clocks.host;
  }
  state.counters["effect_ms"] = benchmark::Counter(effect * 1e3, benchmark::Counter::kAvgIterations);
  state.counters["host_ms"] = benchmark::Counter(host * 1e3, benchmark::Counter::kAvgIterations);
}

void addAll(const std::string& who, Player& player) {
  for (const Frame& frame : frames()) {
    for (const standin::Depth depth : {standin::Depth::k8, standin::Depth::k16, standin::Depth::k32}) {
      const std::string name = frame.name + "/" + std::to_string(static_cast<int>(depth)) + "/" + who;
      benchmark::RegisterBenchmark(name.c_str(), drawFrame, std::ref(player), std::cref(frame), depth)
          ->UseManualTime()
          ->Unit(benchmark::kMillisecond);
    }
  }
}

}  // namespace
}  // namespace vindrel::bench

int main(int argc, char** argv) {
  using vindrel::bench::Player;
  benchmark::Initialize(&argc, argv);
  Player present(VINDREL_MODULE_PATH);
  vindrel::bench::addAll("vindrel", present);
  std::unique_ptr<Player> other;
  constexpr const char* option = "--other=";
  if (argc > 1 && std::strncmp(argv[1], option, std::strlen(option)) == 0) {
    other = std::make_unique<Player>(argv[1] + std::strlen(option));
    vindrel::bench::addAll("other", *other);
  } else if (argc > 1) {
    std::fprintf(stderr, "frame_bench: '%s' is not an option; --other=MODULE is\n", argv[1]);
    return 2;
  }
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
