// Where the values of controls come from: checked out from the host during rendering, or read from the array that the
// host passes with a command. Made on the stack for one pass over the controls.
//
// Controls are shared by all threads that draw, so that a frame takes its values into definitions of its own.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "ae/InOutData.h"
#include "ae/Params.h"
#include "ae/Scalars.h"

namespace vindrel {

/// One frame's own definitions of the controls, by id: what the host fills at the check-out and gets back at the
/// check-in. On the stack of the command that draws, and made a copy of the controls' own: a greyed layer is checked in
/// without having been checked out.
struct FrameDefinitions {
  FrameDefinitions();

  static constexpr int32_t count = 142;  ///< ids 0 to 141
  std::array<PF_ParamDef, count> byId;
};

/// Never deleted by this type, so that its table of operations holds the four below and no destructor.
class ParamGetter {
 public:
  /// @param own  null: values go straight into the controls' own definitions, which only a command may do that comes
  ///             while no frame is drawn
  explicit ParamGetter(FrameDefinitions* own = nullptr) : own_(own) {}
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

  /// The definition that the value of a control goes through: the frame's own, or `shared`.
  PF_ParamDef& definition(int32_t id, PF_ParamDef& shared) const {
    return own_ == nullptr ? shared : own_->byId[static_cast<std::size_t>(id)];
  }

 protected:
  ~ParamGetter() = default;

 private:
  FrameDefinitions* own_;
};

/// Checks values out at the current time. A failing check-out zeroes *def.
class GetParamByCheckout final : public ParamGetter {
 public:
  /// @param hostParams  the command's array, to see which controls are greyed; null: none is
  GetParamByCheckout(PF_InData* in_data, PF_ParamDef** hostParams, bool deferLayers, FrameDefinitions* own = nullptr)
      : ParamGetter(own), in_data_(in_data), params_(hostParams), deferLayers_(deferLayers) {}

  PF_Err Get(int32_t index, PF_ParamDef* def) override;
  PF_Err Checkin(PF_ParamDef* def) override;
  bool DeferLayers() override;
  bool IsEnabled(int32_t index) override;

 private:
  PF_InData* in_data_;
  PF_ParamDef** params_;
  bool deferLayers_;
};

/// Copies values from the command's array; there is nothing to give back.
class GetParamFromArray final : public ParamGetter {
 public:
  explicit GetParamFromArray(PF_ParamDef** hostParams) : params_(hostParams) {}

  PF_Err Get(int32_t index, PF_ParamDef* def) override;
  PF_Err Checkin(PF_ParamDef* def) override;
  bool DeferLayers() override;
  bool IsEnabled(int32_t index) override;

 private:
  PF_ParamDef** params_;
};

}  // namespace vindrel
