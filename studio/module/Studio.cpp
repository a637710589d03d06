// The calls by which the page drives the effect: one instance of it in the stand-in host, its values, its pictures and
// its frames. Texts and pixels are read and written by the page in this program's own memory.
//
// Values lie in one table, four numbers a control in the host's order (what is not told is 0):
//   slider, angle (degrees)      the number
//   choice, check box            the item from 1; 0 or 1
//   colour                       red, green, blue, 0 to 255
//   place                        x, y, and 1 when they are percent of the layer, 0 when they are pixels at full size
//   layer                        0 none, 1 the picture itself, 2 + n the picture of slot n; then how it is prepared
//                                (cli/tone/Preparation.h): fit, 0 none, 1 stretch, 2 cover; blur, 0 none, -1 the dots'
//                                pitch, else pixels; tone, 0 none, 1 area, 2 light
// Codes are those of the host's interface, 0 for success.
#include <cstdint>
#include <cstring>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "ae/Constants.h"
#include "cli/ControlFacts.h"
#include "cli/HostControls.h"
#include "cli/UserError.h"
#include "cli/tone/PrepareLayers.h"
#include "host/ShrinkPicture.h"
#include "host/StandInHost.h"
#include "studio/module/ControlsJson.h"

/// The effect's one entry, linked into this program. The interface tells its form (PF_EffectEntryPoint).
extern "C" PF_Err EntryPointFunc(PF_Cmd command, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                                 PF_LayerDef* output, void* extra);

#define STUDIO_CALL(name) extern "C" __attribute__((export_name(#name)))

/// Asked of the page at every progress call of the effect; anything but 0 stops the frame.
extern "C" __attribute__((import_module("studio"), import_name("progress"))) int32_t studioProgress(int32_t done,
                                                                                                    int32_t total);

namespace {

using standin::ByIndex;
using standin::Depth;
using standin::Image;
using standin::LayerValue;
using standin::ParameterValues;

constexpr int32_t nothingDrawn = -1;
constexpr int32_t refused = -2;
constexpr int32_t stoppedByPage = 1;

/// A picture that the page gave: as bytes red, green, blue, alpha until it is first used, then as the host has it.
struct Slot {
  int32_t width = 0;
  int32_t height = 0;
  std::vector<uint8_t> bytes;
  std::shared_ptr<const Image> whole;                                      ///< 8 bits
  std::map<std::pair<Depth, int32_t>, std::shared_ptr<const Image>> made;  ///< by depth and down-sampling
};

struct Studio {
  standin::StandInHost host{EntryPointFunc, withoutPath()};
  std::vector<cli::ControlFacts> facts;
  cli::LayerPreparer preparer{host, facts};
  std::string complaint;
  std::string json;
  std::vector<double> table;
  std::vector<uint8_t> greyed;
  std::map<int32_t, Slot> slots;
  standin::FrameRequest request;
  std::shared_ptr<const Image> requested;  ///< the picture of which the request has a copy
  std::vector<uint8_t> pixels;             ///< of the last frame: red, green, blue, alpha, bytes or floats
  int32_t width = 0;
  int32_t height = 0;

