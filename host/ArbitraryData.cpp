#include "host/ArbitraryData.h"

#include <algorithm>
#include <utility>

#include "host/HostState.h"

namespace standin {

bool ArbitraryData::ask(PF_ArbParamsExtra& extra) const {
  return host_.callEntry(PF_Cmd_ARBITRARY_CALLBACK, nullptr, nullptr, &extra) == PF_Err_NONE;
}

PF_ArbParamsExtra ArbitraryData::question(PF_FunctionSelector selector) const {
  PF_ArbParamsExtra extra{};
  extra.which_function = selector;
  extra.id = control_.definition.u.arb_d.id;
  return extra;
}

PF_ArbitraryH ArbitraryData::fresh() const {
  PF_ArbitraryH made = nullptr;
  PF_ArbParamsExtra extra = question(PF_Arbitrary_NEW_FUNC);
  extra.u.new_func_params = {refcon(), &made};
  return ask(extra) ? made : nullptr;
}

PF_ArbitraryH ArbitraryData::copyOf(PF_ArbitraryH source) const {
  PF_ArbitraryH made = nullptr;
  PF_ArbParamsExtra extra = question(PF_Arbitrary_COPY_FUNC);
  extra.u.copy_func_params = {refcon(), source, &made};
  return ask(extra) ? made : nullptr;
}

PF_ArbitraryH ArbitraryData::fromBytes(const std::vector<uint8_t>& bytes) const {
  PF_ArbitraryH made = nullptr;
  PF_ArbParamsExtra extra = question(PF_Arbitrary_UNFLATTEN_FUNC);
  extra.u.unflatten_func_params = {refcon(), static_cast<A_u_long>(bytes.size()), bytes.data(), &made};
  return ask(extra) ? made : nullptr;
}

PF_ArbitraryH ArbitraryData::fromText(const std::string& text) const {
  PF_ArbitraryH made = nullptr;
  PF_ArbParamsExtra extra = question(PF_Arbitrary_SCAN_FUNC);
  extra.u.scan_func_params = {refcon(), text.c_str(), static_cast<A_u_long>(text.size()), &made};
  return ask(extra) ? made : nullptr;
}

std::optional<std::vector<uint8_t>> ArbitraryData::bytesOf(PF_ArbitraryH value) const {
  A_u_long size = 0;
  PF_ArbParamsExtra sizeQuestion = question(PF_Arbitrary_FLAT_SIZE_FUNC);
  sizeQuestion.u.flatsize_func_params = {refcon(), value, &size};
  if (!ask(sizeQuestion)) return std::nullopt;
  std::vector<uint8_t> bytes(size);
  PF_ArbParamsExtra extra = question(PF_Arbitrary_FLATTEN_FUNC);
  extra.u.flatten_func_params = {refcon(), value, size, bytes.data()};
  if (!ask(extra)) return std::nullopt;
  return bytes;
}

std::optional<std::string> ArbitraryData::textOf(PF_ArbitraryH value) const {
  A_u_long size = 0;
  PF_ArbParamsExtra sizeQuestion = question(PF_Arbitrary_PRINT_SIZE_FUNC);
  sizeQuestion.u.printsize_func_params = {refcon(), value, &size};
  if (!ask(sizeQuestion)) return std::nullopt;
  std::vector<char> text(static_cast<size_t>(size) + 1);
  PF_ArbParamsExtra extra = question(PF_Arbitrary_PRINT_FUNC);
  extra.u.print_func_params = {refcon(), 0, value, size, text.data()};
  if (!ask(extra)) return std::nullopt;
  return std::string(text.begin(), std::find(text.begin(), text.end(), '\0'));
}

void ArbitraryData::dispose(PF_ArbitraryH value) const {
  if (value == nullptr) return;
  PF_ArbParamsExtra extra = question(PF_Arbitrary_DISPOSE_FUNC);
  extra.u.dispose_func_params = {refcon(), value};
  ask(extra);
}

void makeArbitraryValues(HostState& host) {
  for (Control& control : host.controls) {
    if (control.type != PF_Param_ARBITRARY_DATA) continue;
    PF_ArbitraryDef& own = control.definition.u.arb_d;
    const ArbitraryData data(host, control);
    if (own.dephault == nullptr) own.dephault = data.fresh();
    own.value = own.dephault == nullptr ? nullptr : data.copyOf(own.dephault);
    if (own.value == nullptr) {
      host.books.complain(
          Matter::kDeclaration,
          "parameter " + std::to_string(control.index) + " \"" + control.name + "\" of arbitrary data has no value",
          PF_Cmd_PARAMS_SETUP);
    }
  }
}

void disposeArbitraryValues(HostState& host) {
  for (Control& control : host.controls) {
    if (control.type != PF_Param_ARBITRARY_DATA) continue;
    PF_ArbitraryDef& own = control.definition.u.arb_d;
    const ArbitraryData data(host, control);
    data.dispose(std::exchange(own.value, nullptr));
    data.dispose(std::exchange(own.dephault, nullptr));
  }
}

}  // namespace standin
