#include "host/DeliverValue.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace standin {

namespace {

PF_Fixed toFixed(double value) {
  constexpr double least = std::numeric_limits<PF_Fixed>::min();
  constexpr double most = std::numeric_limits<PF_Fixed>::max();
  const double scaled = std::floor(value * 65536.0 + 0.5);
  return static_cast<PF_Fixed>(std::isnan(scaled) ? 0.0 : std::clamp(scaled, least, most));
}

double ratio(const PF_RationalScale& scale) {
  return scale.den == 0 ? 1.0 : static_cast<double>(scale.num) / static_cast<double>(scale.den);
}

double placeAtFull(double place, bool percent, int32_t length) {
  return percent ? static_cast<double>(length) * place / 100.0 : place;
}

}  // namespace

PF_ParamDef deliverValue(const Control& control, const ParameterValues::Value& value, const FrameRequest& frame) {
  PF_ParamDef definition = control.definition;
  definition.uu.change_flags = PF_ChangeFlag_NONE;
  definition.ui_flags = control.uiFlags;
  definition.unused = 0;
  PF_ParamDefUnion& u = definition.u;
  switch (control.type) {
    case PF_Param_LAYER:
      u.ld = PF_LayerDef{};
      break;
    case PF_Param_SLIDER:
      u.sd.value = std::get<int32_t>(value);
      break;
    case PF_Param_FIX_SLIDER:
      u.fd.value = toFixed(std::get<double>(value));
      break;
    case PF_Param_ANGLE:
      u.ad.value = toFixed(std::get<double>(value));
      break;
    case PF_Param_CHECKBOX:
      u.bd.value = std::get<int32_t>(value);
      break;
    case PF_Param_COLOR:
      u.cd.value = std::get<PF_Pixel>(value);
      break;
    case PF_Param_POPUP:
      u.pd.value = std::get<int32_t>(value);
      break;
    case PF_Param_FLOAT_SLIDER:
      u.fs_d.value = std::get<double>(value);
      break;
    case PF_Param_POINT: {
      const auto& point = std::get<PointValue>(value);
      u.td.x_value = toFixed(placeAtFull(point.x, point.percent, frame.fullWidth()) * ratio(frame.downsampleX));
      u.td.y_value = toFixed(placeAtFull(point.y, point.percent, frame.fullHeight()) * ratio(frame.downsampleY));
      break;
    }
    default:
      break;
  }
  return definition;
}

std::shared_ptr<const Image> deliverLayer(const LayerValue& value, const FrameRequest& frame,
                                          const std::shared_ptr<const Image>& input) {
  if (value.source == LayerValue::Source::kItself) return input;
  if (value.source == LayerValue::Source::kNone || value.picture == nullptr) return nullptr;
  const Image& picture = *value.picture;
  const int32_t width = scaledLength(picture.width(), frame.downsampleX);
  const int32_t height = scaledLength(picture.height(), frame.downsampleY);
  const bool sameSize = width == picture.width() && height == picture.height();
  if (sameSize && picture.depth() == frame.depth()) return value.picture;
  Image delivered = sameSize ? picture : picture.resized(width, height);
  if (delivered.depth() != frame.depth()) delivered = delivered.converted(frame.depth());
  return std::make_shared<const Image>(std::move(delivered));
}

std::optional<ParameterValues::Value> takeValue(const Control& control, const PF_ParamDef& definition,
                                                const FrameRequest& frame) {
  const PF_ParamDefUnion& u = definition.u;
  switch (control.type) {
    case PF_Param_SLIDER:
      return int32_t{u.sd.value};
    case PF_Param_FIX_SLIDER:
      return static_cast<double>(u.fd.value) / 65536.0;
    case PF_Param_ANGLE:
      return static_cast<double>(u.ad.value) / 65536.0;
    case PF_Param_CHECKBOX:
      return int32_t{u.bd.value};
    case PF_Param_COLOR:
      return u.cd.value;
    case PF_Param_POPUP:
      return int32_t{u.pd.value};
    case PF_Param_FLOAT_SLIDER:
      return u.fs_d.value;
    case PF_Param_POINT:
      return PointValue{static_cast<double>(u.td.x_value) / 65536.0 / ratio(frame.downsampleX),
                        static_cast<double>(u.td.y_value) / 65536.0 / ratio(frame.downsampleY), false};
    default:
      return std::nullopt;
  }
}

}  // namespace standin
