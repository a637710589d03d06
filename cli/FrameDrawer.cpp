#include "cli/FrameDrawer.h"

#include <algorithm>
#include <optional>
#include <system_error>
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

/// A layer's picture that is a row of numbered files; a name that looks so but is a file that there is, is that file.
std::optional<FramePattern> rowOfFiles(const std::string& text) {
  std::error_code ignored;
  return fs::exists(text, ignored) ? std::nullopt : FramePattern::in(text);
}

/// The layers that have one picture each.
std::vector<Assignment> stills(const std::vector<Assignment>& layers) {
  std::vector<Assignment> some;
  for (const Assignment& layer : layers) {
    if (!rowOfFiles(layer.text)) some.push_back(layer);
  }
  return some;
}

void followRows(const std::vector<Assignment>& layers, const EffectSession& session, uint64_t mostMemory,
                Animation& animation) {
  for (const Assignment& layer : layers) {
    auto files = rowOfFiles(layer.text);
    if (!files) continue;
    const ControlFacts& control = findControl(session.controls(), layer.name);
    if (control.kind != ControlKind::layer) throw UserError("'" + control.name + "' is no layer; give it by --set");
    animation.follow(control.index, std::move(*files), mostMemory);
  }
}

/// From the weakest to the strongest: the preset, its keys, the keys' file, the table, and what was given by hand.
Animation animationOf(const Arguments& arguments, const EffectSession& session) {
  std::optional<Preset> preset;
  const std::string presetName = arguments.preset ? arguments.preset->string() : "";
  if (arguments.preset) preset = readPreset(*arguments.preset, arguments.pathsOfPreset);
  const std::vector<Assignment> rows = preset ? preset->layers : std::vector<Assignment>();
  if (preset) preset->layers = stills(preset->layers);

  const standin::ParameterValues all = session.values(preset ? &*preset : nullptr, presetName, arguments.sets,
                                                      stills(arguments.layers), arguments.mostMemory);
  Animation animation(session.controls(), all, arguments.frameRate, arguments.start);
  followRows(rows, session, arguments.mostMemory, animation);
  if (preset) animation.add(preset->animation, "preset '" + presetName + "': ");
  if (!arguments.animation.empty()) {
    animation.add(readAnimation(arguments.animation), "animation '" + arguments.animation + "': ");
  }
  if (!arguments.valueTable.empty()) {
    animation.add(readValueTable(arguments.valueTable), "table '" + arguments.valueTable + "': ");
  }
  const auto holdAll = [&](const std::vector<Assignment>& assignments) {
    for (const Assignment& given : assignments) {
      const int32_t index = findControl(session.controls(), given.name).index;
      animation.hold(index, all.value(index));
    }
  };
  holdAll(arguments.sets);
  holdAll(stills(arguments.layers));
  followRows(arguments.layers, session, arguments.mostMemory, animation);
  return animation;
}

}  // namespace

FrameDrawer::FrameDrawer(const Arguments& arguments)
    : arguments_(arguments),
      session_(arguments.module, arguments.storedDefaults ? Defaults::stored : Defaults::builtIn),
      animation_(animationOf(arguments, session_)),
      warnings_(missingLayers(session_.controls(), animation_.base())),
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
  std::string missing;
  if (animation_.moves()) {
    host.valueAt = [&](int32_t index, A_long time, A_u_long timeScale) {
      try {
        return animation_.at(index, time, timeScale);
      } catch (const UserError& error) {
        // Nothing may fly through the effect; the frame fails when it comes back.
        missing = error.what();
        return animation_.base().value(index);
      }
    };
  }
  const standin::ParameterValues values = animation_.moves() ? animation_.at(number) : animation_.base();
  const standin::RenderResult result = smart_ ? host.renderSmart(request, values) : host.renderClassic(request, values);
  host.onProgress = nullptr;
  host.valueAt = nullptr;
  // Notes of single calls are for tests; over a long shot they would pile up.
  host.log().clear();
  host.books().clear();
  if (!missing.empty()) throw UserError(missing);
  session_.check(result.error, "while drawing");
  if (!result.rendered) throw EffectError("the effect drew nothing");
  return onWholeLayer(result.output, request);
}

void FrameDrawer::write(const fs::path& file, const Image& picture) const {
  writePicture(file, picture, arguments_.writeChoices);
}

}  // namespace cli
