// A curve by tables that it computes anew for each frame, in memory of the general suite, at 8 bits by the host's own
// table loop. Tells its entry to hosts that ask for it, since its name is none that one would guess.
#include "ModuleParts.h"

namespace {

// Squares a channel: table[v] = round(255 (v / 255)^2), by the host's own functions.
PF_Err draw(PF_InData* in_data, PF_EffectWorld* source, PF_EffectWorld* target) {
  parts::Suite<AEGP_MemorySuite> memory(in_data, kAEGPMemorySuite, 1);
  parts::Suite<PF_ANSICallbacks> ansi(in_data, kPFAnsiSuite, 1);
  AEGP_MemHandle handle = nullptr;
  if (const PF_Err err = memory->AEGP_NewMemHandle(1, "table", 64, AEGP_MemFlag_CLEAR, &handle)) return err;
  PF_Err err = memory->AEGP_ResizeMemHandle("table", 256, handle);
  void* block = nullptr;
  if (err == PF_Err_NONE) err = memory->AEGP_LockMemHandle(handle, &block);
  if (err == PF_Err_NONE) {
    auto* table = static_cast<A_u_char*>(block);
    for (int v = 0; v < 256; ++v) {
      table[v] = static_cast<A_u_char>(ansi->floor(255.0 * ansi->pow(v / 255.0, 2.0) + 0.5));
    }
    // The tables are no part of alpha, and blue stays as it is.
    err = in_data->utils->iterate_lut(in_data, 0, 0, source, &target->extent_hint, nullptr, table, table, nullptr,
                                      target);
    memory->AEGP_UnlockMemHandle(handle);
  }
  const PF_Err ended = memory->AEGP_FreeMemHandle(handle);
  return err != PF_Err_NONE ? err : ended;
}

}  // namespace

extern "C" PF_Err PluginDataEntryFunction2(void* token, parts::Tell2 tell, SPBasicSuite*, const char*, const char*) {
  using parts::text;
  return tell(token, text("Lookup"), text("Tests Lookup"), text("Tests"), text("LookupEntry"), parts::kEffectKind, 13,
              28, 8, text(""));
}

extern "C" PF_Err LookupEntry(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                              PF_LayerDef* output, void*) {
  switch (cmd) {
    case PF_Cmd_GLOBAL_SETUP:
      out_data->my_version = 1;
      return PF_Err_NONE;
    case PF_Cmd_PARAMS_SETUP:
      out_data->num_params = 1;
      return PF_Err_NONE;
    case PF_Cmd_RENDER:
      return draw(in_data, &params[0]->u.ld, output);
    default:
      return PF_Err_NONE;
  }
}
