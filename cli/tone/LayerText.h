/// What a layer control is given: a picture, and how it is prepared on the way to the effect.
///
///     source                                   the picture that is rendered, as it is
///     source:blur=pitch,tone=area              averaged over a dot's cell, and so that covered area follows tone
///     map.png:fit=cover,blur=12
#pragma once

#include <string>
#include <vector>

#include "cli/tone/Preparation.h"

namespace cli {

/// "Dot Size" = "14": a name and what it is given, neither checked yet.
struct Assignment {
  std::string name;
  std::string text;
};

struct LayerText {
  std::string name;
  std::string picture;  ///< "source", "none" or a file
  Preparation preparation;
};

/// The keys that a preparation may have.
const std::vector<std::string>& preparationKeys();

/// Sets one key, as in "blur" and "pitch".
/// @throws UserError for an unknown key or value, naming the nearest
void prepare(const std::string& key, const std::string& value, Preparation& preparation);

/// What stands behind the keys, for the keys that don't say none: {"blur", "pitch"}.
std::vector<Assignment> preparationTexts(const Preparation& preparation);

/// Splits what --layer gives a layer at the last ':' that has keys behind it. The whole is a picture if there is a file
/// of that name.
/// @throws UserError for a wrong preparation
LayerText layerText(const Assignment& assignment);

}  // namespace cli
