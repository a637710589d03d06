/// Which services an effect called, in order and with their main arguments, for tests to look into.
///
/// Each record bears an order number from one count over all kinds, so that calls of different kinds can be compared.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ae/Callbacks.h"
#include "ae/Pixels.h"
#include "ae/SmartRender.h"
#include "ae/Worlds.h"

namespace standin {

/// Any call: the service's name, as Faults names it without a suite's own, and its main arguments as text.
struct Call {
  int32_t order = 0;
  std::string service;    ///< "AcquireSuite", "fill", "host_new_handle" ...
  std::string arguments;  ///< "PF World Suite 2", "handle 3 (32 bytes)" ...
  PF_Cmd command = 0;     ///< during which command
  PF_Err result = 0;      ///< what the service answered; 4 where it gave a null pointer
};

struct NewWorldCall {
  int32_t order = 0;
  int32_t suiteVersion = 0;  ///< 1 for new_world (suite or utils), 2 for PF_NewWorld
  int32_t width = 0;
  int32_t height = 0;
  int32_t flags = 0;  ///< of new_world; of PF_NewWorld the clear byte
  PF_PixelFormat format = 0;
};

struct FillCall {
  int32_t order = 0;
  bool hasColor = false;
  PF_Pixel color{};  ///< of fill only
  std::optional<PF_Rect> rect;
  PF_EffectWorld world{};
};

struct CopyCall {
  int32_t order = 0;
  bool highQuality = false;  ///< copy_hq
  std::optional<PF_Rect> sourceRect;
  std::optional<PF_Rect> targetRect;
  PF_EffectWorld source{};
  PF_EffectWorld target{};
};

struct TransferCall {
  int32_t order = 0;
  PF_Quality quality = 0;
  PF_ModeFlags modeFlags = 0;
  PF_Field field = 0;
  std::optional<PF_Rect> sourceRect;
  PF_EffectWorld source{};
  PF_CompositeMode mode{};
  std::optional<PF_MaskWorld> mask;
  A_long targetX = 0;
  A_long targetY = 0;
  PF_EffectWorld target{};
};

struct UpdateParamUiCall {
  int32_t order = 0;
  PF_ParamIndex index = 0;
  PF_ParamUIFlags uiFlags = 0;
};

struct ParamCall {
  int32_t order = 0;
  bool checkout = false;    ///< else a check-in
  PF_ParamIndex index = 0;  ///< of a check-in -1 when nobody knows what it belongs to
  A_long time = 0;
  A_long timeStep = 0;
  A_u_long timeScale = 0;
};

struct SuiteCall {
  int32_t order = 0;
  bool acquire = false;  ///< else a release
  std::string name;
  int32_t version = 0;
  SPErr result = 0;
};

/// One step in the life of a handle.
struct HandleCall {
  enum class Step { kNew, kLock, kUnlock, kDispose, kSize, kResize };
  int32_t order = 0;
  Step step{};
  int32_t handle = 0;  ///< running number as in the books; 0 when nothing was made or the handle is unknown
  uint64_t size = 0;   ///< of kNew and kResize, bytes
};

struct CallLog {
  std::vector<Call> calls;  ///< all of them but progress, and of the handle services only when handleCallsToo is set
  std::vector<SuiteCall> suites;
  std::vector<NewWorldCall> newWorlds;
  std::vector<FillCall> fills;
  std::vector<CopyCall> copies;
  std::vector<TransferCall> transfers;
  std::vector<UpdateParamUiCall> paramUi;
  std::vector<ParamCall> params;
  std::vector<HandleCall> handles;  ///< only when handleCallsToo is set
  int64_t progressCalls = 0;        ///< a frame makes very many, so they are counted and not kept
  A_long lastProgressCurrent = 0;
  A_long lastProgressTotal = 0;

  /// An effect whose own memory is the host's makes millions of these in a frame; off unless a test asks.
  bool handleCallsToo = false;

  /// How often service was called.
  int32_t count(std::string_view service) const;

  /// Names of the services in the order of their calls.
  std::vector<std::string> names() const;

  /// Forgets everything but handleCallsToo; the order numbers go on.
  void clear();

  int32_t nextOrder = 1;
};

}  // namespace standin
