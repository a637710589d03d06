#include "host/HandleStore.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <functional>

namespace standin {

namespace {

uint8_t* startOf(const HandleStore::Record& record) {
  return static_cast<uint8_t*>(record.block) - HandleStore::kGuardLength;
}

// A block with its guards; null when there is no memory.
void* newBlock(uint64_t size) {
  constexpr uint64_t most = uint64_t{1} << 40;
  if (size > most) return nullptr;
  auto* start = static_cast<uint8_t*>(std::malloc(static_cast<size_t>(size) + 2 * HandleStore::kGuardLength));
  if (start == nullptr) return nullptr;
  std::memset(start, HandleStore::kGuardByte, HandleStore::kGuardLength);
  std::memset(start + HandleStore::kGuardLength, HandleStore::kFreshByte, static_cast<size_t>(size));
  std::memset(start + HandleStore::kGuardLength + size, HandleStore::kGuardByte, HandleStore::kGuardLength);
  return start + HandleStore::kGuardLength;
}

}  // namespace

HandleStore::~HandleStore() {
  for (Record* record : open()) std::free(startOf(*record));
}

HandleStore::Record* HandleStore::make(uint64_t size, PF_Cmd madeIn, bool byHost) {
  void* block = newBlock(size);
  if (block == nullptr) return nullptr;
  const std::lock_guard guard(mutex_);
  if (unused_.empty() && disposed_.size() > kQuarantine) {
    unused_.push_back(disposed_.front());
    disposed_.pop_front();
  }
  if (unused_.empty()) {
    auto chunk = std::make_unique<Record[]>(kChunk);
    Record* first = chunk.get();
    const auto place = std::upper_bound(chunks_.begin(), chunks_.end(), first, [](const Record* a, const auto& b) {
      return std::less<const Record*>()(a, b.get());
    });
    chunks_.insert(place, std::move(chunk));
    for (size_t i = kChunk; i-- > 0;) unused_.push_back(first + i);
  }
  Record* record = unused_.back();
  unused_.pop_back();
  *record = Record{block, size, ++lastNumber_, 0, madeIn, true, byHost, false};
  return record;
}

HandleStore::Record* HandleStore::find(PF_Handle handle) const {
  if (handle == nullptr) return nullptr;
  const std::lock_guard guard(mutex_);
  const auto* address = reinterpret_cast<const uint8_t*>(handle);
  const auto above = std::upper_bound(chunks_.begin(), chunks_.end(), address, [](const uint8_t* a, const auto& chunk) {
    return std::less<const uint8_t*>()(a, reinterpret_cast<const uint8_t*>(chunk.get()));
  });
  if (above == chunks_.begin()) return nullptr;
  Record* first = std::prev(above)->get();
  const auto distance = static_cast<size_t>(address - reinterpret_cast<const uint8_t*>(first));
  if (distance >= kChunk * sizeof(Record) || distance % sizeof(Record) != 0) return nullptr;
  Record* record = first + distance / sizeof(Record);
  return record->number == 0 ? nullptr : record;
}

void HandleStore::dispose(Record& record) {
  std::free(startOf(record));
  const std::lock_guard guard(mutex_);
  record.block = nullptr;
  record.open = false;
  disposed_.push_back(&record);
}

bool HandleStore::resize(Record& record, uint64_t size) {
  void* block = newBlock(size);
  if (block == nullptr) return false;
  std::memcpy(block, record.block, static_cast<size_t>(std::min(size, record.size)));
  std::free(startOf(record));
  record.block = block;
  record.size = size;
  return true;
}

bool HandleStore::guardsIntact(const Record& record) {
  const uint8_t* before = startOf(record);
  const uint8_t* behind = static_cast<const uint8_t*>(record.block) + record.size;
  const auto isGuard = [](uint8_t byte) { return byte == kGuardByte; };
  return std::all_of(before, before + kGuardLength, isGuard) && std::all_of(behind, behind + kGuardLength, isGuard);
}

std::vector<HandleStore::Record*> HandleStore::open() const {
  const std::lock_guard guard(mutex_);
  std::vector<Record*> all;
  for (const auto& chunk : chunks_) {
    for (size_t i = 0; i < kChunk; ++i) {
      if (chunk[i].open) all.push_back(&chunk[i]);
    }
  }
  std::sort(all.begin(), all.end(), [](const Record* a, const Record* b) { return a->number < b->number; });
  return all;
}

}  // namespace standin
