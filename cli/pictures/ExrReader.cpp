// OpenEXR by its own library: reading.

#include <ImfFrameBuffer.h>
#include <ImfIO.h>
#include <ImfInputFile.h>
#include <ImfStandardAttributes.h>
#include <ImfStringAttribute.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "cli/pictures/ExrFacts.h"
#include "cli/pictures/ExrHeader.h"

namespace cli {
namespace {

using standin::Depth;

class BytesIn final : public Imf::IStream {
 public:
  explicit BytesIn(std::span<const uint8_t> file) : IStream("the file"), file_(file) {}

  bool read(char* to, int count) override {
    const auto wanted = static_cast<std::size_t>(std::max(count, 0));
    if (at_ > file_.size() || wanted > file_.size() - at_) throw BrokenPicture("the file is cut");
    std::memcpy(to, file_.data() + at_, wanted);
    at_ += wanted;
    return at_ < file_.size();
  }
  uint64_t tellg() override { return at_; }
  void seekg(uint64_t place) override { at_ = static_cast<std::size_t>(place); }

 private:
  std::span<const uint8_t> file_;
  std::size_t at_ = 0;
};

class ExrReader final : public PictureReader {
 public:
  ExrReader(std::span<const uint8_t> file, OtherChannels others) : stream_(file) {
    facts_.kind = FileKind::exr;
    facts_.exr = own_;
    checkExrHeader(file);
    withExrErrors([&] {
      file_ = std::make_unique<Imf::InputFile>(stream_, 0);
      takeWindows();
      takeChannels();
      if (others == OtherChannels::keep) takeOthers();
      takeFacts();
    });
  }

  void read(std::span<uint8_t> samples) override {
    withExrErrors([&] {
      if (!file_->isComplete()) throw BrokenPicture("the file is cut");
      const Imath::Box2i& window = file_->header().dataWindow();
      const std::size_t pixelBytes = names_.size() * sizeof(float);
      const std::size_t rowBytes = pixelBytes * static_cast<std::size_t>(layout_.width);
      Imf::FrameBuffer buffer;
      for (std::size_t i = 0; i < names_.size(); ++i) {
        char* const first = reinterpret_cast<char*>(samples.data()) + i * sizeof(float);
        buffer.insert(names_[i], Imf::Slice::Make(Imf::FLOAT, first, window, pixelBytes, rowBytes));
      }
      for (ExrFacts::Channel& other : own_->others) {
        const std::size_t size = exrSampleBytes(other.kind.type);
        const std::size_t otherRow = size * samplesAcross(other.kind);
        other.samples.resize(otherRow * samplesDown(other.kind));
        buffer.insert(other.name, Imf::Slice::Make(other.kind.type, reinterpret_cast<char*>(other.samples.data()),
                                                   window, size, otherRow, other.kind.xSampling, other.kind.ySampling));
      }
      file_->setFrameBuffer(buffer);
      file_->readPixels(window.min.y, window.max.y);
    });
  }

 private:
  void takeWindows() {
    const Imath::Box2i& data = file_->header().dataWindow();
    const Imath::Box2i& display = file_->header().displayWindow();
    layout_.width = int64_t{data.max.x} - data.min.x + 1;
    layout_.height = int64_t{data.max.y} - data.min.y + 1;
    layout_.left = int64_t{data.min.x} - display.min.x;
    layout_.top = int64_t{data.min.y} - display.min.y;
    layout_.fullWidth = int64_t{display.max.x} - display.min.x + 1;
    layout_.fullHeight = int64_t{display.max.y} - display.min.y + 1;
  }

