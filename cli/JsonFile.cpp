#include "cli/JsonFile.h"

#include <nlohmann/json.hpp>
#include <set>
#include <vector>

#include "cli/ControlValue.h"
#include "cli/UserError.h"
#include "cli/files/FileBytes.h"

namespace cli {
namespace {

using nlohmann::json;

constexpr uint64_t mostBytes = 16'000'000;

/// "line 3, column 14" of the byte (counted from 1) at which reading failed.
std::string placeIn(const std::string& text, std::size_t byte) {
  std::size_t line = 1;
  std::size_t column = 1;
  for (std::size_t i = 0; i + 1 < byte && i < text.size(); ++i) {
    ++column;
    if (text[i] == '\n') {
      ++line;
      column = 1;
    }
  }
  return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

/// JSON takes the last of two equal keys without a word; somebody who wrote both meant something by each.
json parsedOnce(const std::string& content, const std::string& where) {
  std::vector<std::set<std::string>> keys;
  const auto watch = [&](int, json::parse_event_t event, json& value) {
    if (event == json::parse_event_t::object_start) keys.emplace_back();
    if (event == json::parse_event_t::object_end) keys.pop_back();
    if (event == json::parse_event_t::key && !keys.back().insert(value.get<std::string>()).second) {
      throw UserError(where + "'" + value.get<std::string>() + "' stands in it twice");
    }
    return true;
  };
  try {
    return json::parse(content, watch);
  } catch (const json::parse_error& error) {
    throw UserError(where + "no JSON at " + placeIn(content, error.byte));
  } catch (const json::exception&) {
    throw UserError(where + "a number in it is too large");
  }
}

}  // namespace

json readJson(const std::filesystem::path& file, const std::string& what) {
  const std::vector<uint8_t> bytes = readFile(file, what, mostBytes);
  return parsedOnce(std::string(bytes.begin(), bytes.end()), what + " '" + file.string() + "': ");
}

std::string valueText(const json& value, const std::string& name, const std::string& where) {
  if (value.is_string()) return value.get<std::string>();
  if (value.is_boolean()) return value.get<bool>() ? "on" : "off";
  if (value.is_number_integer()) return value.dump();  // which holds numbers beyond any type of ours, too
  if (value.is_number()) return shownNumber(value.get<double>());
  throw UserError(where + "'" + name + "' takes a number, a text, true or false, not " + value.type_name());
}

}  // namespace cli
