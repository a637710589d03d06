#include "tests/compare/CompareModules.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

#include "host/StandInHost.h"
#include "tests/compare/LogDifference.h"
#include "tests/module/RandomFrame.h"

namespace compare {

using standin::Control;
using standin::Image;
using standin::Matter;
using standin::ParameterValues;
using standin::RenderResult;
using standin::StandInHost;
using vindrel::test::RandomFrame;
using vindrel::test::RandomFrames;

namespace {

/// Frames between a set-up of the module and its set-down: enough to see what one leaves for the next, and few enough
/// that what the effect leaves open on purpose takes little memory.
constexpr int32_t framesPerLife = 100;

/// Services that may be told to fail once; those for memory only where they are compared.
constexpr std::string_view failingServices[] = {"AcquireSuite",
                                                "ReleaseSuite",
                                                "PF_NewWorld",
                                                "PF_DisposeWorld",
                                                "PF_GetPixelFormat",
                                                "new_world",
                                                "dispose_world",
                                                "fill",
                                                "fill16",
                                                "fill_float",
                                                "copy",
                                                "copy_hq",
                                                "transfer_rect",
                                                "checkout_param",
                                                "checkin_param",
                                                "progress",
                                                "checkout_layer",
                                                "checkout_output",
                                                "checkout_layer_pixels",
                                                "checkin_layer_pixels",
                                                "PF_IsRenderEngine"};
constexpr std::string_view failingMemory[] = {"host_new_handle", "host_lock_handle"};

/// One module's side.
struct Side {
  explicit Side(PF_EffectEntryPoint entry, const Options& options) : host(entry, settings()) {
    host.log().handleCallsToo = options.calls == Calls::kAll;
    listen(0, 0);
  }

  static standin::HostSettings settings() {
    standin::HostSettings made;
    made.modulePath = "";  // no settings file lies beside either module
    return made;
  }

  /// Forgets what was recorded. The nth progress call from now on answers with code; 0 for none.
  void listen(int64_t nth, PF_Err code) {
    host.log().clear();
    progress.clear();
    complaintsBefore = host.books().complaints().size();
    host.onProgress = [this, nth, code](A_long current, A_long total) -> PF_Err {
      progress.push_back({current, total, host.log().calls.size()});
      return static_cast<int64_t>(progress.size()) == nth ? code : 0;
    };
  }

  StandInHost host;
  std::vector<ProgressCall> progress;
  size_t complaintsBefore = 0;
};

/// A frame's outcome with what the smart road told before the drawing.
struct Drawn {
  RenderResult result;
  PF_LRect resultRect{};
  PF_LRect maxResultRect{};
  PF_RenderOutputFlags flags = 0;
};

Drawn draw(StandInHost& host, const RandomFrame& frame) {
  Drawn drawn;
  if (!frame.smartRoad) {
    drawn.result = host.renderClassic(frame.request, frame.values);
    return drawn;
  }
  standin::PreRendered before = host.preRender(frame.request, frame.values);
  drawn.resultRect = before.resultRect();
  drawn.maxResultRect = before.maxResultRect();
  drawn.flags = before.flags();
  drawn.result = before.render();
  return drawn;
}

bool sameValue(const ParameterValues::Value& one, const ParameterValues::Value& other) {
  if (const auto* color = std::get_if<PF_Pixel>(&one)) {
    const auto* otherColor = std::get_if<PF_Pixel>(&other);
    return otherColor != nullptr && std::memcmp(color, otherColor, sizeof *color) == 0;
  }
  return std::visit(
      [&](const auto& value) {
        using Value = std::decay_t<decltype(value)>;
        if constexpr (std::is_same_v<Value, PF_Pixel>) {
          return false;
        } else {
          const auto* otherValue = std::get_if<Value>(&other);
          return otherValue != nullptr && value == *otherValue;
        }
      },
      one);
}

std::string number(int64_t value) {
  return std::to_string(value);
}

std::string rectText(const PF_LRect& rect) {
  return number(rect.left) + ", " + number(rect.top) + ", " + number(rect.right) + ", " + number(rect.bottom);
}

class Comparison {
 public:
  Comparison(const Loader& one, const Loader& other, const Options& options)
      : loadOne_(one), loadOther_(other), options_(options) {}

