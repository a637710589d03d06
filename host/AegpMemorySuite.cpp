/// "AEGP Memory Suite": handles of the same store as the other host memory, in the same books, which keep their address
/// when they are resized.
#include <cstring>

#include "ae/AegpSuites.h"
#include "host/HostState.h"

namespace standin {

namespace {

std::string handleText(const HandleStore::Record* record) {
  return record == nullptr ? "no handle" : "handle " + std::to_string(record->number);
}

// The open record of a handle of this suite; null with a complaint for anything else.
HandleStore::Record* openRecord(HostState& host, AEGP_MemHandle handle, std::string_view service) {
  HandleStore::Record* record = host.handles->find(handle);
  if (record != nullptr && record->open && record->ofMemorySuite) return record;
  host.complain(Matter::kBadHandle, std::string(service) + " of " +
                                        (record == nullptr ? std::string("what never was a handle")
                                         : !record->open   ? handleText(record) + ", which was freed"
                                                           : handleText(record) + ", which is none of this suite"));
  return nullptr;
}

/// What every call but the first does first: the host, a fault, the record.
template <class Work>
A_Err onHandle(std::string_view service, AEGP_MemHandle handle, Work&& work) {
  HostState* host = HostState::current();
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  if (const auto fault = host->fault(service)) return host->note(service, "", *fault);
  HandleStore::Record* record = openRecord(*host, handle, service);
  std::string text = handleText(record);
  const A_Err result = record == nullptr ? PF_Err_BAD_CALLBACK_PARAM : work(*host, *record);
  return host->note(service, std::move(text), result);
}

void checkGuards(HostState& host, const HandleStore::Record& record) {
  if (HandleStore::guardsIntact(record)) return;
  host.complain(Matter::kOutside, "bytes outside " + handleText(&record) + " were changed");
}

A_Err newMemHandle(AEGP_PluginID, const A_char* what, AEGP_MemSize size, AEGP_MemFlag flags, AEGP_MemHandle* handle) {
  HostState* host = HostState::current();
  if (host == nullptr || handle == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  *handle = nullptr;
  const std::string text = std::to_string(size) + " bytes for " + (what == nullptr ? "nothing told" : what);
  if (const auto fault = host->fault("AEGP_NewMemHandle")) return host->note("AEGP_NewMemHandle", text, *fault);
  HandleStore::Record* record = host->handles->make(size, host->running, false);
  if (record == nullptr) return host->note("AEGP_NewMemHandle", text, PF_Err_OUT_OF_MEMORY);
  record->ofMemorySuite = true;
  if ((flags & AEGP_MemFlag_CLEAR) != 0) std::memset(record->block, 0, size);
  *handle = HandleStore::handleOf(*record);
  return host->note("AEGP_NewMemHandle", text, PF_Err_NONE);
}

A_Err freeMemHandle(AEGP_MemHandle handle) {
  return onHandle("AEGP_FreeMemHandle", handle, [](HostState& host, HandleStore::Record& record) {
    checkGuards(host, record);
    host.handles->dispose(record);
    return PF_Err_NONE;
  });
}

A_Err lockMemHandle(AEGP_MemHandle handle, void** block) {
  return onHandle("AEGP_LockMemHandle", handle, [&](HostState&, HandleStore::Record& record) {
    if (block == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    record.lock();
    *block = record.block;
    return PF_Err_NONE;
  });
}

A_Err unlockMemHandle(AEGP_MemHandle handle) {
  return onHandle("AEGP_UnlockMemHandle", handle, [](HostState& host, HandleStore::Record& record) {
    if (!record.unlock()) {
      host.complain(Matter::kBadHandle, "AEGP_UnlockMemHandle of " + handleText(&record) + ", which is not locked");
      return PF_Err_BAD_CALLBACK_PARAM;
    }
    checkGuards(host, record);
    return PF_Err_NONE;
  });
}

A_Err getMemHandleSize(AEGP_MemHandle handle, AEGP_MemSize* size) {
  return onHandle("AEGP_GetMemHandleSize", handle, [&](HostState&, HandleStore::Record& record) {
    if (size == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    *size = static_cast<AEGP_MemSize>(record.size);
    return PF_Err_NONE;
  });
}

A_Err resizeMemHandle(const A_char*, AEGP_MemSize size, AEGP_MemHandle handle) {
  return onHandle("AEGP_ResizeMemHandle", handle, [&](HostState& host, HandleStore::Record& record) {
    if (record.locks > 0) {
      host.complain(Matter::kBadHandle, "AEGP_ResizeMemHandle of " + handleText(&record) + ", which is locked");
      return PF_Err_BAD_CALLBACK_PARAM;
    }
    checkGuards(host, record);
    return host.handles->resize(record, size) ? PF_Err_NONE : PF_Err_OUT_OF_MEMORY;
  });
}

// The books are always kept.
A_Err setMemReportingOn(A_Boolean) {
  HostState* host = HostState::current();
  return host == nullptr ? PF_Err_BAD_CALLBACK_PARAM : host->note("AEGP_SetMemReportingOn", "", PF_Err_NONE);
}

// The open handles of this suite, whoever made them, and their bytes.
A_Err getMemStats(AEGP_PluginID, A_long* count, A_long* size) {
  HostState* host = HostState::current();
  if (host == nullptr || count == nullptr || size == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  if (const auto fault = host->fault("AEGP_GetMemStats")) return host->note("AEGP_GetMemStats", "", *fault);
  *count = 0;
  *size = 0;
  for (const HandleStore::Record* record : host->handles->open()) {
    if (!record->ofMemorySuite) continue;
    *count += 1;
    *size += static_cast<A_long>(record->size);
  }
  return host->note("AEGP_GetMemStats", "", PF_Err_NONE);
}

}  // namespace

const AEGP_MemorySuite* aegpMemorySuite() {
  static const AEGP_MemorySuite suite = {newMemHandle,     freeMemHandle,   lockMemHandle,     unlockMemHandle,
                                         getMemHandleSize, resizeMemHandle, setMemReportingOn, getMemStats};
  return &suite;
}

}  // namespace standin
