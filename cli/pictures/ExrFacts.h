/// What only an EXR can hold, and how its library's complaints are taken.
#pragma once

#include <ImfChannelList.h>
#include <ImfHeader.h>

#include <algorithm>
#include <cstdint>
#include <exception>
#include <new>
#include <string>
#include <vector>

#include "cli/pictures/StoredPicture.h"

namespace cli {

struct ExrFacts {
  Imf::Header header;  ///< of the file that was read

  /// A channel that makes no picture, with its samples as they are stored.
  struct Channel {
    std::string name;
    Imf::Channel kind;
    std::vector<uint8_t> samples;  ///< rows of the data window without gaps
  };
  std::vector<Channel> others;
};

/// The notes that other formats have too: the attribute, and the key under which PNG has it.
struct ExrNote {
  const char* attribute;
  const char* key;
};
inline constexpr ExrNote exrNotes[] = {
    {"comments", "Description"}, {"Artist", "Author"}, {"owner", "Copyright"}, {"Software", "Software"}};

/// Bytes of a sample.
inline std::size_t exrSampleBytes(Imf::PixelType type) {
  return type == Imf::HALF ? 2 : 4;
}

/// What the library throws becomes one of ours.
template <class Work>
auto withExrErrors(Work work) {
  try {
    return work();
  } catch (const BrokenPicture&) {
    throw;
  } catch (const OtherPicture&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    std::string text = error.what();
    std::replace(text.begin(), text.end(), '\n', ' ');
    while (!text.empty() && (text.back() == ' ' || text.back() == '.')) text.pop_back();
    throw BrokenPicture(text);
  }
}

}  // namespace cli
