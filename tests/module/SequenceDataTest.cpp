// What an instance remembers, and the form in which projects keep it.
#include <map>

#include "tests/module/HostedModule.h"

namespace {

using standin::Matter;
using Bytes = std::vector<uint8_t>;

// The constants of the stored form, written out by hand.
const Bytes storedForm = {0x71, 0x65, 0x73, 0x70, 1, 0, 0, 0, 1, 0, 0, 0, 24, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
const Bytes freshRecord = {0x71, 0x65, 0x73, 0x70, 0, 0, 0, 0, 24, 0, 0, 0, 1, 0, 0, 0,
                           0,    0,    0,    0,    0, 0, 0, 0, 0,  0, 0, 0, 0, 0, 0, 0};

class SequenceData : public vindrel::test::HostedModule {
 protected:
  /// The record that comes of `stored` when a project is loaded. What was stored is put back by the host.
  Bytes recordFrom(const Bytes& stored) {
    EXPECT_EQ(host.sequenceSetdown(), 0);
    host.loadSequence(stored);
    PF_Handle old = host.sequenceData();
    EXPECT_EQ(host.sequenceResetup(), 0);
    EXPECT_NE(host.sequenceData(), old);
    Bytes record = host.sequenceBytes();
    putBack(old);
    return record;
  }

  /// Frees a handle that the effect has left behind.
  void putBack(PF_Handle handle) { host.utils()->host_dispose_handle(handle); }
};

/// The locks that each handle was given and that were not taken off again, over the commands since the log was cleared.
std::map<int32_t, int32_t> locksLeft(const standin::CallLog& log) {
  std::map<int32_t, int32_t> locks;
  for (const standin::HandleCall& call : log.handles) {
    if (call.step == standin::HandleCall::Step::kLock) ++locks[call.handle];
    if (call.step == standin::HandleCall::Step::kUnlock) --locks[call.handle];
  }
  std::erase_if(locks, [](const auto& entry) { return entry.second == 0; });
  return locks;
}

class HandlesAfterwards : public SequenceData {
 protected:
  void SetUp() override {
    SequenceData::SetUp();
    host.log().handleCallsToo = true;
    host.log().clear();
  }
  const std::map<int32_t, int32_t> none{};
};

TEST_F(HandlesAfterwards, areUnlockedByASetup) {
  ASSERT_EQ(host.sequenceSetdown(), 0);
  ASSERT_EQ(host.sequenceSetup(), 0);
  EXPECT_GT(host.log().count("host_lock_handle"), 0);
  EXPECT_EQ(locksLeft(host.log()), none);
}

TEST_F(HandlesAfterwards, areUnlockedByAFlattening) {
  PF_Handle old = host.sequenceData();
  ASSERT_EQ(host.sequenceFlatten(), 0);
  EXPECT_GT(host.log().count("host_lock_handle"), 2);
  EXPECT_EQ(locksLeft(host.log()), none);
  putBack(old);
}

TEST_F(HandlesAfterwards, areUnlockedByAResetup) {
  PF_Handle old = host.sequenceData();
  ASSERT_EQ(host.sequenceFlatten(), 0);
  putBack(old);
  PF_Handle flat = host.sequenceData();
  host.log().clear();
  ASSERT_EQ(host.sequenceResetup(), 0);
  EXPECT_GT(host.log().count("host_lock_handle"), 3);
  EXPECT_EQ(locksLeft(host.log()), none);
  putBack(flat);
}

TEST_F(HandlesAfterwards, areUnlockedWhereACommandFailsHalfway) {
  host.faults().fail("host_new_handle", 2, 0);
  ASSERT_EQ(host.sequenceFlatten(), PF_Err_OUT_OF_MEMORY);
  host.faults().fail("host_new_handle", 1, 0);
  ASSERT_EQ(host.sequenceResetup(), PF_Err_OUT_OF_MEMORY);
  EXPECT_EQ(locksLeft(host.log()), none);
}

TEST_F(SequenceData, aNewInstanceHasAFreshRecord) {
  EXPECT_EQ(host.sequenceBytes(), freshRecord);
}

TEST_F(SequenceData, theStoredFormGivesARecord) {
  EXPECT_EQ(recordFrom(storedForm), freshRecord);
}

TEST_F(SequenceData, theReservedFieldsOfTheStoredFormAreTakenOver) {
  Bytes stored = storedForm;
  stored[16] = 0x11;
  stored[19] = 0x22;
  stored[20] = 0x33;
  stored[23] = 0x44;
  Bytes record = freshRecord;
  record[16] = 0x11;
  record[19] = 0x22;
  record[20] = 0x33;
  record[23] = 0x44;
  EXPECT_EQ(recordFrom(stored), record);
}

TEST_F(SequenceData, bytesBehindTheStoredFormAreIgnored) {
  Bytes stored = storedForm;
  stored.resize(100, 0xEE);
  EXPECT_EQ(recordFrom(stored), freshRecord);
}

TEST_F(SequenceData, aStoredFormThatIsTooShortGivesAFreshRecord) {
  Bytes stored = storedForm;
  stored[16] = 0x11;
  stored.pop_back();
  EXPECT_EQ(recordFrom(stored), freshRecord);
}

TEST_F(SequenceData, aHandleTooShortForTheMarkGivesAFreshRecord) {
  EXPECT_EQ(recordFrom({0x71, 0x65, 0x73}), freshRecord);
}

TEST_F(SequenceData, aStoredFormOfVersionTwoGivesAFreshRecord) {
  Bytes stored = storedForm;
  stored[8] = 2;
  stored[16] = 0x11;
  EXPECT_EQ(recordFrom(stored), freshRecord);
}

TEST_F(SequenceData, aStoredFormOfAnotherSizeGivesAFreshRecord) {
  Bytes stored = storedForm;
  stored[12] = 25;
  stored[16] = 0x11;
  EXPECT_EQ(recordFrom(stored), freshRecord);
}

TEST_F(SequenceData, aRecordThatWasStoredUnflattenedGivesAFreshRecord) {
  Bytes record = freshRecord;
  record[16] = 0x11;
  record[24] = 1;
  record[28] = 2;
  EXPECT_EQ(recordFrom(record), freshRecord);
}

TEST_F(SequenceData, whatIsNotOursGivesAFreshRecord) {
  EXPECT_EQ(recordFrom(Bytes(64, 0x55)), freshRecord);
}

TEST_F(SequenceData, aResetupWithoutDataIsASetup) {
  ASSERT_EQ(host.sequenceSetdown(), 0);
  host.setSequenceData(nullptr);
  host.log().clear();
  host.log().handleCallsToo = true;
  ASSERT_EQ(host.sequenceSetup(), 0);
  const std::vector<std::string> ofSetup = host.log().names();
  const Bytes made = host.sequenceBytes();
  ASSERT_EQ(host.sequenceSetdown(), 0);
  host.setSequenceData(nullptr);
  host.log().clear();
  ASSERT_EQ(host.sequenceResetup(), 0);
  EXPECT_EQ(host.log().names(), ofSetup);
  EXPECT_EQ(host.sequenceBytes(), made);
}

TEST_F(SequenceData, aResetupLeavesTheOldHandleToTheHost) {
  PF_Handle old = host.sequenceData();
  const int32_t handles = host.books().openCount(Matter::kHandle);
  ASSERT_EQ(host.sequenceResetup(), 0);
  EXPECT_EQ(host.books().openCount(Matter::kHandle), handles + 1);
  putBack(old);
}

TEST_F(SequenceData, everyFlatteningGivesTheSameBytes) {
  PF_Handle first = host.sequenceData();
  ASSERT_EQ(host.sequenceFlatten(), 0);
  EXPECT_EQ(host.sequenceBytes(), storedForm);
  putBack(first);
  // A record that holds more: a mode that was seen, and reserved bytes.
  Bytes record = freshRecord;
  record[16] = 0x77;
  record[21] = 0x88;
  record[24] = 1;
  record[28] = 2;
  PF_Handle flat = host.sequenceData();
  host.loadSequence(record);
  putBack(flat);
  PF_Handle second = host.sequenceData();
  ASSERT_EQ(host.sequenceFlatten(), 0);
  EXPECT_EQ(host.sequenceBytes(), storedForm);
  putBack(second);
}

TEST_F(SequenceData, aFlatteningLeavesTheOldHandleToTheHost) {
  PF_Handle old = host.sequenceData();
  const int32_t handles = host.books().openCount(Matter::kHandle);
  ASSERT_EQ(host.sequenceFlatten(), 0);
  EXPECT_NE(host.sequenceData(), old);
  EXPECT_EQ(host.books().openCount(Matter::kHandle), handles + 1);
  putBack(old);
}

TEST_F(SequenceData, aFlatteningPutsTheStoredFieldsOfTheOldRecordBack) {
  Bytes record = freshRecord;
  record[16] = 0x77;
  record[20] = 0x88;
  record[24] = 1;
  record[28] = 2;
  PF_Handle unused = host.sequenceData();
  host.loadSequence(record);
  putBack(unused);
  PF_Handle old = host.sequenceData();
  ASSERT_EQ(host.sequenceFlatten(), 0);
  const auto* const bytes = static_cast<const uint8_t*>(*old);
  Bytes expected = freshRecord;
  expected[24] = 1;
  expected[28] = 2;
  EXPECT_EQ(Bytes(bytes, bytes + 32), expected);
  putBack(old);
}

TEST_F(SequenceData, aRecordSurvivesSavingAndLoading) {
  PF_Handle first = host.sequenceData();
  ASSERT_EQ(host.sequenceFlatten(), 0);
  putBack(first);
  PF_Handle flat = host.sequenceData();
  ASSERT_EQ(host.sequenceResetup(), 0);
  EXPECT_EQ(host.sequenceBytes(), freshRecord);
  putBack(flat);
}

TEST_F(SequenceData, aSetdownWithoutDataReturnsZero) {
  ASSERT_EQ(host.sequenceSetdown(), 0);
  host.setSequenceData(nullptr);
  EXPECT_EQ(host.sequenceSetdown(), 0);
}

TEST_F(SequenceData, aSetdownDisposesOfTheHandle) {
  const int32_t handles = host.books().openCount(Matter::kHandle);
  ASSERT_EQ(host.sequenceSetdown(), 0);
  EXPECT_EQ(host.books().openCount(Matter::kHandle), handles - 1);
}

TEST_F(SequenceData, aSetupWithoutMemoryReturnsFour) {
  ASSERT_EQ(host.sequenceSetdown(), 0);
  host.faults().fail("host_new_handle", 1, 0);
  EXPECT_EQ(host.sequenceSetup(), PF_Err_OUT_OF_MEMORY);
}

TEST_F(SequenceData, aSetupThatCantLockItsHandleDisposesOfIt) {
  ASSERT_EQ(host.sequenceSetdown(), 0);
  const int32_t handles = host.books().openCount(Matter::kHandle);
  host.faults().fail("host_lock_handle", 1, 0);
  EXPECT_EQ(host.sequenceSetup(), PF_Err_INTERNAL_STRUCT_DAMAGED);
  EXPECT_EQ(host.books().openCount(Matter::kHandle), handles);
}

TEST_F(SequenceData, aFlatteningWithoutDataIsDamage) {
  ASSERT_EQ(host.sequenceSetdown(), 0);
  host.setSequenceData(nullptr);
  EXPECT_EQ(host.sequenceFlatten(), PF_Err_INTERNAL_STRUCT_DAMAGED);
}

// In a flattening the record is locked first; then come the handles of the byte vector and of the stored form.
TEST_F(SequenceData, aFlatteningThatCantLockTheRecordIsDamage) {
  host.faults().fail("host_lock_handle", 1, 0);
  EXPECT_EQ(host.sequenceFlatten(), PF_Err_INTERNAL_STRUCT_DAMAGED);
}

TEST_F(SequenceData, aFlatteningWithoutMemoryForTheStoredFormReturnsFour) {
  PF_Handle old = host.sequenceData();
  const int32_t handles = host.books().openCount(Matter::kHandle);
  host.faults().fail("host_new_handle", 2, 0);
  EXPECT_EQ(host.sequenceFlatten(), PF_Err_OUT_OF_MEMORY);
  EXPECT_EQ(host.sequenceData(), old);
  EXPECT_EQ(host.books().openCount(Matter::kHandle), handles);
}

TEST_F(SequenceData, aFlatteningThatCantLockTheStoredFormDisposesOfIt) {
  PF_Handle old = host.sequenceData();
  const int32_t handles = host.books().openCount(Matter::kHandle);
  host.faults().fail("host_lock_handle", 3, 0);
  EXPECT_EQ(host.sequenceFlatten(), PF_Err_INTERNAL_STRUCT_DAMAGED);
  EXPECT_EQ(host.sequenceData(), old);
  EXPECT_EQ(host.books().openCount(Matter::kHandle), handles);
}

// In a resetup the old handle is locked for the mark, then for its bytes; the new one when it is filled, then when it
// is written.
TEST_F(SequenceData, aResetupWhoseDataCantBeLockedForTheMarkIsASetup) {
  PF_Handle old = host.sequenceData();
  host.faults().fail("host_lock_handle", 1, 0);
  EXPECT_EQ(host.sequenceResetup(), 0);
  EXPECT_EQ(host.sequenceBytes(), freshRecord);
  putBack(old);
}

TEST_F(SequenceData, aResetupWhoseDataCantBeLockedForItsBytesIsDamage) {
  host.faults().fail("host_lock_handle", 2, 0);
  EXPECT_EQ(host.sequenceResetup(), PF_Err_INTERNAL_STRUCT_DAMAGED);
}

TEST_F(SequenceData, aResetupWithoutMemoryReturnsFour) {
  host.faults().fail("host_new_handle", 1, 0);
  EXPECT_EQ(host.sequenceResetup(), PF_Err_OUT_OF_MEMORY);
}

TEST_F(SequenceData, aResetupThatCantWriteItsNewRecordLeavesItAsItIs) {
  PF_Handle old = host.sequenceData();
  host.faults().fail("host_lock_handle", 4, 0);
  EXPECT_EQ(host.sequenceResetup(), PF_Err_INTERNAL_STRUCT_DAMAGED);
  EXPECT_NE(host.sequenceData(), old);
  EXPECT_EQ(host.sequenceBytes(), freshRecord);
  putBack(old);
}

}  // namespace
