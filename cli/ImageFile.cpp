#include "cli/ImageFile.h"

#include <OpenImageIO/imageio.h>
#include <unistd.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <system_error>
#include <type_traits>
#include <utility>
#include <vector>

#include "ae/Constants.h"
#include "cli/NearestName.h"
#include "cli/QuietLibraries.h"
#include "cli/UserError.h"

namespace cli {
namespace {

namespace fs = std::filesystem;
using OIIO::ImageInput;
using OIIO::ImageOutput;
using OIIO::ImageSpec;
using OIIO::TypeDesc;
using standin::Depth;
using standin::Image;

std::string quoted(const fs::path& file) {
  return "'" + file.string() + "'";
}

/// The library's message without its line ends, so that an error stays one line.
std::string oneLine(std::string text) {
  std::replace(text.begin(), text.end(), '\n', ' ');
  while (!text.empty() && (text.back() == ' ' || text.back() == '.')) text.pop_back();
  return text;
}

std::vector<std::string> namesBeside(const fs::path& file) {
  std::vector<std::string> names;
  std::error_code ignored;
  const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::path(".");
  for (const auto& entry : fs::directory_iterator(folder, ignored)) {
    if (entry.is_regular_file(ignored)) names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

void checkReadable(const fs::path& file) {
  std::error_code error;
  const fs::file_status status = fs::status(file, error);
  if (!fs::exists(status)) {
    throw UserError("no file " + quoted(file) + suggestion(file.filename().string(), namesBeside(file)));
  }
  if (fs::is_directory(status)) throw UserError(quoted(file) + " is a folder, not a picture");
  if (access(file.c_str(), R_OK) != 0) throw UserError("no permission to read " + quoted(file));
}

/// Where the four channels lie in the file; -1 for an alpha that isn't there.
struct ChannelPlaces {
  int red = 0;
  int green = 0;
  int blue = 0;
  int alpha = -1;
};

ChannelPlaces placesOf(const ImageSpec& layout, const fs::path& file) {
  const std::string colourSpace =
      layout.get_string_attribute("tiff:ColorSpace", layout.get_string_attribute("jpeg:ColorSpace"));
  // The library turns these into RGB by a rule of thumb; a print colour without its profile is better refused.
  if (colourSpace == "CMYK" || colourSpace == "YCCK") {
    throw UserError(quoted(file) + " is a CMYK picture; grey and RGB, each with or without alpha, can be read");
  }
  const auto placeOf = [&layout](const char* name) { return layout.channelindex(name); };
  if (layout.nchannels >= 3 && placeOf("R") >= 0 && placeOf("G") >= 0 && placeOf("B") >= 0) {
    return {placeOf("R"), placeOf("G"), placeOf("B"), layout.alpha_channel};
  }
  const bool greyWithAlpha = layout.nchannels == 2 && layout.alpha_channel == 1;
  if (layout.nchannels == 1 || greyWithAlpha) return {0, 0, 0, greyWithAlpha ? 1 : -1};

  std::string names;
  for (const std::string& name : layout.channelnames) names += (names.empty() ? "" : ", ") + name;
  throw UserError(quoted(file) + " has the channels " + names +
                  "; grey and RGB, each with or without alpha, can be read");
}

Depth depthOf(const ImageSpec& layout, const fs::path& file) {
  switch (layout.format.basetype) {
    case TypeDesc::UINT8:
      return Depth::k8;
    case TypeDesc::UINT16:
      return Depth::k16;
    case TypeDesc::HALF:
    case TypeDesc::FLOAT:
    case TypeDesc::DOUBLE:
      return Depth::k32;
    default:
      throw UserError(quoted(file) + " has pixels of the type " + layout.format.c_str() +
                      "; 8-bit, 16-bit and float pixels can be read");
  }
}

uint8_t straight(uint8_t channel, uint8_t alpha) {
  if (alpha == 0) return channel;
  return static_cast<uint8_t>(std::min(255, (channel * 255 + alpha / 2) / alpha));
}

uint16_t straight(uint16_t channel, uint16_t alpha) {
  if (alpha == 0) return channel;
  const uint64_t whole = (static_cast<uint64_t>(channel) * 65535u + alpha / 2u) / alpha;
  return static_cast<uint16_t>(std::min<uint64_t>(65535u, whole));
}

float straight(float channel, float alpha) {
  return alpha > 0.0F ? channel / alpha : channel;
}

uint8_t fromFile(uint8_t channel) {
  return channel;
}
uint16_t fromFile(uint16_t channel) {
  return fromFile16(channel);
}
float fromFile(float channel) {
  return channel;
}

/// One pixel of the file as the host has it.
template <class Pixel, class Channel>
Pixel unpacked(const Channel* from, const ChannelPlaces& places, bool associated) {
  constexpr Channel fileFull = std::is_same_v<Channel, float> ? Channel{1} : std::numeric_limits<Channel>::max();
  const Channel alpha = places.alpha >= 0 ? from[places.alpha] : fileFull;
  const auto colour = [&](int place) { return fromFile(associated ? straight(from[place], alpha) : from[place]); };
  Pixel pixel{};
  pixel.alpha = fromFile(alpha);
  pixel.red = colour(places.red);
  pixel.green = colour(places.green);
  pixel.blue = colour(places.blue);
  return pixel;
}

template <class Pixel>
Image readAs(ImageInput& input, const ChannelPlaces& places, const fs::path& file) {
  using Channel = typename standin::PixelFacts<Pixel>::Channel;
  const ImageSpec& layout = input.spec();
  const auto channelCount = static_cast<std::size_t>(layout.nchannels);
  std::vector<Channel> pixels(static_cast<std::size_t>(layout.width) * static_cast<std::size_t>(layout.height) *
                              channelCount);
  if (!input.read_image(0, 0, 0, layout.nchannels, OIIO::BaseTypeFromC<Channel>::value, pixels.data())) {
    throw UserError("can't read " + quoted(file) + ": " + oneLine(input.geterror()));
  }
  const bool associated = places.alpha >= 0 && layout.get_int_attribute("oiio:UnassociatedAlpha", 0) == 0;
  Image image(standin::PixelFacts<Pixel>::depth, layout.full_width, layout.full_height);
  const Channel* from = pixels.data();
  for (int y = 0; y < layout.height; ++y) {
    for (int x = 0; x < layout.width; ++x, from += channelCount) {
      const int toX = x + layout.x - layout.full_x;
      const int toY = y + layout.y - layout.full_y;
      if (toX < 0 || toY < 0 || toX >= image.width() || toY >= image.height()) continue;
      image.at<Pixel>(toX, toY) = unpacked<Pixel>(from, places, associated);
    }
  }
  return image;
}

/// Turns a picture as the camera was held. `orientation` is 1 to 8; above 4, rows and columns change places.
Image upright(Image image, int orientation) {
  if (orientation <= 1 || orientation > 8) return image;
  const bool turned = orientation > 4;
  const bool fromRight = orientation == 2 || orientation == 3 || orientation == 7 || orientation == 8;
  const bool fromBottom = orientation == 3 || orientation == 4 || orientation == 6 || orientation == 7;
  Image result(image.depth(), turned ? image.height() : image.width(), turned ? image.width() : image.height());
  standin::withPixelOf(image.depth(), [&](auto pixel) {
    using Pixel = decltype(pixel);
    for (int32_t y = 0; y < result.height(); ++y) {
      for (int32_t x = 0; x < result.width(); ++x) {
        const int32_t column = turned ? y : x;
        const int32_t row = turned ? x : y;
        result.at<Pixel>(x, y) = image.at<Pixel>(fromRight ? image.width() - 1 - column : column,
                                                 fromBottom ? image.height() - 1 - row : row);
      }
    }
  });
  return result;
}

// ---- writing

struct WrittenKind {
  const char* format;  ///< the image library's name
  bool bits8;
  bool bits16;
  bool isFloat;
};

std::string lowerEnding(const fs::path& file) {
  std::string ending = file.extension().string();
  for (char& letter : ending) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return ending;
}

WrittenKind kindOf(const fs::path& file) {
  const std::string ending = lowerEnding(file);
  if (ending == ".png") return {"png", true, true, false};
  if (ending == ".tif" || ending == ".tiff") return {"tiff", true, true, true};
  if (ending == ".exr") return {"openexr", false, false, true};
  if (ending.empty()) throw UserError(quoted(file) + " has no ending; it must be .png, .tif, .tiff or .exr");
  throw UserError("can't write pictures ending in '" + file.extension().string() + "'" +
                  suggestion(ending, {".png", ".tif", ".tiff", ".exr"}, "; it must be .png, .tif, .tiff or .exr"));
}

/// A file's new content under another name beside it; removed again unless it was put in place.
class FileInTheMaking {
 public:
  explicit FileInTheMaking(const fs::path& target)
      : target_(target),
        making_(target.parent_path() /
                ("." + target.stem().string() + ".vindrel-" + std::to_string(getpid()) + target.extension().string())) {
  }
  FileInTheMaking(const FileInTheMaking&) = delete;
  FileInTheMaking& operator=(const FileInTheMaking&) = delete;
  ~FileInTheMaking() {
    std::error_code ignored;
    if (!done_) fs::remove(making_, ignored);
  }

  const fs::path& path() const { return making_; }

  void putInPlace() {
    std::error_code error;
    fs::rename(making_, target_, error);
    if (error) throw UserError("can't write " + quoted(target_) + ": " + error.message());
    done_ = true;
  }

 private:
  fs::path target_;
  fs::path making_;
  bool done_ = false;
};

uint8_t toFile(uint8_t channel) {
  return channel;
}
uint16_t toFile(uint16_t channel) {
  return toFile16(channel);
}
float toFile(float channel) {
  return channel;
}

template <class Pixel>
void writePixels(ImageOutput& output, const fs::path& making, const fs::path& target, const Image& image,
                 bool associate) {
  using Channel = typename standin::PixelFacts<Pixel>::Channel;
  std::vector<Channel> channels;
  channels.reserve(static_cast<std::size_t>(image.width()) * static_cast<std::size_t>(image.height()) * 4);
  for (int32_t y = 0; y < image.height(); ++y) {
    for (int32_t x = 0; x < image.width(); ++x) {
      const Pixel& pixel = image.at<Pixel>(x, y);
      for (Channel colour : {pixel.red, pixel.green, pixel.blue}) {
        if constexpr (std::is_same_v<Channel, float>) {
          if (associate) colour *= pixel.alpha;
        }
        channels.push_back(toFile(colour));
      }
      channels.push_back(toFile(pixel.alpha));
    }
  }
  const TypeDesc type = OIIO::BaseTypeFromC<Channel>::value;
  ImageSpec layout(image.width(), image.height(), 4, type);
  if (!associate) layout.attribute("oiio:UnassociatedAlpha", 1);
  if (!output.open(making.string(), layout) || !output.write_image(type, channels.data()) || !output.close()) {
    throw UserError("can't write " + quoted(target) + ": " + oneLine(output.geterror()));
  }
}

}  // namespace

Image readPicture(const fs::path& file) {
  checkReadable(file);
  const QuietLibraries quiet;
  ImageSpec wishes;
  wishes.attribute("oiio:UnassociatedAlpha", 1);
  const std::unique_ptr<ImageInput> input = ImageInput::open(file.string(), &wishes);
  if (!input) {
    static_cast<void>(OIIO::geterror());  // names the library's own reasons, which help nobody who gave a wrong file
    throw UserError(quoted(file) + " is no picture that can be read; PNG, TIFF, EXR and JPEG can");
  }
  const ImageSpec& layout = input->spec();
  if (layout.full_width > PF_MAX_WORLD_WIDTH || layout.full_height > PF_MAX_WORLD_HEIGHT ||
      layout.width > 2 * PF_MAX_WORLD_WIDTH || layout.height > 2 * PF_MAX_WORLD_HEIGHT) {
    throw UserError(quoted(file) + " is " + std::to_string(layout.full_width) + " x " +
                    std::to_string(layout.full_height) + " pixels; at most 30000 x 30000 can be rendered");
  }
  const ChannelPlaces places = placesOf(layout, file);
  const Depth depth = depthOf(layout, file);
  Image image = standin::withPixelOf(depth, [&](auto pixel) { return readAs<decltype(pixel)>(*input, places, file); });
  return upright(std::move(image), layout.get_int_attribute("Orientation", 1));
}

void checkWritable(const fs::path& file, Depth depth) {
  const WrittenKind kind = kindOf(file);
  if (depth == Depth::k32 && !kind.isFloat) {
    throw UserError(quoted(file) + " can't hold float pixels; write .exr or .tif, or render with --depth 16");
  }
  std::error_code error;
  const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::path(".");
  const fs::file_status folderStatus = fs::status(folder, error);
  if (!fs::exists(folderStatus)) throw UserError("can't write " + quoted(file) + ": no folder " + quoted(folder));
  if (!fs::is_directory(folderStatus)) {
    throw UserError("can't write " + quoted(file) + ": " + quoted(folder) + " is no folder");
  }
  if (access(folder.c_str(), W_OK) != 0) {
    throw UserError("can't write " + quoted(file) + ": no permission to write in " + quoted(folder));
  }
  const fs::file_status status = fs::status(file, error);
  if (fs::is_directory(status)) throw UserError("can't write " + quoted(file) + ": it is a folder");
  if (fs::exists(status) && access(file.c_str(), W_OK) != 0) {
    throw UserError("can't write " + quoted(file) + ": it is write-protected");
  }
}

void writePicture(const fs::path& file, const Image& picture) {
  checkWritable(file, picture.depth());
  const WrittenKind kind = kindOf(file);
  const bool mustBeFloat = !kind.bits8 && !kind.bits16;
  const Image written = mustBeFloat ? picture.converted(Depth::k32) : picture;

  const QuietLibraries quiet;
  const std::unique_ptr<ImageOutput> output = ImageOutput::create(kind.format);
  if (!output) throw UserError("can't write " + quoted(file) + ": " + oneLine(OIIO::geterror()));
  FileInTheMaking making(file);
  standin::withPixelOf(written.depth(), [&](auto pixel) {
    writePixels<decltype(pixel)>(*output, making.path(), file, written, mustBeFloat);
  });
  making.putInPlace();
}

}  // namespace cli
