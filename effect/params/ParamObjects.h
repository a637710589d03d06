// All controls of the effect as objects, by id and in the order of the host's list, and the passes over them.
//
// Made of the rows of ParamTable.h at the first entry into the module and shared by all instances. A control has
// two numbers: its id, kept by the host in projects, and its host index, its place in the list.
//
// Threads: nothing here is locked. Objects are made and deleted at the first call and at the set-down alone, while no
// frame is drawn. FetchAll and ReleaseAll run on any number of threads at once, each with a record and definitions of
// its own; AddAll, SaveAll and a fetch without a record come on the host's main thread while no frame is drawn.
#pragma once

#include <cstdint>

#include "ae/InOutData.h"
#include "ae/Scalars.h"
#include "effect/params/ParamClasses.h"
#include "effect/params/ParamGetter.h"

namespace vindrel {

inline constexpr int32_t paramSlots = 256;

/// The owners, by id; null where no control has that id.
extern BaseParam* byId[paramSlots];

/// The same objects in the order of the host's list, from entry 1 on without gaps; entry 0 and the rest are null.
extern BaseParam* byIndex[paramSlots + 1];

/// Host index of the next object made. Starts at 1 when the module is loaded and is never set back: the objects of a
/// second life, after a global set-down, go on counting.
extern int32_t nextHostIndex;

/// Deletes what byId holds and makes all controls anew. An exception in between leaves the objects made so far in byId,
/// with every group that was begun also ended.
void DeclareParams(PF_InData* in_data);

/// Deletes every object and nulls all of byId and byIndex.
void DropParams();

/// Place in the host's list of the control with this id, or 0 when there is none. The 0 is no error value: callers
/// use it as an index, so that an empty id addresses the layer itself.
/// @param id  0 to 255
int32_t HostIndexOf(int32_t id);

/// True when the host is After Effects and nobody sits at its screen. Throws a bare long 516 when After Effects does
/// not lend "PF AE App Suite" 6.
bool IsRenderEngine(PF_InData* in_data);

/// Adds every control to the host, in order, and stops at the first error, which it returns.
PF_Err AddAll(PF_InData* in_data, const char* settingsPath);

/// Fetches every control into the record at `target` (null: only into the objects) and stops at the first error.
/// What lies behind the failing control keeps what the record held.
PF_Err FetchAll(void* target, ParamGetter& getter);

/// Gives every control's value back and stops at the first error.
PF_Err ReleaseAll(ParamGetter& getter);

/// Writes the value that each object holds into the settings file.
void SaveAll(const char* settingsPath);

}  // namespace vindrel