  Outcome run(const std::function<void(const Tally&)>& progress) {
    for (int32_t i = 0; i < options_.frames && !outcome_.difference; ++i) {
      if (i % framesPerLife == 0) {
        if (i != 0) end();
        if (!outcome_.difference) begin();
        if (outcome_.difference) break;
      }
      oneFrame(options_.seed + static_cast<uint64_t>(i));
      if (progress && (i + 1) % framesPerLife == 0) progress(outcome_.tally);
    }
    if (!outcome_.difference) end();
    return std::move(outcome_);
  }

 private:
  // --- telling ---

  void differs(const std::string& what) {
    if (!outcome_.difference) outcome_.difference = place_ + '\n' + what;
  }

  template <class Value>
  bool same(const std::string& what, const Value& one, const Value& other) {
    if (one == other) return true;
    if constexpr (std::is_arithmetic_v<Value>) {
      differs(what + ": " + number(static_cast<int64_t>(one)) + " and " + number(static_cast<int64_t>(other)));
    } else if constexpr (std::is_same_v<Value, std::string>) {
      differs(what + ":\n  this:  " + one + "\n  other: " + other);
    } else {
      differs(what);
    }
    return false;
  }

  // --- comparing ---

  /// What both hosts recorded since they began to listen, and what they say of themselves.
  void compareRecords() {
    Tally& tally = outcome_.tally;
    const StandInHost& one = one_->host;
    const StandInHost& other = other_->host;
    same("out_flags", one.outData().out_flags, other.outData().out_flags);
    same("out_flags2", one.outData().out_flags2, other.outData().out_flags2);
    same<std::string>("message to the user", one.outData().return_msg, other.outData().return_msg);
    if (options_.calls == Calls::kNone) return;
    if (const auto found = firstDifference(one_->host.log(), one_->progress, other_->host.log(), other_->progress)) {
      differs(*found);
    }
    tally.hostCalls += static_cast<int64_t>(one_->host.log().calls.size() + one_->progress.size());
    tally.blocksOfOtherSize += blocksOfOtherSize(one_->host.log(), other_->host.log());
    compareComplaints();
  }

  void compareComplaints() {
    const auto& one = one_->host.books().complaints();
    const auto& other = other_->host.books().complaints();
    const size_t count = one.size() - one_->complaintsBefore;
    if (!same("breaches that the host noted", count, other.size() - other_->complaintsBefore)) return;
    for (size_t i = 0; i < count; ++i) {
      const standin::Entry& mine = one[one_->complaintsBefore + i];
      const standin::Entry& yours = other[other_->complaintsBefore + i];
      if (mine.matter == Matter::kBadHandle || mine.matter == Matter::kOutside) {
        // Their texts bear sizes of blocks.
        same("kind of breach", static_cast<int32_t>(mine.matter), static_cast<int32_t>(yours.matter));
      } else {
        same("breach that the host noted", mine.text, yours.text);
      }
    }
  }

  void compareDrawn(const Drawn& one, const Drawn& other) {
    same("error of the frame", one.result.error, other.result.error);
    same("result rectangle", rectText(one.resultRect), rectText(other.resultRect));
    same("largest result rectangle", rectText(one.maxResultRect), rectText(other.maxResultRect));
    same("flags of the pre-render", one.flags, other.flags);
    same("whether the frame was drawn", one.result.rendered, other.result.rendered);
    if (outcome_.difference || !one.result.rendered) return;
    const Image& mine = one.result.output;
    const Image& yours = other.result.output;
    same("width", mine.width(), yours.width());
    same("height", mine.height(), yours.height());
    same("left edge", mine.originX, yours.originX);
    same("upper edge", mine.originY, yours.originY);
    same("bytes around the output", mine.guardsIntact(), yours.guardsIntact());
    if (outcome_.difference) return;
    const size_t length = static_cast<size_t>(mine.width()) * static_cast<size_t>(standin::pixelBytes(mine.depth()));
    for (int32_t y = 0; y < mine.height(); ++y) {
      const uint8_t* const row = mine.rowStart(y);
      const uint8_t* const otherRow = yours.rowStart(y);
      if (std::memcmp(row, otherRow, length) != 0) {
        comparePixels(mine, yours, y);
        return;
      }
    }
    outcome_.tally.outputBytes += static_cast<int64_t>(length) * mine.height();
  }

