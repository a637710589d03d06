/// Worlds that an effect makes, and the pixel services over worlds, with their place in the books and the log.
#include "host/CopyWorld.h"
#include "host/FillWorld.h"
#include "host/HostState.h"
#include "host/TransferRect.h"

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
    picture = std::make_shared<Image>(depth, width, height, 0,
                                      clear ? uint8_t{0} : static_cast<uint8_t>(host.settings.fillOfNewWorlds));
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

// The depth of a world that is about to be written; nothing when it can't or must not be.
std::optional<Depth> depthToWrite(HostState& host, const PF_EffectWorld* world, std::string_view service) {
  const auto depth = host.depthOf(world, service);
  if (!depth || world == nullptr) return std::nullopt;
  const WorldInUse* known = host.find(*world);
  const bool mayWriteInput = (host.outFlags & PF_OutFlag_I_WRITE_INPUT_BUFFER) != 0;
  if (known != nullptr && (world->world_flags & PF_WorldFlag_WRITEABLE) == 0 && !mayWriteInput) {
    host.complain(Matter::kBadWorld, std::string(service) + " into " + known->name + ", which may only be read");
  }
  return depth;
}

template <class T>
std::optional<T> valueAt(const T* pointer) {
  return pointer == nullptr ? std::nullopt : std::optional<T>(*pointer);
}

template <class Color>
PF_Err fill(HostState& host, std::string_view service, PF_ProgPtr ref, const Color* color, const PF_Rect* rect,
            PF_EffectWorld* world) {
  host.checkRef(ref, service);
  FillCall call;
  call.order = host.log.nextOrder;
  call.hasColor = color != nullptr;
  if constexpr (std::is_same_v<Color, PF_Pixel>) call.color = color == nullptr ? PF_Pixel{} : *color;
  call.rect = valueAt(rect);
  if (world != nullptr) call.world = *world;
  host.log.fills.push_back(call);
  const auto fault = host.fault(service);
  PF_Err result = fault.value_or(PF_Err_NONE);
  if (!fault) {
    if (const auto depth = depthToWrite(host, world, service)) {
      withPixelOf(*depth, [&](auto pixel) {
        using Pixel = decltype(pixel);
        fillWorld<Pixel>(*world, rect, color == nullptr ? Pixel{} : convertPixel<Pixel>(*color));
      });
    } else {
      result = PF_Err_BAD_CALLBACK_PARAM;
    }
  }
  return host.note(service, worldText(world) + " " + rectText(rect), result);
}

PF_Err fillFloat(PF_ProgPtr ref, const PF_PixelFloat* color, const PF_Rect* rect, PF_EffectWorld* world) {
  HostState* host = HostState::current();
  return host == nullptr ? PF_Err_BAD_CALLBACK_PARAM : fill(*host, "fill_float", ref, color, rect, world);
}

// The one depth of two worlds; nothing, with a complaint, when they differ.
std::optional<Depth> commonDepth(HostState& host, std::string_view service, const PF_EffectWorld* source,
                                 const PF_EffectWorld* target) {
  const auto from = host.depthOf(source, service);
  const auto to = depthToWrite(host, target, service);
  if (!from || !to) return std::nullopt;
  if (*from != *to) {
    host.complain(Matter::kBadWorld, std::string(service) + " between worlds of different depth");
    return std::nullopt;
  }
  return to;
}

PF_Err copyEither(bool smoothly, PF_ProgPtr ref, PF_EffectWorld* source, PF_EffectWorld* target, PF_Rect* sourceRect,
                  PF_Rect* targetRect) {
  HostState* host = HostState::current();
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  const std::string_view service = smoothly ? "copy_hq" : "copy";
  host->checkRef(ref, service);
  CopyCall call;
  call.order = host->log.nextOrder;
  call.highQuality = smoothly;
  call.sourceRect = valueAt(sourceRect);
  call.targetRect = valueAt(targetRect);
  if (source != nullptr) call.source = *source;
  if (target != nullptr) call.target = *target;
  host->log.copies.push_back(call);
  const auto fault = host->fault(service);
  PF_Err result = fault.value_or(PF_Err_NONE);
  if (!fault) {
    const auto depth = commonDepth(*host, service, source, target);
    if (!depth) {
      result = PF_Err_BAD_CALLBACK_PARAM;
    } else if (smoothly) {
      copyWorldSmoothly(*depth, *source, *target, sourceRect, targetRect);
    } else {
      copyWorld(*depth, *source, *target, sourceRect, targetRect);
    }
  }
  return host->note(
      service, worldText(source) + " " + rectText(sourceRect) + " to " + worldText(target) + " " + rectText(targetRect),
      result);
}

