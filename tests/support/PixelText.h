// A pixel as a failing test tells it.
#pragma once

#include <sstream>
#include <string>

namespace vindrel::test {

/// Alpha, red, green and blue, of a pixel at any depth, the effect's or the host's.
template <class Pixel>
std::string textOf(const Pixel& pixel) {
  std::ostringstream out;
  out.precision(9);
  out << '(' << +pixel.alpha << ' ' << +pixel.red << ' ' << +pixel.green << ' ' << +pixel.blue << ')';
  return out.str();
}

}  // namespace vindrel::test