  void comparePixels(const Image& one, const Image& other, int32_t y) {
    standin::withPixelOf(one.depth(), [&](auto kind) {
      using Pixel = decltype(kind);
      for (int32_t x = 0; x < one.width(); ++x) {
        const Pixel& mine = one.at<Pixel>(x, y);
        const Pixel& yours = other.at<Pixel>(x, y);
        // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison): bytes are what is compared, of floats too
        if (std::memcmp(&mine, &yours, sizeof mine) == 0) continue;
        differs("pixel " + number(x) + ", " + number(y) + " of " + number(one.width()) + " x " + number(one.height()) +
                ":\n  this:  " + pixelText(mine) + "\n  other: " + pixelText(yours));
        return;
      }
    });
  }

  template <class Pixel>
  static std::string pixelText(const Pixel& pixel) {
    const auto text = [](auto channel) { return exactText(static_cast<double>(channel)); };
    return "alpha " + text(pixel.alpha) + " red " + text(pixel.red) + " green " + text(pixel.green) + " blue " +
           text(pixel.blue);
  }

  void compareControls() {
    const auto& one = one_->host.controls();
    const auto& other = other_->host.controls();
    if (!same("number of controls", one.size(), other.size())) return;
    for (size_t i = 0; i < one.size(); ++i) {
      const std::string what = "control " + number(one[i].index) + ", \"" + one[i].name + "\"";
      if (const auto found = firstDifference(one[i], other[i])) differs(what + ": " + *found);
    }
  }

  // --- driving ---

  /// The same work on both sides, and then what was recorded of it.
  template <class Work>
  void onBoth(int64_t endAt, PF_Err endWith, Work&& work) {
    one_->listen(endAt, endWith);
    const auto one = work(one_->host);
    other_->listen(endAt, endWith);
    const auto other = work(other_->host);
    if constexpr (std::is_same_v<std::decay_t<decltype(one)>, Drawn>) {
      compareDrawn(one, other);
    } else {
      same("answer", one, other);
    }
    compareRecords();
  }

  void begin() {
    place_ = "in the set-up before the frame of seed " + number(static_cast<int64_t>(nextSeed()));
    one_ = std::make_unique<Side>(loadOne_(), options_);
    other_ = std::make_unique<Side>(loadOther_(), options_);
    onBoth(0, 0, [](StandInHost& host) { return host.start(); });
    same("version", one_->host.effectVersion(), other_->host.effectVersion());
    same("number of parameters", one_->host.numParams(), other_->host.numParams());
    compareControls();
    onBoth(0, 0, [](StandInHost& host) { return host.about(); });
    ++outcome_.tally.lives;
  }

  void end() {
    place_ = "in the set-down before the frame of seed " + number(static_cast<int64_t>(nextSeed()));
    onBoth(0, 0, [](StandInHost& host) { return host.finish(); });
    for (const Matter matter : {Matter::kHandle, Matter::kHandleLock, Matter::kWorld, Matter::kSuite,
                                Matter::kParameter, Matter::kLayerPixels}) {
      if (matter == Matter::kHandle && options_.calls != Calls::kAll) continue;
      same("what is left open of kind \"" + std::string(standin::matterName(matter)) + "\"",
           one_->host.books().openCount(matter), other_->host.books().openCount(matter));
    }
    one_.reset();
    other_.reset();
  }

  uint64_t nextSeed() const { return options_.seed + static_cast<uint64_t>(outcome_.tally.frames); }

  void oneFrame(uint64_t seed) {
    RandomFrames frames(seed, one_->host.controls());
    const RandomFrame frame = frames.next();
    Tally& tally = outcome_.tally;
    const std::string frameText = "\n\nThe frame:\n" + frame.text();
    const std::string where = "in the frame of seed " + number(static_cast<int64_t>(seed));

    place_ = where;
    bool rendered = false;
    onBoth(0, 0, [&](StandInHost& host) {
      Drawn drawn = draw(host, frame);
      rendered = drawn.result.rendered;
      return drawn;
    });
    ++tally.frames;
    ++tally.framesOfDepth[frame.request.depth() == standin::Depth::k8    ? 0
                          : frame.request.depth() == standin::Depth::k16 ? 1
                                                                         : 2];
    if (frame.smartRoad) ++tally.smartFrames;
    if (rendered) ++tally.drawn;

    if (!outcome_.difference && frames.happens(0.1)) interrupt(where, frame, frames);
    if (!outcome_.difference && frames.happens(0.05)) changeOneControl(where, frame, frames);
    if (!outcome_.difference && frames.happens(0.05)) flatten(where);
    if (outcome_.difference) *outcome_.difference += frameText;
  }

