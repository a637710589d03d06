/// The sampling suites at three depths, and the same calls among the utilities. The arithmetic is SampleWorld.h's; at
/// low quality every sample is the nearest pixel.
#include "ae/PixelSuites.h"
#include "host/HostState.h"
#include "host/SampleWorld.h"

namespace standin {

namespace {

enum class Way { kNearest, kSubpixel, kArea };

// Called once for each pixel of a frame, and so not noted one by one.
template <class Pixel>
PF_Err sample(Way way, std::string_view service, PF_ProgPtr ref, PF_Fixed x, PF_Fixed y, const PF_SampPB* params,
              Pixel* target) {
  HostState* host = HostState::current();
  if (host == nullptr || params == nullptr || target == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  host->checkRef(ref, service);
  if (const auto fault = host->fault(service)) return *fault;
  const auto depth = host->depthOf(params->src, service);
  if (!depth || *depth != PixelFacts<Pixel>::depth) {
    if (depth) host->complain(Matter::kBadWorld, std::string(service) + " of a world of another depth");
    return PF_Err_BAD_CALLBACK_PARAM;
  }
  if (way == Way::kNearest || host->in.quality == PF_Quality_LO) {
    *target = sampleNearest<Pixel>(*params->src, x, y);
  } else if (way == Way::kSubpixel) {
    *target = sampleSubpixel<Pixel>(*params->src, x, y);
  } else if (params->x_radius < 0 || params->y_radius < 0) {
    host->complain(Matter::kWrongArgument, std::string(service) + " with a radius below 0");
    return PF_Err_BAD_CALLBACK_PARAM;
  } else {
    *target = sampleArea<Pixel>(*params->src, x, y, params->x_radius, params->y_radius);
  }
  return PF_Err_NONE;
}

template <class Pixel>
PF_Err nearest(PF_ProgPtr ref, PF_Fixed x, PF_Fixed y, const PF_SampPB* params, Pixel* target) {
  return sample(Way::kNearest, "nn_sample", ref, x, y, params, target);
}

template <class Pixel>
PF_Err subpixel(PF_ProgPtr ref, PF_Fixed x, PF_Fixed y, const PF_SampPB* params, Pixel* target) {
  return sample(Way::kSubpixel, "subpixel_sample", ref, x, y, params, target);
}

template <class Pixel>
PF_Err area(PF_ProgPtr ref, PF_Fixed x, PF_Fixed y, const PF_SampPB* params, Pixel* target) {
  return sample(Way::kArea, "area_sample", ref, x, y, params, target);
}

}  // namespace

// Nothing has to be made ready for samples, nor to be ended.
PF_Err beginOrEndSampling(PF_ProgPtr ref, PF_Quality, PF_ModeFlags, PF_SampPB*) {
  HostState* host = HostState::current();
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  host->checkRef(ref, "begin_sampling");
  return host->fault("begin_sampling").value_or(PF_Err_NONE);
}

const PF_Sampling8Suite* sampling8Suite() {
  static const PF_Sampling8Suite suite = {nearest<PF_Pixel>, subpixel<PF_Pixel>, area<PF_Pixel>};
  return &suite;
}
const PF_Sampling16Suite* sampling16Suite() {
  static const PF_Sampling16Suite suite = {nearest<PF_Pixel16>, subpixel<PF_Pixel16>, area<PF_Pixel16>};
  return &suite;
}
const PF_SamplingFloatSuite* samplingFloatSuite() {
  static const PF_SamplingFloatSuite suite = {nearest<PF_PixelFloat>, subpixel<PF_PixelFloat>, area<PF_PixelFloat>};
  return &suite;
}

}  // namespace standin
