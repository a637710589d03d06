// The shared pointer of the effect maps: who frees what, and when. Memory is counted by operators of our own.
#include "effect/dots/EffectMap.h"

#include <gtest/gtest.h>

#include <new>
#include <optional>
#include <utility>

#include "tests/dots/CountedMemory.h"

namespace vindrel {
namespace {

using test::allocationsUntilFailure;
using test::blocksHeld;

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

TEST(SharedPointer, theLastOwnerFreesTheObjectAndItsCount) {
  const int before = blocksHeld;
  {
    const ShapePtr first(new Polygon(4));
    EXPECT_EQ(blocksHeld, before + 2);
    {
      // A copy is what is tried here. NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
      const ShapePtr second = first;
      EXPECT_EQ(blocksHeld, before + 2);
      EXPECT_EQ(second->corners(), 4);
      EXPECT_EQ(&*second, &*first);
    }
    EXPECT_EQ(blocksHeld, before + 2);
    EXPECT_EQ(first->corners(), 4);
  }
  EXPECT_EQ(blocksHeld, before);
}

TEST(SharedPointer, anyOwnerMayBeTheLast) {
  const int before = blocksHeld;
  std::optional<ShapePtr> first(std::in_place, new Polygon(4));
  const std::optional<ShapePtr> second = first;
  std::optional<ShapePtr> third = second;
  first.reset();
  third.reset();
  EXPECT_EQ(blocksHeld, before + 2);
  EXPECT_EQ((*second)->corners(), 4);
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
