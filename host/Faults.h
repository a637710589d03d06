/// Makes single calls of the host fail, for tests of what an effect does then.
///
/// Services are named as in the interface:
///   memory       "host_new_handle" "host_lock_handle" "host_resize_handle"
///   suites       "AcquireSuite" (any), "AcquireSuite:PF World Suite 2" (name, blank, version), "ReleaseSuite",
///                "ReleaseSuite:PF World Suite 2"
///   worlds       "PF_NewWorld" "PF_DisposeWorld" "PF_GetPixelFormat" "new_world" "dispose_world"
///   pixels       "fill" "fill16" "fill_float" "copy" "copy_hq" "transfer_rect" (suite and utils count as one service)
///   parameters   "add_param" "checkout_param" "checkin_param" "PF_UpdateParamUI"
///   frame        "progress" "abort" "checkout_layer" "checkout_layer_pixels" "checkin_layer_pixels" "checkout_output"
///   application  "get_platform_data" "PF_IsRenderEngine"
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "ae/Scalars.h"

namespace standin {

class Faults {
 public:
  /// The nth call of service from now on (1 is the next) fails once with code. A service that gives a pointer gives
  /// null, and code means nothing. With code 0 the service reports success, but what it should give is missing: a null
  /// suite, a null world, an unfilled record. A service has one fault at a time; a new one replaces it.
  void fail(std::string_view service, int32_t nth, PF_Err code);

  /// As fail, but every call from the nth on fails until clear().
  void failFrom(std::string_view service, int32_t nth, PF_Err code);

  /// Forgets all faults and counts.
  void clear();

  /// For the host's services: counts a call of service; the code if this one has to fail.
  std::optional<PF_Err> happens(std::string_view service);

  /// False when no fault waits: then happens() need not be asked.
  bool armed() const { return !faults_.empty(); }

  /// Faults that have not happened yet; a test that ends with one has tested nothing.
  int32_t waiting() const;

 private:
  struct Fault {
    int32_t nth = 0;
    int32_t calls = 0;
    PF_Err code = 0;
    bool forGood = false;
    bool happened = false;
  };
  std::map<std::string, Fault, std::less<>> faults_;
};

}  // namespace standin
