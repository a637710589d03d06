/// An effect whose answer to each command is written in the test, for the stand-in host to drive in this process.
#pragma once

#include <cstring>
#include <functional>
#include <map>
#include <string>

#include "ae/Constants.h"
#include "ae/InOutData.h"
#include "ae/SmartRender.h"
#include "host/StandInHost.h"

namespace scripted {

/// The arguments of one call of the entry.
struct Call {
  PF_InData* in = nullptr;
  PF_OutData* out = nullptr;
  PF_ParamDef** params = nullptr;
  PF_LayerDef* output = nullptr;
  void* extra = nullptr;

  PF_PreRenderExtra& preRender() const { return *static_cast<PF_PreRenderExtra*>(extra); }
  PF_SmartRenderExtra& smartRender() const { return *static_cast<PF_SmartRenderExtra*>(extra); }

  template <class Suite>
  const Suite* suite(const char* name, int32 version) const {
    const void* table = nullptr;
    return in->pica_basicP->AcquireSuite(name, version, &table) == 0 ? static_cast<const Suite*>(table) : nullptr;
  }
  PF_Err checkout(PF_ParamIndex index, PF_ParamDef* param) const {
    return in->inter.checkout_param(in->effect_ref, index, in->current_time, in->time_step, in->time_scale, param);
  }
};

/// Answers by command; a command without one gets 0. One at a time: the newest is the one that is asked.
class Effect {
 public:
  Effect() { newest = this; }
  ~Effect() { newest = nullptr; }
  Effect(const Effect&) = delete;
  Effect& operator=(const Effect&) = delete;

  std::map<PF_Cmd, std::function<PF_Err(const Call&)>> on;

  static PF_Err entry(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef* params[], PF_LayerDef* output,
                      void* extra) {
    const auto found = newest->on.find(cmd);
    return found == newest->on.end() ? PF_Err_NONE : found->second(Call{in, out, params, output, extra});
  }

 private:
  static inline Effect* newest = nullptr;
};

/// A definition of one kind and name, zero elsewhere.
inline PF_ParamDef definition(PF_ParamType type, const char* name, A_long id) {
  PF_ParamDef def{};
  def.param_type = type;
  def.uu.id = id;
  std::strncpy(def.name, name, sizeof def.name - 1);
  return def;
}

/// Lets the effect declare these parameters, with num_params as it has to be.
inline void declare(Effect& effect, std::vector<PF_ParamDef> definitions) {
  effect.on[PF_Cmd_PARAMS_SETUP] = [definitions](const Call& call) mutable {
    for (PF_ParamDef& def : definitions) {
      const PF_Err err = call.in->inter.add_param(call.in->effect_ref, -1, &def);
      if (err != PF_Err_NONE) return err;
    }
    call.out->num_params = static_cast<A_long>(definitions.size()) + 1;
    return PF_Err{PF_Err_NONE};
  };
}

inline std::string joined(const std::vector<std::string>& lines) {
  std::string all;
  for (const std::string& line : lines) all += line + "\n";
  return all;
}

}  // namespace scripted
