// The rasteriser once more, as plainly as it can be put: step by step, without a thought for speed, sharing nothing
// with the shipped one but the pixel types, the records and the circle's tables. Tests compare canvases byte by byte
// with what this draws; benchmarks show what the shipped one's short cuts are worth.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "effect/pixel/Pixel.h"
#include "effect/raster/CircleTables.h"
#include "effect/raster/DrawDot.h"
#include "effect/raster/Path.h"

namespace vindrel::plain {

inline int32_t trunc32(double v) {
  if (std::isnan(v)) return INT32_MIN;
  const double whole = std::trunc(v);
  if (whole < -2147483648.0 || whole > 2147483647.0) return INT32_MIN;
  return static_cast<int32_t>(whole);
}

/// The low 32 bits of an exact result.
inline int32_t wrap(int64_t v) {
  return static_cast<int32_t>(static_cast<uint32_t>(static_cast<uint64_t>(v)));
}

struct Run {
  int32_t start, end;
  friend bool operator==(const Run&, const Run&) = default;
};
using Runs = std::vector<Run>;

inline void append(Runs& list, Run run) {
  if (list.empty()) {
    list.push_back(run);
    return;
  }
  Run& t = list.back();
  if (wrap(int64_t{t.end} + 1) < run.start) {
    list.push_back(run);
  } else if (t.start <= run.end && t.start <= run.start && t.end < run.end) {
    t.end = run.end;
  }
}

inline Runs joined(const Runs& a, const Runs& b) {
  Runs result;
  std::size_t p = 0, q = 0;
  while (p < a.size() || q < b.size()) {
    if (q == b.size() || (p < a.size() && a[p].start < b[q].start)) {
      append(result, a[p++]);
    } else {
      append(result, b[q++]);
    }
  }
  return result;
}

inline Runs intersected(const Runs& a, const Runs& b) {
  if (a.empty()) return a;
  Runs kept;
  std::size_t i = 0, j = 0;
  Run p = a[0];
  bool hasRun = true;
  const auto nextRun = [&] {
    ++i;
    hasRun = i < a.size();
    if (hasRun) p = a[i];
  };
  const auto cutAtEndOf = [&](Run piece) {
    const bool last = j + 1 == b.size() || p.end < b[j + 1].start;
    const Run rest = last ? Run{0, 0} : Run{b[j + 1].end, p.end};
    kept.push_back(piece);
    ++j;
    if (last) {
      nextRun();
    } else {
      p = rest;
    }
  };
  while (hasRun && j < b.size()) {
    const Run q = b[j];
    if (p.end < q.start) {
      nextRun();
    } else if (q.end < p.start) {
      ++j;
    } else if (p.start <= q.start && p.end <= q.end) {
      kept.push_back({q.start, p.end});
      nextRun();
    } else if (p.start <= q.start) {
      cutAtEndOf({q.start, q.end});
    } else if (q.end > p.end) {
      kept.push_back(p);
      nextRun();
    } else {
      cutAtEndOf({p.start, q.end});
    }
  }
  if (hasRun && kept.empty()) {
    kept.push_back(p);
    kept.insert(kept.end(), a.begin() + static_cast<std::ptrdiff_t>(i) + 1, a.end());
  }
  return kept;
}

template <class Pixel>
void paint(Pixel& pixel, const Pixel& color, int32_t count) {
  const int64_t full = PixelTraits<Pixel>::fullScale;
  const int64_t lowBits = sizeof(pixel.alpha) == 1 ? 255 : 65535;
  const int64_t product = wrap(int64_t{color.alpha} * count);
  const int64_t a = trunc32(static_cast<double>(product) * 0.015625) & lowBits;
  using Channel = decltype(pixel.alpha);
  if (a == 0) return;
  if (pixel.alpha == 0 || a == full) {
    pixel.red = color.red;
    pixel.green = color.green;
    pixel.blue = color.blue;
    pixel.alpha = static_cast<Channel>(a);
    return;
  }
  const int64_t i = ((full - a) * pixel.alpha) >> (full == 255 ? 8 : 15);
  const int64_t t = (a + i) & lowBits;
  pixel.red = static_cast<Channel>(wrap(color.red * a + pixel.red * i) / t);
  pixel.green = static_cast<Channel>(wrap(color.green * a + pixel.green * i) / t);
  pixel.blue = static_cast<Channel>(wrap(color.blue * a + pixel.blue * i) / t);
  pixel.alpha = static_cast<Channel>(t);
}

inline void paint(Pixel32& pixel, const Pixel32& color, int32_t count) {
  const float product = static_cast<float>(count) * color.alpha;
  const float a = static_cast<float>(static_cast<double>(product) * 0.015625);
  if (a == 0.0F) return;
  if (pixel.alpha == 0.0F || a == 1.0F) {
    pixel = color;
    pixel.alpha = a;
    return;
  }
  const float rest = 1.0F - a;
  const float i = rest * pixel.alpha;
  const float t = i + a;
  float* const channels[] = {&pixel.red, &pixel.green, &pixel.blue};
  const float sources[] = {color.red, color.green, color.blue};
  for (int n = 0; n < 3; ++n) {
    const float fromColor = a * sources[n];
    const float fromOld = i * *channels[n];
    const float sum = fromColor + fromOld;
    *channels[n] = sum / t;
  }
  pixel.alpha = t;
}

struct Vertex {
  double x = 0, y = 0, tx = 0, ty = 0;
  int32_t iy = 0;
};

struct Edge {
  double yTop, yBottom, x, dxdy;
  int32_t winding;
};

/// @tparam watchCounts  keeps the largest and the smallest count that any pixel was painted with.
template <class Pixel, bool watchCounts = false>
class Rasterizer {
 public:
  Rasterizer(Pixel* firstPixel, int32_t columns, int32_t rowCount, int32_t bytesPerRow)
      : pixels(firstPixel), width(columns), height(rowCount), rowBytes(bytesPerRow) {}

