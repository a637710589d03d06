/// Everything that a host knows, for its services and its roads; nobody else includes this.
///
/// The interface's services bear no host in their arguments (many not even an effect_ref), so they act on the current
/// host: the one whose call is running on this thread, else the one that called last.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ae/AegpSuites.h"
#include "ae/AppSuites.h"
#include "ae/InOutData.h"
#include "ae/PixelSuites.h"
#include "ae/Suites.h"
#include "host/Books.h"
#include "host/CallLog.h"
#include "host/Control.h"
#include "host/Faults.h"
#include "host/FrameRequest.h"
#include "host/HandleStore.h"
#include "host/HostSettings.h"
#include "host/LoadedModule.h"
#include "host/ParameterValues.h"

namespace standin {

class StandInHost;

/// A world that somebody holds. A record of a world carries its key in reserved0, so that copies are known too.
struct WorldInUse {
  Depth depth = Depth::k8;
  std::shared_ptr<const Image> picture;  ///< null when the pixels belong to somebody outside
  bool madeByEffect = false;             ///< else it is the host's and ends with its frame
  bool lasting = false;                  ///< stays known when the frame ends
  int32_t bookNumber = 0;                ///< of effects' worlds
  std::string name;                      ///< "input", "output", "canvas 3" ...
};

/// One pre-render and its render, as the services of the smart road see it.
struct SmartFrame {
  std::vector<LayerCheckout> checkouts;
  std::map<A_long, std::shared_ptr<const Image>> pictures;  ///< by check-out id
  std::map<A_long, PF_EffectWorld> worlds;                  ///< by check-out id, once asked for
  std::map<A_long, int32_t> bookNumbers;                    ///< by check-out id
  PF_EffectWorld output{};
};

struct HostState {
  StandInHost* owner = nullptr;
  PF_EffectEntryPoint entry = nullptr;
  const LoadedModule* module = nullptr;
  HostSettings settings;
  Faults faults;
  Books books;
  CallLog log;
  std::shared_ptr<HandleStore> handles = std::make_shared<HandleStore>();  ///< shared with hosts beside this one

  std::vector<Control> controls;
  std::deque<std::string> texts;  ///< what definitions of controls point at

  PF_InData in{};
  PF_OutData out{};
  PF_Handle globalData = nullptr;
  PF_Handle sequenceData = nullptr;
  PF_Handle frameData = nullptr;
  A_long numParams = 0;
  A_u_long version = 0;
  PF_OutFlags outFlags = 0;
  PF_OutFlags2 outFlags2 = 0;

  PF_Cmd running = -1;  ///< the command of the running call
  std::shared_ptr<const FrameRequest> frame;
  std::shared_ptr<const Image> input;  ///< of frame
  ParameterValues values;
  std::map<int32_t, std::shared_ptr<const Image>> layers;  ///< by index, of this frame, as far as asked for
  const PF_ParamDef* paramsBegin = nullptr;                ///< the running command's own array
  const PF_ParamDef* paramsEnd = nullptr;
  SmartFrame* smart = nullptr;

  std::map<uintptr_t, WorldInUse> worlds;
  uintptr_t lastWorldKey = 0;
  std::map<std::pair<std::string, int32_t>, std::vector<int32_t>> openSuites;  ///< book numbers
  std::map<int32_t, int32_t> openParams;                                       ///< mark in the record -> index

  std::vector<std::string> registeredNames;  ///< of modules, in the order of their numbers from 1
  void* layerMark = nullptr;                 ///< its address stands for things that no effect may open
  A_long customEvents = 0;                   ///< what register_ui asked for

  // Calls of the entry.
  PF_Err callEntry(PF_Cmd command, PF_ParamDef** params, PF_LayerDef* output, void* extra);
  /// Takes over a frame and its values. With keepOld a request without a size leaves the frame before it.
  void useFrame(const FrameRequest& request, const ParameterValues& newValues, bool keepOld);
  void endFrame();  ///< worlds of the frame are no longer known; guards are looked at
  PF_ProgPtr effectRef() { return reinterpret_cast<PF_ProgPtr>(this); }

