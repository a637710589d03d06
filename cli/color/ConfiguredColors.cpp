// Color configurations by OpenColorIO, as a part of its own beside the program.

#include "cli/color/ConfiguredColors.h"

#include <OpenColorIO/OpenColorIO.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace ocio = OCIO_NAMESPACE;

namespace {

class ConfiguredConversion final : public cli::ColorConversion {
 public:
  explicit ConfiguredConversion(ocio::ConstCPUProcessorRcPtr processor) : processor_(std::move(processor)) {}

  void apply(PF_PixelFloat* pixels, int32_t count) const override {
    if (count < 1) return;
    // The alpha before each red is stepped over.
    ocio::PackedImageDesc picture(&pixels->red, count, 1, ocio::CHANNEL_ORDERING_RGB, ocio::BIT_DEPTH_F32,
                                  sizeof pixels->red, sizeof(PF_PixelFloat),
                                  static_cast<ptrdiff_t>(sizeof(PF_PixelFloat)) * count);
    processor_->apply(picture);
  }

 private:
  ocio::ConstCPUProcessorRcPtr processor_;
};

}  // namespace

extern "C" [[gnu::visibility("default")]] cli::ColorConversion* vindrelMakeConfiguredColors(const char* from,
                                                                                            const char* to,
                                                                                            char* complaint,
                                                                                            std::size_t size) {
  std::string text;
  try {
    // What the library has to say comes by its exceptions; it also likes to print.
    ocio::SetLoggingLevel(ocio::LOGGING_LEVEL_NONE);
    const ocio::ConstConfigRcPtr configuration = ocio::Config::CreateFromEnv();
    for (const char* name : {from, to}) {
      if (configuration->getColorSpace(name) == nullptr) {
        text = std::string("no colour space or role '") + name + "' in the configuration '" + std::getenv("OCIO") + "'";
        std::snprintf(complaint, size, "%s", text.c_str());
        return nullptr;
      }
    }
    return new ConfiguredConversion(configuration->getProcessor(from, to)->getDefaultCPUProcessor());
  } catch (const std::exception& error) {
    text = std::string("can't use the colour configuration '") + std::getenv("OCIO") + "': " + error.what();
  }
  std::replace(text.begin(), text.end(), '\n', ' ');
  std::snprintf(complaint, size, "%s", text.c_str());
  return nullptr;
}
