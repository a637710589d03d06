// Frames of any size, in rows of any length, at any place and at any resolution.
#include "check/Life.h"
#include "check/Subjects.h"

namespace check {

namespace {

using standin::FrameRequest;
using standin::Image;
using standin::Matter;
using standin::RenderResult;

// Draws and tells an error and whatever was written outside.
RenderResult drawAndTell(Life& life, const Way& way, const FrameRequest& frame) {
  const size_t before = life.host.books().complaints().size();
  RenderResult result = draw(life.host, way, frame, life.host.defaults());
  if (result.error != PF_Err_NONE) life.trial.finding("it answers " + errorText(life.host, result.error));
  tellComplaints(life.trial, life.host, {Matter::kOutside}, before);
  return result;
}

void everySize(Trial& trial) {
  Life life(trial);
  const bool ownSize = (life.host.outFlags() & (PF_OutFlag_I_EXPAND_BUFFER | PF_OutFlag_I_SHRINK_BUFFER)) != 0;
  int32_t count = 0;
  for (const Way& way : waysOf(life, Roads::kAll)) {
    const auto one = [&](int32_t width, int32_t height) {
      trial.step("drawing " + sizeText(width, height) + " pixels by " + way.text());
      const RenderResult result = drawAndTell(life, way, frameOf(way.depth, width, height));
      ++count;
      if (result.error != PF_Err_NONE) return;
      if (!result.rendered || result.output.empty()) {
        trial.warning("nothing is drawn");
      } else if (!ownSize && (result.output.width() != width || result.output.height() != height)) {
        trial.warning("the output is of " + sizeText(result.output.width(), result.output.height()) + " pixels");
      }
    };
    for (int32_t height = 1; height <= 6; ++height) {
      for (int32_t width = 1; width <= 6; ++width) one(width, height);
    }
    for (const int32_t length : {15, 16, 17, 33, 300}) {
      one(length, 1);
      one(1, length);
      one(length, 7);
    }
  }
  trial.note(std::to_string(count) + " frames were drawn");
}

void longFrames(Trial& trial) {
  Life life(trial);
  const Way way = mainWay(life.host);
  for (const auto& [width, height] : {std::pair(4200, 3), std::pair(3, 4200), std::pair(9000, 1), std::pair(1, 9000)}) {
    trial.step("drawing " + sizeText(width, height) + " pixels");
    drawAndTell(life, way, frameOf(way.depth, width, height));
  }
}

void anEmptyFrame(Trial& trial) {
  Life life(trial);
  for (const Way& way : waysOf(life)) {
    trial.step("drawing a layer of 30 x 20 pixels of which none is seen, by " + way.text());
    FrameRequest frame;
    frame.input = Image(way.depth, 0, 0);
    frame.layerWidth = 30;
    frame.layerHeight = 20;
    const size_t before = life.host.books().complaints().size();
    const RenderResult result = draw(life.host, way, frame, life.host.defaults());
    if (result.error != PF_Err_NONE) trial.warning("it answers " + errorText(life.host, result.error));
    tellComplaints(trial, life.host, {Matter::kOutside}, before);
  }
}

void paddedRows(Trial& trial) {
  Life life(trial);
  for (const Way& way : waysOf(life, Roads::kAll)) {
    const FrameRequest plain = frameOf(way.depth, 21, 17);
    const Image whole = drawn(life, way, plain, life.host.defaults());
    for (const int32_t padding : {16, 48, 4096}) {
      trial.step("drawing with " + std::to_string(padding) + " bytes behind each row by " + way.text());
      FrameRequest frame = plain;
      frame.outputPadding = padding;
      frame.input = Image(way.depth, 21, 17, padding);
      standin::withPixelOf(way.depth, [&](auto kind) {
        using Pixel = decltype(kind);
        for (int32_t y = 0; y < 17; ++y) {
          for (int32_t x = 0; x < 21; ++x) frame.input.at<Pixel>(x, y) = plain.input.at<Pixel>(x, y);
        }
      });
      const RenderResult result = drawAndTell(life, way, frame);
      if (result.error != PF_Err_NONE) continue;
      const std::string differs = difference(whole, result.output);
      if (!differs.empty()) trial.finding("the frame looks otherwise: " + differs);
    }
  }
}

// The part of a picture that another one covers, by their origins; pictures of no size where they don't meet.
Image partUnder(const Image& whole, const Image& part) {
  const int32_t left = part.originX - whole.originX;
  const int32_t top = part.originY - whole.originY;
  return whole.part({left, top, left + part.width(), top + part.height()});
}

void partsEqualTheWhole(Trial& trial) {
  Life life(trial);
  if (!life.host.smartRoadOffered()) throw Skipped("the module has the classic road alone");
  Chance chance(trial.seed());
  int32_t count = 0;
  for (const Way& way : waysOf(life)) {
    const FrameRequest plain = frameOf(way.depth, 40, 30);
    const Image whole = drawn(life, way, plain, life.host.defaults());
    for (int32_t i = 0; i < 24; ++i) {
      FrameRequest frame = plain;
      const int32_t left = chance.whole(0, 39);
      const int32_t top = chance.whole(0, 29);
      frame.requestRect = PF_LRect{left, top, chance.whole(left + 1, 40), chance.whole(top + 1, 30)};
      const PF_LRect& rect = *frame.requestRect;
      trial.step("drawing the part from " + std::to_string(rect.left) + ", " + std::to_string(rect.top) + " to " +
                 std::to_string(rect.right) + ", " + std::to_string(rect.bottom) + " by " + way.text());
      const RenderResult result = drawAndTell(life, way, frame);
      if (result.error != PF_Err_NONE || !result.rendered) continue;
      ++count;
      // A module may draw more than was asked for; what lies beyond the whole can't be compared.
      const Image& part = result.output;
      if (part.originX < whole.originX || part.originY < whole.originY ||
          part.originX + part.width() > whole.originX + whole.width() ||
          part.originY + part.height() > whole.originY + whole.height()) {
        continue;
      }
      const std::string differs = difference(partUnder(whole, part), part);
      if (!differs.empty()) trial.finding("it isn't that part of the whole frame: " + differs);
    }
  }
  trial.note(std::to_string(count) + " parts were compared");
}

void requestsOutside(Trial& trial) {
  Life life(trial);
  if (!life.host.smartRoadOffered()) throw Skipped("the module has the classic road alone");
  constexpr PF_LRect rects[] = {{0, 0, 0, 0},     {-20, -20, -5, -5}, {100, 100, 120, 130}, {-10, -10, 60, 60},
                                {10, 10, 10, 20}, {39, 29, 40, 30},   {5, -3, 6, 33}};
  for (const Way& way : waysOf(life)) {
    for (const PF_LRect& rect : rects) {
      FrameRequest frame = frameOf(way.depth, 40, 30);
      frame.requestRect = rect;
      trial.step("drawing the part from " + std::to_string(rect.left) + ", " + std::to_string(rect.top) + " to " +
                 std::to_string(rect.right) + ", " + std::to_string(rect.bottom) + " of 40 x 30 by " + way.text());
      drawAndTell(life, way, frame);
    }
  }
}

void anOrigin(Trial& trial) {
  Life life(trial);
  for (const Way& way : waysOf(life, Roads::kAll)) {
    const Image layer = picture(way.depth, 40, 30);
    for (const PF_Rect& seen : {PF_Rect{0, 0, 40, 15}, PF_Rect{11, 7, 31, 29}, PF_Rect{39, 29, 40, 30}}) {
      trial.step("drawing where the layer is seen from " + std::to_string(seen.left) + ", " + std::to_string(seen.top) +
                 " to " + std::to_string(seen.right) + ", " + std::to_string(seen.bottom) + " alone, by " + way.text());
      FrameRequest frame;
      frame.layerWidth = 40;
      frame.layerHeight = 30;
      frame.input = layer.part(seen);
      drawAndTell(life, way, frame);
      frame.outputWidth = 25;
      frame.outputHeight = 20;
      frame.outputOriginX = 5;
      frame.outputOriginY = -4;
      drawAndTell(life, way, frame);
    }
  }
}

void downSampling(Trial& trial) {
  Life life(trial);
  constexpr PF_RationalScale scales[] = {{1, 1}, {1, 2}, {1, 3}, {1, 4}, {2, 3}, {1, 16}};
  for (const Way& way : waysOf(life, Roads::kAll)) {
    for (const PF_RationalScale& x : scales) {
      for (const PF_RationalScale& y : scales) {
        FrameRequest frame;
        frame.layerWidth = 48;
        frame.layerHeight = 36;
        frame.downsampleX = x;
        frame.downsampleY = y;
        frame.input = picture(way.depth, standin::scaledLength(48, x), standin::scaledLength(36, y));
        trial.step("drawing at " + std::to_string(x.num) + "/" + std::to_string(x.den) + " by " +
                   std::to_string(y.num) + "/" + std::to_string(y.den) + " of the resolution, by " + way.text());
        drawAndTell(life, way, frame);
      }
    }
  }
}

void pixelsThatAreNotSquare(Trial& trial) {
  Life life(trial);
  for (const Way& way : waysOf(life, Roads::kAll)) {
    for (const PF_RationalScale& aspect : {PF_RationalScale{10, 11}, PF_RationalScale{2, 1}, PF_RationalScale{1, 3}}) {
      trial.step("drawing with pixels " + std::to_string(aspect.num) + " wide and " + std::to_string(aspect.den) +
                 " high, by " + way.text());
      FrameRequest frame = frameOf(way.depth, 24, 18);
      frame.input.pixelAspect = aspect;
      drawAndTell(life, way, frame);
    }
  }
}

constexpr Promise kPromises[] = {
    {"every-size-from-1-x-1", "Frames of every size from 1 x 1 pixel are drawn, and nothing outside of them.",
     Weight::kMust, kUsualSeconds, everySize},
    {"long-frames", "Frames of thousands of pixels in one direction are drawn.", Weight::kMust, kUsualSeconds,
     longFrames},
    {"an-empty-frame", "A frame without a pixel does no harm.", Weight::kMust, kUsualSeconds, anEmptyFrame},
    {"padded-rows", "Bytes between the rows of input and output are neither read as pixels nor written.", Weight::kMust,
     kUsualSeconds, paddedRows},
    {"an-origin", "A layer of which only a part is seen, and an output elsewhere, are drawn.", Weight::kMust,
     kUsualSeconds, anOrigin},
    {"parts-equal-the-whole", "On the smart road a part of a frame is drawn as in the whole frame.", Weight::kMust,
     kUsualSeconds, partsEqualTheWhole},
    {"requests-outside-do-no-harm", "Empty requests, and requests beside the layer, do no harm.", Weight::kMust,
     kUsualSeconds, requestsOutside},
    {"down-sampling", "Frames at a lower resolution, also at two different ones, are drawn.", Weight::kMust,
     kUsualSeconds, downSampling},
    {"pixels-that-are-not-square", "Frames of pixels that are wider or higher than a square are drawn.", Weight::kMust,
     kUsualSeconds, pixelsThatAreNotSquare},
};

}  // namespace

Subject sizePromises() {
  return {"sizes and places", kPromises};
}

}  // namespace check
