/// Pixels, places, rectangles and the small records that describe how pictures are put together.
///
/// In memory a pixel is alpha, red, green, blue. Colours are straight (not multiplied by alpha).
#pragma once

#include "ae/Scalars.h"

/// A fraction num / den; the numerator is signed, the denominator is not. 1/2 is half.
struct PF_RationalScale {
  A_long num;
  A_u_long den;
};

/// A rectangle in whole pixels. left and top belong to it, right and bottom are one past the end.
/// Empty when right <= left or bottom <= top.
struct PF_LRect {
  A_long left;
  A_long top;
  A_long right;
  A_long bottom;
};

using PF_Rect = PF_LRect;
using PF_UnionableRect = PF_LRect;

/// The 16-bit rectangle of old interfaces, in the order top, left, bottom, right. No record here holds one.
struct PF_LegacyRect {
  A_short top;
  A_short left;
  A_short bottom;
  A_short right;
};

/// A place in whole pixels: h is x, v is y.
struct PF_Point {
  A_long h;
  A_long v;
};

/// A place in 16.16 pixels.
struct PF_FixedPoint {
  PF_Fixed x;
  PF_Fixed y;
};

/// One pixel of 8 bits a channel, straight colour, full scale 255.
struct PF_Pixel {
  A_u_char alpha;
  A_u_char red;
  A_u_char green;
  A_u_char blue;
};

using PF_Pixel8 = PF_Pixel;
using PF_UnionablePixel = PF_Pixel;
using PF_PixelPtr = PF_Pixel*;  ///< of unknown depth: the pixel format of the world tells what it points at

/// One pixel of 16 bits a channel, straight colour. Full scale is 32768, not 65535.
struct PF_Pixel16 {
  A_u_short alpha;
  A_u_short red;
  A_u_short green;
  A_u_short blue;
};

/// One pixel of single-precision channels, straight colour, full scale 1.0; values outside 0..1 may come.
struct PF_PixelFloat {
  PF_FpShort alpha;
  PF_FpShort red;
  PF_FpShort green;
  PF_FpShort blue;
};

using PF_Pixel32 = PF_PixelFloat;

using PF_HLS_Pixel = PF_Fixed[3];
using PF_YIQ_Pixel = PF_Fixed[3];

/// How a world is laid over another by transfer_rect and transform_world.
struct PF_CompositeMode {
  PF_TransferMode xfer;  ///< one of PF_Xfer_*
  A_long rand_seed;      ///< used by the dissolve mode only
  A_u_char opacity;      ///< 0..255, for 8-bit worlds
  PF_Boolean rgb_only;   ///< not 0: alpha stays
  A_u_short opacitySu;   ///< 0..32768, for deep worlds
};

/// A 3 x 3 transformation; rows first.
struct PF_FloatMatrix {
  PF_FpLong mat[3][3];
};

