#include <array>

#include "cli/pictures/StoredPicture.h"

namespace cli {

std::string stampText(std::time_t time) {
  std::tm parts{};
  gmtime_r(&time, &parts);
  std::array<char, 32> text{};
  std::strftime(text.data(), text.size(), "%Y:%m:%d %H:%M:%S", &parts);
  return text.data();
}

}  // namespace cli
