/// Arithmetic of half-open rectangles: left and top belong to a rectangle, right and bottom do not.
#pragma once

#include <algorithm>

#include "ae/Pixels.h"

namespace standin {

constexpr bool isEmpty(const PF_LRect& r) {
  return r.left >= r.right || r.top >= r.bottom;
}

/// What lies in both; {0, 0, 0, 0} when nothing does.
constexpr PF_LRect intersection(const PF_LRect& a, const PF_LRect& b) {
  const PF_LRect r{std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
                   std::min(a.bottom, b.bottom)};
  return isEmpty(r) ? PF_LRect{0, 0, 0, 0} : r;
}

/// True when every pixel of inner lies in outer; an empty rectangle lies in any.
constexpr bool contains(const PF_LRect& outer, const PF_LRect& inner) {
  return isEmpty(inner) || (inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
                            inner.bottom <= outer.bottom);
}

constexpr bool sameRect(const PF_LRect& a, const PF_LRect& b) {
  return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

}  // namespace standin
