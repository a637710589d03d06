#include "host/SideBySide.h"

#include "host/HostState.h"

namespace standin {

std::unique_ptr<StandInHost> hostBeside(StandInHost& other) {
  other.makeCurrent();
  HostState& from = *HostState::current();
  auto made = std::make_unique<StandInHost>(from.entry, from.settings);
  made->makeCurrent();
  HostState& to = *HostState::current();
  to.handles = from.handles;
  to.module = from.module;
  to.controls = from.controls;
  to.values = from.values;
  to.globalData = from.globalData;
  to.sequenceData = from.sequenceData;
  to.numParams = from.numParams;
  to.version = from.version;
  to.outFlags = from.outFlags;
  to.outFlags2 = from.outFlags2;
  to.registeredNames = from.registeredNames;
  other.makeCurrent();
  return made;
}

}  // namespace standin
