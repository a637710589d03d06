#include "host/HostState.h"

#include <atomic>
#include <utility>

#include "host/DeliverValue.h"
#include "host/Refusals.h"
#include "host/StandInHost.h"

namespace standin {

namespace {

// A thread that an effect began itself has no host of its own and acts on the one that called last.
thread_local HostState* t_current = nullptr;
std::atomic<HostState*> g_last = nullptr;

// The locks of the sequence data around one command: the host adds one before and puts back what was there after.
class SequenceLock {
 public:
  explicit SequenceLock(HostState& state) : state_(state), record_(state.handles->find(state.sequenceData)) {
    // Where several hosts draw by one instance, nobody can tell whose locks are whose.
    if (record_ != nullptr && (!record_->open || state.handles.use_count() > 1)) record_ = nullptr;
    if (record_ == nullptr) return;
    number_ = record_->number;
    before_ = record_->locks;
    ++record_->locks;
  }
  void restore() {
    if (record_ == nullptr || !record_->open || record_->number != number_) return;
    const int32_t left = record_->locks - before_ - 1;
    const std::string what = "handle " + std::to_string(number_) + ", the sequence data";
    for (int32_t i = 0; i < left; ++i) state_.books.lend(Matter::kHandleLock, "on " + what, state_.running);
    if (left < 0) state_.complain(Matter::kBadHandle, what + " was unlocked more often than locked");
    record_->locks = before_;
  }

