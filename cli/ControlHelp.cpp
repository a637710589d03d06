#include "cli/ControlHelp.h"

#include <map>
#include <nlohmann/json.hpp>

#include "cli/ControlHelpText.h"

namespace cli {
namespace {

using Texts = std::map<std::string, ControlHelp, std::less<>>;

Texts readTexts() {
  Texts texts;
  const nlohmann::json file = nlohmann::json::parse(controlHelpText);
  for (const nlohmann::json& entry : file.at("controls")) {
    texts[entry.at("name")] = {entry.at("help"), entry.value("more", "")};
  }
  return texts;
}

/// The name with the number of an effector at its end as the texts have it: "Size 2" and "Effector2" as "Size #" and
/// "Effector #".
std::string withoutNumber(std::string_view name) {
  if (name.empty() || name.back() < '1' || name.back() > '3') return std::string(name);
  name.remove_suffix(1);
  if (name.ends_with(' ')) name.remove_suffix(1);
  return std::string(name) + " #";
}

}  // namespace

std::optional<ControlHelp> helpOf(std::string_view controlName) {
  static const Texts texts = readTexts();
  const auto found = texts.find(withoutNumber(controlName));
  if (found == texts.end()) return std::nullopt;
  return found->second;
}

}  // namespace cli
