#include "effect/share/util/WorldSuite.h"

#include "effect/share/util/Errors.h"
#include "effect/share/util/SuiteCache.h"

namespace AEUtil {

namespace {

/// Version 2, or null. The code that the host answers is not looked at: only the pointer that it leaves counts.
const PF_WorldSuite2* acquireVersion2(SPBasicSuite& basic) {
  const void* suite = nullptr;
  basic.AcquireSuite(kPFWorldSuite, kPFWorldSuiteVersion2, &suite);
  return static_cast<const PF_WorldSuite2*>(suite);
}

PF_Err releaseVersion2(SPBasicSuite& basic) {
  return basic.ReleaseSuite(kPFWorldSuite, kPFWorldSuiteVersion2);
}

}  // namespace

EffectWorldPtr WorldSuite::newWorld(PF_ProgPtr effect_ref, int32_t width, int32_t height, PF_Boolean /*clear*/,
                                    PF_PixelFormat format) {
  EffectWorldPtr made;
  made.node_ = new WorldNode{effect_ref, {}, 1};
  if (made.node_ == nullptr) return made;
  PF_EffectWorld* const world = &made.node_->world;
  SuiteCache& suites = requireGlobalSuites();
  PF_Err err = PF_Err_NONE;
  if (const PF_WorldSuite2* suite = acquireVersion2(*suites.basic)) {
    err = suite->PF_NewWorld(effect_ref, width, height, 1, format, world);
    made.world_ = world;
    const PF_Err released = releaseVersion2(*suites.basic);
    err = err != PF_Err_NONE ? err : released;
  } else {
    if (format != PF_PixelFormat_ARGB32 && format != PF_PixelFormat_ARGB64) return made;
    const PF_NewWorldFlags flags = format == PF_PixelFormat_ARGB64
                                       ? PF_NewWorldFlag_CLEAR_PIXELS | PF_NewWorldFlag_DEEP_PIXELS
                                       : PF_NewWorldFlag_CLEAR_PIXELS;
    err = suites.worldSuite1().new_world(effect_ref, width, height, flags, world);
    made.world_ = world;
  }
  if (err != PF_Err_NONE) {
    // Kept as is, letter by letter: whoever looks for this failure under a debugger knows it by this text (see
    // aFailureCarriesTheHostsErrorAndTheKnownMessage).
    throw AEException(err, ".\\share\\util\\AEWorldSuite", 151, "%s",
                      "class AEUtil::EffectWorldPtr __cdecl AEUtil::WorldSuite::newWorld("
                      "struct PF_ProgressInfo *,long,long,char,long)");
  }
  return made;
}

void WorldSuite::disposeWorld(PF_ProgPtr effect_ref, PF_EffectWorld* world) noexcept {
  // After the set-down there is no way to the host any more; a record that it drops so late keeps its world.
  SuiteCache* const suites = globalSuites();
  if (suites == nullptr) return;
  if (const PF_WorldSuite2* suite = acquireVersion2(*suites->basic)) {
    suite->PF_DisposeWorld(effect_ref, world);
    releaseVersion2(*suites->basic);
    return;
  }
  try {
    suites->worldSuite1().dispose_world(effect_ref, world);
  } catch (long) {
    // Neither version: the host has no way left to take its world back.
  }
}

PF_Err read_pixel_format(const PF_EffectWorld* world, PF_PixelFormat* tag) {
  SuiteCache& suites = requireGlobalSuites();
  if (const PF_WorldSuite2* suite = acquireVersion2(*suites.basic)) {
    const PF_Err err = suite->PF_GetPixelFormat(world, tag);
    const PF_Err released = releaseVersion2(*suites.basic);
    return err != PF_Err_NONE ? err : released;
  }
  *tag = (world->world_flags & PF_WorldFlag_DEEP) != 0 ? PF_PixelFormat_ARGB64 : PF_PixelFormat_ARGB32;
  return PF_Err_NONE;
}

EffectWorldPtr::EffectWorldPtr(const EffectWorldPtr& other) noexcept : node_(other.node_), world_(other.world_) {
  if (node_ != nullptr) ++node_->ref_count;
}

EffectWorldPtr& EffectWorldPtr::operator=(const EffectWorldPtr& other) noexcept {
  if (this != &other) {
    drop();
    node_ = other.node_;
    world_ = other.world_;
    if (node_ != nullptr) ++node_->ref_count;
  }
  return *this;
}

void EffectWorldPtr::drop() noexcept {
  if (node_ == nullptr) return;
  if (--node_->ref_count == 0) {
    if (world_ != nullptr) WorldSuite::disposeWorld(node_->effect_ref, world_);
    delete node_;
  }
  node_ = nullptr;
  world_ = nullptr;
}

}  // namespace AEUtil