  Pixel* pixels;
  int32_t width, height, rowBytes;
  PathMatrix matrix{};
  Pixel color{};
  std::vector<Vertex> vertices{};
  int32_t smallestCount = 0, largestCount = 0;
  int32_t convexFills = 0, generalFills = 0;

  void add(double x, double y) {
    Vertex v;
    v.x = x;
    v.y = y;
    vertices.push_back(v);
  }

  void finishPath() {
    if (vertices.size() < 3) return;
    const PathMatrix& m = matrix;
    const bool identity = m.a == 1 && m.b == 0 && m.c == 0 && m.d == 0 && m.e == 1 && m.f == 0;
    for (std::size_t i = vertices.size(); i-- > 0;) {
      Vertex& v = vertices[i];
      v.tx = identity ? v.x : m.b * v.y + v.x * m.a + m.c;
      v.ty = identity ? v.y : v.x * m.d + m.e * v.y + m.f;
    }
    const int32_t turns = yTurns();
    const bool convex = isConvex();
    if (convex && turns == 2) {
      ++convexFills;
      fillConvex();
    } else {
      ++generalFills;
      fillGeneral();
    }
  }

  int32_t yTurns() const {
    const std::size_t n = vertices.size();
    const auto before = [n](std::size_t i) { return i == 0 ? n - 1 : i - 1; };
    std::size_t i = 0;
    while (i < n && vertices[i].ty == vertices[before(i)].ty) ++i;
    if (i == n) return 1;
    const bool first = vertices[i].ty - vertices[before(i)].ty > 0;
    bool current = first;
    int32_t count = 0;
    if (i + 1 >= n) return count;
    for (std::size_t j = i + 1; j < n; ++j) {
      if (vertices[j].ty == vertices[j - 1].ty) continue;
      const bool down = vertices[j].ty - vertices[j - 1].ty > 0;
      if (down != current) {
        ++count;
        current = down;
      }
    }
    return current != first ? count + 1 : count;
  }

