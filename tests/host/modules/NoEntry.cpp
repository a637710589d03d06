// No effect: its registration tells of an entry that the module does not have.
#include "ModuleParts.h"

extern "C" PF_Err PluginDataEntryFunction2(void* token, parts::Tell2 tell, SPBasicSuite*, const char*, const char*) {
  using parts::text;
  return tell(token, text("None"), text("Tests None"), text("Tests"), text("NoSuchEntry"), parts::kEffectKind, 13, 28,
              8, text(""));
}
