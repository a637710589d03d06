// The few calls of a host that the parameter room makes, answered from plain fields and written down.
//
// The effect_ref that goes with every call is the PlainHost itself; suites have no such argument, so that the last
// PlainHost made answers for them.
#pragma once

#include <cstdint>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "ae/Constants.h"
#include "ae/InOutData.h"
#include "ae/SmartRender.h"
#include "ae/Suites.h"
#include "tests/support/SameBytes.h"

namespace vindrel::test {

class PlainHost {
 public:
  PlainHost() {
    current = this;
    std::memset(&inData, 0, sizeof inData);
    std::memset(&utils, 0, sizeof utils);
    inData.effect_ref = reinterpret_cast<PF_ProgPtr>(this);
    inData.utils = &utils;
    inData.appl_id = kAppIdPremiere;
    inData.version = {13, 0};
    inData.current_time = 700;
    inData.time_step = 100;
    inData.time_scale = 3000;
    inData.inter.checkout_param = checkoutParam;
    inData.inter.checkin_param = checkinParam;
    inData.inter.add_param = addParam;
    utils.ansi.strcpy = [](A_char* to, const A_char* from) { return std::strcpy(to, from); };
    utils.get_platform_data = getPlatformData;
    basic.AcquireSuite = acquire;
    basic.ReleaseSuite = release;
    app.PF_IsRenderEngine = [](PF_Boolean* answer) {
      *answer = current->renderEngine ? 1 : 0;
      return PF_Err_NONE;
    };
    handles.host_lock_handle = [](PF_Handle handle) -> void* {
      ++current->locks;
      return current->refuseLock ? nullptr : *handle;
    };
    handles.host_unlock_handle = [](PF_Handle) { ++current->unlocks; };
    paramUtils.PF_UpdateParamUI = [](PF_ProgPtr, PF_ParamIndex index, const PF_ParamDef* def) {
      current->updates.push_back({index, (def->ui_flags & PF_PUI_DISABLED) == 0});
      return current->updateResult;
    };
  }
  ~PlainHost() { current = nullptr; }
  PlainHost(const PlainHost&) = delete;
  PlainHost& operator=(const PlainHost&) = delete;

  struct Checkout {
    int32_t index;
    A_long time, timeStep;
    A_u_long timeScale;
  };
  struct Update {
    int32_t index;
    bool enabled;
    bool operator==(const Update&) const = default;
  };
  struct SuiteUse {
    bool acquired;
    std::string name;
    int32_t version;
    bool operator==(const SuiteUse&) const = default;
  };

  PF_InData inData;
  PF_UtilCallbacks utils;
  SPBasicSuite basic{};
  PFAppSuite4 app{};
  PF_HandleSuite1 handles{};
  PF_ParamUtilsSuite1 paramUtils{};

  // What the host answers.
  std::map<int32_t, PF_ParamDef> values;     ///< of a checked-out index; all zero for the others
  std::map<int32_t, PF_Err> checkoutErrors;  ///< by index; the record is then filled with rubbish
  std::map<int32_t, PF_Err> checkinErrors;   ///< by number of the call, from 1
  int32_t addErrorAt = 0;                    ///< number of the add_param that fails with 515, from 1; 0 for none
  std::string modulePath = "/somewhere/Vindrel.aex";
  PF_Err platformDataResult = PF_Err_NONE;
  bool renderEngine = false;
  bool withoutAppSuite = false, withoutParamUtils = false, withoutHandles = false;
  bool refuseLock = false;
  PF_Err updateResult = PF_Err_NONE;

  // What the effect asked.
  std::vector<Checkout> checkouts;
  int32_t checkins = 0;
  std::vector<PF_ParamDef> added;
  std::vector<int32_t> addedAt;  ///< the index argument of each add_param
  std::vector<Update> updates;
  std::vector<SuiteUse> suites;
  int32_t locks = 0, unlocks = 0;

  /// How many more acquisitions than releases of a suite there were.
  [[nodiscard]] int32_t held(const std::string& name) const {
    int32_t count = 0;
    for (const SuiteUse& use : suites) {
      if (use.name == name) {
        count += use.acquired ? 1 : -1;
      }
    }
    return count;
  }

 private:
  static PlainHost& of(PF_ProgPtr ref) { return *reinterpret_cast<PlainHost*>(ref); }

  static PF_Err checkoutParam(PF_ProgPtr ref, PF_ParamIndex index, A_long time, A_long step, A_u_long scale,
                              PF_ParamDef* def) {
    PlainHost& host = of(ref);
    host.checkouts.push_back({index, time, step, scale});
    if (const auto error = host.checkoutErrors.find(index); error != host.checkoutErrors.end()) {
      std::memset(def, 0x5A, sizeof *def);
      return error->second;
    }
    std::memset(def, 0, sizeof *def);
    if (const auto value = host.values.find(index); value != host.values.end()) {
      *def = value->second;
    }
    return PF_Err_NONE;
  }
  static PF_Err checkinParam(PF_ProgPtr ref, PF_ParamDef*) {
    PlainHost& host = of(ref);
    const auto error = host.checkinErrors.find(++host.checkins);
    return error == host.checkinErrors.end() ? PF_Err_NONE : error->second;
  }
  static PF_Err addParam(PF_ProgPtr ref, PF_ParamIndex index, PF_ParamDefPtr def) {
    PlainHost& host = of(ref);
    host.added.push_back(*def);
    host.addedAt.push_back(index);
    return static_cast<int32_t>(host.added.size()) == host.addErrorAt ? PF_Err_INVALID_CALLBACK : PF_Err_NONE;
  }
  static PF_Err getPlatformData(PF_ProgPtr ref, PF_PlatDataID which, void* data) {
    PlainHost& host = of(ref);
    if (host.platformDataResult != PF_Err_NONE) return host.platformDataResult;
    if (which != PF_PlatData_RES_FILE_PATH_DEPRECATED) return PF_Err_BAD_CALLBACK_PARAM;
    std::memcpy(data, host.modulePath.c_str(), host.modulePath.size() + 1);
    return PF_Err_NONE;
  }
  static SPErr acquire(const char* name, int32 version, const void** suite) {
    const std::string wanted = name;
    *suite = nullptr;
    if (wanted == kPFAppSuite && version == 6 && !current->withoutAppSuite) {
      *suite = &current->app;
    } else if (wanted == kPFParamUtilsSuite && version == 2 && !current->withoutParamUtils) {
      *suite = &current->paramUtils;
    } else if (wanted == kPFHandleSuite && version == 2 && !current->withoutHandles) {
      *suite = &current->handles;
    } else {
      return kSPSuiteNotFoundError;
    }
    current->suites.push_back({true, wanted, version});
    return kSPNoError;
  }
  static SPErr release(const char* name, int32 version) {
    current->suites.push_back({false, name, version});
    return kSPNoError;
  }

  static inline PlainHost* current = nullptr;
};

}  // namespace vindrel::test
