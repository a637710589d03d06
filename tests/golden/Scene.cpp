#include "tests/golden/Scene.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace golden {
namespace {

std::string trimmed(const std::string& text) {
  const auto first = text.find_first_not_of(" \t\r");
  if (first == std::string::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

/// "word rest of the line"
std::pair<std::string, std::string> splitFirstWord(const std::string& line) {
  const auto blank = line.find(' ');
  return blank == std::string::npos ? std::pair{line, std::string{}}
                                    : std::pair{line.substr(0, blank), trimmed(line.substr(blank))};
}

Setting assignment(const std::string& text) {
  const auto equals = text.find('=');
  if (equals == std::string::npos) {
    throw std::runtime_error("'" + text + "' is not NAME = VALUE");
  }
  return {trimmed(text.substr(0, equals)), trimmed(text.substr(equals + 1))};
}

/// Later settings of the same name take the place of earlier ones.
void put(std::vector<Setting>& settings, Setting setting) {
  const auto same =
      std::find_if(settings.begin(), settings.end(), [&](const Setting& other) { return other.name == setting.name; });
  if (same == settings.end()) {
    settings.push_back(std::move(setting));
  } else {
    same->value = std::move(setting.value);
  }
}

Panel readPanel(const std::string& text, Panel panel) {
  panel.text = text;
  std::istringstream parts(text);
  for (std::string part; std::getline(parts, part, ';');) {
    const auto [word, rest] = splitFirstWord(trimmed(part));
    if (word == "layer") {
      put(panel.layers, assignment(rest));
    } else if (word == "downsample") {
      panel.downsample = std::stoi(rest);
    } else {
      put(panel.controls, assignment(part));
    }
  }
  return panel;
}

}  // namespace

Scene readScene(const std::filesystem::path& folder) {
  const auto file = folder / "scene.txt";
  std::ifstream lines(file);
  if (!lines) {
    throw std::runtime_error(file.string() + ": cannot be read");
  }
  Scene scene;
  scene.name = folder.filename().string();
  Panel common;
  std::vector<std::string> panels;
  int number = 0;
  for (std::string line; std::getline(lines, line);) {
    ++number;
    line = trimmed(line);
    if (line.empty() || line.front() == '#') {
      continue;
    }
    try {
      const auto [word, rest] = splitFirstWord(line);
      if (word == "input") {
        scene.input = rest;
      } else if (word == "set") {
        put(common.controls, assignment(rest));
      } else if (word == "layer") {
        put(common.layers, assignment(rest));
      } else if (word == "columns") {
        scene.columns = std::stoi(rest);
      } else if (word == "frame") {
        std::istringstream(rest) >> scene.frame >> scene.framesPerSecond;
      } else if (word == "float-tolerance") {
        scene.floatTolerance = std::stod(rest);
      } else if (word == "panel") {
        panels.push_back(rest);
      } else {
        throw std::runtime_error("there is no directive '" + word + "'");
      }
    } catch (const std::exception& error) {
      throw std::runtime_error(file.string() + ":" + std::to_string(number) + ": " + error.what());
    }
  }
  for (const std::string& panel : panels) {
    scene.panels.push_back(readPanel(panel, common));
  }
  if (scene.input.empty() || scene.panels.empty() || scene.columns < 1) {
    throw std::runtime_error(file.string() + ": a scene needs an input and a panel at least");
  }
  return scene;
}

std::vector<Scene> readScenes(const std::filesystem::path& folder) {
  std::vector<Scene> scenes;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.is_directory()) {
      scenes.push_back(readScene(entry.path()));
    }
  }
  std::sort(scenes.begin(), scenes.end(), [](const Scene& a, const Scene& b) { return a.name < b.name; });
  return scenes;
}

}  // namespace golden
