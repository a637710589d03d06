#include "cli/color/ColorConversion.h"

#include <dlfcn.h>

#include <array>
#include <cstdlib>
#include <span>
#include <system_error>

#include "cli/NearestName.h"
#include "cli/UserError.h"
#include "cli/color/ConfiguredColors.h"
#include "cli/color/SrgbCurve.h"

namespace cli {
namespace {

class CurveConversion final : public ColorConversion {
 public:
  explicit CurveConversion(float (*curve)(float)) : curve_(curve) {}
  void apply(PF_PixelFloat* pixels, int32_t count) const override {
    for (PF_PixelFloat& pixel : std::span(pixels, static_cast<std::size_t>(count))) {
      pixel.red = curve_(pixel.red);
      pixel.green = curve_(pixel.green);
      pixel.blue = curve_(pixel.blue);
    }
  }

 private:
  float (*curve_)(float);
};

/// "srgb" or "linear", in any case.
std::string plainName(const std::string& name) {
  for (const char* known : {displaySpace, sceneSpace}) {
    if (equalIgnoringCase(name, known)) return known;
  }
  throw UserError("no colour space '" + name +
                  "' without a configuration, which OCIO names; there are srgb and linear" +
                  suggestion(name, {displaySpace, sceneSpace}));
}

/// A space in the configuration's own words.
std::string configuredName(const std::string& name) {
  if (equalIgnoringCase(name, displaySpace)) return "color_picking";
  if (equalIgnoringCase(name, sceneSpace)) return "scene_linear";
  return name;
}

/// The library of configurations takes longer to load than a small picture takes to render, so it lies in a part of its
/// own that is loaded when it is wanted. The part stays loaded.
std::unique_ptr<ColorConversion> configured(const std::string& from, const std::string& to,
                                            const std::filesystem::path& programFolder) {
  const std::filesystem::path part = programFolder / "vindrel_colors.so";
  void* const library = dlopen(part.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) {
    throw UserError("can't read the colour configuration that OCIO names: the program part '" + part.string() +
                    "' is missing");
  }
  const auto make = reinterpret_cast<MakeConfiguredColors*>(dlsym(library, makeConfiguredColorsName));
  if (make == nullptr) throw UserError("'" + part.string() + "' is no part of this program");
  std::array<char, 500> complaint{};
  std::unique_ptr<ColorConversion> conversion(
      make(configuredName(from).c_str(), configuredName(to).c_str(), complaint.data(), complaint.size()));
  if (conversion == nullptr) throw UserError(complaint.data());
  return conversion;
}

}  // namespace

std::unique_ptr<ColorConversion> colorConversion(const std::string& from, const std::string& to,
                                                 const std::filesystem::path& programFolder) {
  const char* const configuration = std::getenv("OCIO");
  if (configuration != nullptr && *configuration != '\0') {
    // Asked for also where both are one, so that a wrong name is told.
    std::unique_ptr<ColorConversion> conversion = configured(from, to, programFolder);
    return equalIgnoringCase(from, to) ? nullptr : std::move(conversion);
  }
  const std::string first = plainName(from);
  const std::string second = plainName(to);
  if (first == second) return nullptr;
  return std::make_unique<CurveConversion>(first == displaySpace ? lightFromSrgb : srgbFromLight);
}

}  // namespace cli
