// Memory, suites, worlds and the pixel services as an effect gets them: through their tables.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "ScriptedEffect.h"
#include "ae/Suites.h"
#include "host/HandleStore.h"
#include "host/Image.h"

namespace {

using scripted::joined;
using standin::Depth;
using standin::Image;
using standin::Matter;

class Services : public testing::Test {
 protected:
  Services() : host(scripted::Effect::entry) { host.makeCurrent(); }
  template <class Suite>
  const Suite* suite(const char* name, int32 version) {
    const void* table = nullptr;
    host.basicSuite()->AcquireSuite(name, version, &table);
    return static_cast<const Suite*>(table);
  }
  std::string report() { return joined(host.books().report()); }
  scripted::Effect effect;
  standin::StandInHost host;
};

TEST_F(Services, aHandleGivesItsBlockByOneDereference) {
  PF_Handle handle = host.utils()->host_new_handle(40);
  ASSERT_NE(handle, nullptr);
  EXPECT_EQ(host.utils()->host_lock_handle(handle), *handle);
  EXPECT_EQ(reinterpret_cast<uintptr_t>(*handle) % 16, 0u);
  EXPECT_EQ(host.utils()->host_get_handle_size(handle), 40u);
  host.utils()->host_unlock_handle(handle);
  host.utils()->host_dispose_handle(handle);
  EXPECT_TRUE(host.books().clean()) << report();
}

TEST_F(Services, aHandleThatIsKeptIsReportedWithItsNumberAndSize) {
  host.utils()->host_dispose_handle(host.utils()->host_new_handle(8));
  host.utils()->host_new_handle(24);
  ASSERT_EQ(host.books().report().size(), 1u);
  EXPECT_EQ(host.books().report()[0], "handle 2 (24 bytes), lent in no command, never disposed of");
  EXPECT_EQ(host.books().openCount(Matter::kHandle), 1);
  host.books().clear();
  EXPECT_TRUE(host.books().clean());
}

TEST_F(Services, disposingTwiceIsAComplaint) {
  PF_Handle handle = host.utils()->host_new_handle(8);
  host.utils()->host_dispose_handle(handle);
  host.utils()->host_dispose_handle(handle);
  EXPECT_EQ(host.books().complaintCount(Matter::kBadHandle), 1) << report();
}

TEST_F(Services, aLockOfADisposedHandleGivesNullAndAComplaint) {
  PF_Handle handle = host.utils()->host_new_handle(8);
  host.utils()->host_dispose_handle(handle);
  EXPECT_EQ(host.utils()->host_lock_handle(handle), nullptr);
  EXPECT_EQ(host.books().complaintCount(Matter::kBadHandle), 1) << report();
}

TEST_F(Services, aPointerThatNeverWasAHandleIsAComplaint) {
  void* block = nullptr;
  host.utils()->host_unlock_handle(&block);
  EXPECT_EQ(host.books().complaintCount(Matter::kBadHandle), 1) << report();
}

TEST_F(Services, locksAreCountedAndAnUnlockBelowZeroIsAComplaint) {
  PF_Handle handle = host.utils()->host_new_handle(8);
  host.utils()->host_lock_handle(handle);
  host.utils()->host_lock_handle(handle);
  host.utils()->host_unlock_handle(handle);
  host.utils()->host_unlock_handle(handle);
  EXPECT_EQ(host.books().complaintCount(Matter::kBadHandle), 0);
  host.utils()->host_unlock_handle(handle);
  EXPECT_EQ(host.books().complaintCount(Matter::kBadHandle), 1);
  host.utils()->host_dispose_handle(handle);
}

TEST_F(Services, aWriteBehindABlockIsSeenAtItsDisposal) {
  PF_Handle handle = host.utils()->host_new_handle(8);
  static_cast<uint8_t*>(*handle)[8] = 1;
  host.utils()->host_dispose_handle(handle);
  EXPECT_EQ(host.books().complaintCount(Matter::kOutside), 1) << report();
}

TEST_F(Services, aResizeKeepsTheBytes) {
  const auto* handles = suite<PF_HandleSuite1>(kPFHandleSuite, 2);
  PF_Handle handle = handles->host_new_handle(4);
  std::memcpy(*handle, "abc", 4);
  EXPECT_EQ(handles->host_resize_handle(5000, &handle), PF_Err_NONE);
  EXPECT_STREQ(static_cast<const char*>(*handle), "abc");
  EXPECT_EQ(handles->host_get_handle_size(handle), 5000u);
  handles->host_dispose_handle(handle);
}

TEST_F(Services, manyThousandHandlesComeAndGo) {
  std::vector<PF_Handle> open;
  for (uint64_t i = 0; i < 20000; ++i) {
    open.push_back(host.utils()->host_new_handle(i % 50));
    if (i % 3 == 0) {
      host.utils()->host_dispose_handle(open[i / 3]);
    }
  }
  EXPECT_EQ(host.books().openCount(Matter::kHandle), 20000 - 6667);
  for (size_t i = 6667; i < open.size(); ++i) host.utils()->host_dispose_handle(open[i]);
  EXPECT_TRUE(host.books().clean()) << report();
}

TEST_F(Services, theOrderOfHandleCallsIsLoggedWhenAsked) {
  host.log().handleCallsToo = true;
  PF_Handle handle = host.utils()->host_new_handle(8);
  host.utils()->host_lock_handle(handle);
  host.utils()->host_unlock_handle(handle);
  host.utils()->host_dispose_handle(handle);
  EXPECT_EQ(host.log().names(), (std::vector<std::string>{"host_new_handle", "host_lock_handle", "host_unlock_handle",
                                                          "host_dispose_handle"}));
  EXPECT_EQ(host.log().handles[3].handle, 1);
}

TEST_F(Services, eachSuiteOfTheInterfaceIsThere) {
  const std::pair<const char*, int32> names[] = {
      {"PF Handle Suite", 2},          {"PF World Suite", 1},  {"PF World Suite", 2},      {"PF Fill Matte Suite", 2},
      {"PF World Transform Suite", 1}, {"PF AE App Suite", 6}, {"PF Param Utils Suite", 2}};
  for (const auto& [name, version] : names) {
    EXPECT_NE(suite<void*>(name, version), nullptr) << name;
    EXPECT_EQ(host.basicSuite()->ReleaseSuite(name, version), 0);
  }
  EXPECT_TRUE(host.books().clean()) << report();
}

TEST_F(Services, aSuiteOfAnotherVersionIsNotFound) {
  const void* table = &host;
  EXPECT_EQ(host.basicSuite()->AcquireSuite("PF World Suite", 3, &table), kSPSuiteNotFoundError);
  EXPECT_EQ(table, nullptr);
}

TEST_F(Services, aWithheldSuiteIsNotFound) {
  host.settings().withheld.push_back({"PF World Suite", 2});
  EXPECT_EQ(suite<PF_WorldSuite2>("PF World Suite", 2), nullptr);
  EXPECT_NE(suite<PF_WorldSuite1>("PF World Suite", 1), nullptr);
}

TEST_F(Services, aSuiteThatIsKeptIsReportedByNameAndVersion) {
  suite<PF_WorldSuite1>("PF World Suite", 1);
  ASSERT_EQ(host.books().report().size(), 1u);
  EXPECT_NE(host.books().report()[0].find("PF World Suite 1"), std::string::npos);
}

TEST_F(Services, aReleaseTooManyIsAComplaint) {
  suite<PF_WorldSuite1>("PF World Suite", 1);
  host.basicSuite()->ReleaseSuite("PF World Suite", 1);
  EXPECT_EQ(host.books().complaintCount(Matter::kBadSuite), 0);
  host.basicSuite()->ReleaseSuite("PF World Suite", 1);
  EXPECT_EQ(host.books().complaintCount(Matter::kBadSuite), 1);
}

TEST_F(Services, aFaultStrikesTheNthCallOnly) {
  host.faults().fail("host_new_handle", 2, PF_Err_OUT_OF_MEMORY);
  PF_Handle first = host.utils()->host_new_handle(8);
  EXPECT_EQ(host.faults().waiting(), 1);
  EXPECT_EQ(host.utils()->host_new_handle(8), nullptr);
  EXPECT_EQ(host.faults().waiting(), 0);
  PF_Handle third = host.utils()->host_new_handle(8);
  EXPECT_NE(first, nullptr);
  EXPECT_NE(third, nullptr);
  host.utils()->host_dispose_handle(first);
  host.utils()->host_dispose_handle(third);
}

TEST_F(Services, aFaultForGoodStrikesEveryCallFromThen) {
  host.faults().failFrom("AcquireSuite:PF World Suite 2", 2, kSPUnimplementedError);
  EXPECT_NE(suite<void*>("PF World Suite", 2), nullptr);
  EXPECT_EQ(suite<void*>("PF World Suite", 2), nullptr);
  EXPECT_EQ(suite<void*>("PF World Suite", 2), nullptr);
  EXPECT_NE(suite<void*>("PF World Suite", 1), nullptr);
}

TEST_F(Services, aFaultWithoutACodeSucceedsAndGivesNothing) {
  host.faults().fail("AcquireSuite", 1, 0);
  const void* table = &host;
  EXPECT_EQ(host.basicSuite()->AcquireSuite("PF World Suite", 2, &table), 0);
  EXPECT_EQ(table, nullptr);
}

TEST_F(Services, worldsComeClearedInEveryFormat) {
  const auto* worlds = suite<PF_WorldSuite2>(kPFWorldSuite, 2);
  for (const Depth depth : standin::kAllDepths) {
    PF_EffectWorld world{};
    ASSERT_EQ(worlds->PF_NewWorld(host.effectRef(), 7, 5, 1, pixelFormat(depth), &world), PF_Err_NONE);
    EXPECT_EQ(world.width, 7);
    EXPECT_EQ(world.height, 5);
    EXPECT_GE(world.rowbytes, 7 * standin::pixelBytes(depth));
    EXPECT_EQ((world.world_flags & PF_WorldFlag_DEEP) != 0, depth == Depth::k16);
    for (int32_t y = 0; y < 5; ++y) {
      const auto* row = reinterpret_cast<const uint8_t*>(world.data) + y * world.rowbytes;
      for (int32_t i = 0; i < 7 * standin::pixelBytes(depth); ++i) ASSERT_EQ(row[i], 0);
    }
    PF_PixelFormat format = 0;
    EXPECT_EQ(worlds->PF_GetPixelFormat(&world, &format), PF_Err_NONE);
    EXPECT_EQ(format, pixelFormat(depth));
    EXPECT_EQ(worlds->PF_DisposeWorld(host.effectRef(), &world), PF_Err_NONE);
  }
  EXPECT_TRUE(host.books().clean({Matter::kSuite})) << report();
}

TEST_F(Services, theFirstWorldSuiteGoesByFlags) {
  const auto* worlds = suite<PF_WorldSuite1>(kPFWorldSuite, 1);
  PF_EffectWorld world{};
  worlds->new_world(host.effectRef(), 2, 2, PF_NewWorldFlag_CLEAR_PIXELS | PF_NewWorldFlag_DEEP_PIXELS, &world);
  EXPECT_EQ(world.world_flags & PF_WorldFlag_DEEP, PF_WorldFlag_DEEP);
  EXPECT_EQ(host.log().newWorlds.at(0).flags, 3);
  EXPECT_EQ(host.log().newWorlds.at(0).suiteVersion, 1);
  worlds->dispose_world(host.effectRef(), &world);
  PF_EffectWorld plain{};
  worlds->new_world(host.effectRef(), 2, 2, PF_NewWorldFlag_NONE, &plain);
  EXPECT_EQ(plain.data->alpha, 0xB7) << "not cleared unless asked";
  worlds->dispose_world(host.effectRef(), &plain);
  EXPECT_TRUE(host.books().clean({Matter::kSuite})) << report();
}

TEST_F(Services, aWorldThatIsKeptIsReportedWithItsSize) {
  PF_EffectWorld world{};
  host.utils()->new_world(host.effectRef(), 3, 4, 0, &world);
  ASSERT_EQ(host.books().report().size(), 1u);
  EXPECT_NE(host.books().report()[0].find("world 1 (3 x 4 at 8 bits)"), std::string::npos) << report();
}

TEST_F(Services, aWorldDisposedOfTwiceIsAComplaint) {
  PF_EffectWorld world{};
  host.utils()->new_world(host.effectRef(), 3, 4, 0, &world);
  host.utils()->dispose_world(host.effectRef(), &world);
  host.utils()->dispose_world(host.effectRef(), &world);
  EXPECT_EQ(host.books().complaintCount(Matter::kBadWorld), 1) << report();
}

TEST_F(Services, theEmptyRecordOfAFailedWorldMayBeGivenBack) {
  PF_EffectWorld world{};
  host.faults().fail("new_world", 1, PF_Err_OUT_OF_MEMORY);
  EXPECT_EQ(host.utils()->new_world(host.effectRef(), 3, 4, 0, &world), PF_Err_OUT_OF_MEMORY);
  EXPECT_EQ(host.utils()->dispose_world(host.effectRef(), &world), PF_Err_NONE);
  EXPECT_TRUE(host.books().clean()) << report();
}

TEST_F(Services, aWriteOutsideAWorldIsSeenAtItsDisposal) {
  PF_EffectWorld world{};
  host.utils()->new_world(host.effectRef(), 3, 4, 0, &world);
  reinterpret_cast<uint8_t*>(world.data)[4 * world.rowbytes] = 0;
  host.utils()->dispose_world(host.effectRef(), &world);
  EXPECT_EQ(host.books().complaintCount(Matter::kOutside), 1) << report();
}

TEST_F(Services, theEightBitFillGoesByTheWorldsDepth) {
  const auto* fills = suite<PF_FillMatteSuite2>(kPFFillMatteSuite, 2);
  const PF_Pixel color{255, 0, 51, 255};
  Image deep(Depth::k16, 2, 2);
  PF_EffectWorld deepWorld = host.lendWorld(deep, "deep");
  EXPECT_EQ(fills->fill(host.effectRef(), &color, nullptr, &deepWorld), PF_Err_NONE);
  EXPECT_EQ(deep.at<PF_Pixel16>(1, 1).alpha, 32768);
  EXPECT_EQ(deep.at<PF_Pixel16>(1, 1).green, 6554);  // 32768 / 5 = 6553.6
  Image real(Depth::k32, 2, 2);
  PF_EffectWorld realWorld = host.lendWorld(real, "real");
  EXPECT_EQ(fills->fill(host.effectRef(), &color, nullptr, &realWorld), PF_Err_NONE);
  EXPECT_EQ(real.at<PF_PixelFloat>(0, 1).green, 0.2F);
  EXPECT_EQ(real.at<PF_PixelFloat>(0, 1).alpha, 1.0F);
}

TEST_F(Services, aNullColorClears) {
  Image image(Depth::k32, 2, 1, 0, 0x3C);
  PF_EffectWorld world = host.lendWorld(image, "picture");
  EXPECT_EQ(host.utils()->fill(host.effectRef(), nullptr, nullptr, &world), PF_Err_NONE);
  EXPECT_TRUE(samePixels(image, Image(Depth::k32, 2, 1)));
  EXPECT_FALSE(host.log().fills.at(0).hasColor);
  EXPECT_FALSE(host.log().fills.at(0).rect.has_value());
}

TEST_F(Services, worldsOfDifferentDepthAreRefused) {
  const Image source(Depth::k8, 2, 2);
  const Image target(Depth::k16, 2, 2);
  PF_EffectWorld from = host.lendWorld(source, "source");
  PF_EffectWorld to = host.lendWorld(target, "target");
  EXPECT_EQ(host.utils()->copy(host.effectRef(), &from, &to, nullptr, nullptr), PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_EQ(host.books().complaintCount(Matter::kBadWorld), 1) << report();
}

TEST_F(Services, aTransferIsLoggedWithAllItsArguments) {
  const auto* transform = suite<PF_WorldTransformSuite1>(kPFWorldTransformSuite, 1);
  Image image(Depth::k8, 2, 2);
  PF_EffectWorld from = host.lendWorld(image, "source");
  Image target(Depth::k8, 2, 2);
  PF_EffectWorld to = host.lendWorld(target, "target");
  const PF_CompositeMode mode{PF_Xfer_IN_FRONT, 0, 255, 0, 32768};
  PF_MaskWorld mask{};
  mask.offset = {3, 4};
  mask.what_is_mask = PF_MaskFlag_INVERTED;
  const PF_Rect rect{0, 0, 1, 1};
  EXPECT_EQ(transform->transfer_rect(host.effectRef(), PF_Quality_HI, PF_MF_Alpha_STRAIGHT, PF_Field_FRAME, &rect,
                                     &from, &mode, &mask, 1, 1, &to),
            PF_Err_NONE);
  ASSERT_EQ(host.log().transfers.size(), 1u);
  const standin::TransferCall& call = host.log().transfers[0];
  EXPECT_EQ(call.quality, PF_Quality_HI);
  EXPECT_EQ(call.modeFlags, PF_MF_Alpha_STRAIGHT);
  EXPECT_EQ(call.sourceRect->right, 1);
  EXPECT_EQ(call.mode.xfer, PF_Xfer_IN_FRONT);
  EXPECT_EQ(call.mask->offset.v, 4);
  EXPECT_EQ(call.mask->what_is_mask, PF_MaskFlag_INVERTED);
  EXPECT_EQ(call.targetX, 1);
}

TEST_F(Services, aForeignEffectRefIsAComplaint) {
  Image image(Depth::k8, 1, 1);
  PF_EffectWorld world = host.lendWorld(image, "picture");
  host.utils()->fill(nullptr, nullptr, nullptr, &world);
  EXPECT_EQ(host.books().complaintCount(Matter::kWrongArgument), 1) << report();
}

TEST_F(Services, aServiceThatIsNotThereSaysSo) {
  EXPECT_EQ(host.utils()->gaussian_kernel(host.effectRef(), 1.0, 0, 1.0, nullptr, nullptr), PF_Err_INVALID_CALLBACK);
  EXPECT_EQ(host.books().complaintCount(Matter::kUnknownService), 1);
}

TEST_F(Services, platformDataGivesPathAndWindow) {
  host.settings().modulePath = "C:\\modules\\a.b.aex";
  host.settings().mainWindow = &host;
  char path[260] = {};
  EXPECT_EQ(host.utils()->get_platform_data(host.effectRef(), PF_PlatData_RES_FILE_PATH_DEPRECATED, path), PF_Err_NONE);
  EXPECT_STREQ(path, "C:\\modules\\a.b.aex");
  A_UTF16Char wide[260] = {};
  EXPECT_EQ(host.utils()->get_platform_data(host.effectRef(), PF_PlatData_EXE_FILE_PATH_W, wide), PF_Err_NONE);
  EXPECT_EQ(wide[0], 'C');
  void* window = nullptr;
  EXPECT_EQ(host.utils()->get_platform_data(host.effectRef(), PF_PlatData_MAIN_WND, &window), PF_Err_NONE);
  EXPECT_EQ(window, &host);
}

TEST_F(Services, platformDataWithoutAPlaceOrOfAnUnknownKindIsRefused) {
  EXPECT_EQ(host.utils()->get_platform_data(host.effectRef(), PF_PlatData_MAIN_WND, nullptr),
            PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_EQ(host.books().complaintCount(Matter::kWrongArgument), 0);
  char data[260] = "as it was";
  EXPECT_EQ(host.utils()->get_platform_data(host.effectRef(), static_cast<PF_PlatDataID>(99), data),
            PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_STREQ(data, "as it was");
  EXPECT_EQ(host.books().complaintCount(Matter::kWrongArgument), 1);
}

TEST_F(Services, aPathTooLongForItsPlaceIsCutWithItsZero) {
  host.settings().modulePath = std::string(400, 'x');
  char path[261];
  std::memset(path, '?', sizeof path);
  host.utils()->get_platform_data(host.effectRef(), PF_PlatData_EXE_FILE_PATH_DEPRECATED, path);
  EXPECT_EQ(path[258], 'x');
  EXPECT_EQ(path[259], '\0');
  EXPECT_EQ(path[260], '?');
}

TEST_F(Services, theRenderEngineAnswersAsSet) {
  const auto* app = suite<PFAppSuite4>(kPFAppSuite, 6);
  PF_Boolean answer = 5;
  app->PF_IsRenderEngine(&answer);
  EXPECT_EQ(answer, 0);
  host.settings().renderEngine = true;
  app->PF_IsRenderEngine(&answer);
  EXPECT_EQ(answer, 1);
}

TEST_F(Services, theLibraryFunctionsAreTheRealOnes) {
  char text[32];
  EXPECT_EQ(host.utils()->ansi.sprintf(text, "%d-%s", 5, "a"), 3);
  EXPECT_STREQ(text, "5-a");
  char copy[32];
  EXPECT_EQ(host.utils()->ansi.strcpy(copy, text), copy);
  EXPECT_STREQ(copy, "5-a");
  EXPECT_EQ(host.utils()->ansi.sqrt(9.0), 3.0);
}

TEST_F(Services, aNewBlockHoldsFreshBytesToItsEndHoweverLongItIs) {
  for (const uint64_t size : {uint64_t{65535}, uint64_t{65536}, uint64_t{200001}}) {
    PF_Handle handle = host.utils()->host_new_handle(size);
    const auto* bytes = static_cast<const uint8_t*>(*handle);
    EXPECT_EQ(std::count(bytes, bytes + size, uint8_t{standin::HandleStore::kFreshByte}), static_cast<ptrdiff_t>(size));
    host.utils()->host_dispose_handle(handle);
  }
}

TEST_F(Services, theRenderEngineRefusesToWriteNowhere) {
  const auto* app = suite<PFAppSuite4>(kPFAppSuite, 6);
  EXPECT_EQ(app->PF_IsRenderEngine(nullptr), PF_Err_BAD_CALLBACK_PARAM);
}

TEST_F(Services, aCopyFromOrIntoNoWorldIsRefusedAndDrawsNothing) {
  Image image(Depth::k8, 2, 2);
  PF_EffectWorld world = host.lendWorld(image, "picture");
  const auto* transform = suite<PF_WorldTransformSuite1>(kPFWorldTransformSuite, 1);
  for (const auto copy : {transform->copy, transform->copy_hq}) {
    EXPECT_EQ(copy(host.effectRef(), nullptr, &world, nullptr, nullptr), PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_EQ(copy(host.effectRef(), &world, nullptr, nullptr, nullptr), PF_Err_BAD_CALLBACK_PARAM);
  }
  EXPECT_EQ(host.books().complaintCount(Matter::kBadWorld), 4) << report();
  EXPECT_EQ(host.log().copies.size(), 4u);
  EXPECT_TRUE(standin::samePixels(image, Image(Depth::k8, 2, 2)));
}

TEST_F(Services, noPlaceOfTheUtilitiesIsEmpty) {
  // An effect calls what its host does not serve all the same: a refusal is an answer, a null pointer an end.
  const auto* table = reinterpret_cast<void* const*>(host.utils());
  for (size_t slot = 0; slot < offsetof(PF_UtilCallbacks, reserved) / sizeof(void*); ++slot) {
    const size_t offset = slot * sizeof(void*);
    if (offset == offsetof(PF_UtilCallbacks, get_batch_func_is_deprecated)) continue;
    if (offset == offsetof(PF_UtilCallbacks, ansi) + offsetof(PF_ANSICallbacks, ansi_procs)) continue;
    EXPECT_NE(table[slot], nullptr) << "at byte " << offset;
  }
}

TEST_F(Services, aFaultOfAResizeLeavesTheBlockAsItIs) {
  PF_Handle handle = host.utils()->host_new_handle(8);
  host.faults().fail("host_resize_handle", 1, 77);
  EXPECT_EQ(host.utils()->host_resize_handle(16, &handle), 77);
  EXPECT_EQ(host.utils()->host_get_handle_size(handle), 8U);
  host.utils()->host_dispose_handle(handle);
  EXPECT_TRUE(host.books().clean()) << report();
}

TEST_F(Services, aFaultOfALockLocksNothing) {
  PF_Handle handle = host.utils()->host_new_handle(8);
  host.faults().fail("host_lock_handle", 1, 77);
  EXPECT_EQ(host.utils()->host_lock_handle(handle), nullptr);
  EXPECT_EQ(host.utils()->host_resize_handle(16, &handle), PF_Err_NONE) << "which a locked one refuses";
  host.utils()->host_dispose_handle(handle);
  EXPECT_TRUE(host.books().clean()) << report();
}

TEST_F(Services, moreMemoryThanThereIsIsNotGiven) {
  constexpr uint64_t tooMuch = (uint64_t{1} << 40) + 1;
  EXPECT_EQ(host.utils()->host_new_handle(tooMuch), nullptr);
  PF_Handle handle = host.utils()->host_new_handle(8);
  EXPECT_EQ(host.utils()->host_resize_handle(tooMuch, &handle), PF_Err_OUT_OF_MEMORY);
  EXPECT_EQ(host.utils()->host_get_handle_size(handle), 8U);
  host.utils()->host_dispose_handle(handle);
  EXPECT_TRUE(host.books().clean()) << report();
}

TEST_F(Services, aPlaceInsideAHandleIsNoHandle) {
  PF_Handle handle = host.utils()->host_new_handle(8);
  EXPECT_EQ(host.utils()->host_get_handle_size(handle + 1), 0U);
  EXPECT_EQ(host.books().complaintCount(Matter::kBadHandle), 1) << report();
  host.utils()->host_dispose_handle(handle);
}

TEST_F(Services, theSizeOfADisposedHandleIsNone) {
  host.log().handleCallsToo = true;
  PF_Handle handle = host.utils()->host_new_handle(8);
  host.utils()->host_dispose_handle(handle);
  EXPECT_EQ(host.utils()->host_get_handle_size(handle), 0U);
  ASSERT_EQ(host.books().complaintCount(Matter::kBadHandle), 1) << report();
  EXPECT_EQ(host.books().complaints()[0].text, "host_get_handle_size of handle 1, which was disposed of");
  EXPECT_EQ(host.utils()->host_resize_handle(16, &handle), PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_EQ(host.log().handles.back().handle, 0) << "unknown";
}

TEST_F(Services, aWriteBeforeABlockIsSeenWhereItIsUnlocked) {
  PF_Handle handle = host.utils()->host_new_handle(8);
  auto* block = static_cast<uint8_t*>(host.utils()->host_lock_handle(handle));
  block[-1] = 1;
  host.utils()->host_unlock_handle(handle);
  EXPECT_EQ(host.books().complaintCount(Matter::kOutside), 1) << report();
  block[-1] = standin::HandleStore::kGuardByte;
  host.utils()->host_dispose_handle(handle);
  EXPECT_EQ(host.books().complaintCount(Matter::kOutside), 1) << report();
}

TEST_F(Services, aReleaseThatReportsAFaultIsARelease) {
  for (const char* fault : {"ReleaseSuite", "ReleaseSuite:PF World Suite 1"}) {
    suite<PF_WorldSuite1>("PF World Suite", 1);
    host.faults().fail(fault, 1, 77);
    EXPECT_EQ(host.basicSuite()->ReleaseSuite("PF World Suite", 1), 77) << fault;
    EXPECT_EQ(host.faults().waiting(), 0) << fault;
  }
  EXPECT_TRUE(host.books().clean()) << report();
}

TEST_F(Services, namesAreEqualWhenTheirLettersAre) {
  const std::string one = "PF World Suite";
  const auto* basic = host.basicSuite();
  EXPECT_NE(basic->IsEqual(one.c_str(), "PF World Suite"), 0);
  EXPECT_EQ(basic->IsEqual(one.c_str(), "PF World Suite "), 0);
  EXPECT_EQ(basic->IsEqual(nullptr, "PF World Suite"), 0);
  EXPECT_EQ(basic->IsEqual("PF World Suite", nullptr), 0);
}

TEST_F(Services, anEffectOfThisProgramHasNoPathAndNoLibrary) {
  char path[260] = "?";
  EXPECT_EQ(host.utils()->get_platform_data(host.effectRef(), PF_PlatData_EXE_FILE_PATH_DEPRECATED, path), PF_Err_NONE);
  EXPECT_STREQ(path, "");
  void* library = &host;
  EXPECT_EQ(host.utils()->get_platform_data(host.effectRef(), PF_PlatData_RES_DLLINSTANCE, &library), PF_Err_NONE);
  EXPECT_EQ(library, nullptr);
}

TEST_F(Services, theRecordOfAWorldThatIsFilledByHalfIsNoWorld) {
  Image image(Depth::k8, 2, 2);
  PF_EffectWorld own = image.view();
  EXPECT_EQ(host.utils()->dispose_world(host.effectRef(), &own), PF_Err_BAD_CALLBACK_PARAM) << "its pixels are its own";
  PF_EffectWorld withoutData = host.lendWorld(image, "picture");
  withoutData.data = nullptr;
  EXPECT_EQ(host.utils()->dispose_world(host.effectRef(), &withoutData), PF_Err_BAD_CALLBACK_PARAM);
  ASSERT_EQ(host.books().complaints().size(), 2U);
  EXPECT_EQ(host.books().complaints()[0].text, "dispose_world of a world that is gone or never was");
  EXPECT_EQ(host.books().complaints()[1].text, "dispose_world of the host's own picture");
}

}  // namespace
