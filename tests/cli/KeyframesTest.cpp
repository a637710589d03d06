// Files of values over time: what they say, and what is wrong with them.

#include "cli/Keyframes.h"

#include <gtest/gtest.h>

#include "cli/UserError.h"
#include "tests/support/TemporaryFolder.h"

using cli::Ease;
using cli::TrackText;

namespace {

class KeyframesTest : public testing::Test {
 protected:
  std::vector<TrackText> animation(const std::string& content) {
    return cli::readAnimation(folder_.write("a.json", content).string());
  }

  std::vector<TrackText> table(const std::string& content) {
    return cli::readValueTable(folder_.write("v.csv", content).string());
  }

  /// The complaint behind the name of the file.
  template <class Read>
  std::string complaint(const Read& read, const char* name) {
    try {
      read();
    } catch (const cli::UserError& error) {
      const std::string text = error.what();
      const std::string file = "'" + (folder_ / name).string() + "'";
      const std::size_t at = text.find(file);
      return at == std::string::npos ? text : text.substr(at + file.size());
    }
    return "accepted";
  }

  std::string refusal(const std::string& content) {
    return complaint([&] { animation(content); }, "a.json");
  }

  std::string tableRefusal(const std::string& content) {
    return complaint([&] { table(content); }, "v.csv");
  }

  /// Of a file with one key of one control.
  std::string keyRefusal(const std::string& key) { return refusal(R"({"animation": {"Dot Size": [)" + key + "]}}"); }

  vindrel::test::TemporaryFolder folder_;
};

}  // namespace

TEST_F(KeyframesTest, everyPartOfAKeyArrives) {
  const std::vector<TrackText> tracks = animation(R"({"about": "a look", "animation": {"Dot Size": [
      {"frame": 2, "value": 4, "in": "linear", "out": "hold"},
      {"second": 1.5, "value": "8", "in": {"influence": 70}, "out": {"speed": -3, "influence": 100}}]}})");
  ASSERT_EQ(tracks.size(), 1U);
  EXPECT_EQ(tracks[0].control, "Dot Size");
  ASSERT_EQ(tracks[0].keys.size(), 2U);
  EXPECT_EQ(tracks[0].keys[0].at, 2.0);
  EXPECT_FALSE(tracks[0].keys[0].inSeconds);
  EXPECT_EQ(tracks[0].keys[0].value, "4");
  EXPECT_EQ(tracks[0].keys[0].in.kind, Ease::Kind::linear);
  EXPECT_EQ(tracks[0].keys[0].out.kind, Ease::Kind::hold);
  EXPECT_EQ(tracks[0].keys[1].at, 1.5);
  EXPECT_TRUE(tracks[0].keys[1].inSeconds);
  EXPECT_EQ(tracks[0].keys[1].value, "8");
  EXPECT_EQ(tracks[0].keys[1].in.kind, Ease::Kind::bezier);
  EXPECT_EQ(tracks[0].keys[1].in.influence, 70.0);
  EXPECT_EQ(tracks[0].keys[1].out.influence, 100.0);
  EXPECT_EQ(tracks[0].keys[1].out.speed, -3.0);
}

TEST_F(KeyframesTest, filesThatHoldNoAnimationAreRefused) {
  EXPECT_EQ(refusal("[]"), ": it must be an object with 'animation'");
  EXPECT_EQ(refusal(R"({"animaton": {}})"), ": no key 'animaton'; did you mean 'animation'?");
  EXPECT_EQ(refusal(R"({"xyzzy": {}})"), ": no key 'xyzzy'; it may have about and animation");
  EXPECT_EQ(refusal(R"({"animation": []})"), ": 'animation' takes names with keys in braces");
  EXPECT_EQ(refusal(R"({"animation": {"Dot Size": 4}})"), ": 'Dot Size': it takes one key or more in brackets");
  EXPECT_EQ(refusal(R"({"animation": {}, "animation": {}})"), ": 'animation' stands in it twice");
}

TEST_F(KeyframesTest, keysThatSayTooLittleOrTooMuchAreRefused) {
  const std::string either = ": 'Dot Size': a key takes either a frame or a second, and a value";
  EXPECT_EQ(keyRefusal("4"), ": 'Dot Size': a key takes a frame or a second, and a value, in braces");
  EXPECT_EQ(keyRefusal(R"({"frame": 1})"), either);
  EXPECT_EQ(keyRefusal(R"({"value": 1})"), either);
  EXPECT_EQ(keyRefusal(R"({"frame": 1, "second": 1, "value": 1})"), either);
  EXPECT_EQ(keyRefusal(R"({"frame": 1, "valu": 1})"), ": 'Dot Size': a key has no 'valu'; did you mean 'value'?");
  EXPECT_EQ(keyRefusal(R"({"frame": 1, "xyzzy": 1})"),
            ": 'Dot Size': a key has no 'xyzzy'; it may have frame or second, value, in and out");
  EXPECT_EQ(keyRefusal(R"({"frame": 1, "value": null})"),
            ": 'Dot Size': 'value' takes a number, a text, true or false, not null");
}

