// OpenEXR by its own library.

#include <ImfChannelList.h>
#include <ImfCompression.h>
#include <ImfFrameBuffer.h>
#include <ImfHeader.h>
#include <ImfIO.h>
#include <ImfInputFile.h>
#include <ImfOutputFile.h>
#include <ImfStandardAttributes.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

#include "cli/pictures/StoredPicture.h"

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

class BytesOut final : public Imf::OStream {
 public:
  BytesOut() : OStream("the file") {}

  void write(const char* from, int count) override {
    const auto size = static_cast<std::size_t>(std::max(count, 0));
    if (file.size() < at_ + size) file.resize(at_ + size);
    std::memcpy(file.data() + at_, from, size);
    at_ += size;
  }
  uint64_t tellp() override { return at_; }
  void seekp(uint64_t place) override { at_ = static_cast<std::size_t>(place); }

  std::vector<uint8_t> file;

 private:
  std::size_t at_ = 0;
};

std::string oneLine(std::string text) {
  std::replace(text.begin(), text.end(), '\n', ' ');
  while (!text.empty() && (text.back() == ' ' || text.back() == '.')) text.pop_back();
  return text;
}

/// What the library throws becomes one of ours.
template <class Work>
auto translated(Work work) {
  try {
    return work();
  } catch (const BrokenPicture&) {
    throw;
  } catch (const OtherPicture&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    throw BrokenPicture(oneLine(error.what()));
  }
}

class ExrReader final : public PictureReader {
 public:
  explicit ExrReader(std::span<const uint8_t> file) : stream_(file) {
    translated([&] {
      file_ = std::make_unique<Imf::InputFile>(stream_, 0);
      takeWindows();
      takeChannels();
    });
  }

  void read(std::span<uint8_t> samples) override {
    translated([&] {
      if (!file_->isComplete()) throw BrokenPicture("the file is cut");
      const Imath::Box2i& window = file_->header().dataWindow();
      const std::size_t pixelBytes = names_.size() * sizeof(float);
      const std::size_t rowBytes = pixelBytes * static_cast<std::size_t>(layout_.width);
      Imf::FrameBuffer buffer;
      for (std::size_t i = 0; i < names_.size(); ++i) {
        char* const first = reinterpret_cast<char*>(samples.data()) + i * sizeof(float);
        buffer.insert(names_[i], Imf::Slice::Make(Imf::FLOAT, first, window, pixelBytes, rowBytes));
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
    } else if (every.size() == 2 && has("Y") && has("A")) {
      names_ = {"Y", "A"};
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

  BytesIn stream_;
  std::unique_ptr<Imf::InputFile> file_;
  std::vector<std::string> names_;
};

}  // namespace

std::unique_ptr<PictureReader> openExr(std::span<const uint8_t> file) {
  return std::make_unique<ExrReader>(file);
}

std::vector<uint8_t> encodedExr(const PictureToWrite& picture) {
  return translated([&] {
    constexpr std::array<const char*, 4> names = {"R", "G", "B", "A"};
    Imf::Header header(picture.width, picture.height);
    header.compression() = Imf::ZIP_COMPRESSION;
    if (picture.madeAt) {
      Imf::addCapDate(header, stampText(*picture.madeAt));
      Imf::addUtcOffset(header, 0.0F);
    }
    const auto channels = static_cast<std::size_t>(picture.channels);
    const std::size_t pixelBytes = channels * sizeof(float);
    const std::size_t rowBytes = pixelBytes * static_cast<std::size_t>(picture.width);
    Imf::FrameBuffer buffer;
    for (std::size_t i = 0; i < channels; ++i) {
      header.channels().insert(names[i], Imf::Channel(Imf::FLOAT));
      // The library's record is for both ways; a file that is written is only read from.
      char* const first =
          reinterpret_cast<char*>(const_cast<uint8_t*>(picture.samples.data())) + i * sizeof(float);  // NOLINT
      buffer.insert(names[i], Imf::Slice(Imf::FLOAT, first, pixelBytes, rowBytes));
    }
    BytesOut stream;
    {
      Imf::OutputFile file(stream, header, 0);
      file.setFrameBuffer(buffer);
      file.writePixels(picture.height);
    }
    return std::move(stream.file);
  });
}

}  // namespace cli
