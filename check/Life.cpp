#include "check/Life.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <exception>
#include <limits>

namespace check {

using standin::Depth;
using standin::FrameRequest;
using standin::Image;
using standin::ParameterValues;
using standin::RenderResult;
using standin::StandInHost;

namespace {

standin::LoadedModule load(Trial& trial) {
  trial.step("loading the module");
  try {
    return standin::LoadedModule(trial.module());
  } catch (const std::runtime_error& error) {
    throw Skipped(error.what());
  }
}

// True when no byte differs from what the host had put there.
bool untouched(const Image& image, uint8_t fill) {
  const size_t length = static_cast<size_t>(image.width()) * static_cast<size_t>(pixelBytes(image.depth()));
  for (int32_t y = 0; y < image.height(); ++y) {
    const uint8_t* row = image.rowStart(y);
    if (std::any_of(row, row + length, [fill](uint8_t byte) { return byte != fill; })) return false;
  }
  return true;
}

// Modules of the smart road mostly answer the classic one with nothing.
bool classicRoadDraws(Life& life) {
  life.trial.step("looking whether the classic road draws");
  const RenderResult result = life.host.renderClassic(frameOf(Depth::k8, 16, 12), life.host.defaults());
  const auto fill = static_cast<uint8_t>(life.host.settings().fillOfOutputs);
  return result.error == PF_Err_NONE && result.rendered && !untouched(result.output, fill);
}

std::string numberText(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.6g", value);
  return text;
}

template <class Pixel>
std::string firstDifference(const Image& a, const Image& b, double most) {
  constexpr auto full = static_cast<double>(standin::PixelFacts<Pixel>::full);
  double greatest = 0;
  int64_t count = 0;
  std::string first;
  for (int32_t y = 0; y < a.height(); ++y) {
    for (int32_t x = 0; x < a.width(); ++x) {
      const Pixel& p = a.at<Pixel>(x, y);
      const Pixel& q = b.at<Pixel>(x, y);
      // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison): bytes are what counts, of floats too
      if (std::memcmp(&p, &q, sizeof p) == 0) continue;
      double apart = 0;
      for (const auto& [one, other] : {std::pair(p.alpha, q.alpha), std::pair(p.red, q.red),
                                       std::pair(p.green, q.green), std::pair(p.blue, q.blue)}) {
        const double distance = std::abs(static_cast<double>(one) - static_cast<double>(other)) / full;
        apart = std::isnan(distance) ? std::numeric_limits<double>::infinity() : std::max(apart, distance);
      }
      if (most > 0 && apart <= most) continue;
      if (count++ == 0) {
        const auto text = [](const Pixel& pixel) {
          return "alpha " + numberText(static_cast<double>(pixel.alpha)) + " red " +
                 numberText(static_cast<double>(pixel.red)) + " green " + numberText(static_cast<double>(pixel.green)) +
                 " blue " + numberText(static_cast<double>(pixel.blue));
        };
        first =
            "first at " + std::to_string(x) + ", " + std::to_string(y) + " (" + text(p) + " against " + text(q) + ")";
      }
      greatest = std::max(greatest, apart);
    }
  }
  if (count == 0) return "";
  return std::to_string(count) + " of " + std::to_string(int64_t{a.width()} * a.height()) + " pixels differ, " + first +
         ", at most by " + numberText(greatest) + " of full scale";
}

}  // namespace

Loaded::Loaded(Trial& whose, standin::HostSettings settings)
    : trial(whose), module(load(whose)), host(module, std::move(settings)) {}

Life::Life(Trial& whose, const standin::HostSettings& settings) : Loaded(whose, settings) {
  trial.step("setting the module up");
  const PF_Err error = host.start();
  if (error != PF_Err_NONE) throw Skipped("the module can't be set up: " + errorText(host, error));
  trial.step("");
}

Life::~Life() {
  if (finished_) return;
  try {
    // While an exception flies the step stays the one in which it was thrown.
    static_cast<void>(std::uncaught_exceptions() > 0 ? host.finish() : finish());
  } catch (...) {
    trial.finding(whatWasThrown());
  }
}

PF_Err Life::finish() {
  finished_ = true;
  trial.step("setting the module down");
  return host.finish();
}

std::string Way::text() const {
  return std::string(smart ? "the smart" : "the classic") + " road at " + std::to_string(static_cast<int32_t>(depth)) +
         " bits";
}

Way mainWay(const StandInHost& host) {
  return {host.smartRoadOffered(), Depth::k8};
}

std::vector<Way> waysOf(Life& life, Roads roads) {
  const StandInHost& host = life.host;
  const bool smart = host.smartRoadOffered();
  const bool deep = (host.outFlags() & PF_OutFlag_DEEP_COLOR_AWARE) != 0;
  std::vector<Way> ways = {{smart, Depth::k8}};
  if (deep) ways.push_back({smart, Depth::k16});
  if (smart && (host.outFlags2() & PF_OutFlag2_FLOAT_COLOR_AWARE) != 0) ways.push_back({true, Depth::k32});
  if (roads == Roads::kAll && smart && classicRoadDraws(life)) {
    ways.push_back({false, Depth::k8});
    if (deep) ways.push_back({false, Depth::k16});
  }
  return ways;
}

Image picture(Depth depth, int32_t width, int32_t height, uint64_t seed) {
  Image made(Depth::k8, width, height);
  Chance chance(seed);
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      const auto mixed = static_cast<uint32_t>(7 * x + 31 * y);
      PF_Pixel pixel{255, static_cast<A_u_char>(mixed % 251), static_cast<A_u_char>((3 * mixed) % 241),
                     static_cast<A_u_char>((5 * mixed) % 239)};
      if (seed != 0) {
        const auto byte = [&chance] { return static_cast<A_u_char>(chance.whole(0, 255)); };
        pixel = {chance.happens(0.6) ? A_u_char{255} : byte(), byte(), byte(), byte()};
      }
      made.at<PF_Pixel>(x, y) = pixel;
    }
  }
  return depth == Depth::k8 ? made : made.converted(depth);
}

