#include "host/StandInHost.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <stdexcept>
#include <utility>

#include "host/ArbitraryData.h"
#include "host/DeliverValue.h"
#include "host/HostState.h"

namespace standin {

namespace {

// One command's params array, known to the services for as long as the command runs.
class ParamsInUse {
 public:
  ParamsInUse(HostState& host, const ParameterValues& values, const FrameRequest& frame)
      : host_((host.useFrame(frame, values, true), host)),
        array_(host.controls, values, *host.frame, worldOfInput(host)) {
    host_.paramsBegin = &array_.at(0);
    host_.paramsEnd = host_.paramsBegin + array_.size();
  }
  ~ParamsInUse() {
    host_.paramsBegin = nullptr;
    host_.paramsEnd = nullptr;
    host_.endFrame();
  }
  ParamsInUse(const ParamsInUse&) = delete;
  ParamsInUse& operator=(const ParamsInUse&) = delete;
  PF_ParamDef** pointers() { return array_.pointers(); }
  PF_ParamDef& at(int32_t index) { return array_.at(index); }
  int32_t size() const { return array_.size(); }

 private:
  static PF_EffectWorld worldOfInput(HostState& host) { return host.lend(host.input, "input", false); }
  HostState& host_;
  ParamArray array_;
};

void compareWithResource(HostState& host) {
  if (host.module == nullptr || !host.module->pipl()) return;
  const PiplFacts& pipl = *host.module->pipl();
  const auto differs = [&](const char* what, auto told, auto written) {
    if (told && static_cast<uint32_t>(*told) != static_cast<uint32_t>(written)) {
      host.books.complain(Matter::kDeclaration,
                          std::string("the resource's ") + what + " " + std::to_string(static_cast<uint32_t>(*told)) +
                              " and the effect's " + std::to_string(static_cast<uint32_t>(written)) + " differ",
                          PF_Cmd_GLOBAL_SETUP);
    }
  };
  differs("version", pipl.version, host.version);
  differs("out flags", pipl.outFlags, host.outFlags);
  differs("out flags 2", pipl.outFlags2, host.outFlags2);
}

void checkControls(HostState& host) {
  const auto complain = [&](std::string text) {
    host.books.complain(Matter::kDeclaration, std::move(text), PF_Cmd_PARAMS_SETUP);
  };
  const auto count = static_cast<A_long>(host.controls.size()) + 1;
  if (host.numParams != count) {
    complain("num_params is " + std::to_string(host.numParams) + " where " + std::to_string(count) +
             " parameters are, with the layer");
  }
  int32_t depth = 0;
  for (const Control& control : host.controls) {
    if (control.type == PF_Param_GROUP_START) ++depth;
    if (control.type == PF_Param_GROUP_END && --depth < 0) {
      complain("parameter " + std::to_string(control.index) + " ends a group that was never begun");
      depth = 0;
    }
  }
  if (depth > 0) complain(std::to_string(depth) + " groups are never ended");
}

std::unique_ptr<HostState> makeState(StandInHost* owner, PF_EffectEntryPoint entry, const LoadedModule* module,
                                     HostSettings settings) {
  auto state = std::make_unique<HostState>();
  state->owner = owner;
  state->entry = entry;
  state->module = module;
  state->settings = std::move(settings);
  HostState* raw = state.get();
  state->books.askForHandles([raw] {
    std::vector<Entry> entries;
    for (const HandleStore::Record* record : raw->handles->open()) {
      std::string text = "handle " + std::to_string(record->number) + " (" + std::to_string(record->size) +
                         " bytes), lent in " + commandName(record->madeIn) + ", never disposed of";
      entries.push_back({Matter::kHandle, record->number, std::move(text), record->madeIn});
    }
    return entries;
  });
  return state;
}

}  // namespace

StandInHost::StandInHost(const LoadedModule& module, HostSettings settings)
    : state_(makeState(this, module.entry(), &module, std::move(settings))) {}

StandInHost::StandInHost(PF_EffectEntryPoint entry, HostSettings settings)
    : state_(makeState(this, entry, nullptr, std::move(settings))) {}

StandInHost::~StandInHost() {
  if (HostState::current() == state_.get()) HostState::setCurrent(nullptr);
}

PF_Err StandInHost::globalSetup() {
  const PF_Err err = state_->callEntry(PF_Cmd_GLOBAL_SETUP, nullptr, nullptr, nullptr);
  if (err == PF_Err_NONE) compareWithResource(*state_);
  return err;
}

PF_Err StandInHost::paramsSetup() {
  disposeArbitraryValues(*state_);
  state_->controls.clear();
  state_->values = ParameterValues();
  const PF_Err err = state_->callEntry(PF_Cmd_PARAMS_SETUP, nullptr, nullptr, nullptr);
  if (err == PF_Err_NONE) makeArbitraryValues(*state_);
  state_->values = ParameterValues(state_->controls);
  if (err == PF_Err_NONE) checkControls(*state_);
  return err;
}

PF_Err StandInHost::globalSetdown() {
  disposeArbitraryValues(*state_);
  return state_->callEntry(PF_Cmd_GLOBAL_SETDOWN, nullptr, nullptr, nullptr);
}
PF_Err StandInHost::sequenceSetup() {
  return state_->callEntry(PF_Cmd_SEQUENCE_SETUP, nullptr, nullptr, nullptr);
}
PF_Err StandInHost::sequenceResetup() {
  return state_->callEntry(PF_Cmd_SEQUENCE_RESETUP, nullptr, nullptr, nullptr);
}
PF_Err StandInHost::sequenceFlatten() {
  return state_->callEntry(PF_Cmd_SEQUENCE_FLATTEN, nullptr, nullptr, nullptr);
}
PF_Err StandInHost::sequenceSetdown() {
  return state_->callEntry(PF_Cmd_SEQUENCE_SETDOWN, nullptr, nullptr, nullptr);
}

PF_Err StandInHost::queryDynamicFlags(const ParameterValues& values, const FrameRequest& frame) {
  // The array of this command holds no values that an effect may use; its values come by check-out.
  ParamsInUse params(*state_, values, frame);
  return state_->callEntry(PF_Cmd_QUERY_DYNAMIC_FLAGS, params.pointers(), nullptr, nullptr);
}

PF_Err StandInHost::doDialog(const ParameterValues& values) {
  ParamsInUse params(*state_, values, {});
  return state_->callEntry(PF_Cmd_DO_DIALOG, params.pointers(), nullptr, nullptr);
}

PF_Err StandInHost::updateParamsUi(const ParameterValues& values, const FrameRequest& frame) {
  ParamsInUse params(*state_, values, frame);
  const std::vector<PF_ParamDef> before(state_->paramsBegin, state_->paramsEnd);
  const PF_Err err = state_->callEntry(PF_Cmd_UPDATE_PARAMS_UI, params.pointers(), nullptr, nullptr);
  for (int32_t i = 0; i < params.size(); ++i) {
    // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison): any byte that differs was written
    if (std::memcmp(&before[static_cast<size_t>(i)], &params.at(i), sizeof(PF_ParamDef)) != 0) {
      state_->books.complain(Matter::kWrongArgument, "parameter " + std::to_string(i) + " was written to",
                             PF_Cmd_UPDATE_PARAMS_UI);
    }
  }
  return err;
}

ChangedParams StandInHost::userChangedParam(const ControlKey& key, ParameterValues& values, const FrameRequest& frame) {
  const Control* changed = control(key);
  if (changed == nullptr) throw std::out_of_range("there is no control " + key.text());
  ParamsInUse params(*state_, values, frame);
  PF_UserChangedParamExtra extra{changed->index};
  ChangedParams result;
  result.error = state_->callEntry(PF_Cmd_USER_CHANGED_PARAM, params.pointers(), nullptr, &extra);
  for (const Control& each : state_->controls) {
    const PF_ParamDef& definition = params.at(each.index);
    if ((definition.uu.change_flags & PF_ChangeFlag_CHANGED_VALUE) == 0) continue;
    result.indices.push_back(each.index);
    if (auto value = takeValue(each, definition, *state_->frame)) values.setValue(each.index, std::move(*value));
  }
  return result;
}

std::string StandInHost::about() {
  state_->callEntry(PF_Cmd_ABOUT, nullptr, nullptr, nullptr);
  const A_char* text = state_->out.return_msg;
  return {text, std::find(text, text + sizeof state_->out.return_msg, '\0')};
}

PF_Err StandInHost::start() {
  PF_Err err = globalSetup();
  if (err == PF_Err_NONE) err = paramsSetup();
  if (err == PF_Err_NONE) err = sequenceSetup();
  return err;
}

PF_Err StandInHost::finish() {
  const PF_Err sequence = sequenceSetdown();
  const PF_Err global = globalSetdown();
  return sequence != PF_Err_NONE ? sequence : global;
}

PF_Err StandInHost::call(PF_Cmd command, PF_ParamDef** params, PF_LayerDef* output, void* extra) {
  return state_->callEntry(command, params, output, extra);
}

bool StandInHost::smartRoadOffered() const {
  return (state_->outFlags2 & PF_OutFlag2_SUPPORTS_SMART_RENDER) != 0;
}

const std::vector<Control>& StandInHost::controls() const {
  return state_->controls;
}
const Control* StandInHost::control(const ControlKey& key) const {
  return key.find(state_->controls);
}
PF_OutFlags StandInHost::outFlags() const {
  return state_->outFlags;
}
PF_OutFlags2 StandInHost::outFlags2() const {
  return state_->outFlags2;
}
A_u_long StandInHost::effectVersion() const {
  return state_->version;
}
A_long StandInHost::numParams() const {
  return state_->numParams;
}
const PF_InData& StandInHost::inData() const {
  return state_->in;
}
const PF_OutData& StandInHost::outData() const {
  return state_->out;
}
PF_ProgPtr StandInHost::effectRef() const {
  return state_->effectRef();
}

namespace {

Control& arbitraryControl(HostState& host, const ControlKey& key) {
  const Control* found = key.find(host.controls);
  if (found == nullptr) throw std::out_of_range("there is no control " + key.text());
  if (found->type != PF_Param_ARBITRARY_DATA) {
    throw std::invalid_argument("the control " + key.text() + " is not of arbitrary data");
  }
  return host.controls[static_cast<size_t>(found->index) - 1];
}

// Takes over what the effect made, if it made anything.
bool takeArbitrary(HostState& host, Control& control, PF_ArbitraryH made) {
  if (made == nullptr) return false;
  ArbitraryData(host, control).dispose(std::exchange(control.definition.u.arb_d.value, made));
  return true;
}

}  // namespace

std::vector<uint8_t> StandInHost::arbitraryBytes(const ControlKey& key) {
  const Control& control = arbitraryControl(*state_, key);
  return ArbitraryData(*state_, control).bytesOf(control.definition.u.arb_d.value).value_or(std::vector<uint8_t>());
}

bool StandInHost::setArbitraryBytes(const ControlKey& key, const std::vector<uint8_t>& bytes) {
  Control& control = arbitraryControl(*state_, key);
  return takeArbitrary(*state_, control, ArbitraryData(*state_, control).fromBytes(bytes));
}

std::string StandInHost::arbitraryText(const ControlKey& key) {
  const Control& control = arbitraryControl(*state_, key);
  return ArbitraryData(*state_, control).textOf(control.definition.u.arb_d.value).value_or("");
}

bool StandInHost::setArbitraryText(const ControlKey& key, const std::string& text) {
  Control& control = arbitraryControl(*state_, key);
  return takeArbitrary(*state_, control, ArbitraryData(*state_, control).fromText(text));
}

PF_Handle StandInHost::sequenceData() const {
  return state_->sequenceData;
}

std::vector<uint8_t> StandInHost::sequenceBytes() const {
  const HandleStore::Record* record = state_->handles->find(state_->sequenceData);
  if (record == nullptr || !record->open) return {};
  const auto* bytes = static_cast<const uint8_t*>(record->block);
  return {bytes, bytes + record->size};
}

void StandInHost::loadSequence(const std::vector<uint8_t>& bytes) {
  HandleStore::Record* record = state_->handles->make(bytes.size(), -1, true);
  if (record == nullptr) throw std::bad_alloc();
  if (!bytes.empty()) std::memcpy(record->block, bytes.data(), bytes.size());
  state_->sequenceData = HandleStore::handleOf(*record);
}

void StandInHost::setSequenceData(PF_Handle handle) {
  state_->sequenceData = handle;
}

void StandInHost::dropSequence() {
  HandleStore::Record* record = state_->handles->find(state_->sequenceData);
  if (record != nullptr && record->open) state_->handles->dispose(*record);
  state_->sequenceData = nullptr;
}

HostSettings& StandInHost::settings() {
  return state_->settings;
}
Faults& StandInHost::faults() {
  return state_->faults;
}
Books& StandInHost::books() {
  return state_->books;
}
CallLog& StandInHost::log() {
  return state_->log;
}
PF_UtilCallbacks* StandInHost::utils() {
  return utilTable();
}
SPBasicSuite* StandInHost::basicSuite() {
  return basicTable();
}
PF_InteractCallbacks StandInHost::interact() const {
  return interactTable();
}
void StandInHost::makeCurrent() {
  HostState::setCurrent(state_.get());
}

PF_EffectWorld StandInHost::lendWorld(const Image& image, const std::string& name) {
  // Not owned: the caller keeps the picture alive.
  const PF_EffectWorld world =
      state_->lend(std::shared_ptr<const Image>(std::shared_ptr<const Image>(), &image), name, true);
  state_->find(world)->lasting = true;
  return world;
}

}  // namespace standin
