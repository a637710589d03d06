// What the effect answers to each of the host's commands: one virtual operation a command, and the switch over them.
//
// Has no data: what lives between calls is global to the module, what lives for a frame is in its FrameRecord. Only
// CustomFilter is ever made; the operations that it overrides are here in the form of a filter that draws nothing.
// All operations return 0 for success and may throw; the module's entry is where exceptions end.
#pragma once

#include "ae/Constants.h"
#include "ae/InOutData.h"
#include "ae/SmartRender.h"

namespace vindrel {

struct FrameRecord;

class BaseFilter {
 public:
  BaseFilter() = default;
  virtual ~BaseFilter() = default;
  BaseFilter(const BaseFilter&) = delete;
  BaseFilter& operator=(const BaseFilter&) = delete;

  /// Calls the operation of a command. A command that has none, and any number that isn't a command, gives 0 and
  /// touches nothing.
  virtual PF_Err Dispatch(PF_Cmd command, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                          PF_LayerDef* output, void* extra);

  virtual PF_Err About(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[], PF_LayerDef* output);

  /// Tells version and flags. Looks at nothing and can't fail.
  virtual PF_Err GlobalSetup(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[], PF_LayerDef* output);

  /// Returns 0: the module's entry tears down what there is.
  virtual PF_Err GlobalSetdown(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[], PF_LayerDef* output);

  /// Adds the controls to the host, with their stored defaults, and tells how many there are, the layer itself
  /// counted; the number is told after an error too. In a second life of the module it goes on from the first.
  virtual PF_Err ParamsSetup(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[], PF_LayerDef* output);

  virtual PF_Err UserChangedParam(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[], PF_LayerDef* output,
                                  PF_UserChangedParamExtra* extra);
  virtual PF_Err UpdateParamsUi(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[], PF_LayerDef* output);

  // The two roads (Roads.h).
  virtual PF_Err Render(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[], PF_LayerDef* output);
  virtual PF_Err SmartPreRender(PF_InData* in_data, PF_OutData* out_data, PF_PreRenderExtra* extra);
  virtual PF_Err SmartRender(PF_InData* in_data, PF_OutData* out_data, PF_SmartRenderExtra* extra);

  // What an instance remembers (effect/params/SequenceRecord.h).

  /// Makes a new record; its handle is out_data->sequence_data. 4 when there is no memory, 512 when it can't be locked.
  virtual PF_Err SequenceSetup(PF_InData* in_data, PF_OutData* out_data);

  /// Disposes of in_data->sequence_data, if there is one. Always 0.
  virtual PF_Err SequenceSetdown(PF_InData* in_data, PF_OutData* out_data);

  /// Puts the flat form of out_data->sequence_data into a new handle, which takes its place; the old handle is not
  /// disposed of. The record has nothing yet that is worth storing, so it is always the same. 512 without a
  /// handle that can be locked, 4 when there is no memory.
  virtual PF_Err SequenceFlatten(PF_InData* in_data, PF_OutData* out_data);

  /// Makes a new record out of the flat form in in_data->sequence_data, which is not disposed of. Anything that isn't
  /// the flat form, or is missing, gives the record of a new instance, without an error. 4 and 512 as at the set-up;
  /// a new handle that can't be locked stays with the host.
  virtual PF_Err SequenceResetup(PF_InData* in_data, PF_OutData* out_data);

  /// Changes no flag and returns 0.
  virtual PF_Err QueryDynamicFlags(PF_InData* in_data, PF_OutData* out_data);

  /// Draws the frame into its output. This one can't draw, and says so with 512.
  virtual PF_Err RenderFrame(FrameRecord& frame);
};

}  // namespace vindrel
