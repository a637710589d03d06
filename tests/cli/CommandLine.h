/// Runs the command line in this process with the built module, and keeps what came out.
#pragma once

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "cli/ImageFile.h"
#include "cli/Run.h"
#include "tests/support/TemporaryFolder.h"

struct Outcome {
  int exitCode = -1;
  std::string out;
  std::string err;
};

inline Outcome runCommandLine(const std::vector<std::string>& words) {
  std::ostringstream out;
  std::ostringstream err;
  const cli::Surroundings surroundings{out, err, {}, std::filesystem::path(VINDREL_MODULE).parent_path()};
  const int exitCode = cli::run(words, surroundings);
  return {exitCode, std::move(out).str(), std::move(err).str()};
}

/// A small opaque picture in which every pixel differs from its neighbours.
inline standin::Image smallPicture(standin::Depth depth, int32_t width = 24, int32_t height = 16) {
  standin::Image image(standin::Depth::k8, width, height);
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      image.at<PF_Pixel>(x, y) = {255, static_cast<A_u_char>(x * 10 % 256), static_cast<A_u_char>(y * 15 % 256),
                                  static_cast<A_u_char>((x + y) * 6 % 256)};
    }
  }
  return depth == standin::Depth::k8 ? image : image.converted(depth);
}
