// The controls of the effect as the host meets them: what every control can do (BaseParam), and what each class adds to
// it.
//
// A control is an object of one of the classes below. It holds the host's definition by value: before Add the template,
// after Fetch what the host returned. Where values come from is a ParamGetter's business. Constructors take the row of
// the control (ParamTable.h), whose name must outlive the object, and the definition to start from. Which classes keep
// their value in the settings file is seen by who overrides SaveDefault.
//
// Threads: objects are shared by all instances and all threads that draw. Nobody locks them. Each fetch of a frame
// leaves its definition in the object, and with two frames side by side the later one overwrites the earlier one's;
// a frame reads its values, and gives them back, from its own definitions alone (FrameDefinitions in ParamGetter.h).
#pragma once

#include <cstdint>
#include <cstring>

#include "ae/InOutData.h"
#include "ae/Params.h"
#include "ae/Pixels.h"
#include "ae/Scalars.h"
#include "effect/params/ParamTable.h"

namespace vindrel {

class ParamGetter;

/// A definition with all bytes zero, those between the fields too: what is padding in one kind of control is a field
/// in another.
inline PF_ParamDef zeroedDef() {
  PF_ParamDef def;
  std::memset(&def, 0, sizeof def);
  return def;
}

class BaseParam {
 public:
  /// Takes the next free host index from the counter in ParamObjects.h.
  /// @param paramName  zero-ended and of static storage; at most 31 characters, since the host copies it into 32 bytes
  BaseParam(const char* paramName, ParamTarget target, const PF_ParamDef& definition);
  virtual ~BaseParam() = default;
  BaseParam(const BaseParam&) = delete;
  BaseParam& operator=(const BaseParam&) = delete;

  /// Gets the value, copies it, unconverted, into the record, and leaves its definition in `def`.
  /// @param target  start of the record, or null when only `def` is to be refreshed
  virtual PF_Err Fetch(void* target, ParamGetter& getter);

  /// Gives back what Fetch got. Nothing for a control without a value.
  virtual PF_Err Release(ParamGetter& getter);

  /// Adds the control at the end of the host's list.
  /// @param settingsPath  file with the user's defaults, or null for the built-in ones
  virtual PF_Err Add(PF_InData* in_data, int32_t paramId, const char* settingsPath) = 0;

  /// Writes the value in `def` into the settings file; nothing for classes whose values are not kept.
  virtual void SaveDefault(const char* settingsPath);

  const char* name;       ///< shown by the host, and the key in the settings file; never owned
  PF_ParamDef def;        ///< the template before Add, then what the host returned last
  int32_t id = 0;         ///< slot in byId; the host keeps it in saved projects, so it never changes
  int32_t hostIndex;      ///< place in the host's list, counted from 1; 0 is the layer itself
  uint32_t targetOffset;  ///< bytes from the start of the record
  uint32_t targetSize;    ///< bytes that Fetch copies; 0 for a control without a value

 protected:
  /// The last steps of every Add: type, name, id, and the call of the host.
  PF_Err addToHost(PF_InData* in_data, PF_ParamType type, int32_t paramId);

  /// Gets the value into `own`, and leaves it in `def` too, after an error as well.
  PF_Err get(ParamGetter& getter, PF_ParamDef& own);

  /// Writes `value` as "%d" under the control's name.
  void saveInteger(const char* settingsPath, int32_t value) const;
};

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