 private:
  HostState& state_;
  HandleStore::Record* record_;
  int32_t number_ = 0;
  int32_t before_ = 0;
};

}  // namespace

HostState* HostState::current() {
  return t_current != nullptr ? t_current : g_last.load(std::memory_order_relaxed);
}
void HostState::setCurrent(HostState* state) {
  t_current = state;
  g_last.store(state, std::memory_order_relaxed);
}

PF_Err HostState::callEntry(PF_Cmd command, PF_ParamDef** params, PF_LayerDef* output, void* extra) {
  setCurrent(this);
  const PF_Cmd outer = std::exchange(running, command);

  in.inter = interactTable();
  in.utils = utilTable();
  in.effect_ref = effectRef();
  in.version = settings.version;
  in.appl_id = settings.applId;
  in.num_params = numParams;
  in.global_data = globalData;
  in.sequence_data = sequenceData;
  in.frame_data = frameData;
  in.pica_basicP = settings.withoutBasicSuite ? nullptr : basicTable();
  const FrameRequest nothing;
  const FrameRequest& f = frame ? *frame : nothing;
  in.quality = f.quality;
  in.current_time = f.currentTime;
  in.time_step = f.timeStep;
  in.local_time_step = f.timeStep;
  in.time_scale = f.timeScale;
  in.total_time = f.totalTime;
  in.field = PF_Field_FRAME;
  in.width = f.fullWidth();
  in.height = f.fullHeight();
  in.downsample_x = f.downsampleX;
  in.downsample_y = f.downsampleY;
  in.pixel_aspect_ratio = f.input.pixelAspect;
  in.extent_hint = f.extent.value_or(PF_Rect{0, 0, f.input.width(), f.input.height()});

  // Effects read the handles from either record, so both hold them; and they set single bits of flags that they
  // expect to find as they left them.
  out.return_msg[0] = '\0';
  out.global_data = globalData;
  out.sequence_data = sequenceData;
  out.frame_data = frameData;
  out.num_params = numParams;
  out.my_version = version;
  out.out_flags = outFlags;
  out.out_flags2 = outFlags2;
  out.width = command == PF_Cmd_FRAME_SETUP ? (f.outputWidth != 0 ? f.outputWidth : f.input.width()) : 0;
  out.height = command == PF_Cmd_FRAME_SETUP ? (f.outputHeight != 0 ? f.outputHeight : f.input.height()) : 0;
  out.origin = {0, 0};

  SequenceLock lock(*this);
  const PF_Err err = entry(command, &in, &out, params, output, extra);
  setCurrent(this);
  lock.restore();

  globalData = command == PF_Cmd_GLOBAL_SETDOWN ? nullptr : out.global_data;
  sequenceData = command == PF_Cmd_SEQUENCE_SETDOWN ? nullptr : out.sequence_data;
  frameData = command == PF_Cmd_FRAME_SETDOWN ? nullptr : out.frame_data;
  if (command == PF_Cmd_GLOBAL_SETUP || command == PF_Cmd_QUERY_DYNAMIC_FLAGS) {
    version = out.my_version;
    outFlags = out.out_flags;
    outFlags2 = out.out_flags2;
  }
  if (command == PF_Cmd_PARAMS_SETUP) numParams = out.num_params;
  running = outer;
  return err;
}

void HostState::useFrame(const FrameRequest& request, const ParameterValues& newValues, bool keepOld) {
  const bool sized = request.fullWidth() != 0 && request.fullHeight() != 0;
  if (sized || !keepOld || !frame) {
    frame = std::make_shared<const FrameRequest>(request);
    input = std::shared_ptr<const Image>(frame, &frame->input);
  }
  values = newValues;
  layers.clear();
}

void HostState::endFrame() {
  for (const auto& [key, world] : worlds) {
    if (!world.lasting && world.picture != nullptr && !world.picture->guardsIntact()) {
      books.complain(Matter::kOutside, "bytes outside the world \"" + world.name + "\" were changed", running);
    }
  }
  std::erase_if(worlds, [](const auto& world) { return !world.second.madeByEffect && !world.second.lasting; });
  layers.clear();
}

PF_Err HostState::note(std::string_view service, std::string arguments, PF_Err result) {
  log.calls.push_back({nextOrder(), std::string(service), std::move(arguments), running, result});
  return result;
}

void HostState::checkRef(PF_ProgPtr ref, std::string_view service) {
  if (ref != effectRef()) complain(Matter::kWrongArgument, std::string(service) + " with a foreign effect_ref");
}

PF_Err HostState::askToGoOn(int64_t current, A_long total) {
  if (total != 0) {
    ++log.progressCalls;
    log.lastProgressCurrent = static_cast<A_long>(current);
    log.lastProgressTotal = total;
    if (const auto failed = fault("progress")) return *failed;
    if (owner->onProgress) {
      if (const PF_Err stop = owner->onProgress(static_cast<A_long>(current), total)) return stop;
    }
  }
  if (const auto failed = fault("abort")) return *failed;
  return owner->onAbort ? owner->onAbort() : PF_Err_NONE;
}

PF_EffectWorld HostState::lend(std::shared_ptr<const Image> picture, std::string name, bool writeable) {
  PF_EffectWorld world = picture->view();
  if (!writeable) world.world_flags &= ~PF_WorldFlag_WRITEABLE;
  const uintptr_t key = ++lastWorldKey;
  // NOLINTNEXTLINE(performance-no-int-to-ptr): a number in a field that has room for a pointer, never followed
  world.reserved0 = reinterpret_cast<void*>(key);
  const Depth depth = picture->depth();
  worlds.emplace(key, WorldInUse{depth, std::move(picture), false, false, 0, std::move(name)});
  return world;
}

WorldInUse* HostState::find(const PF_EffectWorld& world) {
  const auto found = worlds.find(reinterpret_cast<uintptr_t>(world.reserved0));
  return found == worlds.end() ? nullptr : &found->second;
}

std::optional<Depth> HostState::depthOf(const PF_EffectWorld* world, std::string_view service) {
  if (world == nullptr || world->width < 0 || world->height < 0 ||
      (world->data == nullptr && world->width != 0 && world->height != 0)) {
    complain(Matter::kBadWorld, std::string(service) + " got a world without pixels");
    return std::nullopt;
  }
  if (const WorldInUse* known = find(*world)) return known->depth;
  if (world->reserved0 != nullptr) {
    complain(Matter::kBadWorld, std::string(service) + " got a world that is gone");
    return std::nullopt;
  }
  // An effect's own record over its own memory: the flag is all there is to go by.
  return (world->world_flags & PF_WorldFlag_DEEP) != 0 ? Depth::k16 : Depth::k8;
}

std::optional<Depth> HostState::depthToWrite(const PF_EffectWorld* world, std::string_view service) {
  const auto depth = depthOf(world, service);
  if (!depth || world == nullptr) return std::nullopt;
  const WorldInUse* known = find(*world);
  const bool mayWriteInput = (outFlags & PF_OutFlag_I_WRITE_INPUT_BUFFER) != 0;
  if (known != nullptr && (world->world_flags & PF_WorldFlag_WRITEABLE) == 0 && !mayWriteInput) {
    complain(Matter::kBadWorld, std::string(service) + " into " + known->name + ", which may only be read");
  }
  return depth;
}

std::optional<Depth> HostState::commonDepth(std::string_view service, const PF_EffectWorld* source,
                                            const PF_EffectWorld* target) {
  const auto from = depthOf(source, service);
  const auto to = depthToWrite(target, service);
  if (!from || !to) return std::nullopt;
  if (*from != *to) {
    complain(Matter::kBadWorld, std::string(service) + " between worlds of different depth");
    return std::nullopt;
  }
  return to;
}

std::shared_ptr<const Image> HostState::layerPicture(int32_t index) {
  if (!frame) return nullptr;
  if (index == 0) return input;
  const auto known = layers.find(index);
  if (known != layers.end()) return known->second;
  std::shared_ptr<const Image> picture;
  if (index <= values.size()) {
    if (const auto* value = std::get_if<LayerValue>(&values.value(index)))
      picture = deliverLayer(*value, *frame, input);
  }
  layers.emplace(index, picture);
  return picture;
}

std::optional<ParameterValues::Value> HostState::valueAt(int32_t index, A_long time, A_u_long timeScale) const {
  if (!frame || index < 1 || timeScale == 0 || owner == nullptr || !owner->valueAt) return std::nullopt;
  const bool ownTime = int64_t{time} * frame->timeScale == int64_t{frame->currentTime} * timeScale;
  if (ownTime) return std::nullopt;
  return owner->valueAt(index, time, timeScale);
}

std::shared_ptr<const Image> HostState::layerPictureAt(int32_t index, A_long time, A_u_long timeScale) {
  const auto value = valueAt(index, time, timeScale);
  const auto* const layer = value ? std::get_if<LayerValue>(&*value) : nullptr;
  return layer == nullptr ? layerPicture(index) : deliverLayer(*layer, *frame, input);
}

std::string rectText(const PF_LRect* rect) {
  if (rect == nullptr) return "whole";
  return "(" + std::to_string(rect->left) + ", " + std::to_string(rect->top) + ", " + std::to_string(rect->right) +
         ", " + std::to_string(rect->bottom) + ")";
}

std::string worldText(const PF_EffectWorld* world) {
  if (world == nullptr) return "no world";
  HostState* host = HostState::current();
  const WorldInUse* known = host == nullptr ? nullptr : host->find(*world);
  return (known == nullptr ? std::string("own world") : known->name) + " " + std::to_string(world->width) + " x " +
         std::to_string(world->height);
}

void noteRefusal(std::string_view service) {
  HostState* host = HostState::current();
  if (host == nullptr) return;
  host->complain(Matter::kUnknownService, std::string(service) + ", which this host does not have, was called");
  host->note(service, "refused", PF_Err_INVALID_CALLBACK);
}

}  // namespace standin
