#include "cli/EffectErrors.h"

#include <cstring>

#include "ae/Constants.h"
#include "cli/UserError.h"

namespace cli {

void checkEffect(const standin::StandInHost& host, PF_Err code, const std::string& during) {
  if (code == PF_Err_NONE) return;
  std::string text = "the effect failed " + during + ": " + errorName(code);
  const PF_OutData& out = host.outData();
  const std::size_t length = strnlen(out.return_msg, sizeof out.return_msg);
  if (length > 0) text += ", \"" + std::string(out.return_msg, length) + "\"";
  throw EffectError(text);
}

std::string errorName(PF_Err code) {
  struct NamedError {
    PF_Err code;
    const char* name;
  };
  constexpr NamedError namedErrors[] = {
      {PF_Err_OUT_OF_MEMORY, "PF_Err_OUT_OF_MEMORY"},
      {PF_Err_INTERNAL_STRUCT_DAMAGED, "PF_Err_INTERNAL_STRUCT_DAMAGED"},
      {PF_Err_INVALID_INDEX, "PF_Err_INVALID_INDEX"},
      {PF_Err_UNRECOGNIZED_PARAM_TYPE, "PF_Err_UNRECOGNIZED_PARAM_TYPE"},
      {PF_Err_INVALID_CALLBACK, "PF_Err_INVALID_CALLBACK"},
      {PF_Err_BAD_CALLBACK_PARAM, "PF_Err_BAD_CALLBACK_PARAM"},
      {PF_Interrupt_CANCEL, "PF_Interrupt_CANCEL"},
      {PF_Err_CANNOT_PARSE_KEYFRAME_TEXT, "PF_Err_CANNOT_PARSE_KEYFRAME_TEXT"},
  };
  for (const NamedError& named : namedErrors) {
    if (named.code == code) return std::string(named.name) + " (" + std::to_string(code) + ")";
  }
  return "error " + std::to_string(code);
}

}  // namespace cli
