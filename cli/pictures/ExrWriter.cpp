// OpenEXR by its own library: writing.

#include <ImfCompression.h>
#include <ImfFrameBuffer.h>
#include <ImfIO.h>
#include <ImfOutputFile.h>
#include <ImfStandardAttributes.h>
#include <ImfStringAttribute.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <set>
#include <string>

#include "cli/pictures/ExrFacts.h"

namespace cli {
namespace {

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

struct Compression {
  const char* name;
  Imf::Compression code;
};
constexpr Compression compressions[] = {{"none", Imf::NO_COMPRESSION},   {"rle", Imf::RLE_COMPRESSION},
                                        {"zips", Imf::ZIPS_COMPRESSION}, {"zip", Imf::ZIP_COMPRESSION},
                                        {"piz", Imf::PIZ_COMPRESSION},   {"pxr24", Imf::PXR24_COMPRESSION},
                                        {"b44", Imf::B44_COMPRESSION},   {"b44a", Imf::B44A_COMPRESSION},
                                        {"dwaa", Imf::DWAA_COMPRESSION}, {"dwab", Imf::DWAB_COMPRESSION}};

Imf::Compression codeOf(const std::string& name) {
  const auto* const found = std::find_if(std::begin(compressions), std::end(compressions),
                                         [&](const Compression& compression) { return compression.name == name; });
  if (found == std::end(compressions)) throw BrokenPicture("EXR knows no compression '" + name + "'");
  return found->code;
}

/// True for attributes that say how the old file was stored, and for the small picture of what it showed.
bool isOfTheOldFile(const std::string& name) {
  static const std::set<std::string> names = {"channels",  "compression", "dataWindow", "displayWindow",
                                              "lineOrder", "tiles",       "chunkCount", "type",
                                              "version",   "preview",     "name"};
  return names.contains(name);
}

Imath::Box2i windowAt(const Imath::V2i& corner, const PixelWindow& window) {
  const Imath::V2i least(corner.x + window.left, corner.y + window.top);
  return {least, {least.x + window.width - 1, least.y + window.height - 1}};
}

/// All but the channels.
Imf::Header headerFor(const PictureToWrite& picture) {
  const PictureFacts* const facts = picture.facts;
  const ExrFacts* const own = facts == nullptr ? nullptr : facts->exr.get();
  const Imath::V2i corner = own == nullptr ? Imath::V2i(0, 0) : own->header.displayWindow().min;
  Imf::Header header(windowAt(corner, picture.display), windowAt(corner, picture.data));
  if (own != nullptr) {
    for (auto attribute = own->header.begin(); attribute != own->header.end(); ++attribute) {
      if (!isOfTheOldFile(attribute.name())) header.insert(attribute.name(), attribute.attribute());
    }
  } else if (facts != nullptr) {
    header.pixelAspectRatio() = static_cast<float>(facts->pixelAspect);
    if (facts->density) Imf::addXDensity(header, static_cast<float>(facts->density->x));
    if (facts->chromaticities) {
      const auto& c = *facts->chromaticities;
      Imf::addChromaticities(header, {{c[0], c[1]}, {c[2], c[3]}, {c[4], c[5]}, {c[6], c[7]}});
    }
    for (const TextFact& fact : facts->texts) {
      for (const ExrNote& note : exrNotes) {
        if (fact.key == note.key) header.insert(note.attribute, Imf::StringAttribute(fact.text));
      }
    }
  }
  header.compression() = codeOf(picture.exrCompression);
  if (picture.madeAt) {
    Imf::addCapDate(header, stampText(*picture.madeAt));
    Imf::addUtcOffset(header, 0.0F);
  }
  return header;
}

/// A channel's samples on a window that holds its old one: 0 around it.
std::vector<uint8_t> onWindow(const ExrFacts::Channel& channel, const Imath::Box2i& from, const Imath::Box2i& to) {
  if (channel.kind.xSampling != 1 || channel.kind.ySampling != 1) {
    throw BrokenPicture("dots reach beyond the stored part, where its channel '" + channel.name +
                        "' of fewer samples than pixels can't follow; --other-channels drop leaves it out");
  }
  const std::size_t size = exrSampleBytes(channel.kind.type);
  const auto length = [](int first, int last) { return static_cast<std::size_t>(int64_t{last} - first + 1); };
  const std::size_t fromRow = size * length(from.min.x, from.max.x);
  const std::size_t toRow = size * length(to.min.x, to.max.x);
  std::vector<uint8_t> samples(toRow * length(to.min.y, to.max.y));
  uint8_t* target = samples.data() + static_cast<std::size_t>(from.min.y - to.min.y) * toRow +
                    static_cast<std::size_t>(from.min.x - to.min.x) * size;
  for (std::size_t at = 0; at < channel.samples.size(); at += fromRow, target += toRow) {
    std::memcpy(target, channel.samples.data() + at, fromRow);
  }
  return samples;
}

// The library's record of a channel's place is for both ways; what is written is only read from.
char* readOnly(const uint8_t* samples) {
  return reinterpret_cast<char*>(const_cast<uint8_t*>(samples));  // NOLINT
}

}  // namespace

const std::vector<std::string>& exrCompressions() {
  static const std::vector<std::string> names = [] {
    std::vector<std::string> all;
    for (const Compression& compression : compressions) all.emplace_back(compression.name);
    return all;
  }();
  return names;
}

std::string compressionOf(const ExrFacts& facts) {
  const auto* const found =
      std::find_if(std::begin(compressions), std::end(compressions),
                   [&](const Compression& compression) { return compression.code == facts.header.compression(); });
  return found == std::end(compressions) ? "zip" : found->name;
}

std::vector<uint8_t> encodedExr(const PictureToWrite& picture) {
  return withExrErrors([&] {
    constexpr std::array<const char*, 4> names = {"R", "G", "B", "A"};
    Imf::Header header = headerFor(picture);
    const Imath::Box2i window = header.dataWindow();
    const Imf::PixelType type = picture.type == SampleType::half ? Imf::HALF : Imf::FLOAT;
    const std::size_t size = exrSampleBytes(type);
    const std::size_t pixelBytes = static_cast<std::size_t>(picture.channels) * size;
    const std::size_t rowBytes = pixelBytes * static_cast<std::size_t>(picture.width);
    const uint8_t* const first = picture.samples.data() +
                                 static_cast<std::size_t>(picture.data.top - picture.top) * rowBytes +
                                 static_cast<std::size_t>(picture.data.left - picture.left) * pixelBytes;
    Imf::FrameBuffer buffer;
    for (std::size_t i = 0; i < static_cast<std::size_t>(picture.channels); ++i) {
      header.channels().insert(names[i], Imf::Channel(type));
      buffer.insert(names[i], Imf::Slice::Make(type, readOnly(first + i * size), window, pixelBytes, rowBytes));
    }
    // Samples on a larger window, alive until they are written.
    std::vector<std::vector<uint8_t>> moved;
    if (picture.facts != nullptr && picture.facts->exr != nullptr) {
      const ExrFacts& facts = *picture.facts->exr;
      const Imath::Box2i& before = facts.header.dataWindow();
      moved.reserve(facts.others.size());
      for (const ExrFacts::Channel& other : facts.others) {
        const bool stays = before == window;
        if (!stays) moved.push_back(onWindow(other, before, window));
        const std::vector<uint8_t>& samples = stays ? other.samples : moved.back();
        const std::size_t otherSize = exrSampleBytes(other.kind.type);
        const auto across = static_cast<std::size_t>((window.max.x - window.min.x + 1) / other.kind.xSampling);
        header.channels().insert(other.name, other.kind);
        buffer.insert(other.name, Imf::Slice::Make(other.kind.type, readOnly(samples.data()), window, otherSize,
                                                   otherSize * across, other.kind.xSampling, other.kind.ySampling));
      }
    }
    BytesOut stream;
    {
      Imf::OutputFile file(stream, header, 0);
      file.setFrameBuffer(buffer);
      file.writePixels(window.max.y - window.min.y + 1);
    }
    return std::move(stream.file);
  });
}

}  // namespace cli
