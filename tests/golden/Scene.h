// A golden scene: a text that tells what to render, in panels that are laid out as one picture.
//
// scene.txt, one directive a line; "#" begins a comment, whose first line says what the eye should see:
//   input FILE                  the picture, from tests/golden/inputs
//   set NAME = VALUE            a control of every panel, as a person writes it
//   layer NAME = FILE           a side layer of every panel: a file of inputs/, "source" or "none"
//   columns N                   panels in a row
//   frame N FPS                 the time of every panel
//   float-tolerance T           largest difference of a float channel, with its reason in a comment; 0 when left out
//   panel NAME = VALUE; ...     one more panel, with controls, "layer NAME = FILE" or "downsample N" of its own
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace golden {

struct Setting {
  std::string name;
  std::string value;
};

struct Panel {
  std::string text;               ///< what sets it apart, as scene.txt has it
  std::vector<Setting> controls;  ///< the scene's own first, then the panel's
  std::vector<Setting> layers;
  int downsample = 1;
};

struct Scene {
  std::string name;  ///< the folder's
  std::string input;
  std::vector<Panel> panels;
  int columns = 1;
  int frame = 0;
  int framesPerSecond = 30;
  double floatTolerance = 0.0;
};

/// Throws std::runtime_error with file and line when the text is not a scene.
Scene readScene(const std::filesystem::path& folder);

/// All scenes below a folder, by name.
std::vector<Scene> readScenes(const std::filesystem::path& folder);

}  // namespace golden
