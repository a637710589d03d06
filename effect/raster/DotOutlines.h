// The six outlines, one builder each: a fixed recipe of vertices around the middle of the dot.
//
// Every builder empties the rasteriser's outline, appends its vertices and has the outline filled. Curves exist only
// here and become straight lines at once. Aspect comes in through w and h, rotation and position through the context's
// matrix. All lengths are canvas pixels before the matrix, y grows downwards; w and h may be negative, which mirrors.
#pragma once

#include "effect/raster/PolygonRasterizer.h"

namespace vindrel {

/// Vertices of a circle in the box with its corner at (x, y): one for every 8 / (2 pi) pixels of the diagonal, at
/// least 8.
int32_t circleVertexCount(const PathMatrix& m, double x, double y, double w, double h);

/// (x, y) is the centre of the box. At least 8 vertices, one for about 1.27 pixels of the box's diagonal on the canvas.
template <class Pixel>
void addCircle(DrawContext<Pixel>& context, double x, double y, double w, double h);

/// (x, y) is the corner of the box, here alone.
template <class Pixel>
void addSquare(DrawContext<Pixel>& context, double x, double y, double w, double h);

/// (x, y) is the centre. The round corners take a fifth of each side; always 48 vertices.
template <class Pixel>
void addRoundSquare(DrawContext<Pixel>& context, double x, double y, double w, double h);

/// (x, y) is the centre. The arms are three tenths of the box wide and reach its sides.
template <class Pixel>
void addCross(DrawContext<Pixel>& context, double x, double y, double w, double h);

/// (x, y) is the centre. Five tips and no inner vertices: the sides cross, and the winding rule fills the middle.
template <class Pixel>
void addStar(DrawContext<Pixel>& context, double x, double y, double w, double h);

/// Always around the origin: x and y are not read.
template <class Pixel>
void addDiamond(DrawContext<Pixel>& context, double x, double y, double w, double h);

/// Appends vertices every 9 degrees along the ellipse around (cx, cy), from startAngle on and as long as the angle is
/// below endAngle; radians, clockwise on the screen. A quarter turn gives 10 vertices and stops 9 degrees short.
template <class Pixel>
void addArc(DrawContext<Pixel>& context, double cx, double cy, double rx, double ry, double startAngle,
            double endAngle);

}  // namespace vindrel
