// The built filter, loaded and called as a video program does it.

#include <dlfcn.h>
#include <frei0r.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "cli/EffectSession.h"
#include "tests/support/TemporaryFolder.h"

namespace {

constexpr unsigned int width = 64;
constexpr unsigned int height = 48;
using Frame = std::vector<uint32_t>;

class Library {
 public:
  explicit Library(const std::string& file = VINDREL_FILTER) : handle_(dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (handle_ == nullptr) throw std::runtime_error(dlerror());
  }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;
  ~Library() { dlclose(handle_); }

  template <class Function>
  Function* function(const char* name) const {
    void* const found = dlsym(handle_, name);
    if (found == nullptr) throw std::runtime_error(dlerror());
    return reinterpret_cast<Function*>(found);
  }

 private:
  void* handle_;
};

/// An opaque picture in the filter's order of bytes, in which neighbours differ.
Frame plainFrame() {
  Frame frame;
  for (uint32_t y = 0; y < height; ++y) {
    for (uint32_t x = 0; x < width; ++x) frame.push_back(0xFF000000U | x * 3 | y * 5 << 8 | (x + y) << 16);
  }
  return frame;
}

class FilterTest : public testing::Test {
 protected:
  FilterTest() {
    started_ = init_();
    f0r_plugin_info_t info{};
    library_.function<decltype(f0r_get_plugin_info)>("f0r_get_plugin_info")(&info);
    for (int i = 0; i < info.num_params; ++i) {
      f0r_param_info_t parameter{};
      library_.function<decltype(f0r_get_param_info)>("f0r_get_param_info")(&parameter, i);
      index_[parameter.name] = i;
      kinds_.push_back(parameter.type);
      names_.emplace_back(parameter.name);
    }
  }
  FilterTest(const FilterTest&) = delete;
  FilterTest& operator=(const FilterTest&) = delete;
  ~FilterTest() override {
    for (f0r_instance_t instance : instances_) destruct_(instance);
    deinit_();
  }

  f0r_instance_t make(unsigned int w = width, unsigned int h = height) {
    f0r_instance_t instance = construct_(w, h);
    if (instance != nullptr) instances_.push_back(instance);
    return instance;
  }
  void end(f0r_instance_t instance) {
    std::erase(instances_, instance);
    destruct_(instance);
  }

  template <class Value>
  void set(f0r_instance_t instance, const std::string& name, Value value) const {
    library_.function<decltype(f0r_set_param_value)>("f0r_set_param_value")(instance, &value, index_.at(name));
  }
  void setPreset(f0r_instance_t instance, std::string file) const { set(instance, "Preset", file.data()); }
  template <class Value>
  Value get(f0r_instance_t instance, const std::string& name) const {
    Value value{};
    library_.function<decltype(f0r_get_param_value)>("f0r_get_param_value")(instance, &value, index_.at(name));
    return value;
  }

  Frame draw(f0r_instance_t instance, double seconds = 0.0) const {
    const Frame in = plainFrame();
    Frame out(in.size(), 0x12345678U);
    library_.function<decltype(f0r_update)>("f0r_update")(instance, seconds, in.data(), out.data());
    return out;
  }