  // What every service does first and last.
  std::optional<PF_Err> fault(std::string_view service) {
    return faults.armed() ? faults.happens(service) : std::nullopt;
  }
  /// Notes the call and gives result back.
  PF_Err note(std::string_view service, std::string arguments, PF_Err result);
  int32_t nextOrder() { return log.nextOrder++; }
  void complain(Matter matter, std::string text) { books.complain(matter, std::move(text), running); }
  void checkRef(PF_ProgPtr ref, std::string_view service);
  /// Tells progress, if total is not 0, and asks whether to go on; anything but 0 says stop.
  PF_Err askToGoOn(int64_t current, A_long total);

  // Worlds.
  PF_EffectWorld lend(std::shared_ptr<const Image> picture, std::string name, bool writeable);
  WorldInUse* find(const PF_EffectWorld& world);
  /// The depth of a world, of the host or of the effect's own making; nothing, with a complaint, for a record that no
  /// service can use.
  std::optional<Depth> depthOf(const PF_EffectWorld* world, std::string_view service);
  /// The depth of a world that is about to be written; a complaint, too, when it may only be read.
  std::optional<Depth> depthToWrite(const PF_EffectWorld* world, std::string_view service);
  /// The one depth of two worlds; nothing, with a complaint, when they differ.
  std::optional<Depth> commonDepth(std::string_view service, const PF_EffectWorld* source,
                                   const PF_EffectWorld* target);
  /// The picture of layer parameter index in this frame; null for none. Index 0 is the input.
  std::shared_ptr<const Image> layerPicture(int32_t index);
  /// The value of control index at another time than the frame's; nothing at the frame's own, or when nobody tells.
  std::optional<ParameterValues::Value> valueAt(int32_t index, A_long time, A_u_long timeScale) const;
  /// As layerPicture, at any time.
  std::shared_ptr<const Image> layerPictureAt(int32_t index, A_long time, A_u_long timeScale);