  bool isConvex() const {
    const std::size_t n = vertices.size();
    int flags = 0;
    for (std::size_t i = 0; i < n; ++i) {
      const Vertex& v = vertices[i];
      const Vertex& p = vertices[(i + n - 1) % n];
      const Vertex& q = vertices[(i + n - 2) % n];
      const double cross = (v.ty - q.ty) * (p.tx - q.tx) - (p.ty - q.ty) * (v.tx - q.tx);
      if (cross < 0) flags |= 1;
      if (cross > 0) flags |= 2;
    }
    return flags != 3;
  }

  void fillConvex() {
    const int32_t subHeight = wrap(int64_t{height} * 8);
    for (Vertex& v : vertices) {
      v.tx *= 8.0;
      v.ty *= 8.0;
      v.iy = trunc32(v.ty + 0.5);
    }
    firstRow = -1;
    const std::size_t n = vertices.size();
    std::size_t top = 0;
    for (std::size_t i = 1; i < n; ++i) {
      if (vertices[top].ty > vertices[i].ty) top = i;
    }
    for (Run& row : rows) row = {-1, -1};
    minStart = minEnd = 32767;
    maxStart = maxEnd = -1;
    std::size_t leftCur = top, leftNext = top, rightCur = top, rightNext = top;
    double leftX = 0, leftSlope = 0, rightX = 0, rightSlope = 0;
    int32_t y = vertices[top].iy;
    const auto setEdge = [&](std::size_t from, std::size_t to, double& x, double& slope) {
      const Vertex& v0 = vertices[from];
      const Vertex& v1 = vertices[to];
      double dy = v1.ty - v0.ty;
      if (dy == 0.0) dy = 1.0;
      slope = (v1.tx - v0.tx) / dy;
      x = ((y + 0.5) - v0.ty) * slope + v0.tx;
    };
    while (true) {
      while (y == vertices[leftNext].iy) {
        leftCur = leftNext;
        leftNext = leftNext == n - 1 ? 0 : leftNext + 1;
        setEdge(leftCur, leftNext, leftX, leftSlope);
        if (leftNext == rightCur) break;
      }
      if (y == vertices[rightNext].iy) {
        do {
          rightCur = rightNext;
          rightNext = rightNext == 0 ? n - 1 : rightNext - 1;
          setEdge(rightCur, rightNext, rightX, rightSlope);
        } while (rightNext != leftCur && y == vertices[rightNext].iy);
      }
      if (vertices[leftNext].iy < y || vertices[rightNext].iy < y) break;
      if (y >= 0 && y < subHeight) {
        if (rightX > leftX) {
          emitRow(leftX, rightX, y);
        } else {
          emitRow(rightX, leftX, y);
        }
      }
      leftX += leftSlope;
      rightX += rightSlope;
      ++y;
    }
    while ((y & 7) < 7) {
      rows[y & 7] = {-1, -1};
      ++y;
    }
    emitRow(-1.0, -1.0, y);
  }

