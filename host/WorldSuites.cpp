/// "PF World Suite" 1 and 2, and the same calls among the utilities: worlds that an effect makes, and their depth.
#include <algorithm>

#include "host/HostState.h"

namespace standin {

namespace {

PF_Err makeWorld(HostState& host, std::string_view service, A_long width, A_long height, Depth depth, bool clear,
                 PF_EffectWorld* world) {
  if (const auto fault = host.fault(service)) return *fault;
  if (world == nullptr || width < 0 || height < 0 || width > PF_MAX_WORLD_WIDTH || height > PF_MAX_WORLD_HEIGHT) {
    host.complain(Matter::kWrongArgument,
                  std::string(service) + " of " + std::to_string(width) + " x " + std::to_string(height) + " pixels");
    return PF_Err_BAD_CALLBACK_PARAM;
  }
  std::shared_ptr<Image> picture;
  try {
    // Where an effect overruns its own world it is mostly by rows: they are to hit guards, which are told when the
    // world is given back, and not what the host keeps behind them.
    const int32_t guard = std::max(4096, 4 * width * pixelBytes(depth));
    picture = std::make_shared<Image>(depth, width, height, 0,
                                      clear ? uint8_t{0} : static_cast<uint8_t>(host.settings.fillOfNewWorlds), guard);
  } catch (const std::bad_alloc&) {
    return PF_Err_OUT_OF_MEMORY;
  }
  const std::string size = std::to_string(width) + " x " + std::to_string(height) + " at " +
                           std::to_string(static_cast<int32_t>(depth)) + " bits";
  const int32_t number = host.books.lend(Matter::kWorld, size, host.running);
  *world = host.lend(std::move(picture), "world " + std::to_string(number), true);
  WorldInUse* known = host.find(*world);
  known->madeByEffect = true;
  known->bookNumber = number;
  return PF_Err_NONE;
}

PF_Err dropWorld(HostState& host, std::string_view service, PF_EffectWorld* world) {
  const auto fault = host.fault(service);
  if (world == nullptr) {
    host.complain(Matter::kBadWorld, std::string(service) + " of no world");
    return PF_Err_BAD_CALLBACK_PARAM;
  }
  // The record of a world that could not be made is all zero; giving it back is harmless.
  if (world->reserved0 == nullptr && world->data == nullptr) return fault.value_or(PF_Err_NONE);
  const WorldInUse* known = host.find(*world);
  if (known == nullptr || !known->madeByEffect) {
    host.complain(Matter::kBadWorld, std::string(service) + (known == nullptr ? " of a world that is gone or never was"
                                                                              : " of the host's own " + known->name));
    return PF_Err_BAD_CALLBACK_PARAM;
  }
  if (!known->picture->guardsIntact()) {
    host.complain(Matter::kOutside, "bytes outside " + known->name + " were changed");
  }
  // As with suites: a fault is only reported, the effect has done its part.
  host.books.giveBack(Matter::kWorld, known->bookNumber);
  host.worlds.erase(reinterpret_cast<uintptr_t>(world->reserved0));
  return fault.value_or(PF_Err_NONE);
}

PF_Err newWorld2(PF_ProgPtr ref, A_long width, A_long height, PF_Boolean clear, PF_PixelFormat format,
                 PF_EffectWorld* world) {
  HostState* host = HostState::current();
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  host->checkRef(ref, "PF_NewWorld");
  host->log.newWorlds.push_back({host->log.nextOrder, 2, width, height, clear, format});
  PF_Err result = PF_Err_BAD_CALLBACK_PARAM;
  if (const auto depth = depthOf(format)) {
    result = makeWorld(*host, "PF_NewWorld", width, height, *depth, clear != 0, world);
  } else if (const auto fault = host->fault("PF_NewWorld")) {
    result = *fault;
  } else {
    host->complain(Matter::kWrongArgument, "PF_NewWorld of no known pixel format");
  }
  return host->note("PF_NewWorld", worldText(world), result);
}

PF_Err disposeWorld2(PF_ProgPtr ref, PF_EffectWorld* world) {
  HostState* host = HostState::current();
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  host->checkRef(ref, "PF_DisposeWorld");
  std::string text = worldText(world);
  return host->note("PF_DisposeWorld", std::move(text), dropWorld(*host, "PF_DisposeWorld", world));
}

PF_Err getPixelFormat(const PF_EffectWorld* world, PF_PixelFormat* format) {
  HostState* host = HostState::current();
  if (host == nullptr || format == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  const auto fault = host->fault("PF_GetPixelFormat");
  PF_Err result = fault.value_or(PF_Err_NONE);
  if (!fault) {
    const auto depth = host->depthOf(world, "PF_GetPixelFormat");
    *format = depth ? pixelFormat(*depth) : PF_PixelFormat_INVALID;
    if (!depth) result = PF_Err_BAD_CALLBACK_PARAM;
  }
  return host->note("PF_GetPixelFormat", worldText(world), result);
}

}  // namespace

PF_Err newWorld1(PF_ProgPtr ref, A_long width, A_long height, PF_NewWorldFlags flags, PF_EffectWorld* world) {
  HostState* host = HostState::current();
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  host->checkRef(ref, "new_world");
  const Depth depth = (flags & PF_NewWorldFlag_DEEP_PIXELS) != 0 ? Depth::k16 : Depth::k8;
  host->log.newWorlds.push_back({host->log.nextOrder, 1, width, height, flags, pixelFormat(depth)});
  const PF_Err result =
      makeWorld(*host, "new_world", width, height, depth, (flags & PF_NewWorldFlag_CLEAR_PIXELS) != 0, world);
  return host->note("new_world", worldText(world), result);
}

PF_Err disposeWorld1(PF_ProgPtr ref, PF_EffectWorld* world) {
  HostState* host = HostState::current();
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  host->checkRef(ref, "dispose_world");
  std::string text = worldText(world);
  return host->note("dispose_world", std::move(text), dropWorld(*host, "dispose_world", world));
}

const PF_WorldSuite1* worldSuite1() {
  static const PF_WorldSuite1 suite = {newWorld1, disposeWorld1};
  return &suite;
}

const PF_WorldSuite2* worldSuite2() {
  static const PF_WorldSuite2 suite = {newWorld2, disposeWorld2, getPixelFormat};
  return &suite;
}

}  // namespace standin
