// A shared handle of a world that the effect asked the host for.
//
// A plain value of two pointers. The world goes back to the host when the last handle is dropped. The count is not
// atomic: a handle belongs to one render command and never crosses threads.
#pragma once

#include <cstdint>

#include "ae/Worlds.h"

namespace AEUtil {

/// One host world; its block lives on the global allocator.
struct WorldNode {
  PF_ProgPtr effect_ref;  ///< kept to give the world back
  PF_EffectWorld world;   ///< the host's record, by value
  int32_t ref_count;      ///< handles that point here
};

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

}  // namespace AEUtil