  static standin::HostSettings withoutPath() {
    standin::HostSettings settings;
    settings.modulePath = "";
    return settings;
  }
};

/// Lives as long as the program: the page never takes it down.
std::unique_ptr<Studio>& theStudio() {
  static std::unique_ptr<Studio> theOne;
  return theOne;
}

std::shared_ptr<const Image> wholeOf(Slot& slot) {
  if (slot.whole) return slot.whole;
  const auto image = std::make_shared<Image>(Depth::k8, slot.width, slot.height);
  const uint8_t* from = slot.bytes.data();
  for (int32_t y = 0; y < slot.height; ++y) {
    auto* const row = image->row<PF_Pixel>(y);
    for (int32_t x = 0; x < slot.width; ++x, from += 4) row[x] = PF_Pixel{from[3], from[0], from[1], from[2]};
  }
  slot.bytes = {};
  slot.whole = image;
  return image;
}

std::shared_ptr<const Image> pictureOf(Slot& slot, Depth depth, int32_t downsample) {
  std::shared_ptr<const Image>& made = slot.made[{depth, downsample}];
  if (made) return made;
  const std::shared_ptr<const Image> whole = wholeOf(slot);
  if (depth == Depth::k8 && downsample == 1) {
    made = whole;
  } else if (downsample == 1) {
    made = std::make_shared<Image>(whole->converted(depth));
  } else {
    made = std::make_shared<Image>(standin::shrunk(*pictureOf(slot, depth, 1), downsample));
  }
  return made;
}

LayerValue layerFrom(Studio& s, double number) {
  if (number == 1.0) return LayerValue::itself();
  if (number < 2.0) return LayerValue::none();
  const auto found = s.slots.find(static_cast<int32_t>(number) - 2);
  if (found == s.slots.end()) return LayerValue::none();
  return {LayerValue::Source::kPicture, wholeOf(found->second)};
}

/// A channel of 0 to 255; what lies outside is drawn in.
A_u_char channel(double number) {
  return static_cast<A_u_char>(number < 0.0 ? 0.0 : number > 255.0 ? 255.0 : number);
}

ParameterValues valuesFromTable(Studio& s) {
  ParameterValues values = s.host.defaults();
  const double* v = s.table.data();
  for (const standin::Control& control : s.host.controls()) {
    const ByIndex key{control.index};
    switch (control.type) {
      case PF_Param_SLIDER:
      case PF_Param_FLOAT_SLIDER:
        values.setNumber(key, v[0]);
        break;
      case PF_Param_ANGLE:
        values.setAngle(key, v[0]);
        break;
      case PF_Param_CHECKBOX:
        values.setCheckbox(key, v[0] != 0.0);
        break;
      case PF_Param_POPUP:
        values.setPopup(key, static_cast<int32_t>(v[0]));
        break;
      case PF_Param_COLOR:
        values.setColor(key, PF_Pixel{255, channel(v[0]), channel(v[1]), channel(v[2])});
        break;
      case PF_Param_POINT:
        if (v[2] != 0.0) {
          values.setPointPercent(key, v[0], v[1]);
        } else {
          values.setPoint(key, v[0], v[1]);
        }
        break;
      case PF_Param_LAYER:
        values.setLayer(key, layerFrom(s, v[0]));
        break;
      default:
        break;
    }
    v += 4;
  }
  return values;
}

/// How the layers are to be prepared, by index. What is asked for the picture itself is done for the same picture as
/// one of its own, which the preparer knows again in the next frame.
std::map<int32_t, cli::Preparation> preparationsFromTable(Studio& s, ParameterValues& values) {
  using cli::Preparation;
  std::map<int32_t, Preparation> preparations;
  const double* v = s.table.data();
  for (const standin::Control& control : s.host.controls()) {
    if (control.type == PF_Param_LAYER) {
      Preparation preparation;
      preparation.fit = static_cast<Preparation::Fit>(v[1]);
      preparation.blur = v[2] == 0.0  ? Preparation::Blur::none
                         : v[2] < 0.0 ? Preparation::Blur::pitch
                                      : Preparation::Blur::pixels;
      preparation.blurPixels = v[2] > 0.0 ? v[2] : 0.0;
      preparation.tone = static_cast<Preparation::Tone>(v[3]);
      if (preparation.any()) {
        preparations[control.index] = preparation;
        if (v[0] == 1.0) {
          values.setLayer(ByIndex{control.index}, {LayerValue::Source::kPicture, wholeOf(s.slots.at(0))});
        }
      }
    }
    v += 4;
  }
  return preparations;
}

/// All but the layers, which the effect never changes.
void valuesToTable(Studio& s, const ParameterValues& values) {
  double* v = s.table.data();
  for (const standin::Control& control : s.host.controls()) {
    const ParameterValues::Value& value = values.value(control.index);
    if (const auto* whole = std::get_if<int32_t>(&value)) v[0] = *whole;
    if (const auto* number = std::get_if<double>(&value)) v[0] = *number;
    if (const auto* color = std::get_if<PF_Pixel>(&value)) {
      v[0] = color->red;
      v[1] = color->green;
      v[2] = color->blue;
    }
    if (const auto* point = std::get_if<standin::PointValue>(&value)) {
      v[0] = point->x;
      v[1] = point->y;
      v[2] = point->percent ? 1.0 : 0.0;
    }
    if (const auto* layer = std::get_if<LayerValue>(&value)) {
      if (layer->source != LayerValue::Source::kPicture)
        v[0] = layer->source == LayerValue::Source::kItself ? 1.0 : 0.0;
    }
    v += 4;
  }
}

PF_Err askForGreyed(Studio& s, const ParameterValues& values) {
  const PF_Err err = s.host.updateParamsUi(values);
  for (std::size_t i = 0; i < s.greyed.size(); ++i) s.greyed[i] = s.host.controls()[i].greyed() ? 1 : 0;
  return err;
}

/// Notes of single calls are for tests; over a long session they would pile up.
void forgetNotes(Studio& s) {
  s.host.log().clear();
  s.host.books().clear();
}

/// The drawn part in its place on the whole layer, clear around it, red first.
template <class Pixel, class Channel>
void layOut(Studio& s, const Image& drawn, int32_t width, int32_t height) {
  s.width = width;
  s.height = height;
  const std::size_t size = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4 * sizeof(Channel);
  const bool isWhole = drawn.originX == 0 && drawn.originY == 0 && drawn.width() == width && drawn.height() == height;
  if (!isWhole) s.pixels.assign(size, 0);
  s.pixels.resize(size);
  for (int32_t y = 0; y < drawn.height(); ++y) {
    const int32_t toY = y + drawn.originY;
    if (toY < 0 || toY >= height) continue;
    auto* const to = reinterpret_cast<Channel*>(s.pixels.data()) + static_cast<std::ptrdiff_t>(toY) * width * 4;
    const Pixel* const row = drawn.row<Pixel>(y);
    const int32_t first = drawn.originX < 0 ? -drawn.originX : 0;
    const int32_t end = drawn.width() < width - drawn.originX ? drawn.width() : width - drawn.originX;
    Channel* out = to + std::ptrdiff_t{first + drawn.originX} * 4;
    if constexpr (sizeof(Pixel) == 4) {
      // Alpha goes from the lowest byte of a word to the highest; so told, four pixels go at once.
      for (int32_t x = first; x < end; ++x, out += 4) {
        uint32_t word;
        std::memcpy(&word, &row[x], 4);
        word = word >> 8 | word << 24;
        std::memcpy(out, &word, 4);
      }
      continue;
    }
    for (int32_t x = first; x < end; ++x, out += 4) {
      out[0] = row[x].red;
      out[1] = row[x].green;
      out[2] = row[x].blue;
      out[3] = row[x].alpha;
    }
  }
}

}  // namespace

