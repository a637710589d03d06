#include "cli/FrameDrawer.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "cli/ImageFile.h"
#include "cli/LayerWarnings.h"
#include "cli/ShrinkPicture.h"
#include "cli/UserError.h"

namespace cli {
namespace {

namespace fs = std::filesystem;
using standin::FrameRequest;
using standin::Image;

FrameRequest requestFor(const Arguments& arguments, const Image& picture, const fs::path& file, int32_t number) {
  FrameRequest request;
  request.layerWidth = picture.width();
  request.layerHeight = picture.height();
  request.input = shrunk(picture, arguments.downsample);
  if (request.input.empty()) {
    throw UserError("'" + file.string() + "' is too small for --downsample " + std::to_string(arguments.downsample));
  }
  request.downsampleX = {1, static_cast<A_u_long>(arguments.downsample)};
  request.downsampleY = request.downsampleX;
  request.timeStep = arguments.frameRate.step;
  request.timeScale = static_cast<A_u_long>(arguments.frameRate.scale);
  request.currentTime = (number - arguments.start) * request.timeStep;
  request.totalTime = std::max(request.currentTime + request.timeStep, 300 * request.timeStep);
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

bool takesSmartRoad(Road road, const EffectSession& session) {
  const bool offered = session.host().smartRoadOffered();
  if (road == Road::smart && !offered) throw UserError("this module can't take the smart road; give --road classic");
  return road == Road::asModuleSays ? offered : road == Road::smart;
}

standin::ParameterValues valuesOf(const Arguments& arguments, const EffectSession& session) {
  std::optional<Preset> preset;
  if (arguments.preset) preset = readPreset(*arguments.preset, arguments.pathsOfPreset);
  return session.values(preset ? &*preset : nullptr, arguments.preset ? arguments.preset->string() : "", arguments.sets,
                        arguments.layers, arguments.mostMemory);
}

}  // namespace

FrameDrawer::FrameDrawer(const Arguments& arguments)
    : arguments_(arguments),
      session_(arguments.module, arguments.storedDefaults ? Defaults::stored : Defaults::builtIn),
      values_(valuesOf(arguments, session_)),
      warnings_(missingLayers(session_.controls(), values_)),
      smart_(takesSmartRoad(arguments.road, session_)) {}

Image FrameDrawer::read(const fs::path& file) const {
  Image picture = readPicture(file, arguments_.mostMemory);
  const standin::Depth depth = arguments_.depth.value_or(picture.depth());
  return picture.depth() == depth ? picture : picture.converted(depth);
}

Image FrameDrawer::draw(const Image& picture, const fs::path& file, int32_t number,
                        const std::function<void(int32_t, int32_t)>& progress) {
  standin::StandInHost& host = session_.host();
  const FrameRequest request = requestFor(arguments_, picture, file, number);
  host.onProgress = [&](A_long done, A_long total) {
    if (progress) progress(done, total);
    return PF_Err_NONE;
  };
  const standin::RenderResult result =
      smart_ ? host.renderSmart(request, values_) : host.renderClassic(request, values_);
  host.onProgress = nullptr;
  // Notes of single calls are for tests; over a long shot they would pile up.
  host.log().clear();
  host.books().clear();
  session_.check(result.error, "while drawing");
  if (!result.rendered) throw EffectError("the effect drew nothing");
  return onWholeLayer(result.output, request);
}

void FrameDrawer::write(const fs::path& file, const Image& picture) const {
  writePicture(file, picture, arguments_.writeChoices);
}

}  // namespace cli
