// The shared pointer of the effect maps: who frees what, and when. Memory is counted by operators of our own.
#include "effect/dots/SharedCount.h"

#include <gtest/gtest.h>

#include <new>
#include <utility>
#include <vector>

#include "tests/dots/CountedMemory.h"

namespace vindrel {
namespace {

using testing::allocationsUntilFailure;
using testing::blocksHeld;

class Shape {
 public:
  virtual int corners() const = 0;

 protected:
  ~Shape() = default;
};

class Polygon final : public Shape {
 public:
  explicit Polygon(int corners) : corners_(corners) {}
  int corners() const override { return corners_; }

 private:
  int corners_;
};

using ShapePtr = SharedPointer<Shape>;

TEST(SharedPointer, isTwoWords) {
  EXPECT_EQ(sizeof(ShapePtr), 2 * sizeof(void*));
}

TEST(SharedPointer, aNewPointerHasOneOwner) {
  const ShapePtr shape(new Polygon(3));
  EXPECT_EQ(shape.useCount(), 1);
  EXPECT_EQ(shape->corners(), 3);
}

TEST(SharedPointer, copyingAddsAnOwnerAndReleasingTakesOneAway) {
  const ShapePtr first(new Polygon(5));
  {
    const ShapePtr second = first;
    EXPECT_EQ(first.useCount(), 2);
    EXPECT_EQ(second.get(), first.get());
  }
  EXPECT_EQ(first.useCount(), 1);
}

TEST(SharedPointer, movingHandsTheShareOn) {
  ShapePtr first(new Polygon(5));
  const ShapePtr second = std::move(first);
  EXPECT_EQ(second.useCount(), 1);
  EXPECT_FALSE(first);
  EXPECT_EQ(first.useCount(), 0);
}

TEST(SharedPointer, theLastOwnerFreesTheObjectAndItsCount) {
  const int before = blocksHeld;
  {
    ShapePtr first(new Polygon(4));
    EXPECT_EQ(blocksHeld, before + 2);
    ShapePtr second = first;
    first = ShapePtr();
    EXPECT_EQ(blocksHeld, before + 2);
    EXPECT_EQ(second->corners(), 4);
  }
  EXPECT_EQ(blocksHeld, before);
}

TEST(SharedPointer, assigningDropsTheOldShare) {
  const int before = blocksHeld;
  {
    ShapePtr shape(new Polygon(4));
    shape = ShapePtr(new Polygon(6));
    EXPECT_EQ(shape->corners(), 6);
    EXPECT_EQ(blocksHeld, before + 2);
    const ShapePtr& self = shape;
    shape = self;
    EXPECT_EQ(shape->corners(), 6);
    EXPECT_EQ(shape.useCount(), 1);
  }
  EXPECT_EQ(blocksHeld, before);
}

TEST(SharedPointer, livesInAVectorThatGrows) {
  const int before = blocksHeld;
  {
    std::vector<ShapePtr> shapes;
    for (int corners = 3; corners < 20; ++corners) shapes.push_back(ShapePtr(new Polygon(corners)));
    for (const ShapePtr& shape : shapes) EXPECT_EQ(shape.useCount(), 1);
    EXPECT_EQ(shapes[10]->corners(), 13);
  }
  EXPECT_EQ(blocksHeld, before);
}

TEST(SharedPointer, theObjectIsFreedWhenThereIsNoMemoryForItsCount) {
  const int before = blocksHeld;
  allocationsUntilFailure = 1;  // the object still gets its memory
  bool thrown = false;
  try {
    const ShapePtr shape(new Polygon(3));
  } catch (const std::bad_alloc&) {
    thrown = true;
  }
  allocationsUntilFailure = -1;
  EXPECT_TRUE(thrown);
  EXPECT_EQ(blocksHeld, before);
}

}  // namespace
}  // namespace vindrel
