/// The host's own memory: handles, each with its block, its locks and guard bytes around it.
///
/// A handle is the address of a pointer to its block, so that dereferencing it once gives the block, locked or not.
/// Blocks are 16-byte aligned. Effects whose whole heap is host memory make millions of handles in a frame, so that a
/// handle's record is used again after a while: a handle is known as disposed of for the next kQuarantine disposals.
///
/// For several threads at once, but for one handle that two of them work on; its locks may be counted by both.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <vector>

#include "ae/Scalars.h"

namespace standin {

class HandleStore {
 public:
  static constexpr size_t kQuarantine = 4096;
  static constexpr size_t kGuardLength = 16;  ///< bytes before and behind each block
  static constexpr uint8_t kGuardByte = 0x5D;
  static constexpr uint8_t kFreshByte = 0xC9;  ///< what a new block holds; effects must not rely on zeros

  struct Record {
    void* block = nullptr;  ///< first member: a PF_Handle points here
    uint64_t size = 0;      ///< bytes
    int32_t number = 0;     ///< counts from 1 over all handles
    int32_t locks = 0;
    PF_Cmd madeIn = 0;
    bool open = false;           ///< made and not disposed of
    bool byHost = false;         ///< made for the host itself
    bool ofMemorySuite = false;  ///< made by "AEGP Memory Suite"

    void lock() { std::atomic_ref(locks).fetch_add(1, std::memory_order_relaxed); }
    /// False, and nothing changes, when it isn't locked.
    bool unlock() {
      if (std::atomic_ref(locks).fetch_sub(1, std::memory_order_relaxed) > 0) return true;
      lock();
      return false;
    }
  };

  HandleStore() = default;
  ~HandleStore();
  HandleStore(const HandleStore&) = delete;
  HandleStore& operator=(const HandleStore&) = delete;

  /// Null when the system has no memory.
  Record* make(uint64_t size, PF_Cmd madeIn, bool byHost);

  /// The record of a handle, open or disposed of; null for what was never a handle of this store.
  Record* find(PF_Handle handle) const;

  static PF_Handle handleOf(Record& record) { return &record.block; }

  /// Frees the block and closes the record. The record must be open.
  void dispose(Record& record);

  /// Gives the block another size, keeping the bytes that fit. False when there is no memory; nothing changes then.
  bool resize(Record& record, uint64_t size);

  /// False once a byte just before or behind the block has changed. The record must be open.
  static bool guardsIntact(const Record& record);

  /// All open records in the order of their making.
  std::vector<Record*> open() const;

 private:
  static constexpr size_t kChunk = 1024;
  mutable std::mutex mutex_;                       // for what follows
  std::vector<std::unique_ptr<Record[]>> chunks_;  // sorted by address
  std::vector<Record*> unused_;
  std::deque<Record*> disposed_;
  int32_t lastNumber_ = 0;
};

}  // namespace standin
