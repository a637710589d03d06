#include "studio/module/ControlsJson.h"

#include <cstdint>
#include <cstdio>

#include "ae/Constants.h"

namespace studio {
namespace {

using standin::Control;

/// The shortest of the usual forms that reads back as the same number.
std::string numberText(double number) {
  char text[40];
  for (int digits = 1; digits <= 17; ++digits) {
    std::snprintf(text, sizeof text, "%.*g", digits, number);
    double again = 0.0;
    if (std::sscanf(text, "%lf", &again) == 1 && again == number) break;
  }
  return text;
}

std::string quoted(const std::string& text) {
  std::string result = "\"";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      result += '\\';
      result += c;
    } else if (byte < 0x20) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned int>(byte));
      result += escape;
    } else {
      result += c;
    }
  }
  return result + '"';
}

std::string pair(double first, double second) {
  return "[" + numberText(first) + "," + numberText(second) + "]";
}

double fromFixed(PF_Fixed fixed) {
  return static_cast<double>(fixed) / 65536.0;
}

const char* kindOf(PF_ParamType type) {
  switch (type) {
    case PF_Param_SLIDER:
      return "whole number";
    case PF_Param_FLOAT_SLIDER:
      return "number";
    case PF_Param_ANGLE:
      return "angle";
    case PF_Param_CHECKBOX:
      return "check box";
    case PF_Param_COLOR:
      return "colour";
    case PF_Param_POINT:
      return "place";
    case PF_Param_POPUP:
      return "choice";
    case PF_Param_LAYER:
      return "layer";
    case PF_Param_GROUP_START:
      return "group";
    case PF_Param_GROUP_END:
      return "end of group";
    default:
      return "other";
  }
}

/// ,"valid":[...],"slider":[...],"default":... and what else belongs to the kind alone.
std::string ownFacts(const Control& control) {
  const PF_ParamDefUnion& u = control.definition.u;
  switch (control.type) {
    case PF_Param_SLIDER:
      return ",\"valid\":" + pair(u.sd.valid_min, u.sd.valid_max) +
             ",\"slider\":" + pair(u.sd.slider_min, u.sd.slider_max) + ",\"default\":" + numberText(u.sd.dephault);
    case PF_Param_FLOAT_SLIDER: {
      const bool percent = (u.fs_d.display_flags & PF_ValueDisplayFlag_PERCENT) != 0;
      return ",\"valid\":" + pair(static_cast<double>(u.fs_d.valid_min), static_cast<double>(u.fs_d.valid_max)) +
             ",\"slider\":" + pair(static_cast<double>(u.fs_d.slider_min), static_cast<double>(u.fs_d.slider_max)) +
             ",\"default\":" + numberText(static_cast<double>(u.fs_d.dephault)) +
             ",\"precision\":" + numberText(u.fs_d.precision) + ",\"percent\":" + (percent ? "true" : "false");
    }
    case PF_Param_ANGLE:
      return ",\"default\":" + numberText(fromFixed(u.ad.dephault));
    case PF_Param_CHECKBOX:
      return std::string(",\"default\":") + (u.bd.dephault != 0 ? "true" : "false") +
             (control.label.empty() ? "" : ",\"label\":" + quoted(control.label));
    case PF_Param_COLOR: {
      char text[8];
      std::snprintf(text, sizeof text, "#%02x%02x%02x", static_cast<unsigned int>(u.cd.dephault.red),
                    static_cast<unsigned int>(u.cd.dephault.green), static_cast<unsigned int>(u.cd.dephault.blue));
      return ",\"default\":" + quoted(text);
    }
    case PF_Param_POINT:
      return ",\"default\":" + pair(fromFixed(u.td.x_dephault), fromFixed(u.td.y_dephault));
    case PF_Param_POPUP: {
      std::string items;
      for (const std::string& item : control.choices) items += (items.empty() ? "" : ",") + quoted(item);
      return ",\"choices\":[" + items + "],\"choiceCount\":" + numberText(u.pd.num_choices) +
             ",\"default\":" + numberText(u.pd.dephault);
    }
    case PF_Param_LAYER:
      return std::string(",\"default\":") + (u.ld.dephault < 0 ? "\"source\"" : "\"none\"");
    default:
      return {};
  }
}

}  // namespace

std::string controlsJson(const std::vector<Control>& controls) {
  std::string json = "[";
  for (const Control& control : controls) {
    if (json.size() > 1) json += ',';
    json += "{\"index\":" + numberText(control.index) + ",\"id\":" + numberText(control.id) +
            ",\"name\":" + quoted(control.name) + ",\"kind\":\"" + kindOf(control.type) +
            "\",\"flags\":" + numberText(control.definition.flags) + ",\"uiFlags\":" + numberText(control.uiFlags) +
            ownFacts(control) + "}";
  }
  return json + "]";
}

}  // namespace studio
