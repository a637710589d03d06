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
#pragma once

#include "ae/InOutData.h"

namespace vindrel {

/// Makes a new record; its handle is out_data->sequence_data. 4 when there is no memory, 512 when it can't be locked.
PF_Err setUpSequence(PF_InData* in_data, PF_OutData* out_data);

/// Disposes of in_data->sequence_data, if there is one. Always 0.
PF_Err setDownSequence(PF_InData* in_data);

/// Puts the stored form of out_data->sequence_data into a new handle, which takes its place; the old handle is not
/// disposed of. The record has nothing yet that is worth storing, so the form is always the same. 512 without a handle
/// that can be locked, 4 when there is no memory.
PF_Err flattenSequence(PF_InData* in_data, PF_OutData* out_data);

/// Makes a new record out of the stored form in in_data->sequence_data, which is not disposed of. Anything that isn't
/// the stored form, or is missing, gives the record of a new instance, without an error. 4 and 512 as at the set-up;
/// a new handle that can't be locked stays with the host.
PF_Err resetUpSequence(PF_InData* in_data, PF_OutData* out_data);

}  // namespace vindrel
