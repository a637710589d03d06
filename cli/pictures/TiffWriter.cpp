// TIFF by libtiff: writing.

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

#include "cli/pictures/StoredPicture.h"
#include "cli/pictures/TiffFacts.h"
#include "cli/pictures/TiffMemory.h"

namespace cli {

namespace {

struct Compression {
  const char* name;
  uint16_t code;
};
constexpr Compression compressions[] = {{"none", COMPRESSION_NONE},
                                        {"zip", COMPRESSION_ADOBE_DEFLATE},
                                        {"lzw", COMPRESSION_LZW},
                                        {"packbits", COMPRESSION_PACKBITS}};

uint16_t codeOf(const std::string& name) {
  const auto* const found = std::find_if(std::begin(compressions), std::end(compressions),
                                         [&](const Compression& compression) { return compression.name == name; });
  if (found == std::end(compressions)) throw BrokenPicture("TIFF knows no compression '" + name + "'");
  return found->code;
}

void tellFacts(TIFF* tiff, const PictureFacts& facts) {
  if (facts.density) {
    TIFFSetField(tiff, TIFFTAG_XRESOLUTION, facts.density->x);
    TIFFSetField(tiff, TIFFTAG_YRESOLUTION, facts.density->y);
    TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
  } else if (facts.pixelAspect != 1.0) {
    TIFFSetField(tiff, TIFFTAG_XRESOLUTION, 1.0);
    TIFFSetField(tiff, TIFFTAG_YRESOLUTION, facts.pixelAspect);
    TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_NONE);
  }
  const auto setBlock = [&](uint32_t tag, const auto& bytes) {
    if (!bytes.empty()) TIFFSetField(tiff, tag, static_cast<uint32_t>(bytes.size()), bytes.data());
  };
  setBlock(TIFFTAG_ICCPROFILE, facts.iccProfile);
  setBlock(TIFFTAG_XMLPACKET, facts.xmp);
  if (facts.chromaticities) {
    TIFFSetField(tiff, TIFFTAG_PRIMARYCHROMATICITIES, facts.chromaticities->data());
    TIFFSetField(tiff, TIFFTAG_WHITEPOINT, facts.chromaticities->data() + 6);
  }
  for (const TextFact& fact : facts.texts) {
    for (const TiffNote& note : tiffNotes) {
      if (fact.key == note.key) TIFFSetField(tiff, note.tag, fact.text.c_str());
    }
  }
  if (facts.tiff == nullptr) return;
  for (const auto& [tag, text] : facts.tiff->texts) TIFFSetField(tiff, tag, text.c_str());
  for (const auto& [tag, bytes] : facts.tiff->blocks) setBlock(tag, bytes);
}

}  // namespace

const std::vector<std::string>& tiffCompressions() {
  static const std::vector<std::string> names = [] {
    std::vector<std::string> all;
    for (const Compression& compression : compressions) all.emplace_back(compression.name);
    return all;
  }();
  return names;
}

std::vector<uint8_t> encodedTiff(const PictureToWrite& picture) {
  TiffMemory memory;
  memory.writing = true;
  {
    const Tiff tiff = openTiffMemory(memory, "w");
    if (!tiff) throw BrokenPicture(tiffComplaint(memory));
    const bool isFloat = picture.type == SampleType::float32;
    const uint16_t compression = codeOf(picture.tiffCompression);
    TIFFSetField(tiff.get(), TIFFTAG_IMAGEWIDTH, static_cast<uint32_t>(picture.width));
    TIFFSetField(tiff.get(), TIFFTAG_IMAGELENGTH, static_cast<uint32_t>(picture.height));
    TIFFSetField(tiff.get(), TIFFTAG_SAMPLESPERPIXEL, picture.channels);
    TIFFSetField(tiff.get(), TIFFTAG_BITSPERSAMPLE, static_cast<int>(8 * sampleBytes(picture.type)));
    TIFFSetField(tiff.get(), TIFFTAG_SAMPLEFORMAT, isFloat ? SAMPLEFORMAT_IEEEFP : SAMPLEFORMAT_UINT);
    TIFFSetField(tiff.get(), TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
    TIFFSetField(tiff.get(), TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff.get(), TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    TIFFSetField(tiff.get(), TIFFTAG_COMPRESSION, compression);
    if (compression == COMPRESSION_ADOBE_DEFLATE || compression == COMPRESSION_LZW) {
      TIFFSetField(tiff.get(), TIFFTAG_PREDICTOR, isFloat ? PREDICTOR_FLOATINGPOINT : PREDICTOR_HORIZONTAL);
    }
    TIFFSetField(tiff.get(), TIFFTAG_ROWSPERSTRIP, TIFFDefaultStripSize(tiff.get(), 32));
    if (picture.channels == 4) {
      const uint16_t extra = EXTRASAMPLE_UNASSALPHA;
      TIFFSetField(tiff.get(), TIFFTAG_EXTRASAMPLES, 1, &extra);
    }
    if (picture.facts != nullptr) tellFacts(tiff.get(), *picture.facts);
    if (picture.madeAt) TIFFSetField(tiff.get(), TIFFTAG_DATETIME, stampText(*picture.madeAt).c_str());
    // The library changes a row on its way out, so it gets a copy.
    const std::size_t rowBytes = static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.channels) *
                                 sampleBytes(picture.type);
    std::vector<uint8_t> row(rowBytes);
    for (int32_t y = 0; y < picture.height; ++y) {
      std::memcpy(row.data(), picture.samples.data() + static_cast<std::size_t>(y) * rowBytes, rowBytes);
      if (TIFFWriteScanline(tiff.get(), row.data(), static_cast<uint32_t>(y), 0) != 1) {
        throw BrokenPicture(tiffComplaint(memory));
      }
    }
    if (TIFFFlush(tiff.get()) != 1) throw BrokenPicture(tiffComplaint(memory));
  }
  return std::move(memory.out);
}

}  // namespace cli
