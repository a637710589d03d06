/// Handles: in the handle suite and in the utils table alike.
#include "host/HostState.h"

namespace standin {

namespace {

void noteHandle(HostState& host, HandleCall::Step step, std::string_view service, int32_t number, uint64_t size,
                PF_Err result) {
  if (!host.log.handleCallsToo) return;
  std::string text = "handle " + std::to_string(number);
  if (size != 0) text += " (" + std::to_string(size) + " bytes)";
  host.log.handles.push_back({host.log.nextOrder, step, number, size});
  host.note(service, std::move(text), result);
}

// The open record of a handle; null with a complaint for anything else.
HandleStore::Record* openRecord(HostState& host, PF_Handle handle, std::string_view service) {
  HandleStore::Record* record = host.handles->find(handle);
  if (record == nullptr) {
    host.complain(Matter::kBadHandle, std::string(service) + " of what never was a handle");
    return nullptr;
  }
  if (!record->open) {
    host.complain(Matter::kBadHandle,
                  std::string(service) + " of handle " + std::to_string(record->number) + ", which was disposed of");
    return nullptr;
  }
  return record;
}

void checkGuards(HostState& host, const HandleStore::Record& record) {
  if (HandleStore::guardsIntact(record)) return;
  host.complain(Matter::kOutside, "bytes outside handle " + std::to_string(record.number) + " (" +
                                      std::to_string(record.size) + " bytes) were changed");
}

}  // namespace

PF_Handle newHandle(A_u_longlong size) {
  HostState* host = HostState::current();
  if (host == nullptr) return nullptr;
  HandleStore::Record* record =
      host->fault("host_new_handle") ? nullptr : host->handles->make(size, host->running, false);
  noteHandle(*host, HandleCall::Step::kNew, "host_new_handle", record == nullptr ? 0 : record->number, size,
             record == nullptr ? PF_Err_OUT_OF_MEMORY : PF_Err_NONE);
  return record == nullptr ? nullptr : HandleStore::handleOf(*record);
}

void* lockHandle(PF_Handle handle) {
  HostState* host = HostState::current();
  if (host == nullptr) return nullptr;
  const bool fails = host->fault("host_lock_handle").has_value();
  HandleStore::Record* record = openRecord(*host, handle, "host_lock_handle");
  const bool locked = record != nullptr && !fails;
  if (locked) record->lock();
  noteHandle(*host, HandleCall::Step::kLock, "host_lock_handle", record == nullptr ? 0 : record->number, 0,
             locked ? PF_Err_NONE : PF_Err_OUT_OF_MEMORY);
  return locked ? record->block : nullptr;
}

void unlockHandle(PF_Handle handle) {
  HostState* host = HostState::current();
  if (host == nullptr) return;
  HandleStore::Record* record = openRecord(*host, handle, "host_unlock_handle");
  noteHandle(*host, HandleCall::Step::kUnlock, "host_unlock_handle", record == nullptr ? 0 : record->number, 0,
             PF_Err_NONE);
  if (record == nullptr) return;
  if (!record->unlock()) {
    host->complain(Matter::kBadHandle,
                   "host_unlock_handle of handle " + std::to_string(record->number) + ", which is not locked");
    return;
  }
  checkGuards(*host, *record);
}

void disposeHandle(PF_Handle handle) {
  HostState* host = HostState::current();
  if (host == nullptr) return;
  HandleStore::Record* record = openRecord(*host, handle, "host_dispose_handle");
  noteHandle(*host, HandleCall::Step::kDispose, "host_dispose_handle", record == nullptr ? 0 : record->number, 0,
             PF_Err_NONE);
  if (record == nullptr) return;
  checkGuards(*host, *record);
  host->handles->dispose(*record);
}

A_u_longlong handleSize(PF_Handle handle) {
  HostState* host = HostState::current();
  if (host == nullptr) return 0;
  const HandleStore::Record* record = openRecord(*host, handle, "host_get_handle_size");
  noteHandle(*host, HandleCall::Step::kSize, "host_get_handle_size", record == nullptr ? 0 : record->number, 0,
             PF_Err_NONE);
  return record == nullptr ? 0 : record->size;
}

PF_Err resizeHandle(A_u_longlong size, PF_Handle* handle) {
  HostState* host = HostState::current();
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  const std::optional<PF_Err> fault = host->fault("host_resize_handle");
  HandleStore::Record* record = handle == nullptr ? nullptr : openRecord(*host, *handle, "host_resize_handle");
  PF_Err result = PF_Err_NONE;
  if (record == nullptr) {
    result = PF_Err_BAD_CALLBACK_PARAM;
  } else if (fault) {
    result = *fault;
  } else if (record->locks > 0) {
    host->complain(Matter::kBadHandle,
                   "host_resize_handle of handle " + std::to_string(record->number) + ", which is locked");
    result = PF_Err_BAD_CALLBACK_PARAM;
  } else {
    checkGuards(*host, *record);
    if (!host->handles->resize(*record, size)) result = PF_Err_OUT_OF_MEMORY;
  }
  noteHandle(*host, HandleCall::Step::kResize, "host_resize_handle", record == nullptr ? 0 : record->number, size,
             result);
  return result;
}

const PF_HandleSuite1* handleSuite() {
  static const PF_HandleSuite1 suite = {newHandle, lockHandle, unlockHandle, disposeHandle, handleSize, resizeHandle};
  return &suite;
}

}  // namespace standin
