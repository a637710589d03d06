#include "effect/filter/EntryPoint.h"

#include <exception>
#include <vector>

#include "ae/Constants.h"
#include "effect/filter/BaseFilter.h"
#include "effect/options/Messages.h"
#include "effect/params/ParamObjects.h"
#include "effect/share/util/Errors.h"
#include "effect/share/util/SuiteCache.h"

namespace vindrel {

namespace {

/// The module's one filter. Its presence means that the module is built up.
BaseFilter* filter = nullptr;

/// Builds what is missing, in an order that lets each thing use the memory and the suites of those before it. A host
/// that gives no basic suite leaves everything null, and hears of it here.
PF_Err buildModule(PF_InData* in_data) {
  AEUtil::openGlobalSuites(in_data->pica_basicP);
  if (AEUtil::pendingErrors == nullptr) {
    AEUtil::pendingErrors = new AEUtil::PendingErrors;
    if (AEUtil::pendingErrors != nullptr) AEUtil::pendingErrors->reserve();
  }
  // Under After Effects the language is read here, early; elsewhere the first text that is looked up has it read.
  if (in_data->appl_id == kAppIdAfterEffects) ReadCommandLine();
  DeclareParams(in_data);
  filter = MakeFilter();
  return filter != nullptr ? PF_Err_NONE : PF_Err_OUT_OF_MEMORY;
}

/// Takes everything down in the opposite order; the suites go last, since releasing memory needs them.
void tearDownModule() {
  delete filter;
  filter = nullptr;
  DropParams();
  delete AEUtil::pendingErrors;
  AEUtil::pendingErrors = nullptr;
  AEUtil::closeGlobalSuites();
}

/// 0, or the oldest failure that was swallowed on the way.
///
/// Kept as is: the list is copied although its first entry is all that is told. The copy is a block of the host's: a
/// host that has no memory even now hears of damage, 512, instead of 4
/// (see aFailureThatCantEvenBeCopiedIsToldAsDamage).
PF_Err oldestPendingError() {
  if (AEUtil::pendingErrors == nullptr || AEUtil::pendingErrors->empty()) return PF_Err_NONE;
  const std::vector<PF_Err> errors = AEUtil::pendingErrors->entries();
  // Another thread may have emptied the list after the question.
  return errors.empty() ? PF_Err_NONE : errors.front();
}

}  // namespace

}  // namespace vindrel

PF_Err EntryPointFunc(PF_Cmd command, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                      PF_LayerDef* output, void* extra) {
  using namespace vindrel;
  if (filter == nullptr) {
    const PF_Err err = buildModule(in_data);
    if (err != PF_Err_NONE) return err;
  }
  try {
    if (AEUtil::pendingErrors != nullptr) AEUtil::pendingErrors->clear();
    const PF_Err err = filter->Dispatch(command, in_data, out_data, params, output, extra);
    if (command == PF_Cmd_GLOBAL_SETDOWN) tearDownModule();
    return err != PF_Err_NONE ? err : oldestPendingError();
  } catch (const AEUtil::AEException& exception) {
    return exception.code();
  } catch (const std::exception&) {
    return PF_Err_INTERNAL_STRUCT_DAMAGED;
  } catch (...) {
    // A bare long 516, for a suite that can't be had, ends here too: the number is told as 512 on purpose.
    return PF_Err_INTERNAL_STRUCT_DAMAGED;
  }
}
