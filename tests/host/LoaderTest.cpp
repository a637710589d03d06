#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "ScriptedEffect.h"
#include "host/LoadedModule.h"
#include "tests/support/TemporaryFolder.h"

namespace {

using scripted::joined;
using standin::Depth;
using standin::LoadedModule;
using standin::Matter;

std::string probePath() {
  // Beside this program, whatever folder the test is started from.
  return (std::filesystem::path(testing::internal::GetArgvs()[0]).parent_path() / PROBE_FILE).string();
}

TEST(Loader, aModuleIsDrivenThroughItsEntry) {
  const LoadedModule module(probePath());
  standin::StandInHost host(module);
  EXPECT_EQ(host.start(), PF_Err_NONE);
  EXPECT_EQ(host.effectVersion(), 42u);
  standin::FrameRequest frame;
  frame.input = standin::Image(Depth::k16, 5, 4, 2);
  frame.input.at<PF_Pixel16>(3, 2).green = 12345;
  const standin::RenderResult result = host.renderClassic(frame, host.defaults());
  EXPECT_EQ(result.error, PF_Err_NONE);
  EXPECT_TRUE(samePixels(result.output, frame.input));
  EXPECT_EQ(host.finish(), PF_Err_NONE);
  EXPECT_TRUE(host.books().clean({Matter::kDeclaration})) << joined(host.books().report());
}

TEST(Loader, theEntrysNameIsThatOfTheResourceWhereThereIsOne) {
  const LoadedModule module(probePath());
  EXPECT_EQ(module.pipl().has_value(), PROBE_HAS_PIPL != 0);
  standin::StandInHost host(module);
  EXPECT_EQ(module.entryName(), PROBE_HAS_PIPL != 0 ? "ProbeEntry" : "EntryPointFunc");
  EXPECT_EQ(host.about(), "by " + module.entryName());
}

TEST(Loader, flagsThatDifferFromTheResourceAreAComplaint) {
  const LoadedModule module(probePath());
  standin::StandInHost host(module);
  host.globalSetup();
  EXPECT_EQ(host.books().complaintCount(Matter::kDeclaration), PROBE_HAS_PIPL != 0 ? 1 : 0)
      << joined(host.books().report());
}

TEST(Loader, theModulesOwnPathIsToldToTheEffect) {
  const LoadedModule module(probePath());
  standin::StandInHost host(module);
  host.makeCurrent();
  char path[260] = {};
  host.utils()->get_platform_data(host.effectRef(), PF_PlatData_RES_FILE_PATH_DEPRECATED, path);
  EXPECT_EQ(path, module.path());
  EXPECT_TRUE(std::filesystem::path(module.path()).is_absolute());
  EXPECT_EQ(std::filesystem::path(path).filename(), std::filesystem::path(PROBE_FILE).filename());
}

TEST(Loader, aMissingFileIsNamed) {
  try {
    const LoadedModule module("no-such-module");
    FAIL() << "it was loaded";
  } catch (const std::runtime_error& error) {
    EXPECT_NE(std::string(error.what()).find("no-such-module"), std::string::npos) << error.what();
  }
}

TEST(Loader, aFileThatIsNoModuleIsRefused) {
  const vindrel::test::TemporaryFolder folder;
  EXPECT_THROW(LoadedModule{folder.write("no-module.bin", "this is no module").string()}, std::runtime_error);
}

TEST(Loader, aMovedModuleIsUnloadedOnce) {
  LoadedModule first(probePath());
  LoadedModule second(std::move(first));
  EXPECT_EQ(first.entry(), nullptr);  // NOLINT: what a moved-from module holds is its contract
  ASSERT_NE(second.entry(), nullptr);
  standin::StandInHost host(second);
  EXPECT_EQ(host.globalSetup(), PF_Err_NONE);
}

std::string modulePath(const std::string& name) {
  return std::string(MODULES_FOLDER) + "/" + name + MODULES_SUFFIX;
}

TEST(Loader, aModuleMovedOntoAnotherTakesItsPlace) {
  LoadedModule module(modulePath("invert"));
  LoadedModule other(probePath());
  const std::string probe = other.entryName();
  module = std::move(other);
  EXPECT_EQ(other.entry(), nullptr);  // NOLINT: what a moved-from module holds is its contract
  EXPECT_EQ(module.entryName(), probe);
  EXPECT_EQ(std::filesystem::path(module.path()).filename(), std::filesystem::path(PROBE_FILE).filename());
  standin::StandInHost host(module);
  EXPECT_EQ(host.globalSetup(), PF_Err_NONE);
  EXPECT_EQ(host.effectVersion(), 42U) << "the probe's";
  LoadedModule& same = module;
  module = std::move(same);
  EXPECT_NE(module.entry(), nullptr) << "onto itself";
}

TEST(Loader, theFirstEffectOfAnOlderRegistrationCountsWhereTheNewerFails) {
  EXPECT_EQ(LoadedModule(modulePath("older_registration")).entryName(), "FirstEntry");
}

TEST(Loader, aModuleWithoutAnEntryIsRefusedByItsPath) {
  try {
    const LoadedModule module(modulePath("no_entry"));
    FAIL() << "it was loaded";
  } catch (const std::runtime_error& error) {
    const std::string told = error.what();
    EXPECT_NE(told.find("no_entry"), std::string::npos) << told;
    EXPECT_NE(told.find(" has no entry EntryPointFunc, nor one of another usual name"), std::string::npos) << told;
  }
}

TEST(Loader, theLibraryItselfIsToldToTheEffect) {
  const LoadedModule module(probePath());
  standin::StandInHost host(module);
  host.makeCurrent();
  void* library = nullptr;
  EXPECT_EQ(host.utils()->get_platform_data(host.effectRef(), PF_PlatData_RES_DLLINSTANCE, &library), PF_Err_NONE);
  EXPECT_NE(library, nullptr);
  EXPECT_EQ(library, module.systemHandle());
}

TEST(Loader, manyModulesWithThreadLocalsLeaveTheLeakCheckWhole) {
  // Under the address sanitizer the leak check at the end of the process once died over a module's thread-local block
  // that began 16 bytes behind a page; of this many blocks one does. The small blocks between them are of the same
  // size, so that the steps from one to the next are odd and even.
  const vindrel::test::TemporaryFolder folder;
  std::vector<LoadedModule> modules;
  std::vector<std::unique_ptr<int>> between;
  for (int i = 0; i < 256; ++i) {
    const std::string copy = folder.path("probe" + std::to_string(i) + ".aex");
    std::filesystem::copy_file(probePath(), copy);
    modules.emplace_back(copy);
    if (i % 2 == 0) between.push_back(std::make_unique<int>(i));
    EXPECT_EQ(modules.back().entry()(PF_Cmd_GLOBAL_SETDOWN, nullptr, nullptr, nullptr, nullptr, nullptr), PF_Err_NONE);
  }
  modules.clear();
}

}  // namespace
