#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "cli/Commands.h"
#include "cli/EffectSession.h"
#include "cli/ImageFile.h"
#include "cli/LayerWarnings.h"
#include "cli/ProgressBar.h"
#include "cli/ShrinkPicture.h"
#include "cli/UserError.h"

namespace cli {
namespace {

using standin::FrameRequest;
using standin::Image;

/// Times as the host counts them: whole units of 1/timeScale seconds.
void setTimes(int32_t frame, double framesPerSecond, FrameRequest& request) {
  const double nearest = std::round(framesPerSecond);
  const bool whole = framesPerSecond == nearest;
  // Rates such as 29.97 stand for 30000 / 1001.
  const bool broadcast = !whole && std::abs(framesPerSecond - nearest * 1000.0 / 1001.0) < 0.005;
  request.timeStep = whole ? 1 : broadcast ? 1001 : 1000;
  request.timeScale = static_cast<A_u_long>(whole       ? nearest
                                            : broadcast ? nearest * 1000.0
                                                        : std::round(framesPerSecond * 1000.0));
  request.currentTime = frame * request.timeStep;
  request.totalTime = std::max(request.currentTime + request.timeStep, 300 * request.timeStep);
}

FrameRequest requestFor(const Arguments& arguments, const Image& picture) {
  FrameRequest request;
  request.layerWidth = picture.width();
  request.layerHeight = picture.height();
  request.input = shrunk(picture, arguments.downsample);
  if (request.input.empty()) {
    throw UserError("'" + arguments.input.string() + "' is too small for --downsample " +
                    std::to_string(arguments.downsample));
  }
  request.downsampleX = {1, static_cast<A_u_long>(arguments.downsample)};
  request.downsampleY = request.downsampleX;
  setTimes(arguments.frame, arguments.framesPerSecond, request);
  return request;
}

/// The drawn part in its place on the whole layer, clear around it.
Image onWholeLayer(const Image& drawn, const FrameRequest& request) {
  const PF_LRect layer = request.layerRect();
  const bool isWhole =
      drawn.originX == 0 && drawn.originY == 0 && drawn.width() == layer.right && drawn.height() == layer.bottom;
  if (isWhole) return drawn;
  Image whole(drawn.depth(), layer.right, layer.bottom);
  standin::withPixelOf(drawn.depth(), [&](auto pixel) {
    using Pixel = decltype(pixel);
    for (int32_t y = 0; y < drawn.height(); ++y) {
      for (int32_t x = 0; x < drawn.width(); ++x) {
        const int32_t toX = x + drawn.originX;
        const int32_t toY = y + drawn.originY;
        if (toX < 0 || toY < 0 || toX >= whole.width() || toY >= whole.height()) continue;
        whole.at<Pixel>(toX, toY) = drawn.at<Pixel>(x, y);
      }
    }
  });
  return whole;
}

bool takesSmartRoad(Road road, EffectSession& session) {
  const bool offered = session.host().smartRoadOffered();
  if (road == Road::smart && !offered) throw UserError("this module can't take the smart road; give --road classic");
  return road == Road::asModuleSays ? offered : road == Road::smart;
}

}  // namespace

void renderPicture(const Arguments& arguments, const Surroundings& surroundings) {
  Image picture = readPicture(arguments.input, arguments.mostMemory);
  const standin::Depth depth = arguments.depth.value_or(picture.depth());
  checkWritable(arguments.output, depth);
  if (picture.depth() != depth) picture = picture.converted(depth);
  const FrameRequest request = requestFor(arguments, picture);

  std::optional<Preset> preset;
  if (arguments.preset) preset = readPreset(*arguments.preset, arguments.pathsOfPreset);
  EffectSession session(arguments.module, arguments.storedDefaults ? Defaults::stored : Defaults::builtIn);
  const standin::ParameterValues values =
      session.values(preset ? &*preset : nullptr, arguments.preset ? arguments.preset->string() : "", arguments.sets,
                     arguments.layers, arguments.mostMemory);
  for (const std::string& line : missingLayers(session.controls(), values)) {
    surroundings.err << "vindrel: warning: " << line << '\n';
  }

  const bool smart = takesSmartRoad(arguments.road, session);
  standin::RenderResult result;
  {
    ProgressBar bar(surroundings.err, surroundings.errIsTerminal, "Drawing");
    session.host().onProgress = [&bar](A_long done, A_long total) {
      bar.show(done, total);
      return PF_Err_NONE;
    };
    result = smart ? session.host().renderSmart(request, values) : session.host().renderClassic(request, values);
    session.host().onProgress = nullptr;
  }
  session.check(result.error, "while drawing");
  if (!result.rendered) throw EffectError("the effect drew nothing");
  writePicture(arguments.output, onWholeLayer(result.output, request),
               arguments.stamp ? Stamp::timeOfDay : Stamp::none);
}

}  // namespace cli
