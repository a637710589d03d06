// The host's suites: who holds them, and how they are got and given back.
//
// A suite is asked for at its first need and stays in its slot; a slot that is filled owes the host one ReleaseSuite of
// the same name and version. One record is global, for the life of the module; a SuiteScope holds suites for the
// length of one operation.
//
// Threads: the global record is opened and closed on the host's main thread. In between any thread may fill a slot. A
// SuiteScope belongs to the thread that made it.
#pragma once

#include <array>
#include <cstddef>

#include "ae/InOutData.h"
#include "ae/Suites.h"

namespace AEUtil {

/// Throws the bare long 516 that stands for a suite that can't be had. Nobody inside the module catches it by value:
/// it ends at the module's entry, which answers 512.
[[noreturn]] void throwMissingSuite();

/// A plain record: the way to the suites, and one slot for each suite that the effect keeps.
///
/// All accessors fill their slot at first need, and throw the bare long 516 when the host doesn't have the suite.
/// The references stay good until releaseAll. No lock: two threads that fill one slot at the same time acquire twice
/// and release once, which is accepted.
struct SuiteCache {
  enum Slot : std::size_t { handleSlot, world1Slot, fillMatteSlot, worldTransformSlot, appSlot, slotCount };

  SPBasicSuite* basic = nullptr;  ///< owned by the host; never null in a record that is in use
  std::array<const void*, slotCount> slots{};

  const PF_HandleSuite1& handleSuite();
  const PF_WorldSuite1& worldSuite1();
  const PF_FillMatteSuite2& fillMatteSuite();
  const PF_WorldTransformSuite1& worldTransformSuite();
  const PFAppSuite4& appSuite();

  /// One ReleaseSuite for each filled slot, with its name and version. The slots keep their pointers, so that this is
  /// the last thing that happens to a record.
  void releaseAll() noexcept;

 private:
  const void* acquire(Slot slot);
};

/// The module's one global record, or null before the first call and after the set-down.
SuiteCache* globalSuites() noexcept;

/// The same; throws the bare long 516 when there is none.
SuiteCache& requireGlobalSuites();

/// Makes the global record, with all slots empty. Does nothing when there is one already or when `basic` is null.
void openGlobalSuites(SPBasicSuite* basic) noexcept;

/// Gives back what the global record holds; there is none afterwards.
void closeGlobalSuites() noexcept;

/// Suites for the length of one operation: lives on the stack, gives everything back on every way out.
class SuiteScope {
 public:
  /// Throws the bare long 516 when `basic` is null.
  explicit SuiteScope(SPBasicSuite* basic);
  ~SuiteScope() { suites_.releaseAll(); }
  SuiteScope(const SuiteScope&) = delete;
  SuiteScope& operator=(const SuiteScope&) = delete;

  SuiteCache& operator*() noexcept { return suites_; }
  SuiteCache* operator->() noexcept { return &suites_; }

 private:
  SuiteCache suites_;
};

}  // namespace AEUtil
