#include "cli/tone/LayerText.h"

#include <gtest/gtest.h>

#include "cli/UserError.h"
#include "tests/support/TemporaryFolder.h"

using cli::LayerText;
using cli::Preparation;

namespace {

LayerText read(const std::string& text) {
  return cli::layerText({"Map", text});
}

std::string refusal(const std::string& text) {
  try {
    read(text);
  } catch (const cli::UserError& error) {
    return error.what();
  }
  return "accepted";
}

}  // namespace

TEST(LayerTextTest, aPictureAloneIsNotPrepared) {
  for (const char* text : {"source", "none", "a.png", "c:/a.png", "a:b", "", ":", "a:=b", "a:B=c"}) {
    const LayerText layer = read(text);
    EXPECT_EQ(layer.picture, text);
    EXPECT_FALSE(layer.preparation.any()) << text;
  }
}

TEST(LayerTextTest, keysStandBehindTheLastColon) {
  LayerText layer = read("source:blur=pitch,tone=area");
  EXPECT_EQ(layer.name, "Map");
  EXPECT_EQ(layer.picture, "source");
  EXPECT_EQ(layer.preparation, (Preparation{.blur = Preparation::Blur::pitch, .tone = Preparation::Tone::area}));
  layer = read("c:/maps/a.png:fit=cover,blur=2.5,tone=light");
  EXPECT_EQ(layer.picture, "c:/maps/a.png");
  EXPECT_EQ(layer.preparation, (Preparation{.fit = Preparation::Fit::cover,
                                            .blur = Preparation::Blur::pixels,
                                            .blurPixels = 2.5,
                                            .tone = Preparation::Tone::light}));
}

TEST(LayerTextTest, aFileOfTheWholeNameIsThatFile) {
  const vindrel::test::TemporaryFolder folder;
  const std::string file = folder.write("a:blur=b.png", "").string();
  EXPECT_EQ(read(file).picture, file);
}

TEST(LayerTextTest, whatIsWrittenIsReadBack) {
  for (const char* text : {"fit=stretch", "fit=cover,blur=pitch", "blur=0.1,tone=light", "tone=area"}) {
    std::string back;
    for (const auto& [key, value] : cli::preparationTexts(read(std::string("a:") + text).preparation)) {
      back.append(back.empty() ? "" : ",").append(key).append("=").append(value);
    }
    EXPECT_EQ(back, text);
  }
}

TEST(LayerTextTest, wrongKeysAndValuesAreToldWithTheNearest) {
  EXPECT_EQ(refusal("source:blr=pitch"), "'Map': a layer can't be prepared by 'blr'; did you mean 'blur'?");
  EXPECT_EQ(refusal("source:sharpness=1"),
            "'Map': a layer can't be prepared by 'sharpness'; it takes fit, blur or tone");
  EXPECT_EQ(refusal("source:blur=ptich"),
            "'Map': 'blur' takes pitch, or pixels above 0 up to 10000, not 'ptich'; did you mean 'pitch'?");
  for (const char* blur : {"0", "-1", "nan", "inf", "10001", "3px", ""}) {
    EXPECT_EQ(refusal(std::string("source:blur=") + blur),
              std::string("'Map': 'blur' takes pitch, or pixels above 0 up to 10000, not '") + blur + "'");
  }
  EXPECT_EQ(refusal("source:tone=arae"), "'Map': 'tone' takes area or light, not 'arae'; did you mean 'area'?");
  EXPECT_EQ(refusal("source:fit=no"), "'Map': 'fit' takes stretch or cover, not 'no'");
  EXPECT_EQ(refusal("source:blur=pitch,"), "'Map': '' is no key with a value, as in blur=pitch");
  EXPECT_EQ(refusal("source:blur=pitch,tone"), "'Map': 'tone' is no key with a value, as in blur=pitch");
}
