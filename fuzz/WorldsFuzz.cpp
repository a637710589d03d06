// The stand-in host's rectangles and masks: fill, copy, stretch and transfer with any rectangle, place and mask, at
// three depths.
//
// Held: nothing is written beside a world; a whole transfer is what the plain form of the tests gives.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <cstring>
#include <optional>

#include "ae/Constants.h"
#include "fuzz/Require.h"
#include "host/CopyWorld.h"
#include "host/FillWorld.h"
#include "host/Image.h"
#include "host/TransferRect.h"
#include "tests/host/PlainTransfer.h"

namespace {

using standin::Image;

template <class Pixel>
Pixel anyPixel(FuzzedDataProvider& bytes) {
  using Channel = typename standin::PixelFacts<Pixel>::Channel;
  const auto channel = [&bytes] {
    if constexpr (std::is_floating_point_v<Channel>) {
      return bytes.ConsumeFloatingPointInRange<float>(-0.5F, 2.0F);
    } else {
      return bytes.ConsumeIntegralInRange<Channel>(0, standin::PixelFacts<Pixel>::full);
    }
  };
  Pixel pixel{};
  pixel.alpha = channel();
  pixel.red = channel();
  pixel.green = channel();
  pixel.blue = channel();
  return pixel;
}

template <class Pixel>
Image anyPicture(FuzzedDataProvider& bytes) {
  Image made(standin::PixelFacts<Pixel>::depth, bytes.ConsumeIntegralInRange<int32_t>(0, 12),
             bytes.ConsumeIntegralInRange<int32_t>(0, 12), bytes.ConsumeIntegralInRange<int32_t>(0, 9));
  for (int32_t y = 0; y < made.height(); ++y) {
    for (int32_t x = 0; x < made.width(); ++x) made.at<Pixel>(x, y) = anyPixel<Pixel>(bytes);
  }
  return made;
}

/// Mostly near the pictures, at times anywhere in 32 bits.
A_long anyPlace(FuzzedDataProvider& bytes) {
  return bytes.ConsumeIntegral<uint8_t>() < 200 ? bytes.ConsumeIntegralInRange<A_long>(-16, 28)
                                                : bytes.ConsumeIntegral<A_long>();
}

std::optional<PF_Rect> anyRect(FuzzedDataProvider& bytes) {
  if (bytes.ConsumeBool()) return std::nullopt;
  PF_Rect rect{};
  rect.left = anyPlace(bytes);
  rect.top = anyPlace(bytes);
  rect.right = anyPlace(bytes);
  rect.bottom = anyPlace(bytes);
  return rect;
}

const PF_Rect* pointerTo(const std::optional<PF_Rect>& rect) {
  return rect ? &*rect : nullptr;
}

template <class Pixel>
void work(FuzzedDataProvider& bytes) {
  const Image source = anyPicture<Pixel>(bytes), mask = anyPicture<Pixel>(bytes);
  Image target = anyPicture<Pixel>(bytes);
  const standin::Depth depth = standin::PixelFacts<Pixel>::depth;
  const std::optional<PF_Rect> from = anyRect(bytes), to = anyRect(bytes);
  PF_EffectWorld targetWorld = target.view();
  const PF_EffectWorld sourceWorld = source.view();
  switch (bytes.ConsumeIntegralInRange<int>(0, 3)) {
    case 0:
      standin::fillWorld<Pixel>(targetWorld, pointerTo(to), anyPixel<Pixel>(bytes));
      break;
    case 1:
      standin::copyWorld(depth, sourceWorld, targetWorld, pointerTo(from), pointerTo(to));
      break;
    case 2:
      standin::copyWorldSmoothly(depth, sourceWorld, targetWorld, pointerTo(from), pointerTo(to));
      break;
    default: {
      PF_CompositeMode mode{};
      mode.xfer = bytes.PickValueInArray<A_long>({PF_Xfer_COPY, PF_Xfer_BEHIND, PF_Xfer_IN_FRONT, 77});
      mode.opacity = bytes.ConsumeIntegral<uint8_t>();
      mode.opacitySu = bytes.ConsumeIntegralInRange<uint16_t>(0, 32768);
      mode.rgb_only = static_cast<PF_Boolean>(bytes.ConsumeBool());
      std::optional<standin::TransferMask> through;
      if (bytes.ConsumeBool()) {
        through = standin::TransferMask{mask.view(), {}, bytes.ConsumeBool(), bytes.ConsumeBool()};
        through->offset.h = anyPlace(bytes);
        through->offset.v = anyPlace(bytes);
      }
      const A_long x = anyPlace(bytes), y = anyPlace(bytes);
      Image expected = target;
      const PF_Err err = standin::transferRect(depth, pointerTo(from), sourceWorld, mode, through, x, y, targetWorld);
      fuzz::require((err != 0) == (mode.xfer == 77), "only an unknown mode is refused");
      const bool near = x > -1000 && x < 1000 && y > -1000 && y < 1000;
      if (err == 0 && !from && near) {
        plain::Transfer<Pixel>::rect(source, mode, through, x, y, expected);
        fuzz::require(standin::samePixels(target, expected), "a transfer by the formulas");
      }
    }
  }
  fuzz::require(target.guardsIntact(), "nothing is written beside the target");
  fuzz::require(source.guardsIntact() && mask.guardsIntact(), "nothing is written beside the source");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider bytes(data, size);
  switch (bytes.ConsumeIntegralInRange<int>(0, 2)) {
    case 0:
      work<PF_Pixel>(bytes);
      break;
    case 1:
      work<PF_Pixel16>(bytes);
      break;
    default:
      work<PF_PixelFloat>(bytes);
      break;
  }
  return 0;
}
