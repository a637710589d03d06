/// JSON files that people write.
#pragma once

#include <filesystem>
#include <nlohmann/json_fwd.hpp>
#include <string>

namespace cli {

/// Reads a file that must be JSON with no key twice in one object.
/// @param what  "preset", "animation": for messages, which begin with "preset 'p.json': "
/// @throws UserError naming the file and the place in it
nlohmann::json readJson(const std::filesystem::path& file, const std::string& what);

/// A control's value in the form that --set takes, from a number, a text, true or false.
/// @throws UserError  with `where` before it
std::string valueText(const nlohmann::json& value, const std::string& name, const std::string& where);

}  // namespace cli