  void fillGeneral() {
    double yMin = 1.7976931348623157e+308, yMax = 2.2250738585072014e-308;
    for (const Vertex& v : vertices) {
      if (v.ty < yMin) yMin = v.ty;
      if (v.ty > yMax) yMax = v.ty;
    }
    const int32_t firstSub = trunc32(yMin * 8 + 0.5);
    const int32_t lastSub = trunc32(yMax * 8 + 0.5);
    const Edge sentinel{-2147483648.0, 1.0, 2147483647.0, 1.0, -1};
    const auto n = static_cast<int32_t>(vertices.size());
    std::vector<Edge> edges;
    for (int32_t i = 0; i < n; ++i) {
      const Vertex& v = vertices[static_cast<std::size_t>(i)];
      const Vertex& p = vertices[static_cast<std::size_t>(i == 0 ? n - 1 : i - 1)];
      const double y0 = v.ty * 8, y1 = p.ty * 8, x0 = v.tx * 8, x1 = p.tx * 8;
      if (y0 > y1) {
        edges.push_back({y1, y0, x1, (x0 - x1) / (y0 - y1), -1});
      } else {
        edges.push_back({y0, y1, x0, (x1 - x0) / (y1 - y0), 1});
      }
    }
    edges.push_back(sentinel);
    const auto edge = [&edges](int32_t i) -> Edge& { return edges.at(static_cast<std::size_t>(i)); };
    for (int32_t i = n - 2; i >= 0; --i) {
      for (int32_t j = i; j < n - 1 && edge(j + 1).yTop > edge(j).yTop; ++j) std::swap(edge(j), edge(j + 1));
    }
    resetRows();
    lastSubRow = lastSub;
    int32_t pendEnd = n - 1, actEnd = n - 1;
    for (int64_t y64 = firstSub; y64 <= lastSub; ++y64) {
      const auto y = static_cast<int32_t>(y64);
      while (pendEnd >= 0 && trunc32(edge(pendEnd).yTop + 0.5) == y) --pendEnd;
      int32_t j = pendEnd + 1;
      while (j <= actEnd) {
        if (trunc32(edge(j).yBottom + 0.5) == y) {
          edge(j) = edge(actEnd);
          edge(actEnd) = sentinel;
          --actEnd;
        } else {
          ++j;
        }
      }
      for (int32_t i = actEnd - 1; i >= pendEnd + 1; --i) {
        for (int32_t k = i; k < actEnd && edge(k).x > edge(k + 1).x; ++k) std::swap(edge(k), edge(k + 1));
      }
      if (y >= 0 && y < wrap(int64_t{height} * 8)) {
        int32_t w = 0, open = -1;
        for (int32_t k = pendEnd + 1; k <= actEnd; ++k) {
          w += edge(k).winding;
          if (open < 0) {
            open = k;
          } else if (w == 0) {
            addSpan(trunc32(edge(open).x + 0.5), trunc32(edge(k).x + 0.5), y);
            open = -1;
          }
        }
      }
      if (ready || y == lastSub) flushRow(y);
      for (int32_t k = pendEnd + 1; k <= actEnd; ++k) edge(k).x += edge(k).dxdy;
    }
  }

  void drawDot(const DotRecord<Pixel>& dot) {
    if (dot.width == 0.0 || dot.height == 0.0) return;
    color = dot.color;
    PathMatrix& m = matrix;
    m.f = dot.x * m.d + dot.y * m.e + m.f;
    m.c = dot.y * m.b + dot.x * m.a + m.c;
    const double s = std::sin(dot.angle), k = std::cos(dot.angle);
    const double oldB = m.b, oldE = m.e;
    m.b = m.b * k - m.a * s;
    m.a = m.a * k + oldB * s;
    m.e = m.e * k - m.d * s;
    m.d = m.d * k + oldE * s;
    const double w = dot.width, h = dot.height;
    vertices.clear();
    if (dot.shape == 1) circle(0, 0, w, h);
    if (dot.shape == 2) square(w * -0.5, h * -0.5, w, h);
    if (dot.shape == 3) roundSquare(0, 0, w, h);
    if (dot.shape == 4) cross(0, 0, w, h);
    if (dot.shape == 5) star(0, 0, w, h);
    if (dot.shape == 6) diamond(w, h);
    if (!vertices.empty()) finishPath();
    matrix = PathMatrix{};
  }

