// The built module as a file: what the host and the system read from it before any of its code runs.
#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "tests/windows/PeFile.h"

namespace {

constexpr uint32_t englishUnitedStates = 1033;
constexpr uint32_t japanese = 1041;

const pe::Module& builtModule() {
  static const pe::Module module = pe::read(VINDREL_MODULE_FILE);
  return module;
}

const pe::Bytes& resource(const std::string& type, const std::string& name, uint32_t language) {
  return builtModule().resources.at({type, name, language});
}

TEST(ModuleFile, isASixtyFourBitLibrary) {
  EXPECT_EQ(builtModule().machine, 0x8664);
  EXPECT_EQ(builtModule().optionalMagic, 0x20B);
  EXPECT_NE(builtModule().characteristics & 0x2000, 0);
}

TEST(ModuleFile, exportsTheEntryPointAndNothingElse) {
  EXPECT_EQ(builtModule().exports, std::set<std::string>{"EntryPointFunc"});
  EXPECT_EQ(builtModule().exportedFunctions, 1u);
}

TEST(ModuleFile, needsNothingThatWindowsDoesNotBring) {
  const std::set<std::string> systemLibraries = {"advapi32.dll", "gdi32.dll",   "kernel32.dll",
                                                 "msvcrt.dll",   "shell32.dll", "user32.dll"};
  EXPECT_FALSE(builtModule().imports.empty());
  for (const std::string& library : builtModule().imports) EXPECT_TRUE(systemLibraries.contains(library)) << library;
}

TEST(ModuleFile, carriesItsFourResourcesInTheirLanguagesAndNoOther) {
  std::set<pe::ResourceKey> keys;
  for (const auto& [key, bytes] : builtModule().resources) keys.insert(key);
  const std::set<pe::ResourceKey> expected = {{"PIPL", "#16000", englishUnitedStates},
                                              {"#16", "#1", englishUnitedStates},
                                              {"#5", "#101", japanese},
                                              {"#2", "#102", japanese}};
  EXPECT_EQ(keys, expected);
}

// The version, as the system's file properties and installers read it.

/// The text of a name in the version resource: both stand there as 16-bit letters, the text behind the name's zero, on
/// the next offset that four divides.
std::string versionText(const std::string& name) {
  const pe::Bytes& bytes = resource("#16", "#1", englishUnitedStates);
  const auto letterAt = [&](size_t at) { return static_cast<char>(pe::read16(bytes, at)); };
  for (size_t start = 6; start + 2 * name.size() + 2 <= bytes.size(); start += 2) {
    size_t same = 0;
    while (same < name.size() && letterAt(start + 2 * same) == name[same]) ++same;
    if (same < name.size() || pe::read16(bytes, start + 2 * same) != 0) continue;
    std::string text;
    for (size_t at = (start + 2 * same + 2 + 3) & ~size_t{3}; pe::read16(bytes, at) != 0; at += 2) text += letterAt(at);
    return text;
  }
  return "no such name";
}

TEST(ModuleFile, tellsTheSystemItsVersionInNumbers) {
  // Behind three 16-bit numbers, the name VS_VERSION_INFO with its zero, and two bytes that fill up to a multiple of
  // four.
  const pe::Bytes& bytes = resource("#16", "#1", englishUnitedStates);
  const size_t fixedInfo = 40;
  EXPECT_EQ(pe::read32(bytes, fixedInfo), 0xFEEF04BDu);
  EXPECT_EQ(pe::read32(bytes, fixedInfo + 8), 0x00010005u);   // 1.5
  EXPECT_EQ(pe::read32(bytes, fixedInfo + 12), 0x00010007u);  // .1, build 7
  EXPECT_EQ(pe::read32(bytes, fixedInfo + 16), 0x00010005u);
  EXPECT_EQ(pe::read32(bytes, fixedInfo + 20), 0x00010007u);
}

TEST(ModuleFile, tellsTheSystemWhatItIsAndWhoseItIs) {
  EXPECT_EQ(versionText("ProductName"), "Vindrel");
  EXPECT_EQ(versionText("ProductVersion"), "1.5.1");
  EXPECT_EQ(versionText("FileVersion"), "1.5.1 (build 7)");
  EXPECT_EQ(versionText("FileDescription"), "Vindrel, a halftone effect for After Effects");
  EXPECT_EQ(versionText("CompanyName"), "The Vindrel Developers");
  EXPECT_EQ(versionText("LegalCopyright"), "(c) 2026 The Vindrel Developers");
  EXPECT_EQ(versionText("OriginalFilename"), "Vindrel.aex");
}

// The property list.

struct Property {
  std::string vendor;
  std::string key;
  uint32_t id = 0;
  pe::Bytes data;
  pe::Bytes padding;
};

class PropertyListResource : public testing::Test {
 protected:
  PropertyListResource() : bytes_(resource("PIPL", "#16000", englishUnitedStates)) {
    size_t at = 10;
    while (at < bytes_.size()) {
      Property property;
      property.vendor = text(at, 4);
      property.key = text(at + 4, 4);
      property.id = pe::read32(bytes_, at + 8);
      const size_t length = pe::read32(bytes_, at + 12);
      const size_t padded = (length + 3) & ~size_t{3};
      if (at + 16 + padded > bytes_.size()) {
        ADD_FAILURE() << "property " << property.key << " reaches beyond the end";
        break;
      }
      property.data = slice(at + 16, length);
      property.padding = slice(at + 16 + length, padded - length);
      properties_.push_back(property);
      at += 16 + padded;
    }
  }

