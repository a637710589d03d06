/// The calls of the smart road: layers by check-out id, their pixels, the output.
#include <algorithm>
#include <tuple>

#include "host/HostState.h"
#include "host/Rects.h"

namespace standin {

namespace {

LayerCheckout* findCheckout(SmartFrame& smart, A_long id) {
  const auto found = std::find_if(smart.checkouts.begin(), smart.checkouts.end(),
                                  [&](const LayerCheckout& checkout) { return checkout.id == id; });
  return found == smart.checkouts.end() ? nullptr : &*found;
}

std::string layerName(const HostState& host, PF_ParamIndex index) {
  return index == 0 ? "the layer" : "\"" + host.controls[static_cast<size_t>(index) - 1].name + "\"";
}

// The layer's size at full resolution, which the result bears whatever the resolution of the frame is.
std::pair<int32_t, int32_t> fullSize(const HostState& host, PF_ParamIndex index) {
  if (index != 0 && index <= host.values.size()) {
    const auto* value = std::get_if<LayerValue>(&host.values.value(index));
    if (value != nullptr && value->source == LayerValue::Source::kPicture && value->picture != nullptr) {
      return {value->picture->width(), value->picture->height()};
    }
  }
  return {host.frame->fullWidth(), host.frame->fullHeight()};
}

PF_Err checkArguments(HostState& host, PF_ParamIndex index, A_long id, const PF_RenderRequest* request,
                      const PF_CheckoutResult* result) {
  const bool isLayer = index == 0 || (index > 0 && index <= static_cast<int32_t>(host.controls.size()) &&
                                      host.controls[static_cast<size_t>(index) - 1].type == PF_Param_LAYER);
  if (!isLayer) {
    host.complain(Matter::kWrongArgument, "checkout_layer of index " + std::to_string(index) + ", which is no layer");
    return PF_Err_INVALID_INDEX;
  }
  if (id < 0 || findCheckout(*host.smart, id) != nullptr) {
    host.complain(Matter::kWrongArgument, "checkout_layer with the id " + std::to_string(id) +
                                              (id < 0 ? ", which is negative" : ", which is taken"));
    return PF_Err_BAD_CALLBACK_PARAM;
  }
  if (request == nullptr || result == nullptr) {
    host.complain(Matter::kWrongArgument, "checkout_layer without a request or a place for the result");
    return PF_Err_BAD_CALLBACK_PARAM;
  }
  return PF_Err_NONE;
}

}  // namespace

PF_Err checkoutLayer(PF_ProgPtr ref, PF_ParamIndex index, A_long id, const PF_RenderRequest* request, A_long time,
                     A_long timeStep, A_u_long timeScale, PF_CheckoutResult* result) {
  HostState* host = HostState::current();
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  host->checkRef(ref, "checkout_layer");
  const std::string text = "index " + std::to_string(index) + " as id " + std::to_string(id) + ", " +
                           rectText(request == nullptr ? nullptr : &request->rect);
  if (host->smart == nullptr || host->running != PF_Cmd_SMART_PRE_RENDER) {
    host->complain(Matter::kWrongMoment, "checkout_layer outside a pre-render");
    return host->note("checkout_layer", text, PF_Err_BAD_CALLBACK_PARAM);
  }
  const auto fault = host->fault("checkout_layer");
  const PF_Err wrong = checkArguments(*host, index, id, request, result);
  LayerCheckout checkout;
  checkout.index = index;
  checkout.id = id;
  if (request != nullptr) checkout.request = *request;
  checkout.time = time;
  checkout.timeStep = timeStep;
  checkout.timeScale = timeScale;
  checkout.error = wrong != PF_Err_NONE ? wrong : fault.value_or(PF_Err_NONE);
  if (wrong != PF_Err_NONE) return host->note("checkout_layer", text, wrong);
  if (!fault) {
    const std::shared_ptr<const Image> picture = host->layerPictureAt(index, time, timeScale);
    if (picture != nullptr) {
      const PF_LRect all{picture->originX, picture->originY, picture->originX + picture->width(),
                         picture->originY + picture->height()};
      checkout.result.max_result_rect = picture->empty() ? PF_LRect{0, 0, 0, 0} : all;
      checkout.result.result_rect = intersection(request->rect, checkout.result.max_result_rect);
      checkout.result.par = picture->pixelAspect;
      std::tie(checkout.result.ref_width, checkout.result.ref_height) = fullSize(*host, index);
      host->smart->pictures[id] = picture;
    }
    *result = checkout.result;
  }
  host->smart->checkouts.push_back(checkout);
  return host->note("checkout_layer", text, checkout.error);
}

PF_Err checkoutLayerPixels(PF_ProgPtr ref, A_long id, PF_EffectWorld** pixels) {
  HostState* host = HostState::current();
  if (host == nullptr || pixels == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  host->checkRef(ref, "checkout_layer_pixels");
  *pixels = nullptr;
  const std::string text = "id " + std::to_string(id);
  if (host->smart == nullptr || host->running != PF_Cmd_SMART_RENDER) {
    host->complain(Matter::kWrongMoment, "checkout_layer_pixels outside a smart render");
    return host->note("checkout_layer_pixels", text, PF_Err_BAD_CALLBACK_PARAM);
  }
  if (const auto fault = host->fault("checkout_layer_pixels")) {
    return host->note("checkout_layer_pixels", text, *fault);
  }
  LayerCheckout* checkout = findCheckout(*host->smart, id);
  if (checkout == nullptr || checkout->pixelsTaken) {
    host->complain(Matter::kStrayPixels,
                   "checkout_layer_pixels of " + text +
                       (checkout == nullptr ? ", which was never checked out" : ", whose pixels were already taken"));
    return host->note("checkout_layer_pixels", text, PF_Err_BAD_CALLBACK_PARAM);
  }
  checkout->pixelsTaken = true;
  const PF_LRect& rect = checkout->result.result_rect;
  if (isEmpty(rect)) return host->note("checkout_layer_pixels", text + ", none", PF_Err_NONE);

  // The result rectangle is a window into the layer's picture: same rows, a later start, its own origin.
  const std::string name = layerName(*host, checkout->index);
  const std::shared_ptr<const Image>& picture = host->smart->pictures.at(id);
  PF_EffectWorld world = host->lend(picture, name, false);
  const ptrdiff_t skipped = static_cast<ptrdiff_t>(rect.top - picture->originY) * picture->rowBytes() +
                            static_cast<ptrdiff_t>(rect.left - picture->originX) * pixelBytes(picture->depth());
  world.data = reinterpret_cast<PF_PixelPtr>(reinterpret_cast<uint8_t*>(world.data) + skipped);
  world.width = rect.right - rect.left;
  world.height = rect.bottom - rect.top;
  world.extent_hint = {0, 0, world.width, world.height};
  world.origin_x = rect.left;
  world.origin_y = rect.top;
  host->smart->bookNumbers[id] = host->books.lend(Matter::kLayerPixels, text + ", " + name, host->running);
  *pixels = &(host->smart->worlds[id] = world);
  return host->note("checkout_layer_pixels", text, PF_Err_NONE);
}

PF_Err checkinLayerPixels(PF_ProgPtr ref, A_long id) {
  HostState* host = HostState::current();
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  host->checkRef(ref, "checkin_layer_pixels");
  const std::string text = "id " + std::to_string(id);
  LayerCheckout* checkout = host->smart == nullptr ? nullptr : findCheckout(*host->smart, id);
  if (checkout == nullptr || !checkout->pixelsTaken || checkout->pixelsGivenBack) {
    host->complain(Matter::kStrayPixels, "checkin_layer_pixels of " + text + ", which is not out");
    return host->note("checkin_layer_pixels", text, PF_Err_BAD_CALLBACK_PARAM);
  }
  checkout->pixelsGivenBack = true;
  const auto number = host->smart->bookNumbers.find(id);
  if (number != host->smart->bookNumbers.end()) host->books.giveBack(Matter::kLayerPixels, number->second);
  return host->note("checkin_layer_pixels", text, host->fault("checkin_layer_pixels").value_or(PF_Err_NONE));
}

PF_Err checkoutOutput(PF_ProgPtr ref, PF_EffectWorld** output) {
  HostState* host = HostState::current();
  if (host == nullptr || output == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  host->checkRef(ref, "checkout_output");
  *output = nullptr;
  if (host->smart == nullptr || host->running != PF_Cmd_SMART_RENDER) {
    host->complain(Matter::kWrongMoment, "checkout_output outside a smart render");
    return host->note("checkout_output", "", PF_Err_BAD_CALLBACK_PARAM);
  }
  if (const auto fault = host->fault("checkout_output")) return host->note("checkout_output", "", *fault);
  const bool inputTaken = std::any_of(host->smart->checkouts.begin(), host->smart->checkouts.end(),
                                      [](const LayerCheckout& checkout) { return checkout.pixelsTaken; });
  if (!inputTaken) host->complain(Matter::kWrongMoment, "checkout_output before any input was taken");
  *output = &host->smart->output;
  return host->note("checkout_output", worldText(*output), PF_Err_NONE);
}

}  // namespace standin