TEST_F(KeyframesTest, timesThatAreNoNumbersAreRefused) {
  EXPECT_EQ(keyRefusal(R"({"frame": "one", "value": 1})"), ": 'Dot Size': 'frame' takes a number");
  EXPECT_EQ(keyRefusal(R"({"second": [], "value": 1})"), ": 'Dot Size': 'second' takes a number");
  EXPECT_EQ(keyRefusal(R"({"frame": 1e999, "value": 1})"), ": a number in it is too large");
}

TEST_F(KeyframesTest, waysBetweenKeysThatDoNotExistAreRefused) {
  const auto side = [&](const std::string& text) { return keyRefusal(R"({"frame": 1, "value": 1, )" + text + "}"); };
  EXPECT_EQ(side(R"("out": "still")"),
            ": 'Dot Size': 'out' takes \"linear\", \"hold\", or an influence and a speed in braces");
  EXPECT_EQ(side(R"("in": 4)"), ": 'Dot Size': 'in' takes \"linear\", or an influence and a speed in braces");
  EXPECT_EQ(side(R"("out": {"influence": 100.5})"), ": 'Dot Size': 'influence' takes percent above 0, up to 100");
  EXPECT_EQ(side(R"("out": {"influence": -1})"), ": 'Dot Size': 'influence' takes percent above 0, up to 100");
  EXPECT_EQ(side(R"("in": {"speed": "fast"})"), ": 'Dot Size': 'speed' takes a number");
  EXPECT_EQ(side(R"("in": {"sped": 1})"), ": 'Dot Size': 'in' has no 'sped'; it may have influence and speed");
}

TEST_F(KeyframesTest, aWholeNumberBeyondAllRangesStaysWhatItIs) {
  // Taken for a signed one this would be -1.
  EXPECT_EQ(animation(R"({"animation": {"Offset": [{"frame": 1, "value": 18446744073709551615}]}})")[0].keys[0].value,
            "18446744073709551615");
}

TEST_F(KeyframesTest, aTableIsAKeyForEachLineAndControl) {
  const std::vector<TrackText> tracks =
      table("frame,Dot Size,\"a \"\"quoted\"\", name\"\r\n\r\n1,5,\"20,30\"\r\n\n2.5,7,x");
  ASSERT_EQ(tracks.size(), 2U);
  EXPECT_EQ(tracks[0].control, "Dot Size");
  EXPECT_EQ(tracks[1].control, "a \"quoted\", name");
  ASSERT_EQ(tracks[1].keys.size(), 2U);
  EXPECT_EQ(tracks[1].keys[0].value, "20,30");
  EXPECT_EQ(tracks[1].keys[0].out.kind, Ease::Kind::hold);
  EXPECT_EQ(tracks[1].keys[1].at, 2.5);
  EXPECT_EQ(tracks[1].keys[1].value, "x");
}

TEST_F(KeyframesTest, tablesThatMakeNoSenseAreRefusedByLine) {
  const std::string first = ", line 1: the first line takes 'frame' and names of controls";
  EXPECT_EQ(tableRefusal("time,Dot Size\n1,4\n"), first);
  EXPECT_EQ(tableRefusal("frame\n1\n"), first);
  EXPECT_EQ(tableRefusal("\nframe\n"), ", line 2: the first line takes 'frame' and names of controls");
  EXPECT_EQ(tableRefusal("frame,Dot Size\n1\n"), ", line 2: it has 1 field, and the first line 2");
  EXPECT_EQ(tableRefusal("frame,Dot Size\n1,4\n2,4,5\n"), ", line 3: it has 3 fields, and the first line 2");
  EXPECT_EQ(tableRefusal("frame,\"Dot Size\n1,4\n"), ", line 1: a quote isn't closed");
  for (const char* frame : {"x", "1a", "inf", "1e999", ""}) {
    EXPECT_EQ(tableRefusal("frame,Dot Size\n" + std::string(frame) + ",4\n"),
              ", line 2: '" + std::string(frame) + "' is no frame");
  }
  EXPECT_EQ(tableRefusal(""), " has no values");
  EXPECT_EQ(tableRefusal("frame,Dot Size\n"), " has no values");
}