FrameRequest frameOf(Depth depth, int32_t width, int32_t height, uint64_t seed) {
  FrameRequest frame;
  frame.input = picture(depth, width, height, seed);
  return frame;
}

RenderResult draw(StandInHost& host, const Way& way, const FrameRequest& frame, const ParameterValues& values) {
  return way.smart ? host.renderSmart(frame, values) : host.renderClassic(frame, values);
}

Image drawn(Life& life, const Way& way, const FrameRequest& frame, const ParameterValues& values) {
  RenderResult result = draw(life.host, way, frame, values);
  if (result.error != PF_Err_NONE || !result.rendered) {
    throw Skipped("no frame can be drawn by " + way.text() +
                  (result.error != PF_Err_NONE ? ": " + errorText(life.host, result.error) : ""));
  }
  return std::move(result.output);
}

std::string difference(const Image& a, const Image& b, double most) {
  if (a.empty() != b.empty()) return "one of the two frames isn't drawn";
  if (a.depth() != b.depth()) return "the depths differ";
  if (a.width() != b.width() || a.height() != b.height()) {
    return "the sizes differ: " + sizeText(a.width(), a.height()) + " and " + sizeText(b.width(), b.height());
  }
  return standin::withPixelOf(a.depth(), [&](auto kind) { return firstDifference<decltype(kind)>(a, b, most); });
}

std::string errorText(const StandInHost& host, PF_Err error) {
  const PF_OutData& out = host.outData();
  const A_char* end = std::find(out.return_msg, out.return_msg + sizeof out.return_msg, '\0');
  const std::string message(out.return_msg, static_cast<size_t>(end - out.return_msg));
  return "error " + std::to_string(error) + (message.empty() ? "" : ", \"" + message + "\"");
}

void tellComplaints(Trial& trial, StandInHost& host, std::initializer_list<standin::Matter> matters, size_t before) {
  const std::vector<standin::Entry>& complaints = host.books().complaints();
  for (size_t i = before; i < complaints.size(); ++i) {
    const standin::Entry& each = complaints[i];
    if (std::find(matters.begin(), matters.end(), each.matter) == matters.end()) continue;
    trial.finding(each.text + ", in " + standin::commandName(each.command));
  }
}

std::string sizeText(int32_t width, int32_t height) {
  return std::to_string(width) + " x " + std::to_string(height);
}

uint64_t Chance::next() {
  // An even walk whose steps are mixed: numbers of one state, and every seed is good.
  uint64_t mixed = state_ += 0x9E3779B97F4A7C15U;
  mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9U;
  mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBU;
  return mixed ^ (mixed >> 31);
}

int32_t Chance::whole(int32_t least, int32_t most) {
  const auto count = static_cast<uint64_t>(int64_t{most} - least + 1);
  return static_cast<int32_t>(least + static_cast<int64_t>(next() % count));
}

}  // namespace check
