#include "effect/params/SequenceRecord.h"

#include <cstring>

namespace vindrel {
namespace {

constexpr uint32_t flatMark = 1;

void appendWord(std::vector<uint8_t>& bytes, uint32_t word) {
  for (int shift = 0; shift < 32; shift += 8) bytes.push_back(static_cast<uint8_t>(word >> shift));
}

uint32_t wordAt(const std::vector<uint8_t>& bytes, std::size_t offset) {
  uint32_t word = 0;
  for (std::size_t i = 0; i < 4; ++i) word |= static_cast<uint32_t>(bytes[offset + i]) << (8 * i);
  return word;
}

}  // namespace

void resetStoredFields(SequenceRecord& record) {
  const SequenceRecord fresh;
  record.magic = fresh.magic;
  record.flattened = fresh.flattened;
  record.size = fresh.size;
  record.version = fresh.version;
  std::memcpy(record.reserved_bytes, fresh.reserved_bytes, sizeof(record.reserved_bytes));
  record.reserved_word = fresh.reserved_word;
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

}  // namespace vindrel
