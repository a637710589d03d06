#include "cli/Sheet.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "cli/LabelText.h"
#include "cli/NearestName.h"
#include "cli/UserError.h"

namespace cli {
namespace {

using standin::Image;

constexpr int32_t gap = 16;  ///< pixels around each picture
constexpr PF_Pixel paper = {255, 38, 38, 40};
constexpr PF_Pixel ink = {255, 226, 226, 222};

std::vector<std::string> valuesIn(const Assignment& varied) {
  const char separator = varied.text.find(';') == std::string::npos ? ',' : ';';
  std::vector<std::string> values;
  std::size_t start = 0;
  while (start <= varied.text.size()) {
    const std::size_t end = std::min(varied.text.find(separator, start), varied.text.size());
    const std::string value = varied.text.substr(start, end - start);
    if (value.find_first_not_of(' ') == std::string::npos) {
      throw UserError("--vary '" + varied.name + "' has an empty value; it takes values such as 4,8,12");
    }
    const std::size_t first = value.find_first_not_of(' ');
    values.push_back(value.substr(first, value.find_last_not_of(' ') + 1 - first));
    start = end + 1;
  }
  return values;
}

/// Lays the picture over the paper by its alpha.
void place(const Image& picture, int32_t left, int32_t top, Image& sheet) {
  const auto mixed = [](A_u_char over, A_u_char under, A_u_char alpha) {
    return static_cast<A_u_char>((over * alpha + under * (255 - alpha) + 127) / 255);
  };
  for (int32_t y = 0; y < picture.height(); ++y) {
    for (int32_t x = 0; x < picture.width(); ++x) {
      const PF_Pixel& pixel = picture.at<PF_Pixel>(x, y);
      sheet.at<PF_Pixel>(left + x, top + y) = {255, mixed(pixel.red, paper.red, pixel.alpha),
                                               mixed(pixel.green, paper.green, pixel.alpha),
                                               mixed(pixel.blue, paper.blue, pixel.alpha)};
    }
  }
}

}  // namespace

std::vector<std::vector<Assignment>> variantsOf(const std::vector<Assignment>& varied) {
  std::vector<std::vector<Assignment>> variants(1);
  uint64_t count = 1;
  for (std::size_t i = 0; i < varied.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      if (equalIgnoringCase(varied[i].name, varied[j].name)) {
        throw UserError("'" + varied[i].name + "' is varied twice; all its values go into one --vary");
      }
    }
    const std::vector<std::string> values = valuesIn(varied[i]);
    count *= values.size();
    if (count > mostVariants) {
      throw UserError("the sheet would have " + std::to_string(count) + " pictures or more; at most " +
                      std::to_string(mostVariants) + " fit");
    }
    std::vector<std::vector<Assignment>> more;
    for (const auto& variant : variants) {
      for (const std::string& value : values) {
        more.push_back(variant);
        more.back().push_back({varied[i].name, value});
      }
    }
    variants = std::move(more);
  }
  return variants;
}

std::size_t columnsFor(const std::vector<std::vector<Assignment>>& variants, int32_t width, int32_t height) {
  if (!variants.empty() && variants.front().size() > 1) {
    const auto& first = variants.front();
    // The last control runs through its values while the others stand.
    std::size_t columns = 1;
    while (columns < variants.size() && variants[columns].front().text == first.front().text &&
           std::equal(first.begin(), first.end() - 1, variants[columns].begin(),
                      [](const Assignment& a, const Assignment& b) { return a.text == b.text; })) {
      ++columns;
    }
    return columns;
  }
  const double square = std::sqrt(static_cast<double>(variants.size()) * height / std::max(width, 1));
  return std::clamp<std::size_t>(static_cast<std::size_t>(std::ceil(square)), 1,
                                 std::max<std::size_t>(variants.size(), 1));
}

Image sheetOf(const std::vector<Image>& pictures, const std::vector<std::vector<std::string>>& labels,
              std::size_t columns) {
  const std::size_t rows = (pictures.size() + columns - 1) / columns;
  const auto lines = static_cast<int32_t>(labels.front().size());
  int32_t cellWidth = pictures.front().width();
  for (const auto& label : labels) {
    for (const std::string& line : label) cellWidth = std::max(cellWidth, labelWidth(line));
  }
  const int32_t pictureHeight = pictures.front().height();
  const int32_t cellHeight = pictureHeight + gap / 2 + lines * labelLineHeight;
  Image sheet(standin::Depth::k8, gap + static_cast<int32_t>(columns) * (cellWidth + gap),
              gap + static_cast<int32_t>(rows) * (cellHeight + gap));
  for (int32_t y = 0; y < sheet.height(); ++y) std::fill_n(sheet.row<PF_Pixel>(y), sheet.width(), paper);
  for (std::size_t i = 0; i < pictures.size(); ++i) {
    const int32_t left = gap + static_cast<int32_t>(i % columns) * (cellWidth + gap);
    const int32_t top = gap + static_cast<int32_t>(i / columns) * (cellHeight + gap);
    place(pictures[i], left, top, sheet);
    for (int32_t line = 0; line < lines; ++line) {
      drawLabel(sheet, left, top + pictureHeight + gap / 2 + line * labelLineHeight,
                labels[i][static_cast<std::size_t>(line)], ink);
    }
  }
  return sheet;
}

}  // namespace cli