PF_Err copyHq(PF_ProgPtr ref, PF_EffectWorld* source, PF_EffectWorld* target, PF_Rect* sourceRect,
              PF_Rect* targetRect) {
  return copyEither(true, ref, source, target, sourceRect, targetRect);
}

PF_Err drawTransfer(HostState& host, PF_ModeFlags modeFlags, const PF_Rect* sourceRect, const PF_EffectWorld* source,
                    const PF_CompositeMode* mode, const PF_MaskWorld* mask, A_long targetX, A_long targetY,
                    PF_EffectWorld* target) {
  const auto depth = commonDepth(host, "transfer_rect", source, target);
  if (!depth || source == nullptr || target == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  if (mode == nullptr || modeFlags != PF_MF_Alpha_STRAIGHT) {
    host.complain(Matter::kUnknownService, "transfer_rect of colours that are multiplied by alpha");
    return PF_Err_BAD_CALLBACK_PARAM;
  }
  std::optional<TransferMask> through;
  if (mask != nullptr) {
    through = TransferMask{mask->mask, mask->offset, (mask->what_is_mask & PF_MaskFlag_INVERTED) != 0,
                           (mask->what_is_mask & PF_MaskFlag_LUMINANCE) != 0};
    if (mask->mask.data != nullptr) {
      const auto maskDepth = host.depthOf(&mask->mask, "transfer_rect");
      if (!maskDepth) return PF_Err_BAD_CALLBACK_PARAM;
      if (*maskDepth != *depth) {
        host.complain(Matter::kBadWorld, "transfer_rect through a mask of another depth");
        return PF_Err_BAD_CALLBACK_PARAM;
      }
    }
  }
  const PF_Err result = transferRect(*depth, sourceRect, *source, *mode, through, targetX, targetY, *target);
  if (result != PF_Err_NONE) {
    host.complain(Matter::kUnknownService, "transfer_rect with the mode " + std::to_string(mode->xfer));
  }
  return result;
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

PF_Err fill8(PF_ProgPtr ref, const PF_Pixel* color, const PF_Rect* rect, PF_EffectWorld* world) {
  HostState* host = HostState::current();
  return host == nullptr ? PF_Err_BAD_CALLBACK_PARAM : fill(*host, "fill", ref, color, rect, world);
}

PF_Err fill16(PF_ProgPtr ref, const PF_Pixel16* color, const PF_Rect* rect, PF_EffectWorld* world) {
  HostState* host = HostState::current();
  return host == nullptr ? PF_Err_BAD_CALLBACK_PARAM : fill(*host, "fill16", ref, color, rect, world);
}

PF_Err copy(PF_ProgPtr ref, PF_EffectWorld* source, PF_EffectWorld* target, PF_Rect* sourceRect, PF_Rect* targetRect) {
  return copyEither(false, ref, source, target, sourceRect, targetRect);
}

PF_Err transfer(PF_ProgPtr ref, PF_Quality quality, PF_ModeFlags modeFlags, PF_Field field, const PF_Rect* sourceRect,
                const PF_EffectWorld* source, const PF_CompositeMode* mode, const PF_MaskWorld* mask, A_long targetX,
                A_long targetY, PF_EffectWorld* target) {
  HostState* host = HostState::current();
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  host->checkRef(ref, "transfer_rect");
  TransferCall call;
  call.order = host->log.nextOrder;
  call.quality = quality;
  call.modeFlags = modeFlags;
  call.field = field;
  call.sourceRect = valueAt(sourceRect);
  if (source != nullptr) call.source = *source;
  if (mode != nullptr) call.mode = *mode;
  call.mask = valueAt(mask);
  call.targetX = targetX;
  call.targetY = targetY;
  if (target != nullptr) call.target = *target;
  host->log.transfers.push_back(call);
  const auto fault = host->fault("transfer_rect");
  const PF_Err result =
      fault ? *fault : drawTransfer(*host, modeFlags, sourceRect, source, mode, mask, targetX, targetY, target);
  return host->note("transfer_rect", worldText(source) + " " + rectText(sourceRect) + " to " + worldText(target),
                    result);
}

const PF_WorldSuite1* worldSuite1() {
  static const PF_WorldSuite1 suite = {newWorld1, disposeWorld1};
  return &suite;
}

const PF_WorldSuite2* worldSuite2() {
  static const PF_WorldSuite2 suite = {newWorld2, disposeWorld2, getPixelFormat};
  return &suite;
}

const PF_FillMatteSuite2* fillMatteSuite() {
  static const PF_FillMatteSuite2 suite = {fill8, fill16, fillFloat, refused, refused, refused, refused};
  return &suite;
}

const PF_WorldTransformSuite1* worldTransformSuite() {
  static const PF_WorldTransformSuite1 suite = {refused, refused, refused, copy, copyHq, transfer, refused};
  return &suite;
}

}  // namespace standin
