/// A host for one effect instance: calls the effect's entry with everything an effect may ask for, and keeps books.
///
/// Rests on the interface in ae/ alone and drives any module of it. One host serves one module from its global set-up
/// to its set-down; services act on the host whose call is running, else on the one that called last. Not for threads.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ae/InOutData.h"
#include "ae/SmartRender.h"
#include "host/Books.h"
#include "host/CallLog.h"
#include "host/Control.h"
#include "host/Faults.h"
#include "host/FrameRequest.h"
#include "host/HostSettings.h"
#include "host/LoadedModule.h"
#include "host/ParameterValues.h"

namespace standin {

struct HostState;

/// A params array as a command gets it: closed by a null pointer, entry 0 the layer itself, the others the controls
/// with their values and their greyed state; layer parameters are not filled in.
class ParamArray {
 public:
  ParamArray(const std::vector<Control>& controls, const ParameterValues& values, const FrameRequest& frame,
             const PF_EffectWorld& input);
  PF_ParamDef** pointers() { return pointers_.data(); }
  PF_ParamDef& at(int32_t index) { return definitions_.at(static_cast<size_t>(index)); }
  int32_t size() const { return static_cast<int32_t>(definitions_.size()); }  ///< with the layer itself

 private:
  std::vector<PF_ParamDef> definitions_;
  std::vector<PF_ParamDef*> pointers_;
};

/// A finished PF_Cmd_SMART_PRE_RENDER. Holds the data that the effect left, which the host drops with the effect's own
/// function when discard() is called or this object goes, with or without a render before. Must not outlive its host.
class PreRendered {
 public:
  PreRendered(PreRendered&&) noexcept;
  PreRendered& operator=(PreRendered&&) noexcept;
  ~PreRendered();

  PF_Err error() const;
  PF_LRect resultRect() const;
  PF_LRect maxResultRect() const;
  PF_RenderOutputFlags flags() const;
  const std::vector<LayerCheckout>& checkouts() const;
  void* data() const;  ///< pre_render_data; null when there is none or it was dropped

  /// PF_Cmd_SMART_RENDER into a world of the result rectangle, which is cut to the request unless the effect returns
  /// extra pixels. Nothing is drawn when the pre-render failed or that rectangle is empty. At most once.
  RenderResult render();

  /// Drops the effect's data now.
  void discard();

 private:
  friend class StandInHost;
  struct State;
  explicit PreRendered(std::unique_ptr<State> state);
  std::unique_ptr<State> state_;
};

/// What PF_Cmd_USER_CHANGED_PARAM changed.
struct ChangedParams {
  PF_Err error = 0;
  std::vector<int32_t> indices;  ///< of the parameters that bear PF_ChangeFlag_CHANGED_VALUE, ascending
};

class StandInHost {
 public:
  /// A host for a loaded module, which must outlive it.
  explicit StandInHost(const LoadedModule& module, HostSettings settings = {});
  /// A host for an entry point in this program.
  explicit StandInHost(PF_EffectEntryPoint entry, HostSettings settings = {});
  ~StandInHost();
  StandInHost(const StandInHost&) = delete;
  StandInHost& operator=(const StandInHost&) = delete;

  // Commands. Each gives what the entry gave.
  PF_Err globalSetup();
  PF_Err paramsSetup();  ///< begins a new list of controls, all of them at their declared state
  PF_Err globalSetdown();
  PF_Err sequenceSetup();
  PF_Err sequenceResetup();
  PF_Err sequenceFlatten();
  PF_Err sequenceSetdown();
  PF_Err queryDynamicFlags(const ParameterValues& values, const FrameRequest& frame = {});
  PF_Err doDialog(const ParameterValues& values);
  PF_Err updateParamsUi(const ParameterValues& values, const FrameRequest& frame = {});
  /// Takes over into values what the effect changed and marked; layers are never taken over.
  ChangedParams userChangedParam(const ControlKey& key, ParameterValues& values, const FrameRequest& frame = {});
  std::string about();  ///< the text of PF_Cmd_ABOUT

