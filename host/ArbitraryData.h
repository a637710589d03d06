/// Values that only the effect understands: the host keeps one for each such parameter of the instance and asks the
/// effect for everything that is done with it.
///
/// Handles are made and ended by the effect; they belong to the host from then on.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ae/ArbitraryData.h"
#include "host/Control.h"

namespace standin {

struct HostState;

/// One parameter's data. All calls go through PF_Cmd_ARBITRARY_CALLBACK; what a call gives null or an error for is
/// nothing here.
class ArbitraryData {
 public:
  /// control must be of PF_Param_ARBITRARY_DATA and outlive this object.
  ArbitraryData(HostState& host, const Control& control) : host_(host), control_(control) {}

  PF_ArbitraryH fresh() const;  ///< an instance with the effect's default content
  PF_ArbitraryH copyOf(PF_ArbitraryH source) const;
  PF_ArbitraryH fromBytes(const std::vector<uint8_t>& bytes) const;
  PF_ArbitraryH fromText(const std::string& text) const;
  std::optional<std::vector<uint8_t>> bytesOf(PF_ArbitraryH value) const;
  std::optional<std::string> textOf(PF_ArbitraryH value) const;
  void dispose(PF_ArbitraryH value) const;  ///< null is nothing

 private:
  bool ask(PF_ArbParamsExtra& extra) const;  // false after an error
  PF_ArbParamsExtra question(PF_FunctionSelector selector) const;
  void* refcon() const { return control_.definition.u.arb_d.refconPV; }
  HostState& host_;
  const Control& control_;
};

/// After the parameters' set-up: a copy of each default becomes the value of the instance. A default of null is asked
/// of the effect; a parameter that is left without one is a complaint.
void makeArbitraryValues(HostState& host);

/// Ends all values and defaults.
void disposeArbitraryValues(HostState& host);

}  // namespace standin
