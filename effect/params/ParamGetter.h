// Where the values of controls come from: checked out from the host during rendering, or read from the array that the
// host passes with a command. Made on the stack for one pass over the controls.
#pragma once

#include <cstdint>

#include "ae/InOutData.h"
#include "ae/Params.h"
#include "ae/Scalars.h"

namespace vindrel {

/// Never deleted by this type, so that its table of operations holds the four below and no destructor.
class ParamGetter {
 public:
  ParamGetter() = default;
  ParamGetter(const ParamGetter&) = delete;
  ParamGetter& operator=(const ParamGetter&) = delete;

  /// Fills *def for the control at a place in the host's list.
  virtual PF_Err Get(int32_t index, PF_ParamDef* def) = 0;
  /// Gives a definition back.
  virtual PF_Err Checkin(PF_ParamDef* def) = 0;
  /// True when layers must not be fetched in this pass: the smart road requests them by check-out id.
  virtual bool DeferLayers() = 0;
  /// False when the control is greyed.
  virtual bool IsEnabled(int32_t index) = 0;

 protected:
  ~ParamGetter() = default;
};

/// Checks values out at the current time. A failing check-out zeroes *def.
class GetParamByCheckout final : public ParamGetter {
 public:
  /// @param hostParams  the command's array, to see which controls are greyed; null: none is
  GetParamByCheckout(PF_InData* inData, PF_ParamDef** hostParams, bool defer)
      : in_data(inData), params(hostParams), deferLayers(defer ? 1 : 0) {}

  PF_Err Get(int32_t index, PF_ParamDef* def) override;
  PF_Err Checkin(PF_ParamDef* def) override;
  bool DeferLayers() override;
  bool IsEnabled(int32_t index) override;

 private:
  PF_InData* in_data;
  PF_ParamDef** params;
  uint8_t deferLayers;
};

/// Copies values from the command's array; there is nothing to give back.
class GetParamFromArray final : public ParamGetter {
 public:
  explicit GetParamFromArray(PF_ParamDef** hostParams) : params(hostParams) {}

  PF_Err Get(int32_t index, PF_ParamDef* def) override;
  PF_Err Checkin(PF_ParamDef* def) override;
  bool DeferLayers() override;
  bool IsEnabled(int32_t index) override;

 private:
  PF_ParamDef** params;
};

}  // namespace vindrel
