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

FrameDrawer::FrameDrawer(const Arguments& arguments, const FramePictures& pictures)
    : arguments_(arguments),
      pictures_(pictures),
      session_(arguments.module, arguments.storedDefaults ? Defaults::stored : Defaults::builtIn),
      animation_(animationOf(arguments, session_)),
      warnings_(missingLayers(session_.controls(), animation_.base())),
      smart_(takesSmartRoad(arguments.road, session_)) {}

FilePicture FrameDrawer::draw(const FilePicture& picture, const fs::path& file, int32_t number,
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

}  // namespace cli
