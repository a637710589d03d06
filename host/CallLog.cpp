#include "host/CallLog.h"

#include <algorithm>

namespace standin {

int32_t CallLog::count(std::string_view service) const {
  return static_cast<int32_t>(
      std::count_if(calls.begin(), calls.end(), [&](const Call& call) { return call.service == service; }));
}

std::vector<std::string> CallLog::names() const {
  std::vector<std::string> all;
  all.reserve(calls.size());
  for (const Call& call : calls) all.push_back(call.service);
  return all;
}

void CallLog::clear() {
  CallLog empty;
  empty.handleCallsToo = handleCallsToo;
  empty.nextOrder = nextOrder;
  *this = std::move(empty);
}

}  // namespace standin