  std::string text(size_t at, size_t length) const {
    std::string result;
    for (size_t i = 0; i < length; ++i) result += static_cast<char>(bytes_.at(at + i));
    return result;
  }
  pe::Bytes slice(size_t at, size_t length) const {
    const auto first = bytes_.begin() + static_cast<std::ptrdiff_t>(at);
    return {first, first + static_cast<std::ptrdiff_t>(length)};
  }

  const Property& property(const std::string& key) const {
    for (const Property& candidate : properties_)
      if (candidate.key == key) return candidate;
    ADD_FAILURE() << "no property " << key;
    static const Property none;
    return none;
  }
  std::string dataText(const std::string& key) const {
    std::string result;
    for (const uint8_t byte : property(key).data) result += static_cast<char>(byte);
    return result;
  }
  uint32_t dataNumber(const std::string& key) const {
    EXPECT_EQ(property(key).data.size(), 4u);
    return pe::read32(property(key).data, 0);
  }

  const pe::Bytes& bytes_;
  std::vector<Property> properties_;
};

TEST_F(PropertyListResource, beginsWithOneAndZeroAndTheCount) {
  EXPECT_EQ(bytes_.size(), 282u);
  EXPECT_EQ(pe::read16(bytes_, 0), 1);
  EXPECT_EQ(pe::read32(bytes_, 2), 0u);
  EXPECT_EQ(pe::read32(bytes_, 6), 12u);
  EXPECT_EQ(properties_.size(), 12u);
}

TEST_F(PropertyListResource, hasItsPropertiesInOrderAllOfOneVendor) {
  std::vector<std::string> keys;
  for (const Property& property : properties_) {
    keys.push_back(property.key);
    EXPECT_EQ(property.vendor, "MIB8");
    EXPECT_EQ(property.id, 0u);
    for (const uint8_t byte : property.padding) EXPECT_EQ(byte, 0) << property.key;
  }
  EXPECT_EQ(keys, (std::vector<std::string>{"dnik", "eman", "gtac", "4668", "RVPe", "RVSe", "REVe", "FNIe", "OLGe",
                                            "2LGe", "ANMe", "LFea"}));
}

TEST_F(PropertyListResource, saysThatItIsAnEffect) {
  EXPECT_EQ(dataText("dnik"), "TKFe");
}

TEST_F(PropertyListResource, namesTheEffectItsCategoryAndItsMatchName) {
  EXPECT_EQ(dataText("eman"), std::string("\x07") + "Vindrel");
  EXPECT_EQ(dataText("gtac"), std::string("\x05") + "QUILM" + std::string(2, '\0'));
  EXPECT_EQ(dataText("ANMe"), std::string("\x0D") + "QUILM VINDREL" + std::string(2, '\0'));
}

TEST_F(PropertyListResource, namesTheExportedFunction) {
  EXPECT_EQ(dataText("4668"), "EntryPointFunc" + std::string(2, '\0'));
  EXPECT_TRUE(builtModule().exports.contains("EntryPointFunc"));
}

TEST_F(PropertyListResource, tellsTheVersionsOfListAndInterface) {
  EXPECT_EQ(dataNumber("RVPe"), 2u);
  EXPECT_EQ(dataNumber("RVSe"), 13u);
}

TEST_F(PropertyListResource, tellsTheVersionOfTheEffect) {
  EXPECT_EQ(dataNumber("REVe"), 691719u);
}

TEST_F(PropertyListResource, tellsTheFlags) {
  EXPECT_EQ(dataNumber("OLGe"), 0x06000062u);
  EXPECT_EQ(dataNumber("2LGe"), 0x00001419u);
}

TEST_F(PropertyListResource, hasInfoFlagsOfTwoBytesWithTwoBytesOfPadding) {
  EXPECT_EQ(property("FNIe").data, (pe::Bytes{0, 0}));
  EXPECT_EQ(property("FNIe").padding, (pe::Bytes{0, 0}));
}

TEST_F(PropertyListResource, hasAReservedZeroAtTheEnd) {
  EXPECT_EQ(dataNumber("LFea"), 0u);
}

// The dialog's template, in the extended form.

struct Control {
  uint32_t helpId = 0;
  uint32_t extendedStyle = 0;
  uint32_t style = 0;
  int16_t x = 0, y = 0, width = 0, height = 0;
  uint32_t id = 0;
  std::string windowClass;  ///< "#128" for the system class of that number
  std::string title;        ///< "#102" for the resource of that number
  uint16_t extraBytes = 0;
};

class DialogResource : public testing::Test {
 protected:
  DialogResource() : bytes_(resource("#5", "#101", japanese)) {
    version_ = next16();
    signature_ = next16();
    next32();  // help id
    extendedStyle_ = next32();
    style_ = next32();
    const size_t count = next16();
    for (int16_t& side : place_) side = static_cast<int16_t>(next16());
    menu_ = nextName();
    windowClass_ = nextName();
    caption_ = nextName();
    fontSize_ = next16();
    fontWeight_ = next16();
    fontItalic_ = next8();
    fontCharacterSet_ = next8();
    fontName_ = nextName();
    for (size_t i = 0; i < count; ++i) {
      at_ = (at_ + 3) & ~size_t{3};
      Control control;
      control.helpId = next32();
      control.extendedStyle = next32();
      control.style = next32();
      for (int16_t* const side : {&control.x, &control.y, &control.width, &control.height})
        *side = static_cast<int16_t>(next16());
      control.id = next32();
      control.windowClass = nextName();
      control.title = nextName();
      control.extraBytes = next16();
      at_ += control.extraBytes;
      controls_.push_back(control);
    }
  }

