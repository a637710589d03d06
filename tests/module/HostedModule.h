// The built module in the stand-in host, loaded afresh for each test, so that no test sees what another one left.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <string>

#include "ae/Constants.h"
#include "host/StandInHost.h"

namespace vindrel::test {

/// After Effects 13.0 as the stand-in host plays it, with a module path that has no settings file beside it.
inline standin::HostSettings plainHost() {
  standin::HostSettings settings;
  settings.modulePath = "";
  return settings;
}

/// A module and its host. The test says which commands come.
class LoadedOnly : public ::testing::Test {
 protected:
  explicit LoadedOnly(standin::HostSettings settings = plainHost(), const std::string& path = VINDREL_MODULE_PATH)
      : module(path), host(module, std::move(settings)) {}

  void TearDown() override { EXPECT_EQ(host.faults().waiting(), 0) << "a fault that was planned did not happen"; }

  /// All that is still owed or was done wrong, one line each; empty is clean. Two popups declare six items and name
  /// fewer, which the host remarks at every set-up; the declaration has a test of its own.
  std::string owed(std::initializer_list<standin::Matter> leaveOut = {}) {
    std::string text;
    for (const std::string& line : host.books().report(leaveOut)) {
      if (line.find("says that it has 6 items and names") == std::string::npos) {
        text += line + '\n';
      }
    }
    return text;
  }

  standin::LoadedModule module;
  standin::StandInHost host;
};

/// The same, set up for an instance; at the end it is taken down, and nothing may be owed but what the test names.
class HostedModule : public LoadedOnly {
 protected:
  explicit HostedModule(standin::HostSettings settings = plainHost()) : LoadedOnly(std::move(settings)) {}

  void SetUp() override { ASSERT_EQ(host.start(), 0); }

  void TearDown() override {
    LoadedOnly::TearDown();
    if (!finished) {
      finishOwing({});
    }
  }

  /// Takes the instance and the module down. Of what is then owed only `matters` are overlooked; the test has counted
  /// them before.
  void finishOwing(std::initializer_list<standin::Matter> matters) {
    finished = true;
    EXPECT_EQ(host.finish(), 0);
    EXPECT_EQ(owed(matters), "");
  }

  bool finished = false;  ///< the instance and the module have been taken down
};

/// An opaque picture in which no two neighbours are alike.
inline standin::Image opaquePicture(standin::Depth depth, int32_t width, int32_t height) {
  standin::Image picture(standin::Depth::k8, width, height);
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      const auto mixed = static_cast<uint32_t>(7 * x + 31 * y);
      picture.at<PF_Pixel>(x, y) = {255, static_cast<A_u_char>(mixed % 251), static_cast<A_u_char>((3 * mixed) % 241),
                                    static_cast<A_u_char>((5 * mixed) % 239)};
    }
  }
  return depth == standin::Depth::k8 ? picture : picture.converted(depth);
}

/// True when every byte of every pixel is zero.
inline bool isTransparentBlack(const standin::Image& picture) {
  standin::Image nothing(picture.depth(), picture.width(), picture.height());
  return samePixels(picture, nothing);
}

}  // namespace vindrel::test
