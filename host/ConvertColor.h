/// One colour in other systems: hue, lightness, saturation; and luma with two differences.
///
/// Channels are taken as fractions r, g, b of full scale. Everything is computed in doubles in the order written here;
/// 16.16 results and whole numbers are rounded to nearest, halves up: floor(value * scale + 0.5).
#pragma once

#include "ae/Pixels.h"

namespace standin {

/// With M and m the largest and the smallest channel and d = M - m:
// clang-format off
///
///     lightness  = (M + m) / 2
///     saturation = d / (M + m)   up to a lightness of 1/2,   d / (2 - M - m)   above;   0 where d is 0
///     hue        = ((g - b) / d) / 6 where r is M, (2 + (b - r) / d) / 6 where g is, (4 + (r - g) / d) / 6 where b is;
///                  plus 1 where that is below 0; 0 where d is 0
///
// clang-format on
/// each 0..1.
struct Hls {
  double hue;
  double lightness;
  double saturation;
};

template <class Pixel>
Hls hlsOf(const Pixel& rgb);

// clang-format off
///
///     y = 0.299  r + 0.587  g + 0.114  b
///     i = 0.5959 r - 0.2746 g - 0.3213 b
///     q = 0.2115 r - 0.5227 g + 0.3112 b
///
// clang-format on
struct Yiq {
  double y;
  double i;
  double q;
};

template <class Pixel>
Yiq yiqOf(const Pixel& rgb);

/// Back; the alpha of rgb stays. Whole-number depths are held to 0..full scale, and rounded as above.
template <class Pixel>
void setHls(const Hls& hls, Pixel& rgb);

/// Back, by r = y + 0.956 i + 0.619 q, g = y - 0.272 i - 0.647 q, b = y - 1.106 i + 1.703 q.
template <class Pixel>
void setYiq(const Yiq& yiq, Pixel& rgb);

}  // namespace standin
