// A small frame with any values whatever in its controls, at three depths and by both roads.
//
// Held: an answer within the sanitizers' eyes, nothing written outside a world, and the same bytes the second time.
// Sizes are kept to what a test can wait for; everything else may be out of range, infinite or not a number.
#include <fuzzer/FuzzedDataProvider.h>

#include <cmath>
#include <cstdint>
#include <cstring>

#include "fuzz/Effect.h"

namespace {

using standin::ControlKey;

/// A double of any bits; rarely an ordinary one.
double anyDouble(FuzzedDataProvider& bytes) {
  if (bytes.ConsumeBool()) return bytes.ConsumeFloatingPointInRange<double>(-200.0, 200.0);
  const auto bits = bytes.ConsumeIntegral<uint64_t>();
  double value = 0.0;
  std::memcpy(&value, &bits, sizeof(value));
  return value;
}

/// How many dots a frame has hangs on these; a lattice of a million dots tells no more than one of a hundred.
bool decidesTheNumberOfDots(const std::string& name) {
  return name == "Dot Distance X" || name == "Dot Distance Y" || name == "Distance X" || name == "Distance Y";
}

standin::Image picture(FuzzedDataProvider& bytes, standin::Depth depth) {
  standin::Image made(depth, bytes.ConsumeIntegralInRange<int32_t>(0, 24), bytes.ConsumeIntegralInRange<int32_t>(0, 24),
                      bytes.ConsumeIntegralInRange<int32_t>(0, 3));
  for (int32_t y = 0; y < made.height(); ++y) {
    const std::string row = bytes.ConsumeBytesAsString(static_cast<size_t>(made.width()) * 4);
    std::memcpy(made.rowStart(y), row.data(), row.size());
  }
  made.originX = bytes.ConsumeIntegralInRange<int32_t>(-30, 30);
  made.originY = bytes.ConsumeIntegralInRange<int32_t>(-30, 30);
  return made;
}

standin::ParameterValues::Value anyValue(FuzzedDataProvider& bytes, const standin::Control& control,
                                         const standin::ParameterValues::Value& declared, standin::Depth depth) {
  if (std::holds_alternative<int32_t>(declared)) return bytes.ConsumeIntegralInRange<int32_t>(-3, 20);
  if (std::holds_alternative<double>(declared)) {
    if (decidesTheNumberOfDots(control.name)) return bytes.ConsumeFloatingPointInRange<double>(2.0, 60.0);
    return anyDouble(bytes);
  }
  if (std::holds_alternative<PF_Pixel>(declared)) {
    return PF_Pixel{bytes.ConsumeIntegral<uint8_t>(), bytes.ConsumeIntegral<uint8_t>(),
                    bytes.ConsumeIntegral<uint8_t>(), bytes.ConsumeIntegral<uint8_t>()};
  }
  if (std::holds_alternative<standin::PointValue>(declared)) {
    return standin::PointValue{bytes.ConsumeFloatingPointInRange<double>(-100.0, 100.0),
                               bytes.ConsumeFloatingPointInRange<double>(-100.0, 100.0), bytes.ConsumeBool()};
  }
  if (std::holds_alternative<standin::LayerValue>(declared)) {
    if (bytes.ConsumeBool()) return standin::LayerValue::itself();
    return standin::LayerValue::of(picture(bytes, depth));
  }
  return declared;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider bytes(data, size);
  standin::StandInHost& host = fuzz::startedHost();
  const standin::Depth depth = bytes.PickValueInArray({standin::Depth::k8, standin::Depth::k16, standin::Depth::k32});
  const bool smart = bytes.ConsumeBool();
  standin::FrameRequest request;
  request.input = picture(bytes, depth);
  request.currentTime = bytes.ConsumeIntegral<int32_t>();
  request.timeStep = bytes.ConsumeIntegralInRange<int32_t>(-2, 100);
  standin::ParameterValues values = host.defaults();
  while (bytes.remaining_bytes() > 8) {
    const auto index = bytes.ConsumeIntegralInRange<int32_t>(1, values.size());
    const standin::Control& control = host.controls().at(static_cast<size_t>(index - 1));
    values.setValue(index, anyValue(bytes, control, values.value(index), depth));
  }
  const auto draw = [&] { return smart ? host.renderSmart(request, values) : host.renderClassic(request, values); };
  const standin::RenderResult first = draw();
  const standin::RenderResult second = draw();
  fuzz::require(first.error == second.error, "a frame ends the same way twice");
  fuzz::require(samePixels(first.output, second.output), "a frame is the same twice");
  fuzz::requireNoBreach(host);
  fuzz::forget(host);
  return 0;
}
