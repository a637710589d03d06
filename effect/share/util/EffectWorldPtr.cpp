#include "effect/share/util/EffectWorldPtr.h"

#include "effect/share/util/WorldSuite.h"

namespace AEUtil {

EffectWorldPtr::EffectWorldPtr(const EffectWorldPtr& other) noexcept : node_(other.node_), world_(other.world_) {
  if (node_ != nullptr) {
    ++node_->ref_count;
  }
}

EffectWorldPtr& EffectWorldPtr::operator=(const EffectWorldPtr& other) noexcept {
  if (this != &other) {
    drop();
    node_ = other.node_;
    world_ = other.world_;
    if (node_ != nullptr) {
      ++node_->ref_count;
    }
  }
  return *this;
}

void EffectWorldPtr::drop() noexcept {
  if (node_ == nullptr) {
    return;
  }
  if (--node_->ref_count == 0) {
    if (world_ != nullptr) {
      WorldSuite::disposeWorld(node_->effect_ref, world_);
    }
    delete node_;
  }
  node_ = nullptr;
  world_ = nullptr;
}

}  // namespace AEUtil