  /// Global, parameter and sequence set-up; stops at the first error.
  PF_Err start();
  /// Sequence and global set-down; both are sent, the first error is given.
  PF_Err finish();

  /// Any command number with anything. The blocks are filled as for the command's own method, with the values and the
  /// frame last used; outData() shows what came back.
  PF_Err call(PF_Cmd command, PF_ParamDef** params = nullptr, PF_LayerDef* output = nullptr, void* extra = nullptr);

  // Frames.
  /// PF_Cmd_FRAME_SETUP, PF_Cmd_RENDER, PF_Cmd_FRAME_SETDOWN. The set-down is sent whenever the set-up succeeded. The
  /// render is left out when the set-up left width and height 0.
  RenderResult renderClassic(const FrameRequest& request, const ParameterValues& values);
  /// Pre-render and render; the effect's data is dropped before this returns.
  RenderResult renderSmart(const FrameRequest& request, const ParameterValues& values);
  PreRendered preRender(const FrameRequest& request, const ParameterValues& values);
  /// True when the effect's flags say that it can be rendered by the smart road.
  bool smartRoadOffered() const;

  // What the effect told.
  const std::vector<Control>& controls() const;
  const Control* control(const ControlKey& key) const;  ///< null when there is none
  ParameterValues defaults() const { return ParameterValues(controls()); }
  PF_OutFlags outFlags() const;
  PF_OutFlags2 outFlags2() const;
  A_u_long effectVersion() const;
  A_long numParams() const;  ///< as the effect wrote it; given to later commands too

  // The blocks of the last call, for tests of the last detail.
  const PF_InData& inData() const;
  const PF_OutData& outData() const;
  PF_ProgPtr effectRef() const;

  // Sequence data: kept between commands, locked during each, dropped by the effect.
  PF_Handle sequenceData() const;
  std::vector<uint8_t> sequenceBytes() const;  ///< a copy of the block; empty without a handle
  /// Makes a handle with these bytes the sequence data, as a project that is loaded. The handle before it stays open
  /// and is the caller's to put back.
  void loadSequence(const std::vector<uint8_t>& bytes);
  void setSequenceData(PF_Handle handle);
  /// Frees the sequence data as a host may after a flatten, without telling the effect.
  void dropSequence();

  // Arbitrary data: one value for each such parameter, from the parameters' set-up to the global set-down. Each throws
  // as ParameterValues does when there is no such control or it is of another kind.
  std::vector<uint8_t> arbitraryBytes(const ControlKey& key);  ///< flattened; empty when the effect can't
  bool setArbitraryBytes(const ControlKey& key, const std::vector<uint8_t>& bytes);  ///< false: the effect refused
  std::string arbitraryText(const ControlKey& key);                                  ///< as for the clipboard
  bool setArbitraryText(const ControlKey& key, const std::string& text);

  // Instruments.
  HostSettings& settings();
  Faults& faults();
  Books& books();
  CallLog& log();

  /// Asked at every progress call; anything but 0 goes to the effect as the answer.
  std::function<PF_Err(A_long current, A_long total)> onProgress;
  /// Asked at every abort call.
  std::function<PF_Err()> onAbort;
  /// Asked for the value of a control, by index, that an effect wants at another time than the frame's (time in
  /// 1/timeScale seconds). Without it the frame's own values hold at all times.
  std::function<ParameterValues::Value(int32_t index, A_long time, A_u_long timeScale)> valueAt;

  /// The services as an effect gets them, for tests that call them without an effect. They act on this host.
  PF_UtilCallbacks* utils();
  SPBasicSuite* basicSuite();
  PF_InteractCallbacks interact() const;
  /// Makes this host the one that services act on, until another one calls.
  void makeCurrent();
  /// Lends a picture as a world that the pixel services know the depth of, until the host goes. The picture must
  /// outlive the world's use.
  PF_EffectWorld lendWorld(const Image& image, const std::string& name);

 private:
  friend class PreRendered;
  std::unique_ptr<HostState> state_;
};

}  // namespace standin
