/// The classic road: frame set-up, render, frame set-down.
#include "host/HostState.h"
#include "host/StandInHost.h"

namespace standin {

RenderResult StandInHost::renderClassic(const FrameRequest& request, const ParameterValues& values) {
  HostState& host = *state_;
  host.useFrame(request, values, false);

  const bool mayWriteInput = (host.outFlags & PF_OutFlag_I_WRITE_INPUT_BUFFER) != 0;
  const PF_EffectWorld input = host.lend(host.input, "input", mayWriteInput);
  ParamArray params(host.controls, values, request, input);
  host.paramsBegin = &params.at(0);
  host.paramsEnd = host.paramsBegin + params.size();

  RenderResult result;
  result.error = host.callEntry(PF_Cmd_FRAME_SETUP, params.pointers(), nullptr, nullptr);
  if (result.error == PF_Err_NONE) {
    if (host.out.width > 0 && host.out.height > 0) {
      const auto output =
          std::make_shared<Image>(request.depth(), host.out.width, host.out.height, request.outputPadding,
                                  static_cast<uint8_t>(host.settings.fillOfOutputs));
      output->originX = request.outputOriginX;
      output->originY = request.outputOriginY;
      output->pixelAspect = request.input.pixelAspect;
      PF_EffectWorld world = host.lend(output, "output", true);
      if (request.extent) world.extent_hint = *request.extent;
      host.in.output_origin_x = host.out.origin.h;
      host.in.output_origin_y = host.out.origin.v;
      result.error = host.callEntry(PF_Cmd_RENDER, params.pointers(), &world, nullptr);
      host.in.output_origin_x = 0;
      host.in.output_origin_y = 0;
      result.rendered = true;
      host.endFrame();
      result.output = std::move(*output);
    }
    const PF_Err ended = host.callEntry(PF_Cmd_FRAME_SETDOWN, params.pointers(), nullptr, nullptr);
    if (result.error == PF_Err_NONE) result.error = ended;
  }
  host.endFrame();
  host.paramsBegin = nullptr;
  host.paramsEnd = nullptr;
  if (!mayWriteInput && !samePixels(request.input, *host.input)) {
    host.books.complain(Matter::kOutside, "the input's pixels were changed", PF_Cmd_RENDER);
  }
  return result;
}

}  // namespace standin
