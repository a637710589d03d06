#include "host/Image.h"

#include <algorithm>
#include <cstring>

#include "host/CopyWorld.h"
#include "host/FillWorld.h"
#include "host/Rects.h"

namespace standin {

namespace {

int32_t channelBytes(Depth depth) {
  return pixelBytes(depth) / 4;
}

// The mean of a block of whole-number pixels: alpha plain, colours weighed by alpha, to nearest with halves up.
template <class Pixel>
Pixel meanOfBlock(const Image& image, int32_t left, int32_t top, int32_t columns, int32_t rows) {
  using Channel = typename PixelFacts<Pixel>::Channel;
  using Sum = std::conditional_t<std::is_floating_point_v<Channel>, double, uint64_t>;
  Sum alpha = 0;
  Sum weighted[3] = {0, 0, 0};
  Sum plain[3] = {0, 0, 0};
  for (int32_t y = top; y < top + rows; ++y) {
    for (int32_t x = left; x < left + columns; ++x) {
      const Pixel& p = image.at<Pixel>(x, y);
      const auto a = static_cast<Sum>(p.alpha);
      const Sum colors[3] = {static_cast<Sum>(p.red), static_cast<Sum>(p.green), static_cast<Sum>(p.blue)};
      alpha += a;
      for (int c = 0; c < 3; ++c) {
        weighted[c] += colors[c] * a;
        plain[c] += colors[c];
      }
    }
  }
  const Sum count = static_cast<Sum>(columns) * static_cast<Sum>(rows);
  const auto divided = [](Sum value, Sum by) {
    if constexpr (std::is_floating_point_v<Channel>) {
      return static_cast<Channel>(value / by);
    } else {
      return static_cast<Channel>((value + by / 2) / by);
    }
  };
  const bool seen = alpha > Sum{0};
  const auto color = [&](int c) { return seen ? divided(weighted[c], alpha) : divided(plain[c], count); };
  return Pixel{divided(alpha, count), color(0), color(1), color(2)};
}

}  // namespace

Image::Image(Depth depth, int32_t width, int32_t height, int32_t rowPadding, uint8_t fill, int32_t guardLength)
    : depth_(depth), width_(std::max(width, 0)), height_(std::max(height, 0)) {
  const int32_t channel = channelBytes(depth);
  const int32_t padding = (std::max(rowPadding, 0) + channel - 1) / channel * channel;
  guardLength_ =
      (std::max(guardLength, kLeastGuardLength) + kLeastGuardLength - 1) / kLeastGuardLength * kLeastGuardLength;
  const auto guard = static_cast<size_t>(guardLength_);
  const int32_t used = width_ * pixelBytes(depth);
  rowBytes_ = used + padding;
  // The pixels are written once: a frame makes three of these, and each pass over one costs as much as its copy.
  bytes_.assign(guard * 2 + static_cast<size_t>(rowBytes_) * static_cast<size_t>(height_), fill);
  std::memset(bytes_.data(), kGuardByte, guard);
  std::memset(bytes_.data() + bytes_.size() - guard, kGuardByte, guard);
  if (padding == 0) return;
  for (int32_t y = 0; y < height_; ++y) std::memset(rowStart(y) + used, kGuardByte, static_cast<size_t>(padding));
}

uint8_t* Image::rowStart(int32_t y) {
  assert(y >= 0 && y < height_);
  return bytes_.data() + guardLength_ + static_cast<ptrdiff_t>(y) * rowBytes_;
}

const uint8_t* Image::rowStart(int32_t y) const {
  assert(y >= 0 && y < height_);
  return bytes_.data() + guardLength_ + static_cast<ptrdiff_t>(y) * rowBytes_;
}

PF_EffectWorld Image::view() const {
  PF_EffectWorld world{};
  world.world_flags = PF_WorldFlag_WRITEABLE | (depth_ == Depth::k16 ? PF_WorldFlag_DEEP : 0);
  // A world has no form for pixels that may only be read; whoever gets an input keeps to the rule.
  uint8_t* data = bytes_.empty() ? nullptr : const_cast<uint8_t*>(bytes_.data()) + guardLength_;
  world.data = reinterpret_cast<PF_PixelPtr>(data);
  world.rowbytes = rowBytes_;
  world.width = width_;
  world.height = height_;
  world.extent_hint = {0, 0, width_, height_};
  world.pix_aspect_ratio = pixelAspect;
  world.origin_x = originX;
  world.origin_y = originY;
  return world;
}

bool Image::guardsIntact() const {
  const auto intact = [](const uint8_t* from, size_t count) {
    return std::all_of(from, from + count, [](uint8_t byte) { return byte == kGuardByte; });
  };
  if (bytes_.empty()) return true;
  const auto guard = static_cast<size_t>(guardLength_);
  const size_t used = static_cast<size_t>(width_) * static_cast<size_t>(pixelBytes(depth_));
  bool good = intact(bytes_.data(), guard) && intact(bytes_.data() + bytes_.size() - guard, guard);
  for (int32_t y = 0; good && y < height_; ++y) {
    good = intact(rowStart(y) + used, static_cast<size_t>(rowBytes_) - used);
  }
  return good;
}

Image Image::converted(Depth depth) const {
  Image result(depth, width_, height_);
  result.originX = originX;
  result.originY = originY;
  result.pixelAspect = pixelAspect;
  withPixelOf(depth_, [&](auto from) {
    withPixelOf(depth, [&](auto to) {
      using From = decltype(from);
      using To = decltype(to);
      for (int32_t y = 0; y < height_; ++y) {
        for (int32_t x = 0; x < width_; ++x) result.at<To>(x, y) = convertPixel<To>(at<From>(x, y));
      }
    });
  });
  return result;
}

Image Image::resized(int32_t width, int32_t height) const {
  Image result(depth_, width, height);
  result.pixelAspect = pixelAspect;
  if (result.empty() || empty()) return result;
  if (width_ % width == 0 && height_ % height == 0) {
    withPixelOf(depth_, [&](auto pixel) {
      using Pixel = decltype(pixel);
      const int32_t columns = width_ / width;
      const int32_t rows = height_ / height;
      for (int32_t y = 0; y < height; ++y) {
        for (int32_t x = 0; x < width; ++x) {
          result.at<Pixel>(x, y) = meanOfBlock<Pixel>(*this, x * columns, y * rows, columns, rows);
        }
      }
    });
  } else {
    copyWorld(depth_, view(), result.view(), nullptr, nullptr);
  }
  return result;
}

Image Image::part(const PF_Rect& rect) const {
  const PF_Rect inside = intersection(rect, {0, 0, width_, height_});
  Image result(depth_, inside.right - inside.left, inside.bottom - inside.top);
  result.originX = originX + inside.left;
  result.originY = originY + inside.top;
  result.pixelAspect = pixelAspect;
  copyWorld(depth_, view(), result.view(), &inside, nullptr);
  return result;
}

bool samePixels(const Image& a, const Image& b) {
  if (a.depth() != b.depth() || a.width() != b.width() || a.height() != b.height()) return false;
  const size_t used = static_cast<size_t>(a.width()) * static_cast<size_t>(pixelBytes(a.depth()));
  for (int32_t y = 0; y < a.height(); ++y) {
    if (std::memcmp(a.rowStart(y), b.rowStart(y), used) != 0) return false;
  }
  return true;
}

int32_t scaledLength(int32_t length, const PF_RationalScale& scale) {
  if (scale.den == 0) return 0;
  const int64_t twice = 2 * static_cast<int64_t>(length) * scale.num + static_cast<int64_t>(scale.den);
  return twice <= 0 ? 0 : static_cast<int32_t>(twice / (2 * static_cast<int64_t>(scale.den)));
}

}  // namespace standin
