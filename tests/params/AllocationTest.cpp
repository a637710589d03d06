// What becomes of the table when memory runs out while it is made. This program has an operator new of its own.
#include <gtest/gtest.h>

#include <new>

#include "effect/params/ParamObjects.h"
#include "tests/params/PlainHost.h"
#include "tests/params/ScarceOperators.h"

namespace vindrel {
namespace {

using test::Memory;
using test::setMemory;

class ScarceMemory : public testing::Test {
 protected:
  void SetUp() override { nextHostIndex = 1; }
  void TearDown() override {
    setMemory(Memory::plentiful);
    DropParams();
  }
  test::PlainHost host;
};

int objects() {
  int count = 0;
  for (const BaseParam* param : byId) count += param != nullptr ? 1 : 0;
  return count;
}

TEST_F(ScarceMemory, withoutMemoryTheTableIsEmptyAndNothingFails) {
  setMemory(Memory::givesNull);
  DeclareParams(&host.inData);
  setMemory(Memory::plentiful);
  EXPECT_EQ(objects(), 0);
  EXPECT_EQ(nextHostIndex, 1);
  EXPECT_EQ(HostIndexOf(1), 0);
  EXPECT_EQ(AddAll(&host.inData, nullptr), PF_Err_NONE);
  EXPECT_TRUE(host.added.empty());
}

TEST_F(ScarceMemory, aLaterDeclarationStartsFromTheFirstIndexAgain) {
  setMemory(Memory::givesNull);
  DeclareParams(&host.inData);
  setMemory(Memory::plentiful);
  DeclareParams(&host.inData);
  EXPECT_EQ(nextHostIndex, 123);
  EXPECT_EQ(HostIndexOf(1), 1);
}

TEST_F(ScarceMemory, aGroupThatWasBegunIsEndedWhenAnObjectInsideFails) {
  setMemory(Memory::throwsOnceAt, 25);  // "Rotation" of "Randomize", the seventh object of the group
  EXPECT_THROW(DeclareParams(&host.inData), std::bad_alloc);
  setMemory(Memory::plentiful);
  EXPECT_EQ(objects(), 25);
  ASSERT_NE(byId[19], nullptr);
  EXPECT_EQ(byId[19]->hostIndex, 25);
  EXPECT_EQ(byId[24], nullptr);
}

TEST_F(ScarceMemory, noGroupIsEndedThatWasNotBegun) {
  setMemory(Memory::throwsOnceAt, 19);  // "Randomize" itself
  EXPECT_THROW(DeclareParams(&host.inData), std::bad_alloc);
  setMemory(Memory::plentiful);
  EXPECT_EQ(objects(), 18);
  EXPECT_EQ(byId[19], nullptr);
}

TEST_F(ScarceMemory, exhaustionInsideAGroupStopsTheDeclarationAndNoObjectIsLost) {
  setMemory(Memory::throwsFrom, 25);  // "Rotation" of "Randomize"
  EXPECT_THROW(DeclareParams(&host.inData), std::bad_alloc);
  setMemory(Memory::plentiful);
  // The end of the group could not be made either: the exception under way is the one that is told.
  EXPECT_EQ(objects(), 24);
  EXPECT_EQ(byId[19], nullptr);
  EXPECT_EQ(byIndex[1], nullptr);
}

}  // namespace
}  // namespace vindrel
