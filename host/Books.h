/// What an effect was given and did not give back, and what it did that no effect may do.
///
/// Every thing that is lent has a running number, counted by kind from 1, so that a leak can be found again in the next
/// run. Things still open are debts; breaches are complaints and stay.
#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "ae/Scalars.h"

namespace standin {

/// What an entry is about.
enum class Matter {
  // Debts: lent and not given back.
  kHandle,       ///< a handle of host memory that was not disposed of
  kHandleLock,   ///< a lock more than before the command, on the sequence data
  kWorld,        ///< a world that was made and not disposed of
  kSuite,        ///< a suite that was acquired and not released
  kParameter,    ///< checkout_param without checkin_param
  kLayerPixels,  ///< checkout_layer_pixels without checkin_layer_pixels
  // Complaints.
  kBadHandle,       ///< a handle used that was never given out, or after its disposal; an unlock below zero
  kBadWorld,        ///< a world disposed of twice or never made, or a record that no service can use
  kBadSuite,        ///< a release of what was not acquired
  kStrayCheckin,    ///< checkin_param of what was not checked out
  kStrayPixels,     ///< layer pixels asked for twice, never checked out, or checked in without being out
  kOutside,         ///< bytes changed outside a world or a block
  kWrongMoment,     ///< a service called in a command where it must not be
  kWrongArgument,   ///< an argument that the interface forbids: index 0 to PF_UpdateParamUI, a foreign effect_ref ...
  kLayerParamUi,    ///< PF_UpdateParamUI of index 0, the layer itself; the host changes nothing
  kDeclaration,     ///< parameters, flags or version that don't agree with each other or with the resource
  kPreRender,       ///< result rectangles that break the rules
  kUnknownService,  ///< a service that this host does not have
};

struct Entry {
  Matter matter{};
  int32_t number = 0;  ///< running number of the thing; 0 for a complaint that is about no thing
  std::string text;    ///< one line, with the thing's name and where it was lent
  PF_Cmd command = 0;  ///< the command during which it was lent or done; -1 outside any
};

class Books {
 public:
  /// Notes that something was lent.
  /// @return its running number
  int32_t lend(Matter matter, std::string what, PF_Cmd command);

  /// Notes that it was given back. False when no such thing is open.
  bool giveBack(Matter matter, int32_t number);

  void complain(Matter matter, std::string text, PF_Cmd command);

  /// Handles are too many for entries of their own: whoever owns them tells the open ones when asked.
  void askForHandles(std::function<std::vector<Entry>()> ask) { openHandles_ = std::move(ask); }

  /// Open things in the order of their lending, kind by kind.
  std::vector<Entry> debts() const;
  int32_t openCount(Matter matter) const;

  /// Complaints in the order in which they arose.
  const std::vector<Entry>& complaints() const { return complaints_; }
  int32_t complaintCount(Matter matter) const;

  /// One line for each debt and each complaint, but for the matters to be left out.
  std::vector<std::string> report(std::initializer_list<Matter> leaveOut = {}) const;

  /// True when report() with the same matters left out is empty.
  bool clean(std::initializer_list<Matter> leaveOut = {}) const { return report(leaveOut).empty(); }

  /// Forgets complaints and writes off debts; running numbers go on.
  void clear();

 private:
  struct Debt {
    std::string what;
    PF_Cmd command;
  };
  std::map<Matter, std::map<int32_t, Debt>> open_;
  std::map<Matter, int32_t> lastNumber_;
  std::vector<Entry> complaints_;
  std::function<std::vector<Entry>()> openHandles_;
  int32_t handlesWrittenOff_ = 0;  // handles up to this number were written off by clear()

  std::vector<Entry> openHandles() const;
};

/// "PF_Cmd_RENDER" for 11, "command 99" for what has no name, "no command" for -1.
std::string commandName(PF_Cmd command);

/// "handle", "world", ... for a matter.
std::string_view matterName(Matter matter);

}  // namespace standin
