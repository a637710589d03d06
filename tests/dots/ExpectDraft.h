// Two drafts of a dot held against each other, value by value.
#pragma once

#include <gtest/gtest.h>

#include "effect/dots/Effector.h"

namespace vindrel::test {

/// To the last bit.
template <class Pixel>
void expectSame(const DotDraft<Pixel>& dot, const DotDraft<Pixel>& expected) {
  EXPECT_EQ(dot.frontKey, expected.frontKey);
  EXPECT_EQ(dot.x, expected.x);
  EXPECT_EQ(dot.y, expected.y);
  EXPECT_EQ(dot.size, expected.size);
  EXPECT_EQ(dot.aspect, expected.aspect);
  EXPECT_EQ(dot.rotation, expected.rotation);
  EXPECT_EQ(dot.opacity, expected.opacity);
  EXPECT_EQ(dot.color, expected.color);
}

}  // namespace vindrel::test
