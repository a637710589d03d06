#include "effect/params/ParamObjects.h"

#include <algorithm>
#include <iterator>

#include "ae/Constants.h"
#include "effect/params/ParamClasses.h"
#include "effect/params/ParamTable.h"
#include "effect/share/util/SuiteCache.h"

namespace vindrel {

BaseParam* byId[paramSlots] = {};
BaseParam* byIndex[paramSlots + 1] = {};
int32_t nextHostIndex = 1;

namespace {

/// The definitions that controls start from: zero but for the flags.
class Definitions {
 public:
  explicit Definitions(bool greyed) {
    // On a group the same bit means that it starts closed.
    plain_.flags = PF_ParamFlag_COLLAPSE_TWIRLY;
    supervised_.flags = PF_ParamFlag_COLLAPSE_TWIRLY | PF_ParamFlag_SUPERVISE;
    stepped_.flags = PF_ParamFlag_COLLAPSE_TWIRLY | PF_ParamFlag_CANNOT_INTERP;
    for (PF_ParamDef* def : {&plain_, &supervised_, &stepped_}) def->ui_flags = greyed ? PF_PUI_DISABLED : PF_PUI_NONE;
  }
  [[nodiscard]] const PF_ParamDef& operator[](ControlTemplate which) const {
    switch (which) {
      case ControlTemplate::supervised:
        return supervised_;
      case ControlTemplate::stepped:
        return stepped_;
      case ControlTemplate::plain:
        break;
    }
    return plain_;
  }

 private:
  PF_ParamDef plain_ = zeroedDef(), supervised_ = zeroedDef(), stepped_ = zeroedDef();
};

/// The object of one row, owned by the caller. Null when there is no memory to be had yet: the host lent no suites.
BaseParam* makeParam(const ControlRow& row, const PF_ParamDef& definition) {
  switch (row.kind) {
    case ControlKind::color:
      return new ParamAddColor(row, definition);
    case ControlKind::slider:
      return new ParamAddSlider(row, definition);
    case ControlKind::floatSlider:
      return new ParamAddFloatSlider(row, definition);
    case ControlKind::checkbox:
      return new ParamAddCheckbox(row, definition);
    case ControlKind::angle:
      return new ParamAddAngle(row, definition);
    case ControlKind::popup:
      return new ParamAddPopup(row, definition);
    case ControlKind::layer:
      return new ParamAddLayer(row, definition);
    case ControlKind::point:
      return new ParamAddPoint(row, definition);
    case ControlKind::group:
      return new ParamAddTopic(row, definition);
    case ControlKind::endGroup:
      break;
  }
  return new ParamEndTopic();
}

/// A group that has begun. It is ended by end(), or when an exception leaves the scope before that, so that the host
/// never sees a group without an end.
class OpenGroup {
 public:
  OpenGroup() = default;
  OpenGroup(const OpenGroup&) = delete;
  OpenGroup& operator=(const OpenGroup&) = delete;
  ~OpenGroup() {
    if (endId_ == 0) return;
    try {
      end();
    } catch (...) {  // NOLINT(bugprone-empty-catch): the exception under way tells the same
    }
  }
  void begin(int32_t topicId) { endId_ = topicId + 1; }
  void end() {
    // Cleared first: an end that can't be made is not tried again.
    const int32_t id = endId_;
    endId_ = 0;
    byId[id] = new ParamEndTopic();
  }

 private:
  int32_t endId_ = 0;  ///< 0 while no group is open
};

void constructAll(const Definitions& definitions) {
  OpenGroup open;
  for (const ControlRow& row : controlRows()) {
    if (row.kind == ControlKind::endGroup) {
      open.end();
      continue;
    }
    byId[row.id] = makeParam(row, definitions[row.definition]);
    if (row.kind == ControlKind::group) open.begin(row.id);
  }
}

/// Objects by host index, before the empty entries.
bool goesBefore(const BaseParam* left, const BaseParam* right) {
  if (left == nullptr || right == nullptr) return left != nullptr && right == nullptr;
  return left->hostIndex < right->hostIndex;
}

/// Calls `step` for each object in the order of the list until one fails.
template <class Step>
PF_Err walk(Step step) {
  PF_Err err = PF_Err_NONE;
  for (auto* entry = std::begin(byIndex) + 1; entry != std::end(byIndex) && *entry != nullptr && err == PF_Err_NONE;
       ++entry) {
    err = step(**entry);
  }
  return err;
}

}  // namespace

void DeclareParams(PF_InData* in_data) {
  DropParams();
  constructAll(Definitions(IsRenderEngine(in_data)));
  for (int32_t id = 0; id < paramSlots; ++id) {
    if (byId[id] != nullptr) byId[id]->id = id;
    byIndex[id + 1] = byId[id];
  }
  std::sort(std::begin(byIndex) + 1, std::end(byIndex), goesBefore);
}

FrameDefinitions::FrameDefinitions() {
  for (std::size_t id = 0; id < byId.size(); ++id) {
    byId[id] = vindrel::byId[id] == nullptr ? zeroedDef() : vindrel::byId[id]->def;
  }
}

void DropParams() {
  for (BaseParam*& param : byId) {
    delete param;
    param = nullptr;
  }
  std::fill(std::begin(byIndex), std::end(byIndex), nullptr);
}

int32_t HostIndexOf(int32_t id) {
  return byId[id] == nullptr ? 0 : byId[id]->hostIndex;
}

bool IsRenderEngine(PF_InData* in_data) {
  if (in_data->appl_id != kAppIdAfterEffects) return false;
  PF_Boolean renderEngine = 0;
  AEUtil::requireGlobalSuites().appSuite().PF_IsRenderEngine(&renderEngine);
  return renderEngine != 0;
}

PF_Err AddAll(PF_InData* in_data, const char* settingsPath) {
  // The list is as long as the counter says in the first life of the module, and shorter in a second one: the end of
  // the objects counts.
  return walk([&](BaseParam& param) { return param.Add(in_data, param.id, settingsPath); });
}

PF_Err FetchAll(void* target, ParamGetter& getter) {
  return walk([&](BaseParam& param) { return param.Fetch(target, getter); });
}

PF_Err ReleaseAll(ParamGetter& getter) {
  return walk([&](BaseParam& param) { return param.Release(getter); });
}

void SaveAll(const char* settingsPath) {
  walk([&](BaseParam& param) {
    param.SaveDefault(settingsPath);
    return PF_Err_NONE;
  });
}

}  // namespace vindrel
