// What an instance remembers between commands, and the form in which projects keep it.
//
// The record in memory (params/SequenceRecord.h) lies in a handle of 32 bytes. The stored form is 24 bytes, fixed for
// ever:
//
//   offset  0   4 bytes  magic, q e s p
//           4   4 bytes  1: this is the stored form
//           8   4 bytes  version, 1
//          12   4 bytes  size, 24
//          16   4 bytes  reserved bytes
//          20   4 bytes  reserved word
//
// all numbers least significant byte first. Version and size stand the other way round than in memory, so a record
// that was stored without being flattened doesn't pass for the stored form and is replaced by a new one.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "ae/Constants.h"
#include "effect/filter/BaseFilter.h"
#include "effect/params/SequenceRecord.h"
#include "effect/share/util/HostMemory.h"

namespace vindrel {

namespace {

constexpr uint32_t flatMark = 1;

/// Puts back what is stored to the values of a new record; what isn't stored stays.
void resetStoredFields(SequenceRecord& record) {
  const SequenceRecord fresh;
  record.magic = fresh.magic;
  record.flattened = fresh.flattened;
  record.size = fresh.size;
  record.version = fresh.version;
  std::memcpy(record.reserved_bytes, fresh.reserved_bytes, sizeof(record.reserved_bytes));
  record.reserved_word = fresh.reserved_word;
}

/// A locked handle as a record. Optionally filled with the values of a new one.
class LockedRecord {
 public:
  enum Fill { asItIs, fresh };

  LockedRecord(PF_Handle handle, Fill fill) : lock_(handle) {
    if (fill == fresh && lock_.block() != nullptr) {
      *record() = SequenceRecord{};
    }
  }
  SequenceRecord* record() const { return static_cast<SequenceRecord*>(lock_.block()); }

 private:
  AEUtil::LockedHandle lock_;
};

void appendWord(std::vector<uint8_t>& bytes, uint32_t word) {
  for (int shift = 0; shift < 32; shift += 8) bytes.push_back(static_cast<uint8_t>(word >> shift));
}

std::vector<uint8_t> flatForm(const SequenceRecord& record) {
  std::vector<uint8_t> bytes;
  bytes.reserve(sequenceFlatSize);
  appendWord(bytes, record.magic);
  appendWord(bytes, flatMark);
  appendWord(bytes, record.version);
  appendWord(bytes, record.size);
  bytes.insert(bytes.end(), record.reserved_bytes, record.reserved_bytes + sizeof(record.reserved_bytes));
  appendWord(bytes, record.reserved_word);
  return bytes;
}

uint32_t wordAt(const std::vector<uint8_t>& bytes, std::size_t offset) {
  uint32_t word = 0;
  for (std::size_t i = 0; i < 4; ++i) word |= static_cast<uint32_t>(bytes[offset + i]) << (8 * i);
  return word;
}

/// Reads the stored form into a record; what isn't the stored form gives the values of a new one.
void parseFlatForm(const std::vector<uint8_t>& bytes, SequenceRecord& record) {
  if (bytes.size() < sequenceFlatSize || wordAt(bytes, 0) != sequenceMagic || wordAt(bytes, 8) != sequenceVersion ||
      wordAt(bytes, 12) != sequenceFlatSize) {
    resetStoredFields(record);
    return;
  }
  record.magic = sequenceMagic;
  record.flattened = 0;
  record.version = sequenceVersion;
  record.size = sequenceFlatSize;
  std::memcpy(record.reserved_bytes, bytes.data() + 16, sizeof(record.reserved_bytes));
  record.reserved_word = wordAt(bytes, 20);
}

/// Whether the handle can be locked and begins with our mark. A handle too short for the mark hasn't got it.
bool beginsWithMagic(const PF_InData& in_data, PF_Handle handle) {
  const AEUtil::LockedHandle lock(handle);
  uint32_t mark = 0;
  if (lock.block() == nullptr || in_data.utils->host_get_handle_size(handle) < sizeof(mark)) return false;
  std::memcpy(&mark, lock.block(), sizeof(mark));
  return mark == sequenceMagic;
}

}  // namespace

PF_Err BaseFilter::SequenceSetup(PF_InData* in_data, PF_OutData* out_data) {
  PF_Handle handle = in_data->utils->host_new_handle(sizeof(SequenceRecord));
  if (handle == nullptr) return PF_Err_OUT_OF_MEMORY;
  const LockedRecord locked(handle, LockedRecord::fresh);
  if (locked.record() == nullptr) {
    in_data->utils->host_dispose_handle(handle);
    return PF_Err_INTERNAL_STRUCT_DAMAGED;
  }
  out_data->sequence_data = handle;
  return PF_Err_NONE;
}

PF_Err BaseFilter::SequenceSetdown(PF_InData* in_data, PF_OutData*) {
  if (in_data->sequence_data != nullptr) in_data->utils->host_dispose_handle(in_data->sequence_data);
  return PF_Err_NONE;
}

PF_Err BaseFilter::SequenceFlatten(PF_InData* in_data, PF_OutData* out_data) {
  const LockedRecord old(out_data->sequence_data, LockedRecord::asItIs);
  if (old.record() == nullptr) return PF_Err_INTERNAL_STRUCT_DAMAGED;
  // Kept as is: even the reserved fields are stored as those of a new record, so that the form is a constant
  // (see everyFlatteningGivesTheSameBytes).
  resetStoredFields(*old.record());
  const std::vector<uint8_t> bytes = flatForm(*old.record());
  PF_Handle handle = in_data->utils->host_new_handle(bytes.size());
  if (handle == nullptr) return PF_Err_OUT_OF_MEMORY;
  const AEUtil::LockedHandle flat(handle);
  if (flat.block() == nullptr) {
    in_data->utils->host_dispose_handle(handle);
    return PF_Err_INTERNAL_STRUCT_DAMAGED;
  }
  std::memcpy(flat.block(), bytes.data(), bytes.size());
  out_data->sequence_data = handle;
  return PF_Err_NONE;
}

PF_Err BaseFilter::SequenceResetup(PF_InData* in_data, PF_OutData* out_data) {
  if (in_data->sequence_data == nullptr || !beginsWithMagic(*in_data, in_data->sequence_data)) {
    return BaseFilter::SequenceSetup(in_data, out_data);
  }
  const AEUtil::LockedHandle old(in_data->sequence_data);
  if (old.block() == nullptr) return PF_Err_INTERNAL_STRUCT_DAMAGED;
  const PF_Err err = BaseFilter::SequenceSetup(in_data, out_data);
  if (err != PF_Err_NONE) return err;
  const LockedRecord made(out_data->sequence_data, LockedRecord::asItIs);
  if (made.record() == nullptr) return PF_Err_INTERNAL_STRUCT_DAMAGED;
  std::vector<uint8_t> bytes(static_cast<std::size_t>(in_data->utils->host_get_handle_size(in_data->sequence_data)));
  if (!bytes.empty()) std::memcpy(bytes.data(), old.block(), bytes.size());
  parseFlatForm(bytes, *made.record());
  return PF_Err_NONE;
}

}  // namespace vindrel
