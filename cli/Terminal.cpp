#include "cli/Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace cli {
namespace {

std::string_view variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

}  // namespace

Terminal terminalOf(int stream) {
  Terminal terminal;
  terminal.present = isatty(stream) != 0;
  const std::string_view kind = variable("TERM");
  terminal.plain = kind.empty() || kind == "dumb";
  terminal.color = !terminal.plain && variable("NO_COLOR").empty();
  terminal.columns = [stream] {
    winsize size{};
    // A terminal that doesn't know its size says 0.
    return ioctl(stream, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? int32_t{size.ws_col} : 80;
  };
  return terminal;
}

}  // namespace cli
