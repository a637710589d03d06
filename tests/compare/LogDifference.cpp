#include "tests/compare/LogDifference.h"

#include <algorithm>
#include <cstring>
#include <sstream>
#include <string_view>

#include "host/Books.h"

namespace compare {

using standin::Call;
using standin::CallLog;
using standin::Control;

namespace {

// "handle 3 (32 bytes)" without its size; anything else as it is.
std::string_view withoutSize(const std::string& arguments) {
  const std::string_view text = arguments;
  return text.starts_with("handle ") ? text.substr(0, text.find(" (")) : text;
}

bool sameCall(const Call& one, const Call& other) {
  return one.service == other.service && one.command == other.command && one.result == other.result &&
         withoutSize(one.arguments) == withoutSize(other.arguments);
}

std::string callText(const std::vector<Call>& calls, size_t place) {
  if (place >= calls.size()) return "no more calls";
  const Call& call = calls[place];
  return call.service + '(' + call.arguments + ") in " + standin::commandName(call.command) + ", answered " +
         std::to_string(call.result);
}

std::string progressText(const std::vector<ProgressCall>& calls, size_t place) {
  if (place >= calls.size()) return "no more of them";
  const ProgressCall& call = calls[place];
  return std::to_string(call.current) + " of " + std::to_string(call.total) + ", after " +
         std::to_string(call.callsBefore) + " other calls";
}

void add(std::ostringstream& text, const PF_Rect& rect) {
  text << " (" << rect.left << ' ' << rect.top << ' ' << rect.right << ' ' << rect.bottom << ')';
}
// Of a world all but its addresses.
void add(std::ostringstream& text, const PF_EffectWorld& world) {
  text << ' ' << world.width << " x " << world.height << " row " << world.rowbytes << " flags " << world.world_flags
       << " at " << world.origin_x << ' ' << world.origin_y << " aspect " << world.pix_aspect_ratio.num << ':'
       << world.pix_aspect_ratio.den << " hint";
  add(text, PF_Rect{world.extent_hint});
  text << (world.data == nullptr ? " no pixels" : "");
}
void add(std::ostringstream& text, const PF_MaskWorld& mask) {
  add(text, mask.mask);
  text << " offset " << mask.offset.h << ' ' << mask.offset.v << " flags " << mask.what_is_mask;
}

template <class Value>
void add(std::ostringstream& text, const std::optional<Value>& value) {
  if (!value) {
    text << " none";
  } else {
    add(text, *value);
  }
}

std::string textOf(const standin::FillCall& call) {
  std::ostringstream text;
  text << "fill:" << (call.hasColor ? "" : " no colour") << ' ' << +call.color.alpha << ' ' << +call.color.red << ' '
       << +call.color.green << ' ' << +call.color.blue;
  add(text, call.rect);
  add(text, call.world);
  return text.str();
}
std::string textOf(const standin::CopyCall& call) {
  std::ostringstream text;
  text << (call.highQuality ? "copy_hq:" : "copy:");
  add(text, call.sourceRect);
  add(text, call.source);
  text << " to";
  add(text, call.targetRect);
  add(text, call.target);
  return text.str();
}
std::string textOf(const standin::TransferCall& call) {
  std::ostringstream text;
  text << "transfer_rect: quality " << call.quality << " flags " << call.modeFlags << " field " << call.field
       << " mode " << call.mode.xfer << " seed " << call.mode.rand_seed << " opacity " << +call.mode.opacity << ' '
       << call.mode.opacitySu << " colour only " << +call.mode.rgb_only;
  add(text, call.sourceRect);
  add(text, call.source);
  text << " mask";
  add(text, call.mask);
  text << " to " << call.targetX << ' ' << call.targetY << " of";
  add(text, call.target);
  return text.str();
}
std::string textOf(const standin::NewWorldCall& call) {
  std::ostringstream text;
  text << "new world by suite " << call.suiteVersion << ": " << call.width << " x " << call.height << " flags "
       << call.flags << " format " << call.format;
  return text.str();
}
std::string textOf(const standin::ParamCall& call) {
  std::ostringstream text;
  text << (call.checkout ? "checkout_param " : "checkin_param ") << call.index << " time " << call.time << " step "
       << call.timeStep << " scale " << call.timeScale;
  return text.str();
}
std::string textOf(const standin::UpdateParamUiCall& call) {
  std::ostringstream text;
  text << "PF_UpdateParamUI " << call.index << " flags " << call.uiFlags;
  return text.str();
}

// The record that was given at add_param, but for its pointers to texts, whose copies are compared.
PF_ParamDef withoutAddresses(const Control& control) {
  PF_ParamDef record = control.definition;
  if (control.type == PF_Param_POPUP) record.u.pd.u.namesptr = nullptr;
  if (control.type == PF_Param_CHECKBOX) record.u.bd.u.nameptr = nullptr;
  if (control.type == PF_Param_BUTTON) record.u.button_d.u.namesptr = nullptr;
  return record;
}

template <class Kind>
std::optional<std::string> firstDetail(const std::vector<Kind>& one, const std::vector<Kind>& other) {
  for (size_t i = 0; i < std::max(one.size(), other.size()); ++i) {
    const std::string mine = i < one.size() ? textOf(one[i]) : "no more calls";
    const std::string yours = i < other.size() ? textOf(other[i]) : "no more calls";
    if (mine == yours) continue;
    std::ostringstream text;
    text << "call number " << i + 1 << " of its kind:\n  this:  " << mine << "\n  other: " << yours;
    return text.str();
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::string> firstDifference(const CallLog& one, const std::vector<ProgressCall>& oneProgress,
                                           const CallLog& other, const std::vector<ProgressCall>& otherProgress) {
  for (size_t i = 0; i < std::max(one.calls.size(), other.calls.size()); ++i) {
    if (i < one.calls.size() && i < other.calls.size() && sameCall(one.calls[i], other.calls[i])) continue;
    return "call " + std::to_string(i + 1) + " to the host:\n  this:  " + callText(one.calls, i) +
           "\n  other: " + callText(other.calls, i);
  }
  for (size_t i = 0; i < std::max(oneProgress.size(), otherProgress.size()); ++i) {
    if (i < oneProgress.size() && i < otherProgress.size() && oneProgress[i] == otherProgress[i]) continue;
    return "progress call " + std::to_string(i + 1) + ":\n  this:  " + progressText(oneProgress, i) +
           "\n  other: " + progressText(otherProgress, i);
  }
  std::optional<std::string> found = firstDetail(one.fills, other.fills);
  if (!found) found = firstDetail(one.copies, other.copies);
  if (!found) found = firstDetail(one.transfers, other.transfers);
  if (!found) found = firstDetail(one.newWorlds, other.newWorlds);
  if (!found) found = firstDetail(one.params, other.params);
  if (!found) found = firstDetail(one.paramUi, other.paramUi);
  return found;
}

std::optional<std::string> firstDifference(const Control& one, const Control& other) {
  if (one.id != other.id) return "id " + std::to_string(one.id) + " and " + std::to_string(other.id);
  if (one.name != other.name) return "called \"" + other.name + "\" by the other";
  if (one.type != other.type) return "is a " + standin::kindName(one.type) + " and a " + standin::kindName(other.type);
  if (one.choices != other.choices) return "other items";
  if (one.label != other.label) return "label \"" + one.label + "\" and \"" + other.label + '"';
  if (one.uiFlags != other.uiFlags) {
    return "looks " + std::to_string(one.uiFlags) + " and " + std::to_string(other.uiFlags);
  }
  const PF_ParamDef mine = withoutAddresses(one);
  const PF_ParamDef yours = withoutAddresses(other);
  // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison): every byte that the effect gave to the host
  if (std::memcmp(&mine, &yours, sizeof mine) != 0) return "another record at add_param";
  return std::nullopt;
}

int64_t blocksOfOtherSize(const CallLog& one, const CallLog& other) {
  int64_t count = 0;
  for (size_t i = 0; i < std::min(one.handles.size(), other.handles.size()); ++i) {
    if (one.handles[i].size != other.handles[i].size) ++count;
  }
  return count;
}

std::string exactText(double value) {
  std::ostringstream text;
  text.precision(17);
  text << value;
  return text.str();
}

}  // namespace compare
