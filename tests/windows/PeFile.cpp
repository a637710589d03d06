#include "tests/windows/PeFile.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace pe {

uint16_t read16(const Bytes& bytes, size_t offset) {
  return static_cast<uint16_t>(bytes.at(offset) | bytes.at(offset + 1) << 8);
}

uint32_t read32(const Bytes& bytes, size_t offset) {
  return read16(bytes, offset) | static_cast<uint32_t>(read16(bytes, offset + 2)) << 16;
}

namespace {

struct Section {
  uint32_t address;
  uint32_t size;
  uint32_t fileOffset;
};

class Reader {
 public:
  explicit Reader(Bytes file) : file_(std::move(file)) {
    if (read16(file_, 0) != 0x5A4D) throw std::runtime_error("no MZ at the start");
    header_ = read32(file_, 0x3C);
    if (read32(file_, header_) != 0x00004550) throw std::runtime_error("no PE header");
    const size_t sections = read16(file_, header_ + 6);
    const size_t optionalSize = read16(file_, header_ + 20);
    for (size_t i = 0; i < sections; ++i) {
      const size_t at = header_ + 24 + optionalSize + i * 40;
      sections_.push_back({read32(file_, at + 12), read32(file_, at + 16), read32(file_, at + 20)});
    }
  }

  Module module() {
    Module module;
    module.machine = read16(file_, header_ + 4);
    module.characteristics = read16(file_, header_ + 22);
    module.optionalMagic = read16(file_, header_ + 24);
    readExports(module);
    readImports(module);
    resourceRoot_ = directory(2);
    if (resourceRoot_ != 0) readResources(module, resourceRoot_, 0, {});
    return module;
  }

 private:
  /// Address of one of the data directories of a 64-bit module, 0 when it has none.
  uint32_t directory(size_t index) const { return read32(file_, header_ + 24 + 112 + index * 8); }

  size_t offsetOf(uint32_t address) const {
    for (const Section& section : sections_) {
      if (address >= section.address && address - section.address < section.size) {
        return section.fileOffset + (address - section.address);
      }
    }
    throw std::runtime_error("an address outside all sections");
  }

  std::string textAt(uint32_t address) const {
    std::string text;
    for (size_t at = offsetOf(address); file_.at(at) != 0; ++at) text += static_cast<char>(file_[at]);
    return text;
  }

  void readExports(Module& module) const {
    if (directory(0) == 0) return;
    const size_t table = offsetOf(directory(0));
    module.exportedFunctions = read32(file_, table + 20);
    const uint32_t names = read32(file_, table + 24);
    const size_t nameTable = offsetOf(read32(file_, table + 32));
    for (uint32_t i = 0; i < names; ++i) module.exports.insert(textAt(read32(file_, nameTable + i * 4)));
  }

  void readImports(Module& module) const {
    if (directory(1) == 0) return;
    for (size_t entry = offsetOf(directory(1)); read32(file_, entry + 12) != 0; entry += 20) {
      std::string name = textAt(read32(file_, entry + 12));
      for (char& c : name)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
      module.imports.insert(name);
    }
  }

  std::string resourceName(uint32_t field) const {
    if ((field & 0x80000000U) == 0) return "#" + std::to_string(field);
    const size_t at = offsetOf(resourceRoot_ + (field & 0x7FFFFFFFU));
    std::string name;
    for (size_t i = 0; i < read16(file_, at); ++i) name += static_cast<char>(read16(file_, at + 2 + i * 2));
    return name;
  }

  // Three levels of tables: type, name, language.
  void readResources(Module& module, uint32_t address, int level, ResourceKey key) const {
    const size_t table = offsetOf(address);
    const size_t entries = size_t{read16(file_, table + 12)} + read16(file_, table + 14);
    for (size_t i = 0; i < entries; ++i) {
      const uint32_t name = read32(file_, table + 16 + i * 8);
      const uint32_t target = read32(file_, table + 16 + i * 8 + 4);
      if (level == 0) key.type = resourceName(name);
      if (level == 1) key.name = resourceName(name);
      if (level == 2) key.language = name;
      if (level < 2) {
        if ((target & 0x80000000U) == 0) throw std::runtime_error("a resource without three levels");
        readResources(module, resourceRoot_ + (target & 0x7FFFFFFFU), level + 1, key);
        continue;
      }
      const size_t leaf = offsetOf(resourceRoot_ + target);
      const size_t data = offsetOf(read32(file_, leaf));
      const size_t size = read32(file_, leaf + 4);
      if (data + size > file_.size()) throw std::runtime_error("a resource beyond the end of the file");
      const auto first = file_.begin() + static_cast<std::ptrdiff_t>(data);
      module.resources[key] = Bytes(first, first + static_cast<std::ptrdiff_t>(size));
    }
  }

  Bytes file_;
  size_t header_ = 0;
  std::vector<Section> sections_;
  uint32_t resourceRoot_ = 0;
};

}  // namespace

Module read(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("can't open " + path);
  return Reader(Bytes(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>())).module();
}

}  // namespace pe