  /// The host that services act on; null when there is none.
  static HostState* current();
  static void setCurrent(HostState* state);
};

std::string rectText(const PF_LRect* rect);
std::string worldText(const PF_EffectWorld* world);

// The tables; one of each in the process.
PF_UtilCallbacks* utilTable();
PF_InteractCallbacks interactTable();
PF_ColorCallbacks colorCallbacks();
SPBasicSuite* basicTable();
const PF_HandleSuite1* handleSuite();
const PF_WorldSuite1* worldSuite1();
const PF_WorldSuite2* worldSuite2();
const PF_FillMatteSuite2* fillMatteSuite();
const PF_WorldTransformSuite1* worldTransformSuite();
const PFAppSuite4* appSuite6();
const PFAppSuite5* appSuite7();
const PFAppSuite6* appSuite1();
const PF_ParamUtilsSuite1* paramUtilsSuite2();
const PF_ParamUtilsSuite3* paramUtilsSuite3();
const PF_EffectUISuite* effectUiSuite();
const PF_Iterate8Suite* iterate8Suite();
const PF_Iterate16Suite* iterate16Suite();
const PF_IterateFloatSuite* iterateFloatSuite();
const PF_PixelDataSuite* pixelDataSuite();
const PF_ColorSuite* colorSuite();
const PF_Color16Suite* color16Suite();
const PF_ColorFloatSuite* colorFloatSuite();
const PF_Sampling8Suite* sampling8Suite();
const PF_Sampling16Suite* sampling16Suite();
const PF_SamplingFloatSuite* samplingFloatSuite();
const AEGP_UtilitySuite* aegpUtilitySuite();
const AEGP_RenderQueueSuite* renderQueueSuite();
const AEGP_MemorySuite* aegpMemorySuite();
const AEGP_PFInterfaceSuite* pfInterfaceSuite();
const AEGP_IterateSuite* aegpIterateSuite();

// Services that stand in more than one table.
PF_Handle newHandle(A_u_longlong size);
void* lockHandle(PF_Handle handle);
void unlockHandle(PF_Handle handle);
void disposeHandle(PF_Handle handle);
A_u_longlong handleSize(PF_Handle handle);
PF_Err resizeHandle(A_u_longlong size, PF_Handle* handle);
PF_Err newWorld1(PF_ProgPtr ref, A_long width, A_long height, PF_NewWorldFlags flags, PF_EffectWorld* world);
PF_Err disposeWorld1(PF_ProgPtr ref, PF_EffectWorld* world);
PF_Err fill8(PF_ProgPtr ref, const PF_Pixel* color, const PF_Rect* rect, PF_EffectWorld* world);
PF_Err fill16(PF_ProgPtr ref, const PF_Pixel16* color, const PF_Rect* rect, PF_EffectWorld* world);
PF_Err premultiply(PF_ProgPtr ref, A_long forward, PF_EffectWorld* world);
PF_Err premultiplyColor8(PF_ProgPtr ref, PF_EffectWorld* source, const PF_Pixel* color, A_long forward,
                         PF_EffectWorld* target);
PF_Err premultiplyColor16(PF_ProgPtr ref, PF_EffectWorld* source, const PF_Pixel16* color, A_long forward,
                          PF_EffectWorld* target);
PF_Err compositeRect(PF_ProgPtr ref, PF_Rect* sourceRect, A_long opacity, PF_EffectWorld* source, A_long targetX,
                     A_long targetY, PF_Field field, PF_XferMode xfer, PF_EffectWorld* target);
PF_Err blend(PF_ProgPtr ref, const PF_EffectWorld* first, const PF_EffectWorld* second, PF_Fixed ratio,
             PF_EffectWorld* target);
PF_Err convolve(PF_ProgPtr ref, PF_EffectWorld* source, const PF_Rect* area, PF_KernelFlags flags, A_long size,
                void* alpha, void* red, void* green, void* blue, PF_EffectWorld* target);
PF_Err transformWorld(PF_ProgPtr ref, PF_Quality quality, PF_ModeFlags modeFlags, PF_Field field,
                      const PF_EffectWorld* source, const PF_CompositeMode* mode, const PF_MaskWorld* mask,
                      const PF_FloatMatrix* matrices, A_long count, PF_Boolean sourceToTarget,
                      const PF_Rect* targetRect, PF_EffectWorld* target);
PF_Err beginOrEndSampling(PF_ProgPtr ref, PF_Quality quality, PF_ModeFlags modeFlags, PF_SampPB* params);
PF_Err updateParamUi(PF_ProgPtr ref, PF_ParamIndex index, const PF_ParamDef* definition);
PF_Err copy(PF_ProgPtr ref, PF_EffectWorld* source, PF_EffectWorld* target, PF_Rect* sourceRect, PF_Rect* targetRect);
PF_Err transfer(PF_ProgPtr ref, PF_Quality quality, PF_ModeFlags modeFlags, PF_Field field, const PF_Rect* sourceRect,
                const PF_EffectWorld* source, const PF_CompositeMode* mode, const PF_MaskWorld* mask, A_long targetX,
                A_long targetY, PF_EffectWorld* target);

// The three calls of the smart road.
PF_Err checkoutLayer(PF_ProgPtr ref, PF_ParamIndex index, A_long id, const PF_RenderRequest* request, A_long time,
                     A_long timeStep, A_u_long timeScale, PF_CheckoutResult* result);
PF_Err checkoutLayerPixels(PF_ProgPtr ref, A_long id, PF_EffectWorld** pixels);
PF_Err checkinLayerPixels(PF_ProgPtr ref, A_long id);
PF_Err checkoutOutput(PF_ProgPtr ref, PF_EffectWorld** output);

}  // namespace standin