/// Sets the effect up, once, before every other call.
STUDIO_CALL(start) int32_t start() {
  theStudio() = std::make_unique<Studio>();
  Studio& s = *theStudio();
  if (const PF_Err err = s.host.start()) return err;
  s.facts = cli::factsOf(s.host.controls());
  s.json = studio::controlsJson(s.host.controls());
  s.table.assign(s.host.controls().size() * 4, 0.0);
  s.greyed.assign(s.host.controls().size(), 0);
  const ParameterValues defaults = s.host.defaults();
  valuesToTable(s, defaults);
  const PF_Err err = askForGreyed(s, defaults);
  forgetNotes(s);
  return err;
}

/// The controls (ControlsJson.h), closed by a zero.
STUDIO_CALL(controls) const char* controls() {
  return theStudio()->json.c_str();
}

/// The table of values; at the start it holds the defaults.
STUDIO_CALL(values) double* values() {
  return theStudio()->table.data();
}

/// A byte for each control, 1 where it is greyed, as of the last change.
STUDIO_CALL(greyed) const uint8_t* greyed() {
  return theStudio()->greyed.data();
}

/// Tells the effect that the user changed this control (its number from 1; 0: none, the table is simply another one).
/// It may change the table, and says anew what is greyed.
STUDIO_CALL(changed) int32_t changed(int32_t index) {
  Studio& s = *theStudio();
  ParameterValues values = valuesFromTable(s);
  PF_Err err = PF_Err_NONE;
  if (index != 0) {
    err = s.host.userChangedParam(ByIndex{index}, values).error;
    valuesToTable(s, values);
  }
  const PF_Err greying = askForGreyed(s, values);
  forgetNotes(s);
  return err != PF_Err_NONE ? err : greying;
}

