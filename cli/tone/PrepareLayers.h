/// Prepares the pictures of layer controls on their way to the effect, as Preparation.h has it.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cli/ControlFacts.h"
#include "cli/tone/AveragePicture.h"
#include "cli/tone/Preparation.h"
#include "cli/tone/ToneCurve.h"
#include "host/FrameRequest.h"
#include "host/StandInHost.h"

namespace cli {

/// The tone of a pixel with alpha above 0, 0 black to 1 white. For Tone::area the mix by which the effect reads a map,
/// 0.298912 red + 0.586611 green + 0.114478 blue of the values as they are coded; for Tone::light 0.2126 red +
/// 0.7152 green + 0.0722 blue of the light that sRGB values stand for. Straight colours, held to 0 and 1.
float toneOf(float red, float green, float blue, Preparation::Tone tone);

class LayerPreparer {
 public:
  /// Both outlive the preparer.
  /// @param controls  of the host's effect
  LayerPreparer(standin::StandInHost& host, const std::vector<ControlFacts>& controls)
      : host_(host), controls_(controls) {}

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

  /// What a smoothed plane hangs on.
  struct Smoothing {
    Preparation preparation;
    int32_t width = 0;  ///< of the picture that is rendered
    int32_t height = 0;
    bool tones = false;  ///< tone and alpha alone
    Patch patch;
    std::shared_ptr<const standin::Image> picture;  ///< null: the picture that is rendered
    friend bool operator==(const Smoothing&, const Smoothing&) = default;
  };

  static Plane smoothed(const Smoothing& smoothing, const standin::LayerValue& given, const standin::Image& picture);
  const Plane& planeFor(int32_t index, const Preparation& preparation, const standin::LayerValue& given,
                        const standin::Image& picture, const standin::ParameterValues& values);

  standin::StandInHost& host_;
  const std::vector<ControlFacts>& controls_;
  // The last curve, and the settings that it was measured with: measuring draws many small frames, and most frames of
  // a shot share it.
  std::string measured_;
  std::optional<ToneCurve> curve_;
  // By index of the control the last plane of a layer's own picture: smoothing costs more than most frames.
  std::map<int32_t, std::pair<Smoothing, Plane>> smoothed_;
};

}  // namespace cli