 private:
  void circle(double x, double y, double w, double h) {
    const PathMatrix& m = matrix;
    const double x0 = m.b * y + x * m.a + m.c, y0 = x * m.d + m.e * y + m.f;
    const double x1 = m.b * (y + h) + (x + w) * m.a + m.c, y1 = (x + w) * m.d + m.e * (y + h) + m.f;
    const double dx = x1 - x0, dy = y1 - y0;
    int32_t n = trunc32(std::sqrt(dy * dy + dx * dx) * 6.283185307179586 * 0.125);
    if (n < 8) n = 8;
    double index = 0.0;
    for (int32_t i = 0; i < n; ++i) {
      const int32_t entry = trunc32(index);
      add(w * 0.5 * cosTable[entry] + x, h * 0.5 * sinTable[entry] + y);
      index += 720.0 / n;
    }
  }

  void square(double x, double y, double w, double h) {
    add(x, y);
    add(x + w, y);
    add(x + w, y + h);
    add(x, y + h);
  }

  void arc(double cx, double cy, double rx, double ry, double start, double end) {
    double angle = start;
    while (end > angle) {
      add(std::cos(angle) * rx + cx, std::sin(angle) * ry + cy);
      angle += 0.15707963267948966;
    }
  }

  void roundSquare(double x, double y, double w, double h) {
    const double L = x - w * 0.5, T = y - h * 0.5, rx = w * 0.2, ry = h * 0.2;
    const double Li = rx + L, Ri = 0.8 * w + L, Ti = ry + T, Bi = 0.8 * h + T, R = L + w, B = T + h;
    add(Li, T);
    add(Ri, T);
    arc(Ri, Ti, rx, ry, 4.71238898038469, 6.283185307179586);
    add(R, Ti);
    add(R, Bi);
    arc(Ri, Bi, rx, ry, 0, 1.5707963267948966);
    add(Ri, B);
    add(Li, B);
    arc(Li, Bi, rx, ry, 1.5707963267948966, 3.141592653589793);
    add(L, Bi);
    add(L, Ti);
    arc(Li, Ti, rx, ry, 3.141592653589793, 4.71238898038469);
  }

  void cross(double x, double y, double w, double h) {
    const double L = x - w * 0.5, T = y - h * 0.5;
    const double A = w * 0.35 + L, C = 0.6499999999999999 * w + L, D = h * 0.35 + T, E = 0.6499999999999999 * h + T;
    const double R = L + w, B = T + h;
    const std::pair<double, double> corners[] = {{A, T}, {C, T}, {C, D}, {R, D}, {R, E}, {C, E},
                                                 {C, B}, {A, B}, {A, E}, {L, E}, {L, D}, {A, D}};
    for (const auto& [cx, cy] : corners) add(cx, cy);
  }

  void star(double x, double y, double w, double h) {
    const double hw = w * 0.5, hh = h * 0.5;
    const double sin18 = std::sin(0.3141592653589793), cos18 = std::cos(0.3141592653589793);
    const double sin54 = std::sin(0.9424777960769379), cos54 = std::cos(0.9424777960769379);
    add(x, y - hh);
    add(x - cos54 * hw, sin54 * hh + y);
    add(cos18 * hw + x, y - sin18 * hh);
    add(x - cos18 * hw, y - sin18 * hh);
    add(cos54 * hw + x, sin54 * hh + y);
  }

  void diamond(double w, double h) {
    const double t = -(h * 0.5);
    add(0, t);
    add(w * 0.5, t + h * 0.5);
    add(0, t + h);
    add(0 - w * 0.5, t + h * 0.5);
  }

