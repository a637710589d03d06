#include "effect/options/About.h"

#include "effect/options/Messages.h"
#include "effect/share/util/Identity.h"
#include "platform/KeyState.h"

namespace vindrel {

namespace {

// The parts of the version word.
constexpr int major = effectVersion >> 19 & 7;
constexpr int minor = effectVersion >> 15 & 15;
constexpr int bugFix = effectVersion >> 11 & 15;
constexpr int build = effectVersion & 511;
static_assert((effectVersion >> 9 & 3) == PF_Stage_RELEASE);
constexpr const char* stageName = "Release";

}  // namespace

PF_Err About(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef*[], PF_LayerDef*) {
  const bool shiftDown = platform::GetKeyState(platform::keyShift) < 0;
  const char* const copyright = LookupMessage(messageCopyright);
  // The empty text is the place of a note on the edition, of which there is one only. The host breaks the line at a
  // carriage return.
  if (shiftDown) {
    in_data->utils->ansi.sprintf(out_data->return_msg, "%s %d.%d.%d %s build:%d %s\r\r%s", effectName, major, minor,
                                 bugFix, stageName, build, "", copyright);
  } else {
    in_data->utils->ansi.sprintf(out_data->return_msg, "%s %d.%d.%d %s\r\r%s", effectName, major, minor, bugFix, "",
                                 copyright);
  }
  return PF_Err_NONE;
}

}  // namespace vindrel
