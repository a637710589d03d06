#include "effect/share/util/SuiteCache.h"

#include "ae/Constants.h"

namespace AEUtil {

namespace {

struct SuiteName {
  const char* name;
  int32 version;
};

// In the order of SuiteCache::Slot.
constexpr std::array<SuiteName, SuiteCache::slotCount> suiteNames = {{
    {kPFHandleSuite, kPFHandleSuiteVersion2},
    {kPFWorldSuite, kPFWorldSuiteVersion1},
    {kPFFillMatteSuite, kPFFillMatteSuiteVersion2},
    {kPFWorldTransformSuite, kPFWorldTransformSuiteVersion1},
    {kPFAppSuite, kPFAppSuiteVersion6},
}};

// Neither of the two may need a constructor or a destructor to run: the memory operators use them from the first
// instruction of the module to the last.
SuiteCache globalRecord;
SuiteCache* globalRecordInUse = nullptr;

}  // namespace

void throwMissingSuite() {
  throw static_cast<long>(PF_Err_BAD_CALLBACK_PARAM);
}

const void* SuiteCache::acquire(Slot slot) {
  if (slots[slot] == nullptr) {
    const void* suite = nullptr;
    const SPErr err = basic->AcquireSuite(suiteNames[slot].name, suiteNames[slot].version, &suite);
    if (err != kSPNoError || suite == nullptr) throwMissingSuite();
    slots[slot] = suite;
  }
  return slots[slot];
}

const PF_HandleSuite1& SuiteCache::handleSuite() {
  return *static_cast<const PF_HandleSuite1*>(acquire(handleSlot));
}

const PF_WorldSuite1& SuiteCache::worldSuite1() {
  return *static_cast<const PF_WorldSuite1*>(acquire(world1Slot));
}

const PF_FillMatteSuite2& SuiteCache::fillMatteSuite() {
  return *static_cast<const PF_FillMatteSuite2*>(acquire(fillMatteSlot));
}

const PF_WorldTransformSuite1& SuiteCache::worldTransformSuite() {
  return *static_cast<const PF_WorldTransformSuite1*>(acquire(worldTransformSlot));
}

const PFAppSuite4& SuiteCache::appSuite() {
  return *static_cast<const PFAppSuite4*>(acquire(appSlot));
}

void SuiteCache::releaseAll() noexcept {
  for (std::size_t slot = 0; slot < slotCount; ++slot) {
    if (slots[slot] != nullptr) basic->ReleaseSuite(suiteNames[slot].name, suiteNames[slot].version);
  }
}

SuiteCache* globalSuites() noexcept {
  return globalRecordInUse;
}

SuiteCache& requireGlobalSuites() {
  if (globalRecordInUse == nullptr) throwMissingSuite();
  return *globalRecordInUse;
}

void openGlobalSuites(SPBasicSuite* basic) noexcept {
  if (globalRecordInUse == nullptr && basic != nullptr) {
    globalRecord.basic = basic;
    globalRecord.slots = {};
    globalRecordInUse = &globalRecord;
  }
}

void closeGlobalSuites() noexcept {
  if (globalRecordInUse != nullptr) {
    globalRecordInUse->releaseAll();
    globalRecordInUse = nullptr;
  }
}

SuiteScope::SuiteScope(SPBasicSuite* basic) {
  if (basic == nullptr) throwMissingSuite();
  suites_.basic = basic;
}

}  // namespace AEUtil
