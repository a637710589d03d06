#include "cli/NearestName.h"

#include <gtest/gtest.h>

using cli::editDistance;
using cli::nearestName;

TEST(NearestNameTest, eachKindOfSlipCountsOne) {
  EXPECT_EQ(editDistance("Dot Size", "Dot Size"), 0U);
  EXPECT_EQ(editDistance("Dot Sise", "Dot Size"), 1U);
  EXPECT_EQ(editDistance("Dot Siz", "Dot Size"), 1U);
  EXPECT_EQ(editDistance("Dott Size", "Dot Size"), 1U);
  EXPECT_EQ(editDistance("Dto Size", "Dot Size"), 1U);
}

TEST(NearestNameTest, slipsAddUp) {
  EXPECT_EQ(editDistance("kitten", "sitting"), 3U);
  EXPECT_EQ(editDistance("", "abc"), 3U);
  EXPECT_EQ(editDistance("abc", ""), 3U);
}

TEST(NearestNameTest, caseCountsNothing) {
  EXPECT_EQ(editDistance("DOT SIZE", "dot size"), 0U);
}

TEST(NearestNameTest, theFirstOfEquallyNearNamesIsProposed) {
  EXPECT_EQ(nearestName("Size 4", {"Dot Size", "Size 1", "Size 2", "Size 3"}), "Size 1");
}

TEST(NearestNameTest, aNameThatIsFarFromAllIsAnsweredWithNone) {
  EXPECT_EQ(nearestName("entirely different", {"Dot Size", "Mask"}), "");
  EXPECT_EQ(nearestName("x", {}), "");
}

TEST(NearestNameTest, onlyNearNamesAreProposed) {
  EXPECT_EQ(nearestName("a.png", {"b.tif"}), "");
  EXPECT_EQ(nearestName("ab", {"cd"}), "");
  EXPECT_EQ(nearestName("Dot Turn", {"Dot Size"}), "") << "4 of 8 letters differ";
  EXPECT_EQ(nearestName("im.png", {"in.png"}), "in.png");
}

TEST(NearestNameTest, aNameThatHoldsAllTheWordsIsProposed) {
  EXPECT_EQ(nearestName("mask layer", {"Mask", "Mask Target Layer"}), "Mask Target Layer");
  EXPECT_EQ(nearestName("layer mask", {"Mask", "Mask Target Layer"}), "")
      << "in another order they may mean another thing";
}

TEST(NearestNameTest, aSuggestionFallsBackOnTheGivenWords) {
  EXPECT_EQ(cli::suggestion("Sqare", {"Circle", "Square"}, "; none"), "; did you mean 'Square'?");
  EXPECT_EQ(cli::suggestion("Parallelogram", {"Circle", "Square"}, "; none"), "; none");
}

TEST(NearestNameTest, listsReadAsSentences) {
  EXPECT_EQ(cli::listed({}), "");
  EXPECT_EQ(cli::listed({"A"}), "A");
  EXPECT_EQ(cli::listed({"A", "B", "C"}), "A, B or C");
  EXPECT_EQ(cli::listed({"A", "B"}, "and"), "A and B");
}
