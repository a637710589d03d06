/// What promises work with: the module in a host, the ways in which it can draw, frames and comparisons.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "check/Trial.h"
#include "host/StandInHost.h"

namespace check {

/// The module loaded, and a host around it; nothing is set up. What the effect does while the trial's last step stands
/// is told under it.
class Loaded {
 public:
  explicit Loaded(Trial& trial, standin::HostSettings settings = {});
  Loaded(const Loaded&) = delete;
  Loaded& operator=(const Loaded&) = delete;
  ~Loaded() = default;

  Trial& trial;
  standin::LoadedModule module;
  standin::StandInHost host;
};

/// An instance: all three set-ups are done, and the set-downs come at the end, if not before. A module whose set-up
/// fails is skipped: another promise tells of that.
class Life : public Loaded {
 public:
  explicit Life(Trial& trial, const standin::HostSettings& settings = {});
  ~Life();
  /// Both set-downs now.
  PF_Err finish();

 private:
  bool finished_ = false;
};

/// A road and a depth.
struct Way {
  bool smart = false;
  standin::Depth depth = standin::Depth::k8;
  std::string text() const;  ///< "the smart road at 16 bits"
};

/// Which roads are asked for.
enum class Roads { kMain, kAll };

/// The ways that the module offers by its flags: the smart road where it is offered, else the classic one, at 8 bits,
/// at 16 when it is aware of deep colour, and on the smart road at 32 when it is aware of float. With kAll also the
/// classic road of a module of the smart one, if that draws anything.
std::vector<Way> waysOf(Life& life, Roads roads = Roads::kMain);

/// The first of the ways.
Way mainWay(const standin::StandInHost& host);

/// An opaque picture in which no two neighbours are alike; with a seed, random, clear and half-clear pixels among them.
standin::Image picture(standin::Depth depth, int32_t width, int32_t height, uint64_t seed = 0);

/// A frame of this size; otherwise as usual.
standin::FrameRequest frameOf(standin::Depth depth, int32_t width, int32_t height, uint64_t seed = 0);

/// Draws with whatever comes. "--" of nothing drawn is told by rendered.
standin::RenderResult draw(standin::StandInHost& host, const Way& way, const standin::FrameRequest& frame,
                           const standin::ParameterValues& values);

/// Draws, and skips the trial when that fails: another promise tells of it.
standin::Image drawn(Life& life, const Way& way, const standin::FrameRequest& frame,
                     const standin::ParameterValues& values);

/// Where and by how much two pictures differ; empty when they are the same to the last bit (with most 0) or no channel
/// differs by more than most of full scale. Sizes count, origins don't.
std::string difference(const standin::Image& a, const standin::Image& b, double most = 0);

/// "error 4, "the effect's own message"" of the last call.
std::string errorText(const standin::StandInHost& host, PF_Err error);

/// What the books say of these matters and did not say before, a finding each.
/// @param before  how many complaints there were
void tellComplaints(Trial& trial, standin::StandInHost& host, std::initializer_list<standin::Matter> matters,
                    size_t before = 0);

/// "20 x 14".
std::string sizeText(int32_t width, int32_t height);

/// Numbers from a seed, the same on every system.
class Chance {
 public:
  explicit Chance(uint64_t seed) : state_(seed) {}
  uint64_t next();
  /// least to most, both included.
  int32_t whole(int32_t least, int32_t most);
  double unit() { return static_cast<double>(next() >> 11) / 9007199254740992.0; }  ///< 0 to below 1
  double between(double least, double most) { return least + unit() * (most - least); }
  bool happens(double share) { return unit() < share; }

 private:
  uint64_t state_;
};

}  // namespace check
