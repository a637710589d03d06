// What an instance of the effect remembers between commands: the last seen mode of "Distance Between".
//
// The record in memory lies in a handle of the host, 32 bytes. The flat form, in which projects keep it, is 24 bytes,
// fixed for ever:
//
//   offset  0   4 bytes  magic, q e s p
//           4   4 bytes  1: this is the flat form
//           8   4 bytes  version, 1
//          12   4 bytes  size, 24
//          16   4 bytes  reserved bytes
//          20   4 bytes  reserved word
//
// all numbers least significant byte first. Version and size stand the other way round than in memory, so a record
// that was stored without being flattened doesn't pass for the flat form and is replaced by a new one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vindrel {

inline constexpr uint32_t sequenceMagic = 0x70736571;  ///< the bytes q e s p in memory
inline constexpr uint32_t sequenceFlatSize = 24;       ///< bytes of the flat form
inline constexpr uint32_t sequenceVersion = 1;

/// The form in memory. The defaults are the values of a new instance.
struct SequenceRecord {
  uint32_t magic = sequenceMagic;
  uint32_t flattened = 0;            ///< not 0 marks the flat form
  uint32_t size = sequenceFlatSize;  ///< bytes of the flat form
  uint32_t version = sequenceVersion;
  uint8_t reserved_bytes[4] = {};  ///< stored, read by nothing
  uint32_t reserved_word = 0;      ///< stored, read by nothing
  uint8_t distanceModeKnown = 0;   ///< not 0 once distanceMode holds a value
  uint8_t reserved[3] = {};
  int32_t distanceMode = 0;  ///< the last seen value of "Distance Between"; not stored
};

static_assert(sizeof(SequenceRecord) == 32);
static_assert(offsetof(SequenceRecord, magic) == 0);
static_assert(offsetof(SequenceRecord, flattened) == 4);
static_assert(offsetof(SequenceRecord, size) == 8);
static_assert(offsetof(SequenceRecord, version) == 12);
static_assert(offsetof(SequenceRecord, reserved_bytes) == 16);
static_assert(offsetof(SequenceRecord, reserved_word) == 20);
static_assert(offsetof(SequenceRecord, distanceModeKnown) == 24);
static_assert(offsetof(SequenceRecord, distanceMode) == 28);

/// Puts back what the flat form holds to the values of a new record; the rest stays.
void resetStoredFields(SequenceRecord& record);

/// The flat form of a record.
std::vector<uint8_t> flatForm(const SequenceRecord& record);

/// Reads the flat form into a record; what isn't the flat form gives the values of a new record. Bytes behind the form
/// don't count.
void parseFlatForm(const std::vector<uint8_t>& bytes, SequenceRecord& record);

}  // namespace vindrel