  void emitRow(double x0, double x1, int32_t y) {
    const int32_t s = trunc32(x0 + 0.5), e = trunc32(x1 - 0.5);
    const int32_t slot = y & 7;
    if (firstRow == -1) firstRow = slot;
    rows[slot] = {s, e};
    if (s < minStart) minStart = s;
    if (s > maxStart) maxStart = s;
    if (e < minEnd) minEnd = e;
    if (e > maxEnd) maxEnd = e;
    if (slot != 7) return;
    int32_t start = minStart >> 3, end = wrap(int64_t{maxEnd} + 8) >> 3;
    const int32_t row = y >> 3;
    if (start < width && end >= 0 && row >= 0 && row < height) {
      if (start < 0) start = 0;
      if (end > width - 1) end = width - 1;
      for (int32_t p = start; p <= end; ++p) {
        const int32_t c0 = p * 8, c1 = p * 8 + 7;
        int32_t count = 0;
        for (const Run& r : rows) {
          if (r.start <= c1 && c0 <= r.end) count += (r.end < c1 ? r.end : c1) - (r.start > c0 ? r.start : c0) + 1;
        }
        paintAt(p, row, count);
      }
    }
    minStart = minEnd = 32767;
    maxStart = maxEnd = -1;
    firstRow = -1;
  }

  void addSpan(int32_t start, int32_t end, int32_t y) {
    const int32_t slot = y & 7;
    append(subRows[slot], {start, end});
    if (coverageFirst == -1) coverageFirst = slot;
    coverageLast = slot;
    if (slot == 7 || y == lastSubRow) {
      solid = subRows[coverageFirst];
      for (int32_t r = coverageFirst + 1; r <= coverageLast; ++r) solid = intersected(solid, subRows[r]);
      for (Run& run : solid) run = {(run.start >> 3) + 1, (run.end >> 3) - 1};
      ready = true;
    }
  }

  void flushRow(int32_t y) {
    const int32_t row = y >> 3;
    if (row < 0 || row >= height) {
      resetRows();
      return;
    }
    Runs any;
    if (coverageFirst != -1) {
      any = subRows[coverageFirst];
      for (int32_t r = coverageFirst + 1; r <= coverageLast; ++r) any = joined(any, subRows[r]);
    }
    for (const Run& run : any) {
      int32_t s = run.start >> 3, e = wrap(int64_t{run.end} + 7) >> 3;
      if (!(s < width && e >= 0)) continue;
      if (s < 0) s = 0;
      if (e > width - 1) e = width - 1;
      for (int32_t p = s; p <= e; ++p) paintAt(p, row, countAt(p));
    }
    resetRows();
  }

  int32_t countAt(int32_t p) const {
    if (coverageFirst == 0 && coverageLast == 7) {
      for (const Run& run : solid) {
        if (run.end < p) continue;
        if (run.start <= p) return 64;
        break;
      }
    }
    const int32_t c0 = p * 8, c1 = p * 8 + 7;
    int64_t count = 0;
    if (coverageFirst <= coverageLast && coverageFirst >= 0) {
      for (int32_t r = coverageFirst; r <= coverageLast; ++r) {
        std::size_t k = 0;
        while (k < subRows[r].size() && subRows[r][k].end < c0) ++k;
        for (; k < subRows[r].size() && subRows[r][k].start <= c1; ++k) {
          const Run& run = subRows[r][k];
          count += int64_t{run.end < c1 ? run.end : c1} - (run.start > c0 ? run.start : c0) + 1;
        }
      }
    }
    return wrap(count);
  }

  void resetRows() {
    for (Runs& list : subRows) list.clear();
    lastSubRow = coverageFirst = coverageLast = -1;
    ready = false;
  }

  void paintAt(int32_t column, int32_t row, int32_t count) {
    if constexpr (watchCounts) {
      if (count < smallestCount) smallestCount = count;
      if (count > largestCount) largestCount = count;
    }
    auto* const bytes = reinterpret_cast<std::byte*>(pixels) + std::ptrdiff_t{rowBytes} * row;
    paint(reinterpret_cast<Pixel*>(bytes)[column], color, count);
  }

  Run rows[8]{};
  int32_t minStart = 0, maxStart = 0, minEnd = 0, maxEnd = 0, firstRow = -1;
  Runs subRows[8];
  Runs solid;
  int32_t lastSubRow = -1, coverageFirst = -1, coverageLast = -1;
  bool ready = false;
};

}  // namespace vindrel::plain
