/// The suite of suites: which tables this host has, and who holds which.
#include <algorithm>
#include <cstring>

#include "host/HostState.h"

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
      {kPFAppSuite, kPFAppSuiteVersion6, appSuite()},
      {kPFParamUtilsSuite, kPFParamUtilsSuiteVersion2, paramUtilsSuite()},
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
  static SPBasicSuite table = {acquire, release, isEqual, refused, refused, refused, refused};
  return &table;
}

}  // namespace standin
