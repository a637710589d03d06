// The list byte for byte, against a dump written by hand from the rules of the format.
#include "effect/filter/PropertyList.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace std::string_literals;

// Property by property: vendor, key, 0, length, data and padding.
const std::string expected =
    "\x01\x00"s
    "\x00\x00\x00\x00"s
    "\x0C\x00\x00\x00"s
    "MIB8dnik\x00\x00\x00\x00\x04\x00\x00\x00"s
    "TKFe"s
    "MIB8eman\x00\x00\x00\x00\x08\x00\x00\x00"s
    "\x07"s
    "Vindrel"s
    "MIB8gtac\x00\x00\x00\x00\x08\x00\x00\x00"s
    "\x05"s
    "QUILM\x00\x00"s
    "MIB84668\x00\x00\x00\x00\x10\x00\x00\x00"s
    "EntryPointFunc\x00\x00"s
    "MIB8RVPe\x00\x00\x00\x00\x04\x00\x00\x00"s
    "\x02\x00\x00\x00"s
    "MIB8RVSe\x00\x00\x00\x00\x04\x00\x00\x00"s
    "\x0D\x00\x00\x00"s
    "MIB8REVe\x00\x00\x00\x00\x04\x00\x00\x00"s
    "\x07\x8E\x0A\x00"s
    "MIB8FNIe\x00\x00\x00\x00\x02\x00\x00\x00"s
    "\x00\x00\x00\x00"s
    "MIB8OLGe\x00\x00\x00\x00\x04\x00\x00\x00"s
    "\x62\x00\x00\x06"s
    "MIB82LGe\x00\x00\x00\x00\x04\x00\x00\x00"s
    "\x19\x14\x00\x00"s
    "MIB8ANMe\x00\x00\x00\x00\x10\x00\x00\x00"s
    "\x0D"s
    "QUILM VINDREL\x00\x00"s
    "MIB8LFea\x00\x00\x00\x00\x04\x00\x00\x00"s
    "\x00\x00\x00\x00"s;

TEST(PropertyList, hasExactlyTheBytesOfItsTwelveProperties) {
  const auto bytes = vindrel::propertyList();
  EXPECT_EQ(std::string(bytes.begin(), bytes.end()), expected);
  EXPECT_EQ(expected.size(), 282u);
}

}  // namespace
