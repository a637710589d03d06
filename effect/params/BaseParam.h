// One control of the effect: what the host is told about it, and the way of its value into a plain record.
//
// A control is an object of one of the classes in ParamClasses.h. It holds the host's definition by value: before Add
// the template, after Fetch what the host returned. Rests on ParamGetter for where values come from.
//
// Threads: objects are shared by all instances and all threads that draw. Nobody locks them. Each fetch of a frame
// leaves its definition in the object, and with two frames side by side the later one overwrites the earlier one's;
// a frame reads its values, and gives them back, from its own definitions alone (FrameDefinitions in ParamGetter.h).
#pragma once

#include <cstdint>
#include <cstring>

#include "ae/InOutData.h"
#include "ae/Params.h"
#include "ae/Scalars.h"

namespace vindrel {

class ParamGetter;

/// Where the value of a control goes: `size` bytes at `offset` from the start of the record that Fetch is given.
/// A control without a value (a group) has size 0.
struct ParamTarget {
  uint32_t offset = 0;  ///< bytes
  uint32_t size = 0;    ///< bytes
};

/// A definition with all bytes zero, those between the fields too: what is padding in one kind of control is a field
/// in another.
inline PF_ParamDef zeroedDef() {
  PF_ParamDef def;
  std::memset(&def, 0, sizeof def);
  return def;
}

class BaseParam {
 public:
  /// Takes the next free host index from the counter in ParamTable.h.
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

}  // namespace vindrel
