// The filter as video programs call it: the functions of frei0r.h, each of them a few words to an Instance.

#include <cinttypes>

// All that this library shows; the header itself says neither that nor that it is C.
#pragma GCC visibility push(default)
extern "C" {
#include <frei0r.h>
}
#pragma GCC visibility pop

#include <cmath>
#include <exception>
#include <memory>
#include <string>

#include "ae/Constants.h"
#include "frei0r/Caller.h"
#include "frei0r/Effect.h"
#include "frei0r/Instance.h"

namespace {

using video::Effect;
using video::Instance;
using video::Parameter;

/// What a program holds for us; a pair, since programs ask for parameters by number.
struct Handle {
  std::shared_ptr<Effect> effect;
  Instance instance;
};

Handle& handleOf(f0r_instance_t instance) {
  return *static_cast<Handle*>(instance);
}

const Parameter* parameterOf(const Effect& effect, int index) {
  if (index < 0 || static_cast<std::size_t>(index) >= effect.parameters.size()) return nullptr;
  return &effect.parameters[static_cast<std::size_t>(index)];
}

/// A text on its way to a program, which doesn't change it.
char* lent(const std::string& text) {
  return const_cast<char*>(text.c_str());  // NOLINT: as the interface wants it
}

uint8_t byteFrom(float channel) {
  return channel > 0.0F ? static_cast<uint8_t>(std::lround(std::fmin(channel, 1.0F) * 255.0F)) : uint8_t{0};
}

int32_t begun = 0;

}  // namespace

int f0r_init() {
  if (video::sharedEffect() == nullptr) return 0;
  ++begun;
  return 1;
}

void f0r_deinit() {
  // A program with two filters begins and ends twice.
  if (begun > 0 && --begun == 0) video::dropSharedEffect();
}

void f0r_get_plugin_info(f0r_plugin_info_t* info) {
  const std::shared_ptr<Effect> effect = video::sharedEffect();
  info->name = "Vindrel";
  info->author = "QUILM";
  info->plugin_type = F0R_PLUGIN_TYPE_FILTER;
  info->color_model = F0R_COLOR_MODEL_RGBA8888;
  info->frei0r_version = FREI0R_MAJOR_VERSION;
  info->major_version = VINDREL_VERSION_MAJOR;
  info->minor_version = VINDREL_VERSION_MINOR;
  info->num_params = effect == nullptr ? 0 : static_cast<int>(effect->parameters.size());
  info->explanation = "A halftone: a lattice of dots over the picture";
}

void f0r_get_param_info(f0r_param_info_t* info, int param_index) {
  const std::shared_ptr<Effect> effect = video::sharedEffect();
  const Parameter* const parameter = effect == nullptr ? nullptr : parameterOf(*effect, param_index);
  if (parameter == nullptr) return;
  info->name = parameter->name.c_str();
  info->type = parameter->kind;
  info->explanation = parameter->explanation.c_str();
}

f0r_instance_t f0r_construct(unsigned int width, unsigned int height) {
  const std::shared_ptr<Effect> effect = video::sharedEffect();
  if (effect == nullptr) return nullptr;
  if (width < 1 || height < 1 || width > PF_MAX_WORLD_WIDTH || height > PF_MAX_WORLD_HEIGHT) {
    video::complain("frames of " + std::to_string(width) + " x " + std::to_string(height) + " pixels can't be drawn");
    return nullptr;
  }
  try {
    return new Handle{effect, Instance(effect, static_cast<int32_t>(width), static_cast<int32_t>(height))};
  } catch (const std::exception& error) {
    video::complain(error.what());
    return nullptr;
  }
}

void f0r_destruct(f0r_instance_t instance) {
  delete static_cast<Handle*>(instance);
}

void f0r_set_param_value(f0r_instance_t instance, f0r_param_t param, int param_index) {
  Handle& handle = handleOf(instance);
  const Parameter* const parameter = parameterOf(*handle.effect, param_index);
  if (parameter == nullptr || param == nullptr) return;
  switch (parameter->kind) {
    case F0R_PARAM_STRING: {
      const char* const text = *static_cast<f0r_param_string*>(param);
      handle.instance.setPreset(text == nullptr ? "" : text);
      break;
    }
    case F0R_PARAM_COLOR: {
      const auto& color = *static_cast<f0r_param_color_t*>(param);
      handle.instance.set(*parameter->control, cli::Color{byteFrom(color.r), byteFrom(color.g), byteFrom(color.b)});
      break;
    }
    case F0R_PARAM_POSITION: {
      const auto& place = *static_cast<f0r_param_position_t*>(param);
      handle.instance.set(*parameter->control, video::placeFrom(place.x, place.y));
      break;
    }
    default:
      handle.instance.set(*parameter->control, video::valueFrom(*parameter->control, *static_cast<double*>(param)));
      break;
  }
}

void f0r_get_param_value(f0r_instance_t instance, f0r_param_t param, int param_index) {
  const Handle& handle = handleOf(instance);
  const Parameter* const parameter = parameterOf(*handle.effect, param_index);
  if (parameter == nullptr || param == nullptr) return;
  if (parameter->kind == F0R_PARAM_STRING) {
    *static_cast<f0r_param_string*>(param) = lent(handle.instance.preset());
    return;
  }
  const cli::ControlValue value = handle.instance.value(*parameter->control);
  if (const auto* const color = std::get_if<cli::Color>(&value)) {
    const auto share = [](uint8_t channel) { return static_cast<float>(channel) / 255.0F; };
    *static_cast<f0r_param_color_t*>(param) = {share(color->red), share(color->green), share(color->blue)};
  } else if (const auto* const place = std::get_if<cli::Place>(&value)) {
    *static_cast<f0r_param_position_t*>(param) = {place->x / 100.0, place->y / 100.0};
  } else {
    *static_cast<double*>(param) = video::numberFor(*parameter->control, value);
  }
}

void f0r_update(f0r_instance_t instance, double time, const uint32_t* inframe, uint32_t* outframe) {
  const double seconds = video::tellsMilliseconds(__builtin_return_address(0)) ? time / 1000.0 : time;
  handleOf(instance).instance.draw(seconds, reinterpret_cast<const uint8_t*>(inframe),
                                   reinterpret_cast<uint8_t*>(outframe));
}
