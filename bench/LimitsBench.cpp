// How long a frame keeps the host waiting at the ends of the controls' ranges, and how much memory a fine lattice
// takes.
//
//   limits_bench [--module=MODULE] [--json]
//
// Each frame is drawn by a process of its own, so that peaks of memory don't mix and a frame that hangs ends (after a
// minute and a half) as "no answer". Waits are between two progress calls on a canvas of 3840 x 2160. The time before
// the first one, in which the lattice is walked, the dots are sorted and the first one is drawn, stands in a column of
// its own.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "host/StandInHost.h"

namespace vindrel::bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr unsigned patienceSeconds = 90;
constexpr int32_t shapes = 6;
constexpr int32_t betweenCenters = 2;

struct Case {
  std::string name;
  int32_t width;
  int32_t height;
  std::function<void(standin::ParameterValues&)> set;
};

/// What a frame's process tells.
struct Figures {
  int32_t error = -1;
  double total = 0.0;        ///< seconds, the whole frame
  double untilFirst = 0.0;   ///< seconds to the first progress call
  double longestWait = 0.0;  ///< seconds between two progress calls, or the last one and the end
  int64_t dots = 0;
  int64_t peakKiB = 0;
};

void pitch(standin::ParameterValues& values, double pixels) {
  values.setPopup("Distance Between", betweenCenters);
  values.setNumber("Dot Distance X", pixels);
  values.setNumber("Dot Distance Y", pixels);
}

/// "Size" 1000 with "Ratio Size" 100 three times: dots of a thousand million pixels.
void largestDots(standin::ParameterValues& values) {
  values.setNumber("Dot Size", 1000.0);
  pitch(values, 1000.0);
  for (const char* number : {"1", "2", "3"}) {
    const std::string suffix = std::string(" ") + number;
    values.setCheckbox("Enable Effector" + suffix, true);
    values.setNumber("Size" + suffix, 5000.0);
    values.setNumber("Falloff" + suffix, 0.0);
    values.setNumber("Ratio Size" + suffix, 100.0);
  }
}

std::vector<Case> cases() {
  std::vector<Case> all;
  for (int32_t shape = 1; shape <= shapes; ++shape) {
    const std::string name = "shape " + std::to_string(shape);
    all.push_back({name + ", size 1000, ratio 100 three times", 3840, 2160, [shape](standin::ParameterValues& values) {
                     largestDots(values);
                     values.setPopup("Dot Shape", shape);
                   }});
    all.push_back({name + ", the same, turned and flat", 3840, 2160, [shape](standin::ParameterValues& values) {
                     largestDots(values);
                     values.setPopup("Dot Shape", shape);
                     values.setNumber("Dot Aspect", 99.9);
                     values.setAngle("Dot Rotation", 33.0);
                   }});
    all.push_back({name + ", size 1000, jitter of size 50", 3840, 2160, [shape](standin::ParameterValues& values) {
                     values.setNumber("Dot Size", 1000.0);
                     pitch(values, 200.0);
                     values.setNumber("Size", 50.0);
                     values.setPopup("Dot Shape", shape);
                   }});
  }
  for (const auto& [width, height] : {std::pair{960, 540}, {1920, 1080}, {3840, 2160}, {7680, 4320}}) {
    all.push_back({"pitch 1.0", width, height, [](standin::ParameterValues& values) {
                     values.setNumber("Dot Size", 1.0);
                     pitch(values, 1.0);
                   }});
  }
  return all;
}

Figures draw(const std::string& path, const Case& frame) {
  const standin::LoadedModule module(path);
  standin::HostSettings settings;
  settings.modulePath = "";
  standin::StandInHost host(module, settings);
  host.start();
  standin::FrameRequest request;
  request.input = standin::Image(standin::Depth::k8, frame.width, frame.height);
  standin::ParameterValues values = host.defaults();
  frame.set(values);

  Figures figures;
  const Clock::time_point begin = Clock::now();
  Clock::time_point last = begin;
  const auto tick = [&] {
    const Clock::time_point now = Clock::now();
    const double wait = std::chrono::duration<double>(now - last).count();
    if (figures.dots == 0) {
      figures.untilFirst = wait;
    } else {
      figures.longestWait = std::max(figures.longestWait, wait);
    }
    last = now;
  };
  host.onProgress = [&](A_long, A_long) {
    tick();
    ++figures.dots;
    return PF_Err{0};
  };
  figures.error = host.renderClassic(request, values).error;
  tick();
  figures.total = std::chrono::duration<double>(Clock::now() - begin).count();
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  figures.peakKiB = usage.ru_maxrss;
  return figures;
}

/// The figures of a frame drawn in a child; error -1 when the child didn't answer.
Figures drawApart(const std::string& path, const Case& frame) {
  int ends[2];
  if (pipe(ends) != 0) return {};
  const pid_t child = fork();
  if (child == 0) {
    alarm(patienceSeconds);
    const Figures figures = draw(path, frame);
    const bool told = write(ends[1], &figures, sizeof(figures)) == static_cast<ssize_t>(sizeof(figures));
    _exit(told ? 0 : 1);
  }
  close(ends[1]);
  Figures figures;
  if (read(ends[0], &figures, sizeof(figures)) != static_cast<ssize_t>(sizeof(figures))) figures = {};
  close(ends[0]);
  waitpid(child, nullptr, 0);
  return figures;
}

std::string resultOf(const Figures& figures) {
  if (figures.error == -1) return "no answer";
  return figures.error == 0 ? "drawn" : "error " + std::to_string(figures.error);
}

int run(const std::string& path, bool json) {
  if (json) {
    std::printf("[");
  } else {
    std::printf("%-42s %-11s %-10s %9s %9s %9s %9s %9s\n", "frame", "size", "result", "dots", "first s", "wait s",
                "total s", "peak MiB");
  }
  bool first = true;
  for (const Case& frame : cases()) {
    const Figures figures = drawApart(path, frame);
    const std::string size = std::to_string(frame.width) + " x " + std::to_string(frame.height);
    if (json) {
      std::printf(
          "%s\n{\"name\":\"%s\",\"width\":%d,\"height\":%d,\"result\":\"%s\",\"dots\":%lld,\"first\":%.4f,"
          "\"wait\":%.4f,\"total\":%.4f,\"peakMiB\":%.1f}",
          first ? "" : ",", frame.name.c_str(), frame.width, frame.height, resultOf(figures).c_str(),
          static_cast<long long>(figures.dots), figures.untilFirst, figures.longestWait, figures.total,
          static_cast<double>(figures.peakKiB) / 1024.0);
    } else {
      std::printf("%-42s %-11s %-10s %9lld %9.3f %9.3f %9.3f %9.1f\n", frame.name.c_str(), size.c_str(),
                  resultOf(figures).c_str(), static_cast<long long>(figures.dots), figures.untilFirst,
                  figures.longestWait, figures.total, static_cast<double>(figures.peakKiB) / 1024.0);
    }
    std::fflush(stdout);
    first = false;
  }
  if (json) std::printf("\n]\n");
  return 0;
}

}  // namespace
}  // namespace vindrel::bench

int main(int argc, char** argv) {
  std::string module = VINDREL_MODULE_PATH;
  bool json = false;
  for (int i = 1; i < argc; ++i) {
    const std::string option = argv[i];
    if (option.starts_with("--module=")) {
      module = option.substr(std::strlen("--module="));
    } else if (option == "--json") {
      json = true;
    } else {
      std::fprintf(stderr, "limits_bench: '%s' is not an option; --module=MODULE and --json are\n", argv[i]);
      return 2;
    }
  }
  return vindrel::bench::run(module, json);
}
