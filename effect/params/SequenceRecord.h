// What an instance of the effect remembers between commands: the last seen mode of "Distance Between".
//
// Lies in a handle of the host, 32 bytes. The form that is stored in projects is another one, and is made and read by
// filter/SequenceData.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vindrel {

inline constexpr uint32_t sequenceMagic = 0x70736571;  ///< the bytes q e s p in memory
inline constexpr uint32_t sequenceFlatSize = 24;       ///< bytes of the stored form
inline constexpr uint32_t sequenceVersion = 1;

/// The form in memory. The defaults are the values of a new instance.
struct SequenceRecord {
  uint32_t magic = sequenceMagic;
  uint32_t flattened = 0;            ///< not 0 marks the stored form
  uint32_t size = sequenceFlatSize;  ///< bytes of the stored form
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

}  // namespace vindrel