  // Which call fails or orders the end is drawn from those that the frame has just made; modules that may make other
  // calls can't be told apart so.
  void interrupt(const std::string& where, const RandomFrame& frame, RandomFrames& frames) {
    if (options_.calls == Calls::kNone) return;
    std::vector<std::pair<std::string_view, int32_t>> candidates;
    const auto consider = [&](std::string_view service) {
      if (const int32_t count = one_->host.log().count(service)) candidates.emplace_back(service, count);
    };
    for (const std::string_view service : failingServices) consider(service);
    // With --no-memory the log holds no call for memory, so that none is chosen.
    for (const std::string_view service : failingMemory) consider(service);

    if (const size_t calls = one_->progress.size()) {
      const int32_t last = frames.whole(1, static_cast<int32_t>(std::min(calls, size_t{1000000})));
      place_ = where + ", with its progress call " + number(last) + " ordering the end";
      onBoth(last, 1001, [&](StandInHost& host) { return draw(host, frame); });
      ++outcome_.tally.interrupted;
    }
    if (candidates.empty() || outcome_.difference) return;
    const auto [service, count] =
        candidates[static_cast<size_t>(frames.whole(0, static_cast<int32_t>(candidates.size()) - 1))];
    const int32_t nth = frames.whole(1, count);
    place_ = where + ", with call " + number(nth) + " of " + std::string(service) + " failing";
    onBoth(0, 0, [&, failing = service](StandInHost& host) {
      host.faults().fail(failing, nth, PF_Err_OUT_OF_MEMORY);
      Drawn drawn = draw(host, frame);
      host.faults().clear();
      return drawn;
    });
    ++outcome_.tally.faults;
  }

  void changeOneControl(const std::string& where, const RandomFrame& frame, RandomFrames& frames) {
    const auto& controls = one_->host.controls();
    const Control& changed = controls[static_cast<size_t>(frames.whole(0, static_cast<int32_t>(controls.size()) - 1))];
    place_ = where + ", with the user changing \"" + changed.name + "\"";
    const standin::ByIndex key{changed.index};
    ParameterValues values[2] = {frame.values, frame.values};
    onBoth(0, 0, [&](StandInHost& host) {
      return host.userChangedParam(key, values[&host == &other_->host ? 1 : 0], frame.request).error;
    });
    for (const Control& control : controls) {
      if (!sameValue(values[0].value(control.index), values[1].value(control.index)))
        differs("value of \"" + control.name + '"');
    }
    onBoth(0, 0, [&](StandInHost& host) { return host.updateParamsUi(frame.values, frame.request); });
    onBoth(0, 0, [&](StandInHost& host) { return host.queryDynamicFlags(frame.values, frame.request); });
    compareControls();
    ++outcome_.tally.changes;
  }

  void flatten(const std::string& where) {
    place_ = where + ", with the sequence data flattened after it";
    onBoth(0, 0, [](StandInHost& host) { return host.sequenceFlatten(); });
    same("flat sequence data", one_->host.sequenceBytes(), other_->host.sequenceBytes());
    onBoth(0, 0, [](StandInHost& host) { return host.sequenceResetup(); });
    ++outcome_.tally.flattened;
  }

  const Loader& loadOne_;
  const Loader& loadOther_;
  Options options_;
  Outcome outcome_;
  std::unique_ptr<Side> one_;
  std::unique_ptr<Side> other_;
  std::string place_;  ///< where the comparison stands, for messages
};

}  // namespace

Outcome compareModules(const Loader& one, const Loader& other, const Options& options,
                       const std::function<void(const Tally&)>& progress) {
  return Comparison(one, other, options).run(progress);
}

}  // namespace compare