  const Library library_;
  decltype(f0r_init)* init_ = library_.function<decltype(f0r_init)>("f0r_init");
  decltype(f0r_deinit)* deinit_ = library_.function<decltype(f0r_deinit)>("f0r_deinit");
  decltype(f0r_construct)* construct_ = library_.function<decltype(f0r_construct)>("f0r_construct");
  decltype(f0r_destruct)* destruct_ = library_.function<decltype(f0r_destruct)>("f0r_destruct");
  int started_ = 0;
  std::map<std::string, int> index_;
  std::vector<int> kinds_;
  std::vector<std::string> names_;
  std::vector<f0r_instance_t> instances_;
};

TEST_F(FilterTest, itTellsThatItIsAFilterOfPixelsInRedGreenBlueAlpha) {
  EXPECT_EQ(started_, 1);
  f0r_plugin_info_t info{};
  library_.function<decltype(f0r_get_plugin_info)>("f0r_get_plugin_info")(&info);
  EXPECT_STREQ(info.name, "Vindrel");
  EXPECT_EQ(info.plugin_type, F0R_PLUGIN_TYPE_FILTER);
  EXPECT_EQ(info.color_model, F0R_COLOR_MODEL_RGBA8888);
  EXPECT_EQ(info.frei0r_version, 1);
}

TEST_F(FilterTest, defaultsStandBetweenZeroAndOne) {
  auto* const instance = make();
  for (std::size_t i = 0; i < names_.size(); ++i) {
    if (kinds_[i] != F0R_PARAM_DOUBLE && kinds_[i] != F0R_PARAM_BOOL) continue;
    const auto value = get<double>(instance, names_[i]);
    EXPECT_GE(value, 0.0) << names_[i];
    EXPECT_LE(value, 1.0) << names_[i];
  }
  EXPECT_EQ(get<double>(instance, "Dot Size"), 0.1);
  EXPECT_EQ(get<double>(instance, "Dot Rotation"), 0.5);
  const auto place = get<f0r_param_position_t>(instance, "Center Position");
  EXPECT_EQ(place.x, 0.5);
  EXPECT_EQ(place.y, 0.5);
  const auto color = get<f0r_param_color_t>(instance, "Dot Color");  // #ff7d14
  EXPECT_FLOAT_EQ(color.r, 1.0F);
  EXPECT_FLOAT_EQ(color.g, 125.0F / 255.0F);
  EXPECT_FLOAT_EQ(color.b, 20.0F / 255.0F);
  EXPECT_STREQ(get<f0r_param_string>(instance, "Preset"), "");
}

TEST_F(FilterTest, whatIsSetIsGivenBack) {
  auto* const instance = make();
  set(instance, "Dot Size", 0.25);
  set(instance, "Dot Shape", 0.8);
  set(instance, "Clear Background", 1.0);
  set(instance, "Center Position", f0r_param_position_t{0.25, 0.75});
  set(instance, "Dot Color", f0r_param_color_t{0.2F, 0.4F, 0.6F});
  EXPECT_EQ(get<double>(instance, "Dot Size"), 0.25);
  EXPECT_EQ(get<double>(instance, "Dot Shape"), 0.8);
  EXPECT_EQ(get<double>(instance, "Clear Background"), 1.0);
  EXPECT_EQ(get<f0r_param_position_t>(instance, "Center Position").y, 0.75);
  EXPECT_FLOAT_EQ(get<f0r_param_color_t>(instance, "Dot Color").b, 0.6F);
}

TEST_F(FilterTest, instancesDontKnowOfEachOther) {
  auto* const first = make();
  auto* const second = make();
  const Frame before = draw(first);
  set(second, "Dot Size", 0.2);
  const Frame other = draw(second);
  EXPECT_NE(other, before);
  EXPECT_EQ(draw(first), before);
  end(second);
  EXPECT_EQ(draw(first), before);
}

TEST_F(FilterTest, aSecondFilterThatEndsTakesNothingFromTheFirst) {
  auto* const instance = make();
  const Frame before = draw(instance);
  EXPECT_EQ(init_(), 1);
  deinit_();
  EXPECT_EQ(draw(instance), before);
}

TEST_F(FilterTest, aPresetGoesUnderTheParametersInWhateverOrderTheyCome) {
  const vindrel::test::TemporaryFolder folder;
  const std::string look =
      folder.write("look.json", R"({"controls": {"Dot Shape": "Square", "Dot Size": 14}})").string();
  auto* const byHand = make();
  set(byHand, "Dot Shape", 0.2);
  set(byHand, "Dot Size", 0.08);
  auto* const presetFirst = make();
  setPreset(presetFirst, look);
  set(presetFirst, "Dot Size", 0.08);
  auto* const presetLast = make();
  set(presetLast, "Dot Size", 0.08);
  setPreset(presetLast, look);
  EXPECT_EQ(draw(presetFirst), draw(byHand));
  EXPECT_EQ(draw(presetLast), draw(byHand));
  EXPECT_EQ(get<f0r_param_string>(presetLast, "Preset"), look);
}

TEST_F(FilterTest, aParameterAtItsDefaultLeavesTheValueToThePreset) {
  // Some programs give all parameters with every frame, whether anybody touched them or not.
  const vindrel::test::TemporaryFolder folder;
  const std::string look = folder.write("look.json", R"({"controls": {"Dot Size": 14}})").string();
  auto* const untouched = make();
  setPreset(untouched, look);
  auto* const toldDefaults = make();
  setPreset(toldDefaults, look);
  for (std::size_t i = 0; i < names_.size(); ++i) {
    if (kinds_[i] == F0R_PARAM_DOUBLE || kinds_[i] == F0R_PARAM_BOOL) {
      set(toldDefaults, names_[i], get<double>(toldDefaults, names_[i]));
    }
    if (kinds_[i] == F0R_PARAM_COLOR) set(toldDefaults, names_[i], get<f0r_param_color_t>(toldDefaults, names_[i]));
    if (kinds_[i] == F0R_PARAM_POSITION) {
      set(toldDefaults, names_[i], get<f0r_param_position_t>(toldDefaults, names_[i]));
    }
  }
  auto* const byHand = make();
  set(byHand, "Dot Size", 0.14);
  EXPECT_EQ(draw(untouched), draw(byHand));
  EXPECT_EQ(draw(toldDefaults), draw(byHand));
}

TEST_F(FilterTest, aPresetThatIsTakenAwayLeavesNothingBehind) {
  const vindrel::test::TemporaryFolder folder;
  auto* const instance = make();
  const Frame plain = draw(instance);
  setPreset(instance, folder.write("look.json", R"({"controls": {"Dot Size": 14}})").string());
  EXPECT_NE(draw(instance), plain);
  setPreset(instance, "");
  EXPECT_EQ(draw(instance), plain);
}

TEST_F(FilterTest, aPresetThatCantBeUsedIsToldOnceAndCountsAsNone) {
  const vindrel::test::TemporaryFolder folder;
  const std::string look = folder.write("look.json", R"({"controls": {"Dot Sise": 14}})").string();
  auto* const instance = make();
  const Frame plain = draw(instance);
  testing::internal::CaptureStderr();
  setPreset(instance, look);
  setPreset(instance, look);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "vindrel: preset '" + look + "': no control 'Dot Sise'; did you mean 'Dot Size'?\n");
  EXPECT_EQ(draw(instance), plain);
}

