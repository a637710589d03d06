/// Prepares the pictures of layer controls on their way to the effect, as LayerText.h has it.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "cli/EffectSession.h"
#include "cli/tone/LayerText.h"
#include "cli/tone/ToneCurve.h"
#include "host/FrameRequest.h"

namespace cli {

/// The tone of a pixel with alpha above 0, 0 black to 1 white. For Tone::area the mix by which the effect reads a map,
/// 0.298912 red + 0.586611 green + 0.114478 blue of the values as they are coded; for Tone::light 0.2126 red +
/// 0.7152 green + 0.0722 blue of the light that sRGB values stand for. Straight colours, held to 0 and 1.
float toneOf(float red, float green, float blue, Preparation::Tone tone);

/// How the presets have layers prepared, by index of the control: as the last preset says that names it.
std::map<int32_t, Preparation> preparationsOf(const PresetStack& presets, const EffectSession& session);

class LayerPreparer {
 public:
  /// @param session  outlives the preparer
  explicit LayerPreparer(EffectSession& session) : session_(session) {}

  /// Gives the layers their prepared pictures.
  /// @param preparations  by index of the layer control; controls without a picture are left alone
  /// @param picture       that is rendered, at full size
  /// @param request       of the frame
  /// @throws UserError for a tone where no dots follow the layer
  void prepare(const std::map<int32_t, Preparation>& preparations, const standin::Image& picture,
               const standin::FrameRequest& request, standin::ParameterValues& values);

 private:
  const ToneCurve& curveFor(const std::string& effector, int32_t layer, const standin::FrameRequest& request,
                            const standin::ParameterValues& values);

  EffectSession& session_;
  // The last curve, and the settings that it was measured with: measuring draws many small frames, and most frames of
  // a shot share it.
  std::string measured_;
  std::optional<ToneCurve> curve_;
};

}  // namespace cli
