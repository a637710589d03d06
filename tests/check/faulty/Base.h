/// A small honest effect that keeps every promise, with places at which a module with a planted fault does otherwise.
///
/// It mixes the layer with its opposite by an amount, and where a layer control shows a picture, by that picture's
/// alpha too. It works by either road at three depths, keeps a record as sequence data, and takes a handle and a suite
/// for each frame. A faulty module is `struct Fault : Honest` with one member replaced, and PLANT(Fault).
#pragma once

#include <algorithm>
#include <cstring>
#include <limits>

#include "ae/AppSuites.h"
#include "ae/Constants.h"
#include "ae/InOutData.h"
#include "ae/PixelSuites.h"
#include "ae/SmartRender.h"
#include "ae/Suites.h"

namespace faulty {

/// What an instance stores: no pointers, and a mark by which foreign bytes are known.
struct Record {
  A_long mark = 0;
  A_long length = 0;  ///< of words in use
  A_long words[6] = {};
};
inline constexpr A_long kMark = 0x0BEAD123;

/// A frame's values.
struct Values {
  double amount = 0;  ///< 0 to 100
  A_long kind = 1;    ///< 1 all colours, 2 red alone, 3 none
};

template <class Pixel>
constexpr double fullOf() {
  if constexpr (sizeof(Pixel) == sizeof(PF_Pixel)) return 255;
  if constexpr (sizeof(Pixel) == sizeof(PF_Pixel16)) return 32768;
  return 1;
}

/// A channel of 0 to full, rounded at whole numbers, where what is no number is 0.
template <class Channel>
Channel rounded(double value) {
  if constexpr (std::is_integral_v<Channel>) {
    return value > 0.0 ? static_cast<Channel>(std::min(value + 0.5, double{std::numeric_limits<Channel>::max()}))
                       : Channel{0};
  }
  return static_cast<Channel>(value);
}

template <class Pixel>
Pixel* rowOf(const PF_EffectWorld& world, A_long y) {
  return reinterpret_cast<Pixel*>(reinterpret_cast<char*>(world.data) +
                                  static_cast<std::ptrdiff_t>(y) * world.rowbytes);
}

struct Honest {
  // --- declared ---
  static constexpr PF_OutFlags flags = PF_OutFlag_DEEP_COLOR_AWARE;
  static constexpr PF_OutFlags2 flags2 = PF_OutFlag2_SUPPORTS_SMART_RENDER | PF_OutFlag2_FLOAT_COLOR_AWARE;
  static constexpr A_long amountId = 1;
  static constexpr A_long kindId = 2;
  static constexpr A_long maskId = 3;
  static constexpr PF_FpShort amountDefault = 70;
  static constexpr A_short kindsTold = 3;

  // --- places for faults ---
  static void atGlobalSetup() {}
  static void atGlobalSetdown() {}
  static void beforeFrame(PF_InData*, const PF_EffectWorld&, const Values&, bool) {}
  static void afterFrame(PF_InData*, const PF_EffectWorld&) {}
  static double amountOf(const Values& values, double, bool) { return values.amount; }
  static A_long lastRow(const PF_EffectWorld& output) { return output.height; }
  static A_long lastColumn(const PF_EffectWorld& output) { return output.width; }
  static PF_Err toldError(PF_Err error) { return error; }
  static PF_Err readRecord(const Record& from, size_t size, Record& to) {
    const bool whole = size >= sizeof from && from.mark == kMark && from.length >= 0 && from.length <= 6;
    to = whole ? from : freshRecord();
    return PF_Err_NONE;
  }
  static bool releasesSuite() { return true; }
  static bool disposesHandle() { return true; }
  static PF_Err withoutSuite() { return PF_Err_BAD_CALLBACK_PARAM; }
  static A_long kindIn(A_long stored) { return stored < 1 || stored > 3 ? 1 : stored; }

