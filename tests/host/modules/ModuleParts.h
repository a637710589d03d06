/// What the small modules share: a suite that is given back, and the plain way over the smart road.
#pragma once

#include <stdexcept>

#include "ae/AegpSuites.h"
#include "ae/AppSuites.h"
#include "ae/Constants.h"
#include "ae/InOutData.h"
#include "ae/PixelSuites.h"
#include "ae/SmartRender.h"
#include "ae/Suites.h"

namespace parts {

/// A suite for as long as this object lives. A host without it is not one that these modules run in.
template <class Table>
class Suite {
 public:
  Suite(PF_InData* in_data, const char* name, int32 version)
      : basic_(in_data->pica_basicP), name_(name), version_(version) {
    const void* table = nullptr;
    if (basic_->AcquireSuite(name, version, &table) != kSPNoError) throw std::runtime_error("a suite is missing");
    table_ = static_cast<const Table*>(table);
  }
  ~Suite() { basic_->ReleaseSuite(name_, version_); }
  Suite(const Suite&) = delete;
  Suite& operator=(const Suite&) = delete;
  const Table* operator->() const { return table_; }

 private:
  SPBasicSuite* basic_;
  const char* name_;
  int32 version_;
  const Table* table_ = nullptr;
};

/// What a registration calls back for each part of a module; the older form ends before support_url.
using Tell = A_Err (*)(void* token, const A_u_char* name, const A_u_char* match_name, const A_u_char* category,
                       const A_u_char* entry_name, A_long kind, A_long api_major, A_long api_minor, A_long reserved);
using Tell2 = A_Err (*)(void* token, const A_u_char* name, const A_u_char* match_name, const A_u_char* category,
                        const A_u_char* entry_name, A_long kind, A_long api_major, A_long api_minor, A_long reserved,
                        const A_u_char* support_url);

inline constexpr A_long kEffectKind = 0x65464B54;   ///< 'eFKT'
inline constexpr A_long kGeneralKind = 0x41456778;  ///< 'AEgx', a module that is no effect

inline const A_u_char* text(const char* letters) {
  return reinterpret_cast<const A_u_char*>(letters);
}

/// The layer itself as check-out 0, asked for with a border of margin pixels; the result is what is wanted of the layer
/// with that border.
inline PF_Err askForLayer(PF_InData* in_data, PF_PreRenderExtra& extra, A_long margin) {
  PF_RenderRequest request = extra.input->output_request;
  request.rect.left -= margin;
  request.rect.top -= margin;
  request.rect.right += margin;
  request.rect.bottom += margin;
  PF_CheckoutResult layer{};
  const PF_Err err = extra.cb->checkout_layer(in_data->effect_ref, 0, 0, &request, in_data->current_time,
                                              in_data->time_step, in_data->time_scale, &layer);
  if (err != PF_Err_NONE) return err;
  extra.output->result_rect = extra.input->output_request.rect;
  extra.output->max_result_rect = layer.max_result_rect;
  extra.output->max_result_rect.left -= margin;
  extra.output->max_result_rect.top -= margin;
  extra.output->max_result_rect.right += margin;
  extra.output->max_result_rect.bottom += margin;
  return PF_Err_NONE;
}

/// Takes check-out 0 and the output, draws, and checks in.
template <class Draw>
PF_Err drawSmart(PF_InData* in_data, PF_SmartRenderExtra& extra, Draw&& draw) {
  PF_EffectWorld* source = nullptr;
  PF_EffectWorld* target = nullptr;
  PF_Err err = extra.cb->checkout_layer_pixels(in_data->effect_ref, 0, &source);
  if (err == PF_Err_NONE) err = extra.cb->checkout_output(in_data->effect_ref, &target);
  if (err == PF_Err_NONE) err = draw(in_data, source, target);
  const PF_Err ended = extra.cb->checkin_layer_pixels(in_data->effect_ref, 0);
  return err != PF_Err_NONE ? err : ended;
}

}  // namespace parts
