/// "PF World Transform Suite", and the same calls among the utilities: copy, transfer, blend, convolve, transform.
#include <algorithm>

#include "host/BlendWorlds.h"
#include "host/ConvolveWorld.h"
#include "host/CopyWorld.h"
#include "host/HostState.h"
#include "host/PixelAccess.h"
#include "host/Rects.h"
#include "host/TransferRect.h"
#include "host/TransformWorld.h"

namespace standin {

namespace {

template <class T>
std::optional<T> valueAt(const T* pointer) {
  return pointer == nullptr ? std::nullopt : std::optional<T>(*pointer);
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
    const auto depth = host->commonDepth(service, source, target);
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

PF_Err drawTransfer(HostState& host, const std::string& service, PF_ModeFlags modeFlags, const PF_Rect* sourceRect,
                    const PF_EffectWorld* source, const PF_CompositeMode* mode, const PF_MaskWorld* mask,
                    A_long targetX, A_long targetY, PF_EffectWorld* target) {
  const auto depth = host.commonDepth(service, source, target);
  if (!depth || source == nullptr || target == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  if (mode == nullptr || modeFlags != PF_MF_Alpha_STRAIGHT) {
    host.complain(Matter::kUnknownService, service + " of colours that are multiplied by alpha");
    return PF_Err_BAD_CALLBACK_PARAM;
  }
  std::optional<TransferMask> through;
  if (mask != nullptr) {
    through = TransferMask{mask->mask, mask->offset, (mask->what_is_mask & PF_MaskFlag_INVERTED) != 0,
                           (mask->what_is_mask & PF_MaskFlag_LUMINANCE) != 0};
    if (mask->mask.data != nullptr) {
      const auto maskDepth = host.depthOf(&mask->mask, service);
      if (!maskDepth) return PF_Err_BAD_CALLBACK_PARAM;
      if (*maskDepth != *depth) {
        host.complain(Matter::kBadWorld, service + " through a mask of another depth");
        return PF_Err_BAD_CALLBACK_PARAM;
      }
    }
  }
  const PF_Err result = transferRect(*depth, sourceRect, *source, *mode, through, targetX, targetY, *target);
  if (result != PF_Err_NONE) {
    host.complain(Matter::kUnknownService, service + " with the mode " + std::to_string(mode->xfer));
  }
  return result;
}

}  // namespace

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
      fault ? *fault
            : drawTransfer(*host, "transfer_rect", modeFlags, sourceRect, source, mode, mask, targetX, targetY, target);
  return host->note("transfer_rect", worldText(source) + " " + rectText(sourceRect) + " to " + worldText(target),
                    result);
}

// transfer_rect with one of three modes, an opacity of 0..255 at every depth (held to that) and without a mask.
PF_Err compositeRect(PF_ProgPtr ref, PF_Rect* sourceRect, A_long opacity, PF_EffectWorld* source, A_long targetX,
                     A_long targetY, PF_Field, PF_XferMode xfer, PF_EffectWorld* target) {
  HostState* host = HostState::current();
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  host->checkRef(ref, "composite_rect");
  const std::string text = worldText(source) + " " + rectText(sourceRect) + " to " + worldText(target);
  if (const auto fault = host->fault("composite_rect")) return host->note("composite_rect", text, *fault);
  const A_long held = std::clamp<A_long>(opacity, 0, 255);
  const PF_CompositeMode mode{xfer, 0, static_cast<A_u_char>(held), 0,
                              static_cast<A_u_short>((held * 32768 + 127) / 255)};
  return host->note("composite_rect", text,
                    drawTransfer(*host, "composite_rect", PF_MF_Alpha_STRAIGHT, sourceRect, source, &mode, nullptr,
                                 targetX, targetY, target));
}

PF_Err blend(PF_ProgPtr ref, const PF_EffectWorld* first, const PF_EffectWorld* second, PF_Fixed ratio,
             PF_EffectWorld* target) {
  HostState* host = HostState::current();
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  host->checkRef(ref, "blend");
  const std::string text = worldText(first) + " and " + worldText(second) + " to " + worldText(target);
  if (const auto fault = host->fault("blend")) return host->note("blend", text, *fault);
  const auto depth = host->commonDepth("blend", first, target);
  if (!depth || !host->commonDepth("blend", second, target)) {
    return host->note("blend", text, PF_Err_BAD_CALLBACK_PARAM);
  }
  blendWorlds(*depth, *first, *second, ratio, *target);
  return host->note("blend", text, PF_Err_NONE);
}

PF_Err convolve(PF_ProgPtr ref, PF_EffectWorld* source, const PF_Rect* area, PF_KernelFlags flags, A_long size,
                void* alpha, void* red, void* green, void* blue, PF_EffectWorld* target) {
  HostState* host = HostState::current();
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  host->checkRef(ref, "convolve");
  const std::string text = worldText(source) + " to " + worldText(target) + " " + rectText(area);
  if (const auto fault = host->fault("convolve")) return host->note("convolve", text, *fault);
  const auto depth = host->commonDepth("convolve", source, target);
  constexpr A_long mostEntries = 1024;  // along a side
  if (!depth || size < 1 || size > mostEntries) return host->note("convolve", text, PF_Err_BAD_CALLBACK_PARAM);
  constexpr PF_KernelFlags served =
      PF_KernelFlag_1D | PF_KernelFlag_NORMALIZED | PF_KernelFlag_NO_CLAMP | PF_KernelFlag_VERTICAL;
  if ((flags & ~served) != 0) {
    host->complain(Matter::kUnknownService, "convolve with the kernel flags " + std::to_string(flags));
    return host->note("convolve", text, PF_Err_BAD_CALLBACK_PARAM);
  }
  if (source->data == target->data) {
    host->complain(Matter::kBadWorld, "convolve of a world into itself");
    return host->note("convolve", text, PF_Err_BAD_CALLBACK_PARAM);
  }
  ConvolveKernels kernels;
  kernels.entries = {static_cast<const A_long*>(alpha), static_cast<const A_long*>(red),
                     static_cast<const A_long*>(green), static_cast<const A_long*>(blue)};
  kernels.size = size;
  kernels.twoDimensions = (flags & PF_KernelFlag_1D) == 0;
  kernels.vertical = (flags & PF_KernelFlag_VERTICAL) != 0;
  kernels.normalized = (flags & PF_KernelFlag_NORMALIZED) != 0;
  kernels.limited = (flags & PF_KernelFlag_NO_CLAMP) == 0;
  convolveWorld(*depth, *source, area, kernels, *target);
  return host->note("convolve", text, PF_Err_NONE);
}

PF_Err transformWorld(PF_ProgPtr ref, PF_Quality quality, PF_ModeFlags modeFlags, PF_Field,
                      const PF_EffectWorld* source, const PF_CompositeMode* mode, const PF_MaskWorld* mask,
                      const PF_FloatMatrix* matrices, A_long count, PF_Boolean sourceToTarget,
                      const PF_Rect* targetRect, PF_EffectWorld* target) {
  HostState* host = HostState::current();
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  host->checkRef(ref, "transform_world");
  const std::string text = worldText(source) + " to " + worldText(target) + " " + rectText(targetRect) + ", " +
                           std::to_string(count) + " matrices";
  if (const auto fault = host->fault("transform_world")) return host->note("transform_world", text, *fault);
  const auto depth = host->commonDepth("transform_world", source, target);
  if (!depth || matrices == nullptr || count < 1) {
    return host->note("transform_world", text, PF_Err_BAD_CALLBACK_PARAM);
  }
  const PF_LRect whole = wholeOf(*target);
  const PF_LRect area = targetRect == nullptr ? whole : intersection(*targetRect, whole);
  const Image seen = transformedWorld(*depth, *source, {matrices, matrices + count}, sourceToTarget != 0,
                                      quality == PF_Quality_HI, area);
  // What the matrices show of the source goes over the target as any other world.
  const PF_EffectWorld lent =
      host->lend(std::shared_ptr<const Image>(std::shared_ptr<const Image>(), &seen), "transformed source", false);
  const PF_Err result =
      drawTransfer(*host, "transform_world", modeFlags, nullptr, &lent, mode, mask, area.left, area.top, target);
  host->worlds.erase(reinterpret_cast<uintptr_t>(lent.reserved0));
  return host->note("transform_world", text, result);
}

const PF_WorldTransformSuite1* worldTransformSuite() {
  static const PF_WorldTransformSuite1 suite = {compositeRect, blend, convolve, copy, copyHq, transfer, transformWorld};
  return &suite;
}

}  // namespace standin
