/// The suite of suites: which tables this host has, and who holds which.
#include <algorithm>
#include <cstring>

#include "host/HostState.h"
#include "host/Refusals.h"

namespace standin {

namespace {

struct Offer {
  const char* name;
  int32_t version;
  const void* table;
};

// The integer asked for is not the number in the name of the table; the constants of the interface tie them together.
const void* offered(std::string_view name, int32_t version) {
  const Offer offers[] = {
      {kPFHandleSuite, kPFHandleSuiteVersion2, handleSuite()},
      {kPFWorldSuite, kPFWorldSuiteVersion1, worldSuite1()},
      {kPFWorldSuite, kPFWorldSuiteVersion2, worldSuite2()},
      {kPFFillMatteSuite, kPFFillMatteSuiteVersion2, fillMatteSuite()},
      {kPFWorldTransformSuite, kPFWorldTransformSuiteVersion1, worldTransformSuite()},
      {kPFAppSuite, kPFAppSuiteVersion6, appSuite6()},
      {kPFAppSuite, kPFAppSuiteVersion7, appSuite7()},
      {kPFAppSuite, kPFAppSuiteVersion1, appSuite1()},
      {kPFParamUtilsSuite, kPFParamUtilsSuiteVersion2, paramUtilsSuite2()},
      {kPFParamUtilsSuite, kPFParamUtilsSuiteVersion3, paramUtilsSuite3()},
      {kPFEffectUISuite, 1, effectUiSuite()},
      {kPFAnsiSuite, 1, &utilTable()->ansi},  // the suite's members, in its order, and a reserved one behind them
      {kPFIterate8Suite, 1, iterate8Suite()},
      {kPFIterate8Suite, 2, iterate8Suite()},
      {kPFIterate16Suite, 1, iterate16Suite()},
      {kPFIterate16Suite, 2, iterate16Suite()},
      {kPFIterateFloatSuite, 1, iterateFloatSuite()},
      {kPFIterateFloatSuite, 2, iterateFloatSuite()},
      {kPFPixelDataSuite, 1, pixelDataSuite()},
      {kPFPixelDataSuite, 2, pixelDataSuite()},
      {kPFColorSuite, 1, colorSuite()},
      {kPFColor16Suite, 1, color16Suite()},
      {kPFColorFloatSuite, 1, colorFloatSuite()},
      {kPFSampling8Suite, 1, sampling8Suite()},
      {kPFSampling16Suite, 1, sampling16Suite()},
      {kPFSamplingFloatSuite, 1, samplingFloatSuite()},
      {kAEGPUtilitySuite, 3, aegpUtilitySuite()},  // 3 and 5 are beginnings of 7
      {kAEGPUtilitySuite, 5, aegpUtilitySuite()},
      {kAEGPUtilitySuite, 7, aegpUtilitySuite()},
      {kAEGPRenderQueueSuite, 1, renderQueueSuite()},
      {kAEGPMemorySuite, 1, aegpMemorySuite()},
      {kAEGPPFInterfaceSuite, 1, pfInterfaceSuite()},
      {kAEGPIterateSuite, 1, aegpIterateSuite()},
      {kAEGPIterateSuite, 2, aegpIterateSuite()},
  };
  for (const Offer& offer : offers) {
    if (offer.name == name && offer.version == version) return offer.table;
  }
  return nullptr;
}

std::string titleOf(const char* name, int32 version) {
  return std::string(name) + " " + std::to_string(version);
}

SPErr acquire(const char* name, int32 version, const void** suite) {
  HostState* host = HostState::current();
  if (host == nullptr || name == nullptr || suite == nullptr) return kSPBadParameterError;
  const std::string title = titleOf(name, version);
  std::optional<PF_Err> fault = host->fault("AcquireSuite:" + title);
  if (!fault) fault = host->fault("AcquireSuite");
  const auto& withheld = host->settings.withheld;
  const bool kept = std::find(withheld.begin(), withheld.end(), SuiteName{name, version}) != withheld.end();
  const void* table = kept || fault ? nullptr : offered(name, version);
  const SPErr result = fault ? *fault : table == nullptr ? kSPSuiteNotFoundError : kSPNoError;
  host->log.suites.push_back({host->log.nextOrder, true, name, version, result});
  host->note("AcquireSuite", title, result);
  *suite = table;
  if (table != nullptr) {
    host->openSuites[{name, version}].push_back(host->books.lend(Matter::kSuite, title, host->running));
  }
  return result;
}

SPErr release(const char* name, int32 version) {
  HostState* host = HostState::current();
  if (host == nullptr || name == nullptr) return kSPBadParameterError;
  const std::string title = titleOf(name, version);
  std::optional<PF_Err> fault = host->fault("ReleaseSuite:" + title);
  if (!fault) fault = host->fault("ReleaseSuite");
  auto& open = host->openSuites[{name, version}];
  SPErr result = fault.value_or(kSPNoError);
  if (open.empty()) {
    host->complain(Matter::kBadSuite, "ReleaseSuite of " + title + ", which is not acquired");
    result = kSPBadParameterError;
  } else {
    // A release that reports a failure has still been asked for: the effect has done its part.
    host->books.giveBack(Matter::kSuite, open.back());
    open.pop_back();
  }
  host->log.suites.push_back({host->log.nextOrder, false, name, version, result});
  return host->note("ReleaseSuite", title, result);
}

SPBoolean isEqual(const char* a, const char* b) {
  return a != nullptr && b != nullptr && std::strcmp(a, b) == 0 ? 1 : 0;
}

}  // namespace

SPBasicSuite* basicTable() {
  static SPBasicSuite table = {acquire,
                               release,
                               isEqual,
                               refused<"AllocateBlock">,
                               refused<"FreeBlock">,
                               refused<"ReallocateBlock">,
                               refused<"Undefined">};
  return &table;
}

}  // namespace standin