  static Record freshRecord() { return {kMark, 2, {5, 7}}; }
};

template <class Fault>
struct Module {
  static PF_Err globalSetup(PF_OutData* out) {
    out->my_version = 1 << 19;
    out->out_flags = Fault::flags;
    out->out_flags2 = Fault::flags2;
    Fault::atGlobalSetup();
    return PF_Err_NONE;
  }

  static PF_Err paramsSetup(PF_InData* in, PF_OutData* out) {
    PF_ParamDef def{};
    def.param_type = PF_Param_FLOAT_SLIDER;
    std::strcpy(def.name, "Amount");
    def.uu.id = Fault::amountId;
    def.u.fs_d.valid_max = def.u.fs_d.slider_max = 100;
    def.u.fs_d.dephault = Fault::amountDefault;
    def.u.fs_d.value = static_cast<double>(Fault::amountDefault);
    PF_Err err = in->inter.add_param(in->effect_ref, -1, &def);
    def = {};
    def.param_type = PF_Param_POPUP;
    std::strcpy(def.name, "Kind");
    def.uu.id = Fault::kindId;
    def.u.pd.num_choices = Fault::kindsTold;
    def.u.pd.dephault = 1;
    def.u.pd.value = 1;
    def.u.pd.u.namesptr = "All|Red|None";
    if (err == PF_Err_NONE) err = in->inter.add_param(in->effect_ref, -1, &def);
    def = {};
    def.param_type = PF_Param_LAYER;
    std::strcpy(def.name, "Mask");
    def.uu.id = Fault::maskId;
    if (err == PF_Err_NONE) err = in->inter.add_param(in->effect_ref, -1, &def);
    if (err == PF_Err_NONE) out->num_params = 4;
    return err;
  }

  static PF_Err makeRecord(PF_InData* in, PF_OutData* out, const Record& record) {
    PF_Handle handle = in->utils->host_new_handle(sizeof(Record));
    if (handle == nullptr) return PF_Err_OUT_OF_MEMORY;
    void* block = in->utils->host_lock_handle(handle);
    if (block == nullptr) {
      in->utils->host_dispose_handle(handle);
      return PF_Err_OUT_OF_MEMORY;
    }
    std::memcpy(block, &record, sizeof record);
    in->utils->host_unlock_handle(handle);
    out->sequence_data = handle;
    return PF_Err_NONE;
  }

  // What is stored may come from anywhere; a record of its own replaces it.
  static PF_Err resetup(PF_InData* in, PF_OutData* out) {
    Record record = Fault::freshRecord();
    PF_Handle old = in->sequence_data;
    if (old != nullptr) {
      const auto size = static_cast<size_t>(in->utils->host_get_handle_size(old));
      void* block = in->utils->host_lock_handle(old);
      if (block == nullptr) return PF_Err_OUT_OF_MEMORY;
      // A copy that is whole, also of a block that is too short for a record.
      Record stored{};
      std::memcpy(&stored, block, std::min(size, sizeof stored));
      in->utils->host_unlock_handle(old);
      if (const PF_Err err = Fault::readRecord(stored, size, record)) return err;
    }
    if (const PF_Err err = makeRecord(in, out, record)) return err;
    if (old != nullptr) in->utils->host_dispose_handle(old);
    return PF_Err_NONE;
  }

