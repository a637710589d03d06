/// A host that services act on without a module: what the tests of the services have in common.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "ScriptedEffect.h"
#include "ae/Suites.h"

namespace scripted {

class HostTest : public testing::Test {
 protected:
  HostTest() : host(Effect::entry) { host.makeCurrent(); }

  /// A suite, which is never given back: report() leaves that out.
  template <class Table>
  const Table* suite(const char* name, int32 version) {
    const void* table = nullptr;
    EXPECT_EQ(host.basicSuite()->AcquireSuite(name, version, &table), kSPNoError) << name << " " << version;
    return static_cast<const Table*>(table);
  }

  /// The block of a call, for the services that take it in place of an effect_ref.
  PF_InData* in() {
    inData_ = host.inData();
    inData_.effect_ref = host.effectRef();
    return &inData_;
  }

  PF_ProgPtr ref() { return host.effectRef(); }
  std::string report() { return joined(host.books().report({standin::Matter::kSuite})); }

  Effect effect;
  standin::StandInHost host;

 private:
  PF_InData inData_{};
};

}  // namespace scripted
