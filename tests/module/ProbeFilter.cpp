// A filter that does on command what the module's own filter never does, to try the frame around it: the entry, its
// exceptions, and the base filter's own roads.
#include <new>
#include <stdexcept>

#include "ae/Constants.h"
#include "effect/filter/BaseFilter.h"
#include "effect/filter/EntryPoint.h"
#include "effect/share/util/Errors.h"
#include "tests/module/ProbeCommands.h"

namespace {

/// Asks for a block and swallows the failure.
void tryToAllocate() {
  try {
    ::operator delete(::operator new(64));
  } catch (const std::bad_alloc&) {
  }
}

class ProbeFilter final : public vindrel::BaseFilter {
 public:
  PF_Err Dispatch(PF_Cmd command, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[], PF_LayerDef* output,
                  void* extra) override {
    switch (command) {
      case probe::swallowFailure:
        tryToAllocate();
        return PF_Err_NONE;
      case probe::swallowManyFailures:
        for (int i = 0; i < 1000; ++i) {
          tryToAllocate();
        }
        return in_data->inter.abort(in_data->effect_ref);
      case probe::pushTwo:
        AEUtil::pendingErrors->push(9);
        AEUtil::pendingErrors->push(10);
        return PF_Err_NONE;
      case probe::pushAndFail:
        AEUtil::pendingErrors->push(9);
        return 5;
      case probe::throwOwnException:
        throw AEUtil::AEException(123, "probe", 1, "%s", "on command");
      case probe::throwStandardException:
        throw std::runtime_error("on command");
      case probe::throwNumber:
        throw static_cast<long>(516);
      default:
        return BaseFilter::Dispatch(command, in_data, out_data, params, output, extra);
    }
  }

  PF_Err GlobalSetdown(PF_InData* in_data, PF_OutData*, PF_ParamDef*[], PF_LayerDef*) override {
    if (in_data->inter.abort(in_data->effect_ref) != PF_Err_NONE) throw std::runtime_error("on command");
    return probe::setdownError;
  }
};

}  // namespace

vindrel::BaseFilter* vindrel::MakeFilter() {
  return new (std::nothrow) ProbeFilter;
}
