// For tests that hold at every depth: TYPED_TEST_SUITE(Name, AllPixels).
#pragma once

#include <gtest/gtest.h>

#include "effect/pixel/Pixel.h"

namespace vindrel::test {

using AllPixels = ::testing::Types<Pixel8, Pixel16, Pixel32>;

}  // namespace vindrel::test
