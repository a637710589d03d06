#include "host/Control.h"

namespace standin {

std::string kindName(PF_ParamType type) {
  switch (type) {
    case PF_Param_LAYER:
      return "layer";
    case PF_Param_SLIDER:
      return "slider";
    case PF_Param_FIX_SLIDER:
      return "fixed slider";
    case PF_Param_ANGLE:
      return "angle";
    case PF_Param_CHECKBOX:
      return "checkbox";
    case PF_Param_COLOR:
      return "color";
    case PF_Param_POINT:
      return "point";
    case PF_Param_POPUP:
      return "popup";
    case PF_Param_FLOAT_SLIDER:
      return "float slider";
    case PF_Param_GROUP_START:
      return "group start";
    case PF_Param_GROUP_END:
      return "group end";
    case PF_Param_ARBITRARY_DATA:
      return "arbitrary data";
    case PF_Param_BUTTON:
      return "button";
    default:
      return "kind " + std::to_string(type);
  }
}

}  // namespace standin