  template <class Pixel>
  static void mix(const PF_EffectWorld& source, const PF_EffectWorld* mask, const PF_EffectWorld& target,
                  const Values& values, bool smart) {
    constexpr double full = fullOf<Pixel>();
    const A_long offX = target.origin_x - source.origin_x;
    const A_long offY = target.origin_y - source.origin_y;
    const double amount = Fault::amountOf(values, full, smart) / 100;
    for (A_long y = 0; y < Fault::lastRow(target); ++y) {
      Pixel* to = rowOf<Pixel>(target, y);
      const bool inRows = y + offY >= 0 && y + offY < source.height;
      const Pixel* from = inRows ? rowOf<Pixel>(source, y + offY) : nullptr;
      for (A_long x = 0; x < Fault::lastColumn(target); ++x) {
        const A_long sx = x + offX;
        Pixel pixel{};
        if (from != nullptr && sx >= 0 && sx < source.width) {
          pixel = from[sx];
          double share = amount;
          // Layers lie at the layer's own top left.
          const A_long mx = x + target.origin_x;
          const A_long my = y + target.origin_y;
          if (mask != nullptr && mask->data != nullptr && mx >= 0 && my >= 0 && mx < mask->width && my < mask->height) {
            share *= static_cast<double>(rowOf<Pixel>(*mask, my)[mx].alpha) / full;
          }
          using Channel = decltype(pixel.red);
          const auto turned = [&](Channel value) {
            const auto number = static_cast<double>(value);
            return rounded<Channel>(number + share * (full - 2 * number));
          };
          if (values.kind != 3) pixel.red = turned(pixel.red);
          if (values.kind == 1) {
            pixel.green = turned(pixel.green);
            pixel.blue = turned(pixel.blue);
          }
        }
        to[x] = pixel;
      }
    }
  }

  static PF_Err draw(PF_InData* in, const PF_EffectWorld& source, const PF_EffectWorld* mask, PF_EffectWorld& target,
                     Values values, bool smart) {
    values.amount = std::clamp(values.amount, 0.0, 100.0);
    values.kind = Fault::kindIn(values.kind);
    const void* table = nullptr;
    if (in->pica_basicP == nullptr) return Fault::withoutSuite();
    if (in->pica_basicP->AcquireSuite(kPFWorldSuite, kPFWorldSuiteVersion2, &table) != kSPNoError || table == nullptr) {
      if (const PF_Err err = Fault::withoutSuite()) return err;
    }
    PF_PixelFormat format = 0;
    PF_Err err = static_cast<const PF_WorldSuite2*>(table)->PF_GetPixelFormat(&target, &format);
    PF_Handle scratch = nullptr;
    if (err == PF_Err_NONE) {
      scratch = in->utils->host_new_handle(64);
      if (scratch == nullptr) err = PF_Err_OUT_OF_MEMORY;
    }
    if (err == PF_Err_NONE) {
      Fault::beforeFrame(in, target, values, mask != nullptr);
      if (format == PF_PixelFormat_ARGB32) mix<PF_Pixel>(source, mask, target, values, smart);
      if (format == PF_PixelFormat_ARGB64) mix<PF_Pixel16>(source, mask, target, values, smart);
      if (format == PF_PixelFormat_ARGB128) mix<PF_PixelFloat>(source, mask, target, values, smart);
      Fault::afterFrame(in, target);
      err = in->inter.progress(in->effect_ref, 1, 1);
    }
    if (scratch != nullptr && Fault::disposesHandle()) in->utils->host_dispose_handle(scratch);
    if (Fault::releasesSuite()) in->pica_basicP->ReleaseSuite(kPFWorldSuite, kPFWorldSuiteVersion2);
    return err;
  }

  static PF_Err render(PF_InData* in, PF_ParamDef* params[], PF_LayerDef* output) {
    PF_ParamDef mask{};
    PF_Err err = in->inter.checkout_param(in->effect_ref, 3, in->current_time, in->time_step, in->time_scale, &mask);
    if (err != PF_Err_NONE) return Fault::toldError(err);
    const Values values{params[1]->u.fs_d.value, params[2]->u.pd.value};
    err = draw(in, params[0]->u.ld, mask.u.ld.data == nullptr ? nullptr : &mask.u.ld, *output, values, false);
    const PF_Err ended = in->inter.checkin_param(in->effect_ref, &mask);
    return Fault::toldError(err != PF_Err_NONE ? err : ended);
  }

