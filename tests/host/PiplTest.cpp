#include <gtest/gtest.h>

#include <string>

#include "host/Pipl.h"

namespace {

using standin::readPipl;

std::string le32(uint32_t value) {
  std::string bytes;
  for (int i = 0; i < 4; ++i) bytes += static_cast<char>(value >> (8 * i) & 0xFF);
  return bytes;
}

std::string property(const std::string& key, const std::string& data, uint32_t length) {
  return "MIB8" + key + le32(0) + le32(length) + data;
}

std::string header(uint32_t count) {
  return std::string("\x01\0", 2) + le32(0) + le32(count);
}

TEST(Pipl, thePropertiesOfAnEffectAreRead) {
  const std::string zeros(4, '\0');
  const std::string bytes =
      header(8) + property("dnik", "TKFe", 4) + property("eman", std::string("\x05Tango\0\0", 8), 8) +
      property("gtac", std::string("\x09") + "Demo Pack" + zeros.substr(0, 2), 12) +
      property("4668", "EntryPointFunc" + zeros.substr(0, 2), 16) + property("FNIe", zeros, 2) +
      property("REVe", le32(0x000A8E07), 4) + property("OLGe", le32(0x06000062), 4) + property("2LGe", le32(0x1419), 4);
  const auto facts = readPipl(bytes.data(), bytes.size());
  ASSERT_TRUE(facts.has_value());
  EXPECT_EQ(facts->kind, "eFKT");
  EXPECT_EQ(facts->name, "Tango");
  EXPECT_EQ(facts->category, "Demo Pack");
  EXPECT_EQ(facts->entryName, "EntryPointFunc");
  EXPECT_EQ(facts->version, 691719u);
  EXPECT_EQ(facts->outFlags, 0x06000062);
  EXPECT_EQ(facts->outFlags2, 0x1419);
  EXPECT_EQ(facts->propertyCount, 8);
}

TEST(Pipl, aPropertyOfTwoBytesIsFollowedByTwoOfPadding) {
  const std::string bytes = header(2) + property("FNIe", std::string(4, '\0'), 2) + property("2LGe", le32(77), 4);
  const auto facts = readPipl(bytes.data(), bytes.size());
  ASSERT_TRUE(facts.has_value());
  EXPECT_EQ(facts->outFlags2, 77);
}

TEST(Pipl, aListThatEndsTooEarlyIsRefused) {
  const std::string bytes = header(1) + property("eman", std::string("\x05Tango\0\0", 8), 8);
  for (size_t size = 0; size < bytes.size(); ++size) {
    EXPECT_FALSE(readPipl(bytes.data(), size).has_value()) << size;
  }
  EXPECT_TRUE(readPipl(bytes.data(), bytes.size()).has_value());
}

TEST(Pipl, anotherHeaderIsRefused) {
  std::string bytes = header(0);
  EXPECT_TRUE(readPipl(bytes.data(), bytes.size()).has_value());
  bytes[0] = 2;
  EXPECT_FALSE(readPipl(bytes.data(), bytes.size()).has_value());
}

TEST(Pipl, theNameByWhichProjectsKnowAnEffectIsReadWithItsOwnLength) {
  const std::string counted("\x05Tests\0\0", 8);
  // A length byte that promises more than there is, and a property without any byte.
  const std::string bytes = header(3) + property("ANMe", counted, 8) +
                            property("eman",
                                     "\x09"
                                     "abc",
                                     4) +
                            property("gtac", "", 0);
  const auto facts = readPipl(bytes.data(), bytes.size());
  ASSERT_TRUE(facts.has_value());
  EXPECT_EQ(facts->matchName, "Tests");
  EXPECT_EQ(facts->name, "abc");
  EXPECT_EQ(facts->category, "");
}

TEST(Pipl, aNumberOfAnotherLengthIsPassedOver) {
  const std::string eight = le32(1) + le32(2);
  const std::string bytes = header(4) + property("dnik", eight, 8) + property("REVe", eight, 8) +
                            property("OLGe", eight, 8) + property("2LGe", eight, 8);
  const auto facts = readPipl(bytes.data(), bytes.size());
  ASSERT_TRUE(facts.has_value());
  EXPECT_EQ(facts->kind, "");
  EXPECT_FALSE(facts->version.has_value());
  EXPECT_FALSE(facts->outFlags.has_value());
  EXPECT_FALSE(facts->outFlags2.has_value());
  EXPECT_EQ(facts->propertyCount, 4);
}

TEST(Pipl, everyByteOfTheHeadersBeginningCounts) {
  EXPECT_FALSE(readPipl(nullptr, 100).has_value());
  for (size_t i = 0; i < 6; ++i) {
    std::string bytes = header(0);
    bytes[i] = static_cast<char>(bytes[i] + 2);
    EXPECT_FALSE(readPipl(bytes.data(), bytes.size()).has_value()) << i;
  }
}

}  // namespace