/// Makes room for a picture: width * height pixels of red, green, blue, alpha, straight colour, 8 bits, to be filled in
/// before the next call. Slot 0 is the picture that is drawn on; the others are for layers. What a slot held before is
/// dropped. Null when there is no room.
STUDIO_CALL(picture) uint8_t* picture(int32_t slot, int32_t width, int32_t height) {
  try {
    Slot& place = theStudio()->slots[slot];
    place = Slot{};
    place.bytes.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
    place.width = width;
    place.height = height;
    return place.bytes.data();
  } catch (const std::bad_alloc&) {
    theStudio()->slots.erase(slot);
    return nullptr;
  }
}

/// Draws a frame on the picture of slot 0, by the road that the module offers.
/// @param downsample  1, 2 or 4
/// @param depth       8 or 32 bits a channel
/// @param time, step, scale  of the frame and its length, in 1 / scale seconds
/// @returns  0; an error, of which 1 (stopped) is the page's own wish; -1 when nothing was drawn; -2 when a layer can't
/// be
///           prepared as it is asked, of which complaint() tells
STUDIO_CALL(frame) int32_t frame(int32_t downsample, int32_t depth, int32_t time, int32_t step, int32_t scale) {
  Studio& s = *theStudio();
  const auto source = s.slots.find(0);
  if (source == s.slots.end()) return nothingDrawn;
  try {
    standin::FrameRequest& request = s.request;
    request.layerWidth = source->second.width;
    request.layerHeight = source->second.height;
    const auto wanted = pictureOf(source->second, depth == 32 ? Depth::k32 : Depth::k8, downsample);
    if (s.requested != wanted) {
      s.requested = nullptr;
      request.input = *wanted;
      s.requested = wanted;
    }
    if (request.input.empty()) return nothingDrawn;
    request.downsampleX = {1, static_cast<A_u_long>(downsample)};
    request.downsampleY = request.downsampleX;
    request.currentTime = time;
    request.timeStep = step;
    request.timeScale = static_cast<A_u_long>(scale);
    request.totalTime = time + step > 300 * step ? time + step : 300 * step;
    ParameterValues values = valuesFromTable(s);
    const auto preparations = preparationsFromTable(s, values);
    // The small frames by which dots are measured go by the classic road, on which the effect sees no greyed layer.
    if (!preparations.empty()) {
      if (const PF_Err err = askForGreyed(s, values)) return err;
    }
    bool stopped = false;
    // The small frames by which dots are measured can be stopped, too, and show no progress.
    s.host.onProgress = [&](A_long, A_long) {
      stopped = studioProgress(0, 0) != 0;
      return stopped ? stoppedByPage : PF_Err_NONE;
    };
    try {
      s.preparer.prepare(preparations, *wholeOf(source->second), request, values);
    } catch (const std::runtime_error& error) {
      s.complaint = error.what();
      forgetNotes(s);
      return stopped ? stoppedByPage : refused;
    }
    s.host.onProgress = [](A_long done, A_long total) { return studioProgress(done, total); };
    const standin::RenderResult result =
        s.host.smartRoadOffered() ? s.host.renderSmart(request, values) : s.host.renderClassic(request, values);
    forgetNotes(s);
    if (result.error != PF_Err_NONE) return result.error;
    if (!result.rendered) return nothingDrawn;
    const PF_LRect layer = request.layerRect();
    if (depth == 32) {
      layOut<PF_PixelFloat, float>(s, result.output, layer.right, layer.bottom);
    } else {
      layOut<PF_Pixel, uint8_t>(s, result.output, layer.right, layer.bottom);
    }
    return PF_Err_NONE;
  } catch (const std::bad_alloc&) {
    return PF_Err_OUT_OF_MEMORY;
  }
}

/// Why the last frame was refused: a line without a full stop, closed by a zero.
STUDIO_CALL(complaint) const char* complaint() {
  return theStudio()->complaint.c_str();
}

/// The last frame that succeeded: its pixels, red, green, blue, alpha, a byte or a float each, and its size.
STUDIO_CALL(framePixels) const uint8_t* framePixels() {
  return theStudio()->pixels.data();
}
STUDIO_CALL(frameWidth) int32_t frameWidth() {
  return theStudio()->width;
}
STUDIO_CALL(frameHeight) int32_t frameHeight() {
  return theStudio()->height;
}
