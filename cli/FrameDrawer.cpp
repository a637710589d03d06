#include "cli/FrameDrawer.h"

#include <algorithm>
#include <optional>
#include <system_error>
#include <utility>

#include "cli/ImageFile.h"
#include "cli/LayerWarnings.h"
#include "cli/UserError.h"
#include "host/ShrinkPicture.h"

namespace cli {
namespace {

namespace fs = std::filesystem;
using standin::FrameRequest;
using standin::Image;

FrameRequest requestFor(const Arguments& arguments, const FilePicture& picture, const fs::path& file, int32_t number) {
  FrameRequest request;
  // Effects draw nothing beyond their layer; so what is stored beyond the full image makes the layer larger.
  request.layerWidth = picture.image.width();
  request.layerHeight = picture.image.height();
  request.input = standin::shrunk(picture.image, arguments.downsample);
  request.input.originX = request.input.originY = 0;
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

/// The drawn part in its place among what the effect was given, clear around it.
Image onWholePicture(Image drawn, const Image& given) {
  const bool isWhole = drawn.originX == given.originX && drawn.originY == given.originY &&
                       drawn.width() == given.width() && drawn.height() == given.height();
  if (isWhole) return drawn;
  Image whole(drawn.depth(), given.width(), given.height());
  whole.originX = given.originX;
  whole.originY = given.originY;
  standin::withPixelOf(drawn.depth(), [&](auto pixel) {
    using Pixel = decltype(pixel);
    for (int32_t y = 0; y < drawn.height(); ++y) {
      for (int32_t x = 0; x < drawn.width(); ++x) {
        const int32_t toX = x + drawn.originX - whole.originX;
        const int32_t toY = y + drawn.originY - whole.originY;
        if (toX < 0 || toY < 0 || toX >= whole.width() || toY >= whole.height()) continue;
        whole.at<Pixel>(toX, toY) = drawn.at<Pixel>(x, y);
      }
    }
  });
  return whole;
}

/// What is known of a picture that was drawn smaller: its windows are the new size, and other channels don't fit it.
std::shared_ptr<const PictureFacts> factsOfSmaller(const PictureFacts& facts, const Image& drawn) {
  auto smaller = std::make_shared<PictureFacts>(facts);
  smaller->display = {0, 0, drawn.width(), drawn.height()};
  smaller->data = smaller->display;
  smaller->storedPixels.clear();
  return smaller;
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
std::vector<LayerText> stills(const std::vector<LayerText>& layers) {
  std::vector<LayerText> some;
  for (const LayerText& layer : layers) {
    if (!rowOfFiles(layer.picture)) some.push_back(layer);
  }
  return some;
}

void followRows(const std::vector<LayerText>& layers, const EffectSession& session, const LayerReader& readLayer,
                Animation& animation) {
  for (const LayerText& layer : layers) {
    auto files = rowOfFiles(layer.picture);
    if (!files) continue;
    animation.follow(findLayer(session.controls(), layer.name).index, std::move(*files), readLayer);
  }
}

/// From the weakest to the strongest: each preset and its keys, the keys' file, the table, and what was given by hand.
Animation animationOf(const Arguments& arguments, const PresetStack& presets, const EffectSession& session,
                      const LayerReader& readLayer) {
  const standin::ParameterValues all =
      session.values(presets.withLayers(stills), arguments.sets, stills(arguments.layers), readLayer);
  Animation animation(session.controls(), all, arguments.frameRate, arguments.start);
  const auto holdAll = [&](const auto& assignments) {
    for (const auto& given : assignments) {
      const int32_t index = findControl(session.controls(), given.name).index;
      animation.hold(index, all.value(index));
    }
  };
  for (const PresetStack::Layer& layer : presets.layers()) {
    holdAll(layer.preset.controls);
    holdAll(stills(layer.preset.layers));
    followRows(layer.preset.layers, session, readLayer, animation);
    animation.add(layer.preset.animation, layer.where);
  }
  if (!arguments.animation.empty()) {
    animation.add(readAnimation(arguments.animation), "animation '" + arguments.animation + "': ");
  }
  if (!arguments.valueTable.empty()) {
    animation.add(readValueTable(arguments.valueTable), "table '" + arguments.valueTable + "': ");
  }
  holdAll(arguments.sets);
  holdAll(stills(arguments.layers));
  followRows(arguments.layers, session, readLayer, animation);
  return animation;
}

/// How each layer is prepared, by index: as it is given last.
std::map<int32_t, Preparation> preparationsOf(const Arguments& arguments, const PresetStack& presets,
                                              const EffectSession& session) {
  std::map<int32_t, Preparation> preparations = presets.preparations(session.controls());
  for (const LayerText& layer : arguments.layers) {
    preparations[findControl(session.controls(), layer.name).index] = layer.preparation;
  }
  return preparations;
}

}  // namespace

FrameDrawer::FrameDrawer(const Arguments& arguments, const FramePictures& pictures, std::optional<int32_t> height)
    : arguments_(arguments),
      pictures_(pictures),
      session_(arguments.module, arguments.storedDefaults ? Defaults::stored : Defaults::builtIn),
      presets_(arguments.presets, arguments.pathsOfPreset),
      height_(height),
      scaled_(presets_.scaled(arguments.scale, height, session_.controls())),
      animation_(animationOf(arguments, scaled_, session_, pictures.layerReader())),
      preparations_(preparationsOf(arguments, scaled_, session_)),
      preparer_(session_.host(), session_.controls()),
      warnings_(missingLayers(session_.controls(), animation_.base())),
      smart_(takesSmartRoad(arguments.road, session_)) {}

FilePicture FrameDrawer::draw(const FilePicture& picture, const fs::path& file, int32_t number,
                              const std::function<void(int32_t, int32_t)>& progress) {
  goAlongWith(picture.image.height());
  standin::StandInHost& host = session_.host();
  const FrameRequest request = requestFor(arguments_, picture, file, number);
  standin::ParameterValues values = animation_.moves() ? animation_.at(number) : animation_.base();
  preparer_.prepare(preparations_, picture.image, request, values);
  std::string missing;
  if (animation_.moves()) {
    host.valueAt = [&](int32_t index, A_long time, A_u_long timeScale) {
      // A prepared picture stands for the whole frame.
      const auto preparation = preparations_.find(index);
      if (preparation != preparations_.end() && preparation->second.any()) return values.value(index);
      try {
        return animation_.at(index, time, timeScale);
      } catch (const UserError& error) {
        // Nothing may fly through the effect; the frame fails when it comes back.
        missing = error.what();
        return animation_.base().value(index);
      }
    };
  }
  // Only now, so that what was measured before shows no progress.
  host.onProgress = [&](A_long done, A_long total) {
    if (progress) progress(done, total);
    return PF_Err_NONE;
  };
  standin::RenderResult result = smart_ ? host.renderSmart(request, values) : host.renderClassic(request, values);
  host.onProgress = nullptr;
  host.valueAt = nullptr;
  // Notes of single calls are for tests; over a long shot they would pile up.
  host.log().clear();
  host.books().clear();
  if (!missing.empty()) throw UserError(missing);
  session_.check(result.error, "while drawing");
  if (!result.rendered) throw EffectError("the effect drew nothing");
  FilePicture drawn;
  drawn.image = onWholePicture(std::move(result.output), request.input);
  drawn.image.originX = picture.image.originX;
  drawn.image.originY = picture.image.originY;
  drawn.facts = arguments_.downsample == 1 ? picture.facts : factsOfSmaller(*picture.facts, drawn.image);
  return drawn;
}

void FrameDrawer::goAlongWith(int32_t height) {
  if (height == height_ || arguments_.scale || !presets_.dependsOnHeight()) return;
  scaled_ = presets_.scaled({}, height, session_.controls());
  animation_ = animationOf(arguments_, scaled_, session_, pictures_.layerReader());
  preparations_ = preparationsOf(arguments_, scaled_, session_);
  height_ = height;
}

}  // namespace cli