TEST_F(FilterTest, keysOfAPresetAreToldToBeLeftOut) {
  const vindrel::test::TemporaryFolder folder;
  const std::string look =
      folder.write("look.json", R"({"animation": {"Dot Size": [{"frame": 1, "value": 4}]}})").string();
  auto* const instance = make();
  const Frame plain = draw(instance);
  testing::internal::CaptureStderr();
  setPreset(instance, look);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "vindrel: preset '" + look + "': its keys over time are left out; the video program's own move values\n");
  EXPECT_EQ(draw(instance), plain);
}

TEST_F(FilterTest, movingJitterFollowsTheTimeOfTheFrame) {
  auto* const instance = make();
  set(instance, "Random Interval", 1.0 / 60.0);
  set(instance, "Distance X", 1.0);
  const Frame atZero = draw(instance, 0.0);
  EXPECT_NE(draw(instance, 1.0 / 24.0), atZero);
  EXPECT_EQ(draw(instance, 0.4 / 24.0), atZero);  // nearer to frame 0
  EXPECT_EQ(draw(instance, 0.0), atZero);
}

TEST_F(FilterTest, aFrameWithoutATimeFollowsTheOneBefore) {
  // ffmpeg tells no time where it has to copy a frame, by a number that no time has.
  constexpr double noTime = -9.223372036854775808e18;
  auto* const timed = make();
  auto* const untimed = make();
  for (f0r_instance_t instance : {timed, untimed}) {
    set(instance, "Random Interval", 1.0 / 60.0);
    set(instance, "Distance X", 1.0);
  }
  for (int32_t frame = 0; frame < 3; ++frame) {
    EXPECT_EQ(draw(untimed, noTime), draw(timed, frame / 24.0)) << frame;
  }
}

