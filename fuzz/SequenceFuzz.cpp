// Any bytes as an instance's stored data: through resetup, the rules, a flatten and the set-down.
//
// Held: no error but for a handle that is missing, the record of 32 bytes after a resetup, and the one stored form that
// there is after a flatten, whatever came in.
#include <algorithm>
#include <cstdint>
#include <vector>

#include "fuzz/Effect.h"

namespace {

/// Gives back the host's own handle that the effect has replaced, which the effect leaves to the host.
void dropReplaced(standin::StandInHost& host, PF_Handle former) {
  const PF_Handle present = host.sequenceData();
  if (former == nullptr || former == present) return;
  host.setSequenceData(former);
  host.dropSequence();
  host.setSequenceData(present);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::vector<uint8_t> storedForm = {'q', 'e', 's', 'p', 1, 0, 0, 0, 1, 0, 0, 0, 24, 0, 0, 0};
  standin::StandInHost& host = fuzz::startedHost();
  dropReplaced(host, host.sequenceData());
  host.dropSequence();
  host.loadSequence({data, data + size});

  PF_Handle former = host.sequenceData();
  fuzz::require(host.sequenceResetup() == 0, "any bytes make an instance");
  dropReplaced(host, former);
  fuzz::require(host.sequenceBytes().size() == 32, "the record has 32 bytes");

  standin::ParameterValues values = host.defaults();
  values.setPopup("Distance Between", size % 2 == 0 ? 1 : 2);
  fuzz::require(host.updateParamsUi(values) == 0, "the rules run on any record");
  values.setPopup("Distance Between", size % 3 == 0 ? 1 : 2);
  fuzz::require(host.userChangedParam("Distance Between", values).error == 0, "a change runs on any record");

  former = host.sequenceData();
  fuzz::require(host.sequenceFlatten() == 0, "any record can be stored");
  dropReplaced(host, former);
  const std::vector<uint8_t> stored = host.sequenceBytes();
  fuzz::require(stored.size() == 24 && std::equal(storedForm.begin(), storedForm.end(), stored.begin()),
                "there is one stored form");
  fuzz::require(host.sequenceSetdown() == 0, "any instance ends");
  host.setSequenceData(nullptr);
  fuzz::requireNoBreach(host);
  fuzz::forget(host);
  return 0;
}
