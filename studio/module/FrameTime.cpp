// How long the native module takes for a frame at its defaults, to set the browser's time against.
// Usage: vindrel_frame_time MODULE WIDTH HEIGHT TIMES   prints the best time in milliseconds
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "host/LoadedModule.h"
#include "host/StandInHost.h"

namespace {

using standin::Image;

/// Opaque, with colours that change from pixel to pixel; studio/tests make the same.
Image colorful(int32_t width, int32_t height) {
  Image image(standin::Depth::k8, width, height);
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      image.at<PF_Pixel>(x, y) = PF_Pixel{255, static_cast<A_u_char>(x & 255), static_cast<A_u_char>(y & 255),
                                          static_cast<A_u_char>((x + y) & 255)};
    }
  }
  return image;
}

double bestTime(const char* module, int32_t width, int32_t height, int times) {
  const standin::LoadedModule loaded(module);
  standin::HostSettings settings;
  settings.modulePath = "";
  standin::StandInHost host(loaded, settings);
  if (host.start() != PF_Err_NONE) throw std::runtime_error("the module can't be set up");
  standin::FrameRequest request;
  request.input = colorful(width, height);
  double best = 0.0;
  for (int i = 0; i < times; ++i) {
    const auto begin = std::chrono::steady_clock::now();
    if (!host.renderSmart(request, host.defaults()).rendered) throw std::runtime_error("nothing was drawn");
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - begin;
    best = i == 0 ? took.count() : std::min(best, took.count());
  }
  static_cast<void>(host.finish());
  return best;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 5) {
    std::fputs("vindrel_frame_time takes MODULE WIDTH HEIGHT TIMES\n", stderr);
    return 2;
  }
  try {
    std::printf("%.3f\n", bestTime(argv[1], std::atoi(argv[2]), std::atoi(argv[3]), std::atoi(argv[4])));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "vindrel_frame_time: %s\n", error.what());
    return 1;
  }
  return 0;
}
