#include "host/Books.h"

#include <algorithm>
#include <array>
#include <utility>

#include "ae/Constants.h"

namespace standin {

namespace {

struct MatterText {
  Matter matter;
  std::string_view name;
  std::string_view debt;  // what was left undone; empty for complaints
};

constexpr std::array<MatterText, 18> kMatters = {{
    {Matter::kHandle, "handle", "never disposed of"},
    {Matter::kHandleLock, "lock", "never undone"},
    {Matter::kWorld, "world", "never disposed of"},
    {Matter::kSuite, "suite", "never released"},
    {Matter::kParameter, "parameter", "never checked in"},
    {Matter::kLayerPixels, "layer pixels", "never checked in"},
    {Matter::kBadHandle, "bad handle", ""},
    {Matter::kBadWorld, "bad world", ""},
    {Matter::kBadSuite, "bad suite", ""},
    {Matter::kStrayCheckin, "stray check-in", ""},
    {Matter::kStrayPixels, "stray layer pixels", ""},
    {Matter::kOutside, "write outside", ""},
    {Matter::kWrongMoment, "wrong moment", ""},
    {Matter::kWrongArgument, "wrong argument", ""},
    {Matter::kLayerParamUi, "look of the layer itself", ""},
    {Matter::kDeclaration, "declaration", ""},
    {Matter::kPreRender, "pre-render", ""},
    {Matter::kUnknownService, "unknown service", ""},
}};

const MatterText& textOf(Matter matter) {
  return *std::find_if(kMatters.begin(), kMatters.end(), [&](const MatterText& t) { return t.matter == matter; });
}

}  // namespace

int32_t Books::lend(Matter matter, std::string what, PF_Cmd command) {
  const int32_t number = ++lastNumber_[matter];
  open_[matter].emplace(number, Debt{std::move(what), command});
  return number;
}

bool Books::giveBack(Matter matter, int32_t number) {
  return open_[matter].erase(number) != 0;
}

void Books::complain(Matter matter, std::string text, PF_Cmd command) {
  complaints_.push_back({matter, 0, std::move(text), command});
}

std::vector<Entry> Books::debts() const {
  std::vector<Entry> all = openHandles();
  for (const auto& [matter, things] : open_) {
    for (const auto& [number, debt] : things) {
      std::string text = std::string(matterName(matter)) + " " + std::to_string(number) + " (" + debt.what +
                         "), lent in " + commandName(debt.command) + ", " + std::string(textOf(matter).debt);
      all.push_back({matter, number, std::move(text), debt.command});
    }
  }
  return all;
}

std::vector<Entry> Books::openHandles() const {
  std::vector<Entry> all = openHandles_ ? openHandles_() : std::vector<Entry>{};
  std::erase_if(all, [&](const Entry& entry) { return entry.number <= handlesWrittenOff_; });
  return all;
}

int32_t Books::openCount(Matter matter) const {
  if (matter == Matter::kHandle) return static_cast<int32_t>(openHandles().size());
  const auto found = open_.find(matter);
  return found == open_.end() ? 0 : static_cast<int32_t>(found->second.size());
}

int32_t Books::complaintCount(Matter matter) const {
  return static_cast<int32_t>(std::count_if(complaints_.begin(), complaints_.end(),
                                            [&](const Entry& entry) { return entry.matter == matter; }));
}

std::vector<std::string> Books::report(std::initializer_list<Matter> leaveOut) const {
  std::vector<std::string> lines;
  const auto wanted = [&](Matter matter) {
    return std::find(leaveOut.begin(), leaveOut.end(), matter) == leaveOut.end();
  };
  for (const Entry& debt : debts()) {
    if (wanted(debt.matter)) lines.push_back(debt.text);
  }
  for (const Entry& complaint : complaints_) {
    if (!wanted(complaint.matter)) continue;
    lines.push_back(std::string(matterName(complaint.matter)) + ": " + complaint.text + ", in " +
                    commandName(complaint.command));
  }
  return lines;
}

void Books::clear() {
  for (const Entry& entry : openHandles()) handlesWrittenOff_ = std::max(handlesWrittenOff_, entry.number);
  open_.clear();
  complaints_.clear();
}

std::string commandName(PF_Cmd command) {
  static constexpr std::array<std::string_view, 25> names = {"PF_Cmd_ABOUT",
                                                             "PF_Cmd_GLOBAL_SETUP",
                                                             "PF_Cmd_UNUSED_0",
                                                             "PF_Cmd_GLOBAL_SETDOWN",
                                                             "PF_Cmd_PARAMS_SETUP",
                                                             "PF_Cmd_SEQUENCE_SETUP",
                                                             "PF_Cmd_SEQUENCE_RESETUP",
                                                             "PF_Cmd_SEQUENCE_FLATTEN",
                                                             "PF_Cmd_SEQUENCE_SETDOWN",
                                                             "PF_Cmd_DO_DIALOG",
                                                             "PF_Cmd_FRAME_SETUP",
                                                             "PF_Cmd_RENDER",
                                                             "PF_Cmd_FRAME_SETDOWN",
                                                             "PF_Cmd_USER_CHANGED_PARAM",
                                                             "PF_Cmd_UPDATE_PARAMS_UI",
                                                             "PF_Cmd_EVENT",
                                                             "PF_Cmd_GET_EXTERNAL_DEPENDENCIES",
                                                             "PF_Cmd_COMPLETELY_GENERAL",
                                                             "PF_Cmd_QUERY_DYNAMIC_FLAGS",
                                                             "PF_Cmd_AUDIO_RENDER",
                                                             "PF_Cmd_AUDIO_SETUP",
                                                             "PF_Cmd_AUDIO_SETDOWN",
                                                             "PF_Cmd_ARBITRARY_CALLBACK",
                                                             "PF_Cmd_SMART_PRE_RENDER",
                                                             "PF_Cmd_SMART_RENDER"};
  if (command == -1) return "no command";
  if (command < 0 || static_cast<size_t>(command) >= names.size()) return "command " + std::to_string(command);
  return std::string(names[static_cast<size_t>(command)]);
}

std::string_view matterName(Matter matter) {
  return textOf(matter).name;
}

}  // namespace standin
