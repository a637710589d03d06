// The greying of controls once more, by names and in plain steps, for tests to compare with.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <ostream>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/PopupItems.h"

namespace vindrel::test {

/// The controls that decide, as a user sees them.
struct Deciders {
  struct OfEffector {
    int32_t enable = 0, map = radialMap, fit = 0, absolute = 0, color = 0;
  };
  int32_t mask = maskNormal;
  std::array<OfEffector, 3> effector{};
};

inline std::ostream& operator<<(std::ostream& out, const Deciders& deciders) {
  out << "Mask " << deciders.mask;
  for (const auto& e : deciders.effector) {
    out << "; Enable " << e.enable << " Effect Map " << e.map << " Fit to Layer " << e.fit << " Absolute " << e.absolute
        << " Color " << e.color;
  }
  return out;
}

/// What the host is told, in order: a control's name, or the empty text for the layer itself, and whether it is free.
using Tellings = std::vector<std::pair<std::string, bool>>;

inline Tellings greyingTwin(const Deciders& deciders) {
  Tellings told;
  if (deciders.mask == maskLayer) {
    told.emplace_back("Mask Target Layer", true);
  } else {
    told.emplace_back("Mask Target Layer", false);
  }
  if (deciders.mask == maskNone) {
    told.emplace_back("Invert Mask", false);
  } else {
    told.emplace_back("Invert Mask", true);
  }
  for (size_t i = 0; i < 3; ++i) {
    const Deciders::OfEffector& e = deciders.effector[i];
    const std::string n = " " + std::to_string(i + 1);
    const std::vector<std::string> general = {"Effect Map",
                                              "Angle",
                                              "Position",
                                              "Center Dot to Front",
                                              "Size",
                                              "Falloff",
                                              "Custom Map Layer",
                                              "Tiling",
                                              "Fit to Layer",
                                              "Pick Source Color",
                                              "Absolute",
                                              "ABS Size",
                                              "ABS Aspect",
                                              "ABS Rotation",
                                              "ABS Opacity",
                                              "",
                                              "Ratio Size",
                                              "Ratio Aspect",
                                              "Ratio Rotation",
                                              "Ratio Opacity",
                                              "",
                                              "Offset Size",
                                              "Offset Aspect",
                                              "Offset Rotation",
                                              "Offset Opacity",
                                              "Color",
                                              "Blend Mode",
                                              "Blend Color",
                                              "Shift Hue"};
    for (const std::string& name : general) {
      told.emplace_back(name.empty() ? "" : name + n, e.enable == 1);
    }
    if (e.enable != 1) continue;
    for (const char* name : {"Custom Map Layer", "Tiling", "Fit to Layer", "Pick Source Color"}) {
      told.emplace_back(name + n, e.map == customMap);
    }
    told.emplace_back("Size" + n, e.map != customMap);
    told.emplace_back("Falloff" + n, e.map != customMap);
    bool angle = false;
    if (e.map == customMap && e.fit == 0) angle = true;
    if (e.map == linearMap) angle = true;
    if (e.map == linearMirrorMap) angle = true;
    told.emplace_back("Angle" + n, angle);
    bool position = true;
    if (e.map == customMap && e.fit != 0) position = false;
    told.emplace_back("Position" + n, position);
    for (const char* name : {"ABS Size", "ABS Aspect", "ABS Rotation", "ABS Opacity"}) {
      told.emplace_back(name + n, e.absolute == 1);
    }
    told.emplace_back("Blend Mode" + n, e.color == 1);
    told.emplace_back("Blend Color" + n, e.color == 1);
  }
  return told;
}

/// What the user sees in the end: the last telling of each control counts.
inline std::map<std::string, bool> finalState(const Tellings& told) {
  std::map<std::string, bool> state;
  for (const auto& [name, free] : told) {
    if (!name.empty()) state[name] = free;
  }
  return state;
}

inline Deciders randomDeciders(std::mt19937& random) {
  const auto upTo = [&random](uint32_t n) { return static_cast<int32_t>(random() % n); };
  Deciders deciders;
  deciders.mask = 1 + upTo(3);
  for (auto& e : deciders.effector) {
    e = {upTo(4) != 0 ? 1 : 0, 1 + upTo(6), upTo(2), upTo(2), upTo(2)};
  }
  return deciders;
}

}  // namespace vindrel::test
