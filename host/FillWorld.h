/// Fills a part of a world with one colour, at all three depths; and turns a colour into that of another depth.
///
/// Works on plain windows; finding out what depth a world has is the caller's work. Colours are straight.
#pragma once

#include "ae/Pixels.h"
#include "ae/Worlds.h"
#include "host/Depth.h"

namespace standin {

/// Sets every pixel of rect (null: the whole world), cut to the world, to color.
template <class Pixel>
void fillWorld(PF_EffectWorld& world, const PF_Rect* rect, const Pixel& color);

/// A colour at another depth: to nearest, halves up, cut off to 0..full scale for whole-number depths.
template <class To, class From>
To convertPixel(const From& pixel);

}  // namespace standin
