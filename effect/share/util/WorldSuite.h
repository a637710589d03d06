// Worlds and their pixel formats, whichever version of "PF World Suite" the host has.
//
// Version 2 is asked for around each single call and given back at once; where the host lacks it, version 1 of the
// global record takes its place, which knows no float worlds.
#pragma once

#include <cstdint>

#include "ae/Constants.h"
#include "ae/Worlds.h"

namespace AEUtil {

/// One host world; its block lives on the global allocator.
struct WorldNode {
  PF_ProgPtr effect_ref;  ///< kept to give the world back
  PF_EffectWorld world;   ///< the host's record, by value
  int32_t ref_count;      ///< handles that point here
};

/// A shared handle of a world that the effect asked the host for: a plain value of two pointers. The world goes back to
/// the host when the last handle is dropped. The count is not atomic: a handle belongs to one render command and never
/// crosses threads.
class EffectWorldPtr {
 public:
  EffectWorldPtr() = default;  ///< empty: no node and no world
  EffectWorldPtr(const EffectWorldPtr& other) noexcept;
  EffectWorldPtr& operator=(const EffectWorldPtr& other) noexcept;
  ~EffectWorldPtr() { drop(); }

  /// Gives up this handle, which is empty afterwards. The last one of a world has the host dispose of it and releases
  /// the node; errors of the host are ignored, and a handle without a world asks nothing of the host.
  void drop() noexcept;

  /// The host's world, or null: the handle is empty, or the host had no such world to give.
  PF_EffectWorld* world() const noexcept { return world_; }
  explicit operator bool() const noexcept { return node_ != nullptr; }

 private:
  friend struct WorldSuite;
  WorldNode* node_ = nullptr;
  PF_EffectWorld* world_ = nullptr;  ///< &node_->world, or null
};

struct WorldSuite {
  /// Makes a cleared world of `width` x `height` pixels of the form `format`.
  ///
  /// `clear` is not looked at by version 2: a world of that version always comes cleared. Kept as is, since the
  /// canvas, the one world that the effect makes, relies on it (see
  /// isClearedEvenWhenNotAskedTo).
  ///
  /// Returns an empty handle when there is no memory to be had at all, and a handle without a world when only
  /// version 1 is there and `format` is neither 8 nor 16 bits. Throws AEException with the host's error when the host
  /// can't make the world, the bare long 516 when it has neither version.
  static EffectWorldPtr newWorld(PF_ProgPtr effect_ref, int32_t width, int32_t height, PF_Boolean clear,
                                 PF_PixelFormat format);

  /// Asks the host to free the pixels of a world that newWorld made. Errors are ignored, a missing suite too: this
  /// runs while exceptions are in flight.
  static void disposeWorld(PF_ProgPtr effect_ref, PF_EffectWorld* world) noexcept;
};

/// The pixel form of a host world. With version 2 it is the host's answer, and the first error of asking and giving
/// back the suite is returned; without it the DEEP flag tells 16 bits from 8.
PF_Err read_pixel_format(const PF_EffectWorld* world, PF_PixelFormat* tag);

}  // namespace AEUtil