TEST_F(FilterTest, clearPixelsComeThroughAsTheEffectLeftThem) {
  auto* const instance = make();
  set(instance, "Clear Background", 1.0);
  set(instance, "Dot Size", 0.0);
  EXPECT_EQ(draw(instance), Frame(width * height, 0U));
}

TEST_F(FilterTest, sizesThatNoFrameHasAreRefused) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(make(0, 5), nullptr);
  EXPECT_EQ(make(30001, 5), nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "vindrel: frames of 0 x 5 pixels can't be drawn\nvindrel: frames of 30001 x 5 pixels can't be drawn\n");
}

/// The module takes no second host in one process, so its controls are asked for before the filter has it.
std::vector<cli::ControlFacts> controlsOfModule() {
  return cli::EffectSession(VINDREL_MODULE, cli::Defaults::builtIn).controls();
}

class FilterControlsTest : public FilterTest {
 protected:
  static void SetUpTestSuite() { controls = controlsOfModule(); }
  static inline std::vector<cli::ControlFacts> controls;
};

TEST_F(FilterControlsTest, everyControlOfTheModuleButGroupsAndLayersIsAParameterInItsPlace) {
  const std::map<cli::ControlKind, int> kinds = {
      {cli::ControlKind::number, F0R_PARAM_DOUBLE}, {cli::ControlKind::wholeNumber, F0R_PARAM_DOUBLE},
      {cli::ControlKind::angle, F0R_PARAM_DOUBLE},  {cli::ControlKind::choice, F0R_PARAM_DOUBLE},
      {cli::ControlKind::checkBox, F0R_PARAM_BOOL}, {cli::ControlKind::color, F0R_PARAM_COLOR},
      {cli::ControlKind::place, F0R_PARAM_POSITION}};
  std::vector<std::string> names = {"Preset"};
  std::vector<int> wanted = {F0R_PARAM_STRING};
  for (const cli::ControlFacts& control : controls) {
    if (!kinds.contains(control.kind)) continue;
    names.push_back(control.name);
    wanted.push_back(kinds.at(control.kind));
  }
  EXPECT_EQ(names_, names);
  EXPECT_EQ(kinds_, wanted);
  // 122 rows without 4 groups, their ends and 4 layers, and the preset.
  EXPECT_EQ(names_.size(), 111U);
}

TEST(FilterPlaceTest, aFilterWithoutAModuleSaysWhichOneItMisses) {
  const vindrel::test::TemporaryFolder folder;
  std::filesystem::copy_file(VINDREL_FILTER, folder / "vindrel.so");
  const Library library((folder / "vindrel.so").string());
  testing::internal::CaptureStderr();
  EXPECT_EQ(library.function<decltype(f0r_init)>("f0r_init")(), 0);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "vindrel: no module '" + (folder / "Vindrel.so").string() +
                                                        "'; the variable VINDREL_MODULE names another one\n");
  f0r_plugin_info_t info{};
  library.function<decltype(f0r_get_plugin_info)>("f0r_get_plugin_info")(&info);
  EXPECT_EQ(info.num_params, 0);
}

TEST(FilterPlaceTest, theVariableNamesAModuleAndALinkLeadsToOne) {
  const vindrel::test::TemporaryFolder folder;
  std::filesystem::copy_file(VINDREL_FILTER, folder / "vindrel.so");
  setenv("VINDREL_MODULE", VINDREL_MODULE, 1);
  {
    const Library library((folder / "vindrel.so").string());
    EXPECT_EQ(library.function<decltype(f0r_init)>("f0r_init")(), 1);
    library.function<decltype(f0r_deinit)>("f0r_deinit")();
  }
  unsetenv("VINDREL_MODULE");
  std::filesystem::create_symlink(VINDREL_FILTER, folder / "linked.so");
  const Library library((folder / "linked.so").string());
  EXPECT_EQ(library.function<decltype(f0r_init)>("f0r_init")(), 1);
  library.function<decltype(f0r_deinit)>("f0r_deinit")();
}

}  // namespace