// Layout, identical on 64-bit Windows and on Linux x86-64. A compiler that disagrees must not build. WebAssembly has
// pointers of 32 bits; there the module and the host are one program, and no saved byte depends on these records.
#ifndef __wasm32__
static_assert(sizeof(PF_RationalScale) == 8 && alignof(PF_RationalScale) == 4);
static_assert(offsetof(PF_RationalScale, num) == 0 && sizeof(PF_RationalScale::num) == 4);
static_assert(offsetof(PF_RationalScale, den) == 4 && sizeof(PF_RationalScale::den) == 4);
static_assert(sizeof(PF_LRect) == 16 && alignof(PF_LRect) == 4);
static_assert(offsetof(PF_LRect, left) == 0 && sizeof(PF_LRect::left) == 4);
static_assert(offsetof(PF_LRect, top) == 4 && sizeof(PF_LRect::top) == 4);
static_assert(offsetof(PF_LRect, right) == 8 && sizeof(PF_LRect::right) == 4);
static_assert(offsetof(PF_LRect, bottom) == 12 && sizeof(PF_LRect::bottom) == 4);
static_assert(sizeof(PF_Rect) == 16 && alignof(PF_Rect) == 4);
static_assert(offsetof(PF_Rect, left) == 0 && sizeof(PF_Rect::left) == 4);
static_assert(offsetof(PF_Rect, top) == 4 && sizeof(PF_Rect::top) == 4);
static_assert(offsetof(PF_Rect, right) == 8 && sizeof(PF_Rect::right) == 4);
static_assert(offsetof(PF_Rect, bottom) == 12 && sizeof(PF_Rect::bottom) == 4);
static_assert(sizeof(PF_UnionableRect) == 16 && alignof(PF_UnionableRect) == 4);
static_assert(offsetof(PF_UnionableRect, left) == 0 && sizeof(PF_UnionableRect::left) == 4);
static_assert(offsetof(PF_UnionableRect, top) == 4 && sizeof(PF_UnionableRect::top) == 4);
static_assert(offsetof(PF_UnionableRect, right) == 8 && sizeof(PF_UnionableRect::right) == 4);
static_assert(offsetof(PF_UnionableRect, bottom) == 12 && sizeof(PF_UnionableRect::bottom) == 4);
static_assert(sizeof(PF_LegacyRect) == 8 && alignof(PF_LegacyRect) == 2);
static_assert(offsetof(PF_LegacyRect, top) == 0 && sizeof(PF_LegacyRect::top) == 2);
static_assert(offsetof(PF_LegacyRect, left) == 2 && sizeof(PF_LegacyRect::left) == 2);
static_assert(offsetof(PF_LegacyRect, bottom) == 4 && sizeof(PF_LegacyRect::bottom) == 2);
static_assert(offsetof(PF_LegacyRect, right) == 6 && sizeof(PF_LegacyRect::right) == 2);
static_assert(sizeof(PF_Point) == 8 && alignof(PF_Point) == 4);
static_assert(offsetof(PF_Point, h) == 0 && sizeof(PF_Point::h) == 4);
static_assert(offsetof(PF_Point, v) == 4 && sizeof(PF_Point::v) == 4);
static_assert(sizeof(PF_FixedPoint) == 8 && alignof(PF_FixedPoint) == 4);
static_assert(offsetof(PF_FixedPoint, x) == 0 && sizeof(PF_FixedPoint::x) == 4);
static_assert(offsetof(PF_FixedPoint, y) == 4 && sizeof(PF_FixedPoint::y) == 4);
static_assert(sizeof(PF_Pixel) == 4 && alignof(PF_Pixel) == 1);
static_assert(offsetof(PF_Pixel, alpha) == 0 && sizeof(PF_Pixel::alpha) == 1);
static_assert(offsetof(PF_Pixel, red) == 1 && sizeof(PF_Pixel::red) == 1);
static_assert(offsetof(PF_Pixel, green) == 2 && sizeof(PF_Pixel::green) == 1);
static_assert(offsetof(PF_Pixel, blue) == 3 && sizeof(PF_Pixel::blue) == 1);
static_assert(sizeof(PF_UnionablePixel) == 4 && alignof(PF_UnionablePixel) == 1);
static_assert(offsetof(PF_UnionablePixel, alpha) == 0 && sizeof(PF_UnionablePixel::alpha) == 1);
static_assert(offsetof(PF_UnionablePixel, red) == 1 && sizeof(PF_UnionablePixel::red) == 1);
static_assert(offsetof(PF_UnionablePixel, green) == 2 && sizeof(PF_UnionablePixel::green) == 1);
static_assert(offsetof(PF_UnionablePixel, blue) == 3 && sizeof(PF_UnionablePixel::blue) == 1);
static_assert(sizeof(PF_Pixel16) == 8 && alignof(PF_Pixel16) == 2);
static_assert(offsetof(PF_Pixel16, alpha) == 0 && sizeof(PF_Pixel16::alpha) == 2);
static_assert(offsetof(PF_Pixel16, red) == 2 && sizeof(PF_Pixel16::red) == 2);
static_assert(offsetof(PF_Pixel16, green) == 4 && sizeof(PF_Pixel16::green) == 2);
static_assert(offsetof(PF_Pixel16, blue) == 6 && sizeof(PF_Pixel16::blue) == 2);
static_assert(sizeof(PF_PixelFloat) == 16 && alignof(PF_PixelFloat) == 4);
static_assert(offsetof(PF_PixelFloat, alpha) == 0 && sizeof(PF_PixelFloat::alpha) == 4);
static_assert(offsetof(PF_PixelFloat, red) == 4 && sizeof(PF_PixelFloat::red) == 4);
static_assert(offsetof(PF_PixelFloat, green) == 8 && sizeof(PF_PixelFloat::green) == 4);
static_assert(offsetof(PF_PixelFloat, blue) == 12 && sizeof(PF_PixelFloat::blue) == 4);
static_assert(sizeof(PF_CompositeMode) == 12 && alignof(PF_CompositeMode) == 4);
static_assert(offsetof(PF_CompositeMode, xfer) == 0 && sizeof(PF_CompositeMode::xfer) == 4);
static_assert(offsetof(PF_CompositeMode, rand_seed) == 4 && sizeof(PF_CompositeMode::rand_seed) == 4);
static_assert(offsetof(PF_CompositeMode, opacity) == 8 && sizeof(PF_CompositeMode::opacity) == 1);
static_assert(offsetof(PF_CompositeMode, rgb_only) == 9 && sizeof(PF_CompositeMode::rgb_only) == 1);
static_assert(offsetof(PF_CompositeMode, opacitySu) == 10 && sizeof(PF_CompositeMode::opacitySu) == 2);
static_assert(sizeof(PF_FloatMatrix) == 72 && alignof(PF_FloatMatrix) == 8);
static_assert(offsetof(PF_FloatMatrix, mat) == 0 && sizeof(PF_FloatMatrix::mat) == 72);
#endif
