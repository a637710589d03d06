#include "tests/util/SmallHost.h"

#include <algorithm>

#include "ae/Constants.h"

namespace smallhost {

namespace {

SmallHost* host = nullptr;

std::string suiteLine(const char* name, int32 version) {
  return std::string(name) + ' ' + std::to_string(version);
}

PF_Handle newHandle(A_HandleSize size) {
  host->log.emplace_back("new");
  host->lastHandleSize = size;
  if (host->outOfMemory || size > 0x7FFFFFFFU) {
    return nullptr;
  }
  auto* const handle = new void*;
  std::vector<unsigned char>& block = host->handles[handle];
  block.assign(static_cast<std::size_t>(size), 0xA5);
  *handle = block.data();
  return handle;
}

void* lockHandle(PF_Handle handle) {
  host->log.emplace_back("lock");
  return host->locksFail ? nullptr : *handle;
}

void unlockHandle(PF_Handle) {
  host->log.emplace_back("unlock");
}

void disposeHandle(PF_Handle handle) {
  host->log.emplace_back("dispose");
  host->handles.erase(handle);
  delete handle;
}

PF_Err newWorldOfVersion2(PF_ProgPtr, A_long width, A_long height, PF_Boolean clear, PF_PixelFormat,
                          PF_EffectWorld* world) {
  host->log.emplace_back("PF_NewWorld clear " + std::to_string(static_cast<int>(clear)));
  world->width = width;
  world->height = height;
  return host->newWorldError;
}

PF_Err disposeWorldOfVersion2(PF_ProgPtr, PF_EffectWorld*) {
  host->log.emplace_back("PF_DisposeWorld");
  return PF_Err_NONE;
}

PF_Err getPixelFormat(const PF_EffectWorld*, PF_PixelFormat* format) {
  host->log.emplace_back("PF_GetPixelFormat");
  *format = host->pixelFormat;
  return host->pixelFormatError;
}

PF_Err newWorldOfVersion1(PF_ProgPtr, A_long width, A_long height, PF_NewWorldFlags flags, PF_EffectWorld* world) {
  host->log.emplace_back("new_world flags " + std::to_string(flags));
  world->width = width;
  world->height = height;
  return host->newWorldError;
}

PF_Err disposeWorldOfVersion1(PF_ProgPtr, PF_EffectWorld*) {
  host->log.emplace_back("dispose_world");
  return PF_Err_NONE;
}

PF_HandleSuite1 handleSuite = {newHandle, lockHandle, unlockHandle, disposeHandle, nullptr, nullptr};
PF_WorldSuite1 worldSuite1 = {newWorldOfVersion1, disposeWorldOfVersion1};
PF_WorldSuite2 worldSuite2 = {newWorldOfVersion2, disposeWorldOfVersion2, getPixelFormat};
PF_FillMatteSuite2 fillMatteSuite = {};
PF_WorldTransformSuite1 worldTransformSuite = {};
PFAppSuite4 appSuite = {};

SPErr acquireSuite(const char* name, int32 version, const void** suite) {
  const std::string line = suiteLine(name, version);
  host->log.push_back("acquire " + line);
  if (host->withheld.count(line) != 0) {
    return kSPSuiteNotFoundError;
  }
  const std::map<std::string, const void*> suites = {
      {"PF Handle Suite 2", &handleSuite},
      {"PF World Suite 1", &worldSuite1},
      {"PF World Suite 2", &worldSuite2},
      {"PF Fill Matte Suite 2", &fillMatteSuite},
      {"PF World Transform Suite 1", &worldTransformSuite},
      {"PF AE App Suite 6", &appSuite},
  };
  if (host->givenAsNull.count(line) != 0) {
    *suite = nullptr;
    return kSPNoError;
  }
  const auto found = suites.find(line);
  if (found == suites.end()) {
    return kSPSuiteNotFoundError;
  }
  *suite = found->second;
  return host->givenWithError.count(line) != 0 ? kSPBadParameterError : kSPNoError;
}

SPErr releaseSuite(const char* name, int32 version) {
  host->log.push_back("release " + suiteLine(name, version));
  return host->releaseError;
}

}  // namespace

SmallHost::SmallHost(bool opensGlobalRecord) : basic_{acquireSuite, releaseSuite, {}, {}, {}, {}, {}} {
  host = this;
  if (opensGlobalRecord) {
    AEUtil::openGlobalSuites(&basic_);
  }
  AEUtil::pendingErrors = &pending;
}

SmallHost::~SmallHost() {
  AEUtil::pendingErrors = nullptr;
  AEUtil::closeGlobalSuites();
  for (const auto& [handle, block] : handles) {
    delete handle;
  }
  host = nullptr;
}

int32_t SmallHost::count(const std::string& line) const {
  return static_cast<int32_t>(std::count(log.begin(), log.end(), line));
}

}  // namespace smallhost
