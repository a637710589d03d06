/// The smart road as the host walks it: pre-render, a render or none, and the end of the effect's data.
#include <utility>

#include "host/HostState.h"
#include "host/Rects.h"
#include "host/Refusals.h"
#include "host/StandInHost.h"

namespace standin {

namespace {

// What the host lends for one render is gone when its command has returned.
void checkOutput(HostState& host, const Image& output) {
  if (!output.guardsIntact()) {
    host.books.complain(Matter::kOutside, "bytes outside the output were changed", PF_Cmd_SMART_RENDER);
  }
}

// Effects may leave a handle of the host without a function, and may have disposed of it themselves meanwhile. Other
// memory comes from the effect's own heap, of whose kind the host knows nothing.
void dropWithoutFunction(HostState& host, void* data) {
  HandleStore::Record* record = host.handles->find(static_cast<PF_Handle>(data));
  if (record == nullptr) {
    host.books.complain(Matter::kPreRender,
                        "pre-render data that is no handle has no delete function; it is left alone",
                        PF_Cmd_SMART_PRE_RENDER);
  } else if (record->open) {
    host.handles->dispose(*record);
  }
}

}  // namespace

struct PreRendered::State {
  HostState* host = nullptr;
  std::shared_ptr<const FrameRequest> frame;
  std::shared_ptr<const Image> input;
  ParameterValues values;
  PF_RenderRequest request{};
  PF_PreRenderOutput output{};
  SmartFrame smart;
  PF_Err error = 0;
  bool rendered = false;

  // The part of the result that is really wanted.
  PF_LRect drawnRect() const {
    if ((output.flags & PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS) != 0) return output.result_rect;
    return intersection(output.result_rect, request.rect);
  }

  void checkRects() const {
    const bool extra = (output.flags & PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS) != 0;
    if (!extra && !contains(request.rect, output.result_rect)) {
      host->books.complain(Matter::kPreRender,
                           "the result " + rectText(&output.result_rect) + " exceeds the request " +
                               rectText(&request.rect) + " without saying so",
                           PF_Cmd_SMART_PRE_RENDER);
    }
    if (!contains(output.max_result_rect, output.result_rect)) {
      host->books.complain(Matter::kPreRender,
                           "the result " + rectText(&output.result_rect) + " exceeds the largest one " +
                               rectText(&output.max_result_rect),
                           PF_Cmd_SMART_PRE_RENDER);
    }
  }

  void drop() {
    if (output.pre_render_data == nullptr) return;
    HostState::setCurrent(host);
    void* data = std::exchange(output.pre_render_data, nullptr);
    if (output.delete_pre_render_data_func != nullptr) {
      output.delete_pre_render_data_func(data);
    } else {
      dropWithoutFunction(*host, data);
    }
  }
};

PreRendered::PreRendered(std::unique_ptr<State> state) : state_(std::move(state)) {}
PreRendered::PreRendered(PreRendered&&) noexcept = default;
PreRendered& PreRendered::operator=(PreRendered&& other) noexcept {
  if (this != &other) {
    if (state_) state_->drop();
    state_ = std::move(other.state_);
  }
  return *this;
}
PreRendered::~PreRendered() {
  if (state_) state_->drop();
}

PF_Err PreRendered::error() const {
  return state_->error;
}
PF_LRect PreRendered::resultRect() const {
  return state_->output.result_rect;
}
PF_LRect PreRendered::maxResultRect() const {
  return state_->output.max_result_rect;
}
PF_RenderOutputFlags PreRendered::flags() const {
  return state_->output.flags;
}
const std::vector<LayerCheckout>& PreRendered::checkouts() const {
  return state_->smart.checkouts;
}
void* PreRendered::data() const {
  return state_->output.pre_render_data;
}
void PreRendered::discard() {
  state_->drop();
}

RenderResult PreRendered::render() {
  State& s = *state_;
  RenderResult result;
  result.error = s.error;
  const PF_LRect rect = s.drawnRect();
  if (s.error != PF_Err_NONE || s.rendered || isEmpty(rect)) return result;
  s.rendered = true;
  HostState& host = *s.host;
  host.frame = s.frame;
  host.input = s.input;
  host.values = s.values;
  host.layers.clear();

  const auto output =
      std::make_shared<Image>(s.frame->depth(), rect.right - rect.left, rect.bottom - rect.top, s.frame->outputPadding,
                              static_cast<uint8_t>(host.settings.fillOfOutputs));
  output->originX = rect.left;
  output->originY = rect.top;
  output->pixelAspect = s.frame->input.pixelAspect;
  s.smart.output = host.lend(output, "output", true);

  PF_SmartRenderInput input{};
  input.output_request = s.request;
  input.bitdepth = static_cast<short>(s.frame->depth());
  input.pre_render_data = s.output.pre_render_data;
  PF_SmartRenderCallbacks callbacks{checkoutLayerPixels, checkinLayerPixels, checkoutOutput};
  PF_SmartRenderExtra extra{&input, &callbacks};
  host.smart = &s.smart;
  result.error = host.callEntry(PF_Cmd_SMART_RENDER, nullptr, nullptr, &extra);
  host.smart = nullptr;
  result.rendered = true;
  checkOutput(host, *output);
  host.endFrame();
  result.output = std::move(*output);
  return result;
}

PreRendered StandInHost::preRender(const FrameRequest& request, const ParameterValues& values) {
  HostState& host = *state_;
  host.useFrame(request, values, false);

  auto state = std::make_unique<PreRendered::State>();
  state->host = &host;
  state->frame = host.frame;
  state->input = host.input;
  state->values = values;
  state->request.rect = request.requestRect.value_or(request.layerRect());
  state->request.field = PF_Field_FRAME;
  state->request.channel_mask = PF_ChannelMask_ARGB;

  PF_PreRenderInput input{};
  input.output_request = state->request;
  input.bitdepth = static_cast<short>(request.depth());
  PF_PreRenderCallbacks callbacks{checkoutLayer, refused<"GuidMixInPtr">};
  PF_PreRenderExtra extra{&input, &state->output, &callbacks};
  host.smart = &state->smart;
  state->error = host.callEntry(PF_Cmd_SMART_PRE_RENDER, nullptr, nullptr, &extra);
  host.smart = nullptr;
  host.endFrame();
  if (state->error == PF_Err_NONE) state->checkRects();
  return PreRendered(std::move(state));
}

RenderResult StandInHost::renderSmart(const FrameRequest& request, const ParameterValues& values) {
  PreRendered pre = preRender(request, values);
  return pre.render();
}

}  // namespace standin