  uint8_t next8() { return bytes_.at(at_++); }
  uint16_t next16() {
    at_ += 2;
    return pe::read16(bytes_, at_ - 2);
  }
  uint32_t next32() {
    at_ += 4;
    return pe::read32(bytes_, at_ - 4);
  }
  // A text of 16-bit letters with a closing zero, or the mark 0xFFFF and a number.
  std::string nextName() {
    uint16_t letter = next16();
    if (letter == 0xFFFF) return "#" + std::to_string(next16());
    std::string name;
    for (; letter != 0; letter = next16()) name += static_cast<char>(letter);
    return name;
  }

  const Control& control(uint32_t id) const {
    for (const Control& candidate : controls_)
      if (candidate.id == id) return candidate;
    ADD_FAILURE() << "no control " << id;
    static const Control none;
    return none;
  }
  static std::vector<int> placeOf(const Control& control) {
    return {control.x, control.y, control.width, control.height};
  }

  const pe::Bytes& bytes_;
  size_t at_ = 0;
  uint16_t version_ = 0, signature_ = 0;
  uint32_t extendedStyle_ = 0, style_ = 0;
  int16_t place_[4] = {};
  std::string menu_, windowClass_, caption_, fontName_;
  uint16_t fontSize_ = 0, fontWeight_ = 0;
  uint8_t fontItalic_ = 0, fontCharacterSet_ = 0;
  std::vector<Control> controls_;
};

// A class of the system may stand there by its number or by its name: one resource compiler writes the one, the other
// the other, and the system takes both for the same.
bool isSystemClass(const std::string& written, const char* number, const std::string& name) {
  std::string lower;
  for (const char c : written) lower += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  return lower == number || lower == name;
}
bool isButton(const Control& control) {
  return isSystemClass(control.windowClass, "#128", "button");
}
bool isStatic(const Control& control) {
  return isSystemClass(control.windowClass, "#130", "static");
}

TEST_F(DialogResource, isAnExtendedTemplate) {
  EXPECT_EQ(version_, 1);
  EXPECT_EQ(signature_, 0xFFFF);
}

TEST_F(DialogResource, hasItsStyleSizeAndCaption) {
  EXPECT_EQ(style_, 0x80C800C8u);
  EXPECT_EQ(extendedStyle_, 0u);
  EXPECT_EQ((std::vector<int>{place_[0], place_[1], place_[2], place_[3]}), (std::vector<int>{0, 0, 315, 244}));
  EXPECT_EQ(caption_, "option");
  EXPECT_EQ(menu_, "");
  EXPECT_EQ(windowClass_, "");
}

TEST_F(DialogResource, hasTheSystemsDialogFont) {
  EXPECT_EQ(fontName_, "MS Shell Dlg");
  EXPECT_EQ(fontSize_, 8);
  EXPECT_EQ(fontWeight_, 400);
  EXPECT_EQ(fontItalic_, 0);
  EXPECT_EQ(fontCharacterSet_, 1);
}

TEST_F(DialogResource, hasFourControls) {
  EXPECT_EQ(controls_.size(), 4u);
}

TEST_F(DialogResource, hasAGroupBox) {
  const Control& group = control(1015);
  EXPECT_TRUE(isButton(group)) << group.windowClass;
  EXPECT_EQ(group.style, 0x50000007u);  // child, visible, group box
  EXPECT_EQ(placeOf(group), (std::vector<int>{7, 6, 301, 70}));
  EXPECT_EQ(group.title, "-");
}

TEST_F(DialogResource, hasTwoPushButtonsThatTheTabKeyReaches) {
  for (const uint32_t id : {1010u, 1012u}) {
    EXPECT_TRUE(isButton(control(id))) << control(id).windowClass;
    EXPECT_EQ(control(id).style, 0x50010000u) << id;  // child, visible, tab stop
    EXPECT_EQ(control(id).title, "-");
  }
  EXPECT_EQ(placeOf(control(1010)), (std::vector<int>{66, 30, 209, 14}));
  EXPECT_EQ(placeOf(control(1012)), (std::vector<int>{66, 48, 209, 14}));
}

TEST_F(DialogResource, showsTheBanner) {
  const Control& banner = control(1017);
  EXPECT_TRUE(isStatic(banner)) << banner.windowClass;
  EXPECT_EQ(banner.style, 0x5000000Eu);  // child, visible, bitmap
  EXPECT_EQ(placeOf(banner), (std::vector<int>{36, 96, 243, 40}));
  EXPECT_EQ(banner.title, "#102");
}

TEST_F(DialogResource, givesNoControlAnythingExtra) {
  for (const Control& control : controls_) {
    EXPECT_EQ(control.extendedStyle, 0u) << control.id;
    EXPECT_EQ(control.helpId, 0u) << control.id;
    EXPECT_EQ(control.extraBytes, 0) << control.id;
  }
}

// The banner.

TEST(BannerResource, isABitmapOf365By65At24Bits) {
  const pe::Bytes& bytes = resource("#2", "#102", japanese);
  EXPECT_EQ(pe::read32(bytes, 0), 40u);   // bytes of the header
  EXPECT_EQ(pe::read32(bytes, 4), 365u);  // width
  EXPECT_EQ(pe::read32(bytes, 8), 65u);   // height, bottom row first
  EXPECT_EQ(pe::read16(bytes, 12), 1);    // planes
  EXPECT_EQ(pe::read16(bytes, 14), 24);   // bits a pixel
  EXPECT_EQ(pe::read32(bytes, 16), 0u);   // not compressed
  EXPECT_EQ(pe::read32(bytes, 32), 0u);   // no palette
  // 365 pixels of 3 bytes are 1095, padded to 1096.
  EXPECT_EQ(bytes.size(), 40u + 65u * 1096u);
}

TEST(BannerResource, showsMoreThanOneColor) {
  const pe::Bytes& bytes = resource("#2", "#102", japanese);
  std::set<uint32_t> colors;
  for (size_t row = 0; row < 65; ++row) {
    for (size_t column = 0; column < 365; ++column) {
      const size_t at = 40 + row * 1096 + column * 3;
      colors.insert(static_cast<uint32_t>(bytes.at(at) | bytes.at(at + 1) << 8 | bytes.at(at + 2) << 16));
    }
  }
  EXPECT_GT(colors.size(), 1u);
}

}  // namespace