  static PF_Err preRender(PF_InData* in, PF_PreRenderExtra* extra) {
    const PF_RenderRequest request = extra->input->output_request;
    PF_CheckoutResult layer{};
    PF_CheckoutResult mask{};
    PF_Err err = extra->cb->checkout_layer(in->effect_ref, 0, 0, &request, in->current_time, in->time_step,
                                           in->time_scale, &layer);
    if (err == PF_Err_NONE) {
      err = extra->cb->checkout_layer(in->effect_ref, 3, 1, &request, in->current_time, in->time_step, in->time_scale,
                                      &mask);
    }
    if (err != PF_Err_NONE) return Fault::toldError(err);
    extra->output->result_rect = layer.result_rect;
    extra->output->max_result_rect = layer.max_result_rect;
    return PF_Err_NONE;
  }

  static PF_Err oneValue(PF_InData* in, PF_ParamIndex index, PF_ParamDef& value) {
    if (const PF_Err err =
            in->inter.checkout_param(in->effect_ref, index, in->current_time, in->time_step, in->time_scale, &value)) {
      return err;
    }
    return in->inter.checkin_param(in->effect_ref, &value);
  }

  static PF_Err smartRender(PF_InData* in, PF_SmartRenderExtra* extra) {
    PF_ParamDef amount{};
    PF_ParamDef kind{};
    PF_Err err = oneValue(in, 1, amount);
    if (err == PF_Err_NONE) err = oneValue(in, 2, kind);
    PF_EffectWorld* source = nullptr;
    PF_EffectWorld* mask = nullptr;
    PF_EffectWorld* target = nullptr;
    if (err == PF_Err_NONE) err = extra->cb->checkout_layer_pixels(in->effect_ref, 0, &source);
    const bool sourceOut = err == PF_Err_NONE;
    if (err == PF_Err_NONE) err = extra->cb->checkout_layer_pixels(in->effect_ref, 1, &mask);
    const bool maskOut = err == PF_Err_NONE && sourceOut;
    if (err == PF_Err_NONE) err = extra->cb->checkout_output(in->effect_ref, &target);
    if (err == PF_Err_NONE && source != nullptr && target != nullptr) {
      err = draw(in, *source, mask, *target, {amount.u.fs_d.value, kind.u.pd.value}, true);
    }
    const auto giveBack = [&](bool out, A_long id) {
      const PF_Err ended = out ? extra->cb->checkin_layer_pixels(in->effect_ref, id) : PF_Err_NONE;
      if (err == PF_Err_NONE) err = ended;
    };
    giveBack(maskOut, 1);
    giveBack(sourceOut, 0);
    return Fault::toldError(err);
  }

  static PF_Err entry(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef* params[], PF_LayerDef* output,
                      void* extra) {
    switch (cmd) {
      case PF_Cmd_GLOBAL_SETUP:
        return globalSetup(out);
      case PF_Cmd_GLOBAL_SETDOWN:
        Fault::atGlobalSetdown();
        return PF_Err_NONE;
      case PF_Cmd_PARAMS_SETUP:
        return paramsSetup(in, out);
      case PF_Cmd_SEQUENCE_SETUP:
        return makeRecord(in, out, Fault::freshRecord());
      case PF_Cmd_SEQUENCE_RESETUP:
        return resetup(in, out);
      case PF_Cmd_SEQUENCE_SETDOWN:
        if (in->sequence_data != nullptr) in->utils->host_dispose_handle(in->sequence_data);
        out->sequence_data = nullptr;
        return PF_Err_NONE;
      case PF_Cmd_RENDER:
        return render(in, params, output);
      case PF_Cmd_SMART_PRE_RENDER:
        return preRender(in, static_cast<PF_PreRenderExtra*>(extra));
      case PF_Cmd_SMART_RENDER:
        return smartRender(in, static_cast<PF_SmartRenderExtra*>(extra));
      default:
        return PF_Err_NONE;
    }
  }
};

}  // namespace faulty

/// The module's entry.
#define PLANT(Fault)                                                                                        \
  extern "C" PF_Err EffectMain(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[], \
                               PF_LayerDef* output, void* extra) {                                          \
    return faulty::Module<Fault>::entry(cmd, in_data, out_data, params, output, extra);                     \
  }
