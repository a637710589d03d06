// Any text as the value of any kind of control. Held: it is refused with a message, or it is a value that reads back as
// itself when it is shown.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "cli/ControlValue.h"
#include "cli/UserError.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider bytes(data, size);
  cli::ControlFacts control;
  control.name = "Any";
  control.kind =
      bytes.PickValueInArray({cli::ControlKind::wholeNumber, cli::ControlKind::number, cli::ControlKind::angle,
                              cli::ControlKind::checkBox, cli::ControlKind::color, cli::ControlKind::place,
                              cli::ControlKind::choice, cli::ControlKind::layer, cli::ControlKind::groupStart});
  control.percent = bytes.ConsumeBool();
  control.validMin = -1000.0;
  control.validMax = 1000.0;
  control.items = {"Normal", "(-", "Soft Light", "2"};
  const std::string text = bytes.ConsumeRemainingBytesAsString();
  cli::ControlValue value;
  try {
    value = parseControlValue(control, text);
  } catch (const cli::UserError&) {
    return 0;
  }
  const std::string shown = shownValue(control, value);
  if (parseControlValue(control, shown) != value) {
    std::fprintf(stderr, "'%s' is shown as '%s', which is another value\n", text.c_str(), shown.c_str());
    std::abort();
  }
  return 0;
}
