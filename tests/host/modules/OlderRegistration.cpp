// Tells of its parts as modules did before there was a second form: a general module, an effect without a name of its
// entry, then two effects. Its newer registration fails after it has told of an entry, which a host must not take. The
// effect can't be set up.
#include "ModuleParts.h"

using parts::text;

extern "C" PF_Err PluginDataEntryFunction2(void* token, parts::Tell2 tell, SPBasicSuite*, const char*, const char*) {
  tell(token, text("Newer"), text("Newer"), text("Tests"), text("OtherEntry"), parts::kEffectKind, 13, 28, 8, text(""));
  return PF_Err_OUT_OF_MEMORY;
}

extern "C" PF_Err PluginDataEntryFunction(void* token, parts::Tell tell, SPBasicSuite*, const char*, const char*) {
  tell(token, text("General"), text("General"), text("Tests"), text("OtherEntry"), parts::kGeneralKind, 13, 28, 8);
  tell(token, text("Nameless"), text("Nameless"), text("Tests"), nullptr, parts::kEffectKind, 13, 28, 8);
  tell(token, text("First"), text("First"), text("Tests"), text("FirstEntry"), parts::kEffectKind, 13, 28, 8);
  tell(token, text("Second"), text("Second"), text("Tests"), text("OtherEntry"), parts::kEffectKind, 13, 28, 8);
  return PF_Err_NONE;
}

extern "C" PF_Err FirstEntry(PF_Cmd cmd, PF_InData*, PF_OutData*, PF_ParamDef**, PF_LayerDef*, void*) {
  return cmd == PF_Cmd_GLOBAL_SETUP ? PF_Err_OUT_OF_MEMORY : PF_Err_NONE;
}

extern "C" PF_Err OtherEntry(PF_Cmd, PF_InData*, PF_OutData*, PF_ParamDef**, PF_LayerDef*, void*) {
  return PF_Err_NONE;
}
