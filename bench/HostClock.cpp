#include "bench/HostClock.h"

#include <chrono>
#include <cstring>

#include "ae/Constants.h"
#include "ae/SmartRender.h"
#include "ae/Suites.h"

namespace vindrel::bench {
namespace {

using Clock = std::chrono::steady_clock;

PF_EffectEntryPoint realEntry = nullptr;
Clock::duration entryTime{};
Clock::duration serviceTime{};

/// Adds the time of its own life to one of the two sums.
class Running {
 public:
  explicit Running(Clock::duration& sum) : sum_(sum), begin_(Clock::now()) {}
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;
  ~Running() { sum_ += Clock::now() - begin_; }

 private:
  Clock::duration& sum_;
  Clock::time_point begin_;
};

/// The host's own table of a kind, as it was lent last.
template <class Table>
const Table* real = nullptr;

/// The timed form of one function of a table.
template <auto Member>
struct Timed;
template <class Table, class Result, class... Arguments, Result (*Table::*Member)(Arguments...)>
struct Timed<Member> {
  static Result call(Arguments... arguments) {
    const Running running(serviceTime);
    return (real<Table>->*Member)(arguments...);
  }
};

/// The host's table with the named functions timed and all others as they are.
template <auto... Members, class Table>
const Table* timedTable(const Table* table) {
  static Table copy;
  if (table == nullptr) return nullptr;
  real<Table> = table;
  copy = *table;
  ((copy.*Members = Timed<Members>::call), ...);
  return &copy;
}

const void* timedSuite(const char* name, const void* suite) {
  if (std::strcmp(name, kPFHandleSuite) == 0) {
    return timedTable<&PF_HandleSuite1::host_new_handle, &PF_HandleSuite1::host_lock_handle,
                      &PF_HandleSuite1::host_unlock_handle, &PF_HandleSuite1::host_dispose_handle,
                      &PF_HandleSuite1::host_get_handle_size>(static_cast<const PF_HandleSuite1*>(suite));
  }
  if (std::strcmp(name, kPFFillMatteSuite) == 0) {
    return timedTable<&PF_FillMatteSuite2::fill, &PF_FillMatteSuite2::fill16, &PF_FillMatteSuite2::fill_float>(
        static_cast<const PF_FillMatteSuite2*>(suite));
  }
  if (std::strcmp(name, kPFWorldTransformSuite) == 0) {
    return timedTable<&PF_WorldTransformSuite1::copy, &PF_WorldTransformSuite1::copy_hq,
                      &PF_WorldTransformSuite1::transfer_rect>(static_cast<const PF_WorldTransformSuite1*>(suite));
  }
  return suite;
}

SPErr acquireTimed(const char* name, int32 version, const void** suite) {
  const Running running(serviceTime);
  const SPErr error = real<SPBasicSuite>->AcquireSuite(name, version, suite);
  if (error == kSPNoError && std::strcmp(name, kPFWorldSuite) == 0 && version == kPFWorldSuiteVersion2) {
    *suite =
        timedTable<&PF_WorldSuite2::PF_NewWorld, &PF_WorldSuite2::PF_DisposeWorld, &PF_WorldSuite2::PF_GetPixelFormat>(
            static_cast<const PF_WorldSuite2*>(*suite));
  } else if (error == kSPNoError) {
    *suite = timedSuite(name, *suite);
  }
  return error;
}

/// Puts the timed tables into a command's block for as long as the command runs.
class Lent {
 public:
  explicit Lent(PF_InData& in_data) : in_data_(in_data), inter_(in_data.inter), basic_(in_data.pica_basicP) {
    static SPBasicSuite basic;
    real<SPBasicSuite> = basic_;
    basic = *basic_;
    basic.AcquireSuite = acquireTimed;
    in_data.pica_basicP = &basic;
    in_data.inter =
        *timedTable<&PF_InteractCallbacks::checkout_param, &PF_InteractCallbacks::checkin_param,
                    &PF_InteractCallbacks::add_param, &PF_InteractCallbacks::abort, &PF_InteractCallbacks::progress>(
            &inter_);
  }
  Lent(const Lent&) = delete;
  Lent& operator=(const Lent&) = delete;
  ~Lent() {
    in_data_.inter = inter_;
    in_data_.pica_basicP = basic_;
  }

 private:
  PF_InData& in_data_;
  PF_InteractCallbacks inter_;
  SPBasicSuite* basic_;
};

PF_Err entryWithClocks(PF_Cmd command, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                       PF_LayerDef* output, void* extra) {
  const Lent lent(*in_data);
  const Running running(entryTime);
  return realEntry(command, in_data, out_data, params, output, extra);
}

double seconds(Clock::duration duration) {
  return std::chrono::duration<double>(duration).count();
}

}  // namespace

PF_EffectEntryPoint timedEntry(PF_EffectEntryPoint entry) {
  realEntry = entry;
  return entryWithClocks;
}

void resetClocks() {
  entryTime = {};
  serviceTime = {};
}

FrameClocks readClocks() {
  return {seconds(entryTime - serviceTime), seconds(serviceTime)};
}

}  // namespace vindrel::bench
