#include "host/Faults.h"

#include <algorithm>

namespace standin {

void Faults::fail(std::string_view service, int32_t nth, PF_Err code) {
  faults_.insert_or_assign(std::string(service), Fault{nth, 0, code, false, false});
}

void Faults::failFrom(std::string_view service, int32_t nth, PF_Err code) {
  faults_.insert_or_assign(std::string(service), Fault{nth, 0, code, true, false});
}

void Faults::clear() {
  faults_.clear();
}

std::optional<PF_Err> Faults::happens(std::string_view service) {
  const auto found = faults_.find(service);
  if (found == faults_.end()) return std::nullopt;
  Fault& fault = found->second;
  ++fault.calls;
  if (fault.calls != fault.nth && !(fault.forGood && fault.calls > fault.nth)) return std::nullopt;
  fault.happened = true;
  return fault.code;
}

int32_t Faults::waiting() const {
  return static_cast<int32_t>(
      std::count_if(faults_.begin(), faults_.end(), [](const auto& fault) { return !fault.second.happened; }));
}

}  // namespace standin
