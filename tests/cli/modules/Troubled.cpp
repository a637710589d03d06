// An effect of the classic road that draws one grey, and at the frame that the environment names ends its process
// ("die 3"), does so the first time only, which it notes by a file ("once 3 FILE"), or never comes back ("hang 3"),
// also when it is asked to end ("stuck 3").

#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "ae/Constants.h"
#include "ae/InOutData.h"
#include "ae/Worlds.h"

namespace {

void makeTrouble(long frame) {
  const char* const trouble = std::getenv("VINDREL_TEST_TROUBLE");
  char kind[8] = "";
  char file[256] = "";
  long when = -1;
  if (trouble == nullptr || std::sscanf(trouble, "%7s %ld %255s", kind, &when, file) < 2 || when != frame) return;
  if (std::strcmp(kind, "die") == 0) _exit(9);
  if (std::strcmp(kind, "stuck") == 0) std::signal(SIGTERM, SIG_IGN);
  if (std::strcmp(kind, "hang") == 0 || std::strcmp(kind, "stuck") == 0) {
    for (;;) pause();
  }
  if (access(file, F_OK) == 0) return;
  std::fclose(std::fopen(file, "w"));
  _exit(9);
}

}  // namespace

extern "C" __attribute__((visibility("default"))) PF_Err EntryPointFunc(PF_Cmd command, PF_InData* in, PF_OutData* out,
                                                                        PF_ParamDef**, PF_LayerDef* output, void*) {
  if (command == PF_Cmd_PARAMS_SETUP) out->num_params = 1;
  if (command == PF_Cmd_RENDER) {
    makeTrouble(in->current_time);
    for (A_long y = 0; y < output->height; ++y) {
      std::memset(reinterpret_cast<char*>(output->data) + y * output->rowbytes, 0x80,
                  static_cast<std::size_t>(output->width) * sizeof(PF_Pixel));
    }
  }
  return PF_Err_NONE;
}
