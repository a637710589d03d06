/// Parameters: declared by add_param, read by check-out, greyed by PF_UpdateParamUI; and the progress of a frame.
#include <algorithm>
#include <cstring>

#include "host/DeliverValue.h"
#include "host/HostState.h"
#include "host/Refusals.h"
#include "host/StandInHost.h"

namespace standin {

namespace {

// The text behind a pointer of a definition, copied to where it stays.
const A_char* keepText(HostState& host, const A_char* text) {
  host.texts.emplace_back(text == nullptr ? "" : text);
  return host.texts.back().c_str();
}

std::vector<std::string> itemsOf(const std::string& text) {
  std::vector<std::string> items;
  size_t start = 0;
  for (size_t bar = text.find('|'); bar != std::string::npos; bar = text.find('|', start)) {
    items.push_back(text.substr(start, bar - start));
    start = bar + 1;
  }
  items.push_back(text.substr(start));
  return items;
}

std::string nameOf(const PF_ParamDef& definition) {
  const A_char* end = std::find(definition.name, definition.name + sizeof definition.name, '\0');
  return {definition.name, static_cast<size_t>(end - definition.name)};
}

Control makeControl(HostState& host, const PF_ParamDef& definition) {
  Control control;
  control.index = static_cast<int32_t>(host.controls.size()) + 1;
  control.id = definition.uu.id;
  control.name = nameOf(definition);
  control.type = definition.param_type;
  control.definition = definition;
  control.uiFlags = definition.ui_flags;
  PF_ParamDefUnion& u = control.definition.u;
  if (control.type == PF_Param_POPUP) {
    u.pd.u.namesptr = keepText(host, u.pd.u.namesptr);
    control.choices = itemsOf(u.pd.u.namesptr);
  } else if (control.type == PF_Param_CHECKBOX) {
    u.bd.u.nameptr = keepText(host, u.bd.u.nameptr);
    control.label = u.bd.u.nameptr;
  } else if (control.type == PF_Param_BUTTON) {
    u.button_d.u.namesptr = keepText(host, u.button_d.u.namesptr);
    control.label = u.button_d.u.namesptr;
  }
  return control;
}

void checkDeclaration(HostState& host, const Control& control) {
  const std::string who = "parameter " + std::to_string(control.index) + " \"" + control.name + "\"";
  if (control.id < 1 || control.id > 9999) {
    host.complain(Matter::kDeclaration, who + " has the id " + std::to_string(control.id));
  }
  for (const Control& other : host.controls) {
    if (other.id == control.id) {
      host.complain(Matter::kDeclaration, who + " has the id of \"" + other.name + "\"");
    }
  }
  if (control.type == PF_Param_POPUP &&
      control.choices.size() != static_cast<size_t>(std::max<A_short>(control.definition.u.pd.num_choices, 0))) {
    host.complain(Matter::kDeclaration, who + " says that it has " +
                                            std::to_string(control.definition.u.pd.num_choices) + " items and names " +
                                            std::to_string(control.choices.size()));
  }
}

PF_Err addParam(PF_ProgPtr ref, PF_ParamIndex index, PF_ParamDefPtr definition) {
  HostState* host = HostState::current();
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  host->checkRef(ref, "add_param");
  if (const auto fault = host->fault("add_param")) return host->note("add_param", "", *fault);
  if (host->running != PF_Cmd_PARAMS_SETUP) {
    host->complain(Matter::kWrongMoment, "add_param outside the parameters' set-up");
    return host->note("add_param", "", PF_Err_BAD_CALLBACK_PARAM);
  }
  if (definition == nullptr || index != -1) {
    host->complain(Matter::kWrongArgument, "add_param at place " + std::to_string(index));
    return host->note("add_param", "", PF_Err_BAD_CALLBACK_PARAM);
  }
  Control control = makeControl(*host, *definition);
  checkDeclaration(*host, control);
  host->controls.push_back(control);
  return host->note("add_param", "\"" + control.name + "\", id " + std::to_string(control.id), PF_Err_NONE);
}

bool mayCheckOut(HostState& host) {
  switch (host.running) {
    case PF_Cmd_UPDATE_PARAMS_UI:
      host.complain(Matter::kWrongMoment, "checkout_param while the controls are being updated");
      return true;
    case PF_Cmd_ABOUT:
    case PF_Cmd_GLOBAL_SETUP:
    case PF_Cmd_GLOBAL_SETDOWN:
    case PF_Cmd_PARAMS_SETUP:
      host.complain(Matter::kWrongMoment, "checkout_param where no instance is");
      return false;
    default:
      return true;
  }
}

PF_Err checkoutParam(PF_ProgPtr ref, PF_ParamIndex index, A_long time, A_long timeStep, A_u_long timeScale,
                     PF_ParamDef* param) {
  HostState* host = HostState::current();
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  host->checkRef(ref, "checkout_param");
  host->log.params.push_back({host->log.nextOrder, true, index, time, timeStep, timeScale});
  const std::string text = "index " + std::to_string(index);
  if (const auto fault = host->fault("checkout_param")) return host->note("checkout_param", text, *fault);
  const auto count = static_cast<int32_t>(host->controls.size());
  if (param == nullptr || index < 0 || index > count) {
    host->complain(Matter::kWrongArgument, "checkout_param of " + text);
    return host->note("checkout_param", text, PF_Err_INVALID_INDEX);
  }
  if (param >= host->paramsBegin && param < host->paramsEnd) {
    host->complain(Matter::kWrongArgument, "checkout_param into the command's own parameters");
  }
  if (!mayCheckOut(*host)) return host->note("checkout_param", text, PF_Err_BAD_CALLBACK_PARAM);

  std::string name = "the layer";
  if (index == 0) {
    *param = PF_ParamDef{};
    param->param_type = PF_Param_LAYER;
  } else {
    const Control& control = host->controls[static_cast<size_t>(index) - 1];
    name = "\"" + control.name + "\"";
    const bool valued = index <= host->values.size();
    const FrameRequest nothing;
    const auto elsewhen = host->valueAt(index, time, timeScale);
    *param = deliverValue(control,
                          elsewhen ? *elsewhen
                          : valued ? host->values.value(index)
                                   : ParameterValues(host->controls).value(index),
                          host->frame ? *host->frame : nothing);
  }
  if (param->param_type == PF_Param_LAYER) {
    const std::shared_ptr<const Image> picture = host->layerPictureAt(index, time, timeScale);
    if (picture != nullptr) param->u.ld = host->lend(picture, name, false);
  }
  // Once the books are written off, nobody is asked for those records any more; over a shot they would pile up.
  if (host->books.openCount(Matter::kParameter) == 0) host->openParams.clear();
  // Records get copied on their way; this mark, in a field without a use, tells at check-in which one came back.
  param->unused = host->books.lend(Matter::kParameter, text + ", " + name, host->running);
  host->openParams[param->unused] = index;
  return host->note("checkout_param", text, PF_Err_NONE);
}

PF_Err checkinParam(PF_ProgPtr ref, PF_ParamDef* param) {
  HostState* host = HostState::current();
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  host->checkRef(ref, "checkin_param");
  const auto open = param == nullptr ? host->openParams.end() : host->openParams.find(param->unused);
  const bool known = open != host->openParams.end();
  const int32_t index = known ? open->second : -1;
  host->log.params.push_back({host->log.nextOrder, false, index, 0, 0, 0});
  if (known) {
    host->books.giveBack(Matter::kParameter, open->first);
    host->openParams.erase(open);
  } else {
    host->complain(Matter::kStrayCheckin,
                   "checkin_param of " + (param == nullptr ? std::string("no record")
                                                           : "\"" + nameOf(*param) + "\", which is not checked out"));
  }
  return host->note("checkin_param", "index " + std::to_string(index),
                    host->fault("checkin_param").value_or(PF_Err_NONE));
}

PF_Err abortAsked(PF_ProgPtr ref) {
  HostState* host = HostState::current();
  if (host == nullptr) return PF_Err_NONE;
  host->checkRef(ref, "abort");
  const auto fault = host->fault("abort");
  const PF_Err answer = fault ? *fault : host->owner->onAbort ? host->owner->onAbort() : PF_Err_NONE;
  return host->note("abort", "", answer);
}

PF_Err progress(PF_ProgPtr ref, A_long current, A_long total) {
  if (total == 0) return abortAsked(ref);
  HostState* host = HostState::current();
  if (host == nullptr) return PF_Err_NONE;
  host->checkRef(ref, "progress");
  ++host->log.progressCalls;
  host->log.lastProgressCurrent = current;
  host->log.lastProgressTotal = total;
  if (const auto fault = host->fault("progress")) return *fault;
  return host->owner->onProgress ? host->owner->onProgress(current, total) : PF_Err_NONE;
}

// An effect with controls of its own drawing is heard and never sent an event: there is no window. Of the record only
// the events count, since effects leave the rest as it was in their memory.
PF_Err registerUi(PF_ProgPtr ref, PF_CustomUIInfo* info) {
  HostState* host = HostState::current();
  if (host == nullptr || info == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  host->checkRef(ref, "register_ui");
  const std::string text = "events " + std::to_string(info->events);
  if (const auto fault = host->fault("register_ui")) return host->note("register_ui", text, *fault);
  host->customEvents = info->events;
  return host->note("register_ui", text, PF_Err_NONE);
}

// What may be changed of a parameter's look, and nothing else of the record.
void takeLook(Control& control, const PF_ParamDef& from) {
  constexpr PF_ParamUIFlags uiBits = PF_PUI_DISABLED | PF_PUI_ECW_SEPARATOR;
  control.uiFlags = (control.uiFlags & ~uiBits) | (from.ui_flags & uiBits);
  control.name = nameOf(from);
  PF_ParamDef& own = control.definition;
  std::memcpy(own.name, from.name, sizeof own.name);
  own.ui_width = from.ui_width;
  own.ui_height = from.ui_height;
  own.flags = (own.flags & ~PF_ParamFlag_COLLAPSE_TWIRLY) | (from.flags & PF_ParamFlag_COLLAPSE_TWIRLY);
  if (control.type == PF_Param_SLIDER) {
    own.u.sd.slider_min = from.u.sd.slider_min;
    own.u.sd.slider_max = from.u.sd.slider_max;
  } else if (control.type == PF_Param_FLOAT_SLIDER) {
    own.u.fs_d.slider_min = from.u.fs_d.slider_min;
    own.u.fs_d.slider_max = from.u.fs_d.slider_max;
    own.u.fs_d.precision = from.u.fs_d.precision;
    own.u.fs_d.display_flags = from.u.fs_d.display_flags;
  }
}

}  // namespace

PF_Err updateParamUi(PF_ProgPtr ref, PF_ParamIndex index, const PF_ParamDef* definition) {
  HostState* host = HostState::current();
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  host->checkRef(ref, "PF_UpdateParamUI");
  host->log.paramUi.push_back({host->log.nextOrder, index, definition == nullptr ? 0 : definition->ui_flags});
  const std::string text = "index " + std::to_string(index) +
                           (definition != nullptr && (definition->ui_flags & PF_PUI_DISABLED) != 0 ? ", grey" : "");
  if (const auto fault = host->fault("PF_UpdateParamUI")) return host->note("PF_UpdateParamUI", text, *fault);
  if (index == 0) {
    host->complain(Matter::kLayerParamUi, "PF_UpdateParamUI of index 0");
    return host->note("PF_UpdateParamUI", text, PF_Err_BAD_CALLBACK_PARAM);
  }
  if (definition == nullptr || index < 0 || index > static_cast<int32_t>(host->controls.size())) {
    host->complain(Matter::kWrongArgument, "PF_UpdateParamUI of " + text);
    return host->note("PF_UpdateParamUI", text, PF_Err_INVALID_INDEX);
  }
  if (definition >= host->paramsBegin && definition < host->paramsEnd) {
    host->complain(Matter::kWrongArgument, "PF_UpdateParamUI with the command's own record, not a copy");
  }
  if (host->running != PF_Cmd_UPDATE_PARAMS_UI && host->running != PF_Cmd_USER_CHANGED_PARAM &&
      host->running != PF_Cmd_EVENT) {
    host->complain(Matter::kWrongMoment, "PF_UpdateParamUI while nobody sees the controls");
  }
  takeLook(host->controls[static_cast<size_t>(index) - 1], *definition);
  return host->note("PF_UpdateParamUI", text, PF_Err_NONE);
}

PF_InteractCallbacks interactTable() {
  PF_InteractCallbacks table{};
  table.checkout_param = checkoutParam;
  table.checkin_param = checkinParam;
  table.add_param = addParam;
  table.abort = abortAsked;
  table.progress = progress;
  table.register_ui = registerUi;
  table.checkout_layer_audio = refused<"checkout_layer_audio">;
  table.checkin_layer_audio = refused<"checkin_layer_audio">;
  table.get_audio_data = refused<"get_audio_data">;
  return table;
}

}  // namespace standin
