#include "cli/Keyframes.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <nlohmann/json.hpp>

#include "cli/JsonFile.h"
#include "cli/NearestName.h"
#include "cli/UserError.h"
#include "cli/files/FileBytes.h"

namespace cli {
namespace {

using nlohmann::json;

constexpr uint64_t mostTableBytes = 64'000'000;

double numberOf(const json& value, const std::string& name, const std::string& where) {
  if (!value.is_number() || !std::isfinite(value.get<double>()))
    throw UserError(where + "'" + name + "' takes a number");
  return value.get<double>();
}

Ease easeOf(const json& value, const std::string& side, const std::string& where) {
  Ease ease;
  if (value == "linear") return ease;
  if (value == "hold" && side == "out") {
    ease.kind = Ease::Kind::hold;
    return ease;
  }
  if (!value.is_object()) {
    throw UserError(where + "'" + side + "' takes \"linear\", " + (side == "out" ? "\"hold\", " : "") +
                    "or an influence and a speed in braces");
  }
  ease.kind = Ease::Kind::bezier;
  for (const auto& [key, number] : value.items()) {
    if (key == "influence") {
      ease.influence = numberOf(number, key, where);
      if (ease.influence <= 0.0 || ease.influence > 100.0) {
        throw UserError(where + "'influence' takes percent above 0, up to 100");
      }
    } else if (key == "speed") {
      ease.speed = numberOf(number, key, where);
    } else {
      throw UserError(where + "'" + side + "' has no '" + key + "'; it may have influence and speed");
    }
  }
  return ease;
}

KeyText keyOf(const json& value, const std::string& where) {
  if (!value.is_object()) throw UserError(where + "a key takes a frame or a second, and a value, in braces");
  KeyText key;
  int times = 0;
  bool hasValue = false;
  for (const auto& [name, part] : value.items()) {
    if (name == "frame" || name == "second") {
      key.at = numberOf(part, name, where);
      key.inSeconds = name == "second";
      ++times;
    } else if (name == "value") {
      key.value = valueText(part, name, where);
      hasValue = true;
    } else if (name == "in") {
      key.in = easeOf(part, name, where);
    } else if (name == "out") {
      key.out = easeOf(part, name, where);
    } else {
      throw UserError(where + "a key has no '" + name + "'" +
                      suggestion(name, {"frame", "second", "value", "in", "out"},
                                 "; it may have frame or second, value, in and out"));
    }
  }
  if (times != 1 || !hasValue) throw UserError(where + "a key takes either a frame or a second, and a value");
  return key;
}

/// The fields of a line of a table. A quote within quotes is doubled.
std::vector<std::string> fieldsOf(const std::string& line, const std::string& where) {
  std::vector<std::string> fields(1);
  bool quoted = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '"' && quoted && i + 1 < line.size() && line[i + 1] == '"') {
      fields.back() += line[i++];
    } else if (line[i] == '"') {
      quoted = !quoted;
    } else if (line[i] == ',' && !quoted) {
      fields.emplace_back();
    } else if (line[i] != '\r') {
      fields.back() += line[i];
    }
  }
  if (quoted) throw UserError(where + "a quote isn't closed");
  return fields;
}

}  // namespace

std::vector<TrackText> tracksFrom(const json& part, const std::string& where) {
  if (!part.is_object()) throw UserError(where + "'animation' takes names with keys in braces");
  std::vector<TrackText> tracks;
  for (const auto& [name, keys] : part.items()) {
    const std::string there = where + "'" + name + "': ";
    if (!keys.is_array() || keys.empty()) throw UserError(there + "it takes one key or more in brackets");
    TrackText track{name, {}};
    for (const json& key : keys) track.keys.push_back(keyOf(key, there));
    tracks.push_back(std::move(track));
  }
  return tracks;
}

std::vector<TrackText> readAnimation(const std::string& file) {
  const std::string where = "animation '" + file + "': ";
  const json whole = readJson(file, "animation");
  if (!whole.is_object()) throw UserError(where + "it must be an object with 'animation'");
  std::vector<TrackText> tracks;
  for (const auto& [key, value] : whole.items()) {
    if (key == "about") continue;
    if (key != "animation") {
      throw UserError(where + "no key '" + key + "'" +
                      suggestion(key, {"about", "animation"}, "; it may have about and animation"));
    }
    tracks = tracksFrom(value, where);
  }
  return tracks;
}

std::vector<TrackText> readValueTable(const std::string& file) {
  const std::vector<uint8_t> bytes = readFile(file, "table", mostTableBytes);
  const std::string text(bytes.begin(), bytes.end());
  std::vector<TrackText> tracks;
  std::size_t lineNumber = 0;
  std::size_t start = 0;
  while (start < text.size()) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    const std::string where = "table '" + file + "', line " + std::to_string(++lineNumber) + ": ";
    const std::vector<std::string> fields = fieldsOf(text.substr(start, end - start), where);
    start = end + 1;
    if (fields.size() == 1 && fields[0].empty()) continue;
    if (tracks.empty()) {
      if (fields[0] != "frame" || fields.size() < 2) {
        throw UserError(where + "the first line takes 'frame' and names of controls");
      }
      for (std::size_t i = 1; i < fields.size(); ++i) tracks.push_back({fields[i], {}});
      continue;
    }
    if (fields.size() != tracks.size() + 1) {
      throw UserError(where + "it has " + std::to_string(fields.size()) + (fields.size() == 1 ? " field" : " fields") +
                      ", and the first line " + std::to_string(tracks.size() + 1));
    }
    KeyText key;
    const char* const numberEnd = fields[0].data() + fields[0].size();
    const auto [stop, error] = std::from_chars(fields[0].data(), numberEnd, key.at);
    if (error != std::errc() || stop != numberEnd || !std::isfinite(key.at)) {
      throw UserError(where + "'" + fields[0] + "' is no frame");
    }
    key.out.kind = Ease::Kind::hold;
    for (std::size_t i = 1; i < fields.size(); ++i) {
      key.value = fields[i];
      tracks[i - 1].keys.push_back(key);
    }
  }
  if (tracks.empty() || tracks[0].keys.empty()) throw UserError("table '" + file + "' has no values");
  return tracks;
}

}  // namespace cli
