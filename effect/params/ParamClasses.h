// The classes of controls: what each adds to a BaseParam, and how it shows itself to the host.
//
// Constructors take the row of the control (ControlRows.h), whose name must outlive the object, and the definition to
// start from. Which classes keep their value in the settings file is seen by who overrides SaveDefault.
#pragma once

#include <cstdint>

#include "ae/Params.h"
#include "ae/Pixels.h"
#include "ae/Scalars.h"
#include "effect/params/BaseParam.h"
#include "effect/params/ControlRows.h"

namespace vindrel {

class ParamAddColor final : public BaseParam {
 public:
  ParamAddColor(const ControlRow& row, const PF_ParamDef& definition);
  PF_Err Add(PF_InData* in_data, int32_t paramId, const char* settingsPath) override;
  void SaveDefault(const char* settingsPath) override;

  PF_Pixel defaultColor;  ///< its alpha plays no part: the host always gets 255
};

class ParamAddSlider final : public BaseParam {
 public:
  ParamAddSlider(const ControlRow& row, const PF_ParamDef& definition);
  PF_Err Add(PF_InData* in_data, int32_t paramId, const char* settingsPath) override;
  void SaveDefault(const char* settingsPath) override;

  int32_t validMin, validMax, sliderMin, sliderMax, defaultValue;
};

class ParamAddFloatSlider final : public BaseParam {
 public:
  ParamAddFloatSlider(const ControlRow& row, const PF_ParamDef& definition);
  PF_Err Add(PF_InData* in_data, int32_t paramId, const char* settingsPath) override;
  void SaveDefault(const char* settingsPath) override;

  float validMin, validMax, sliderMin, sliderMax;
  float defaultValue;
  int16_t precision;     ///< decimals shown
  int16_t displayFlags;  ///< PF_ValueDisplayFlag_PERCENT or 0
};

class ParamAddCheckbox final : public BaseParam {
 public:
  ParamAddCheckbox(const ControlRow& row, const PF_ParamDef& definition);
  PF_Err Add(PF_InData* in_data, int32_t paramId, const char* settingsPath) override;
  void SaveDefault(const char* settingsPath) override;

  int8_t defaultValue;
};

class ParamAddAngle final : public BaseParam {
 public:
  ParamAddAngle(const ControlRow& row, const PF_ParamDef& definition);
  PF_Err Add(PF_InData* in_data, int32_t paramId, const char* settingsPath) override;
  void SaveDefault(const char* settingsPath) override;

  PF_Fixed defaultValue;  ///< degrees, 16.16
};

class ParamAddPopup final : public BaseParam {
 public:
  ParamAddPopup(const ControlRow& row, const PF_ParamDef& definition);
  PF_Err Add(PF_InData* in_data, int32_t paramId, const char* settingsPath) override;
  void SaveDefault(const char* settingsPath) override;

  int16_t choiceCount;
  int16_t defaultValue;  ///< counted from 1
  const char* choices;   ///< items with | between; never owned
};

/// Its record field is a pointer: to the image inside the frame's own definition (without one inside the object's),
/// good until the next Fetch or Release, or null when the control is greyed or layers are deferred.
class ParamAddLayer final : public BaseParam {
 public:
  ParamAddLayer(const ControlRow& row, const PF_ParamDef& definition);
  PF_Err Fetch(void* target, ParamGetter& getter) override;
  PF_Err Add(PF_InData* in_data, int32_t paramId, const char* settingsPath) override;

  int32_t defaultLayer;  ///< PF_LayerDefault_MYSELF or PF_LayerDefault_NONE
};

class ParamAddPoint final : public BaseParam {
 public:
  ParamAddPoint(const ControlRow& row, const PF_ParamDef& definition);
  PF_Err Add(PF_InData* in_data, int32_t paramId, const char* settingsPath) override;

  PF_Fixed defaultX, defaultY;  ///< percent of the layer, 16.16
};

/// Opens a group; has no value.
class ParamAddTopic final : public BaseParam {
 public:
  ParamAddTopic(const ControlRow& row, const PF_ParamDef& definition);
  PF_Err Add(PF_InData* in_data, int32_t paramId, const char* settingsPath) override;
};

/// Closes a group; has no value, no name and an all-zero definition.
class ParamEndTopic final : public BaseParam {
 public:
  ParamEndTopic();
  PF_Err Add(PF_InData* in_data, int32_t paramId, const char* settingsPath) override;
};

}  // namespace vindrel