  void takeChannels() {
    const Imf::ChannelList& channels = file_->header().channels();
    const auto has = [&](const char* name) { return channels.findChannel(name) != nullptr; };
    std::string all;
    std::vector<std::string> every;
    for (auto channel = channels.begin(); channel != channels.end(); ++channel) {
      all += (all.empty() ? "" : ", ") + std::string(channel.name());
      every.emplace_back(channel.name());
    }
    if (has("R") && has("G") && has("B")) {
      names_ = {"R", "G", "B"};
      if (has("A")) names_.emplace_back("A");
    } else if (every.size() == 1) {
      names_ = every;
    } else if (has("Y") && !has("RY") && !has("BY") && !has("R") && !has("G") && !has("B")) {
      names_ = {"Y"};
      if (has("A")) names_.emplace_back("A");
    } else {
      throw OtherPicture("has the channels " + all + "; grey and RGB, each with or without alpha, can be read");
    }
    for (const std::string& name : names_) {
      const Imf::Channel& channel = channels[name.c_str()];
      if (channel.type == Imf::UINT) {
        throw OtherPicture("has pixels of 32-bit whole numbers; 8-bit, 16-bit and float pixels can be read");
      }
      if (channel.xSampling != 1 || channel.ySampling != 1) {
        throw OtherPicture("has channels of fewer samples than pixels, which can't be read");
      }
    }
    const bool grey = names_.size() < 3;
    layout_.channels = static_cast<int32_t>(names_.size());
    layout_.green = grey ? 0 : 1;
    layout_.blue = grey ? 0 : 2;
    layout_.alpha = names_.back() == "A" && names_.size() > 1 ? layout_.channels - 1 : -1;
    layout_.associated = layout_.alpha >= 0;
    layout_.depth = Depth::k32;
  }

  // The library holds all windows and samplings to fit each other.
  std::size_t samplesAcross(const Imf::Channel& kind) const {
    return static_cast<std::size_t>(layout_.width / kind.xSampling);
  }
  std::size_t samplesDown(const Imf::Channel& kind) const {
    return static_cast<std::size_t>(layout_.height / kind.ySampling);
  }

  void takeOthers() {
    const Imf::ChannelList& channels = file_->header().channels();
    for (auto channel = channels.begin(); channel != channels.end(); ++channel) {
      const std::string name = channel.name();
      if (std::find(names_.begin(), names_.end(), name) != names_.end()) continue;
      const Imf::Channel& kind = channel.channel();
      own_->others.push_back({name, kind, {}});
      layout_.otherBytes += exrSampleBytes(kind.type) * samplesAcross(kind) * samplesDown(kind);
    }
  }

  void takeFacts() {
    const Imf::Header& header = file_->header();
    own_->header = header;
    facts_.half = std::all_of(names_.begin(), names_.end(), [&](const std::string& name) {
      return header.channels()[name.c_str()].type == Imf::HALF;
    });
    facts_.pixelAspect = static_cast<double>(header.pixelAspectRatio());
    if (Imf::hasXDensity(header) && Imf::xDensity(header) > 0.0F) {
      const auto density = static_cast<double>(Imf::xDensity(header));
      facts_.density = PixelDensity{density, density * facts_.pixelAspect};
    }
    if (Imf::hasChromaticities(header)) {
      const Imf::Chromaticities& c = Imf::chromaticities(header);
      facts_.chromaticities = {c.red.x, c.red.y, c.green.x, c.green.y, c.blue.x, c.blue.y, c.white.x, c.white.y};
    }
    for (const ExrNote& note : exrNotes) {
      const auto* const text = header.findTypedAttribute<Imf::StringAttribute>(note.attribute);
      if (text != nullptr && !text->value().empty()) facts_.texts.push_back({note.key, text->value()});
    }
  }

  BytesIn stream_;
  std::shared_ptr<ExrFacts> own_ = std::make_shared<ExrFacts>();
  std::unique_ptr<Imf::InputFile> file_;
  std::vector<std::string> names_;
};

}  // namespace

std::unique_ptr<PictureReader> openExr(std::span<const uint8_t> file, OtherChannels others) {
  return std::make_unique<ExrReader>(file, others);
}

}  // namespace cli
