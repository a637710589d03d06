/// A picture taken apart into inks, and inks laid together on paper. Plain formulas on coded values, not a colour
/// engine: no profile of any press or paper is looked at.
///
/// Of a pixel R, G, B from 0 to 1:
///
///     c, m, y = 1 - R, 1 - G, 1 - B                  what each ideal ink would have to take away
///     K = strength * max(0, (min(c, m, y) - start) / (1 - start))
///     cyan = (c - K) / (1 - K), and so magenta and yellow; black = K
///     light = 0.298912 R + 0.586611 G + 0.114478 B; dark = 1 - light
///
/// so that cyan, magenta, yellow and black inks that are ideal, laid over each other, give R, G and B again. All
/// amounts are times the pixel's alpha.
#pragma once

#include "cli/screens/Recipe.h"
#include "cli/tone/AveragePicture.h"
#include "host/Image.h"

namespace cli {

/// The amount of ink at straight colors from 0 to 1, before levels; 0 to 1.
double inkAmount(Channel channel, double red, double green, double blue, const BlackGeneration& black);

/// What of the amount is printed; 0 to 1.
double leveled(double amount, const InkLevels& levels);

/// The picture that a screen is to print, opaque grey float: white where no ink goes, black where all goes.
/// @param picture  as premultiplied() gives it
standin::Image separated(const Plane& picture, const Pass& pass, const BlackGeneration& black);

/// Lays dots over what has been printed, opaque float.
/// @param dots  of any depth, with their own colors; moved by whole pixels, and nothing comes in at the edges
void layInk(const standin::Image& dots, Pass::Lay lay, int32_t right, int32_t down, standin::Image& print);

}  // namespace cli
