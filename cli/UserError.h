/// The two ways in which a command ends badly.
///
/// Both carry one line without a full stop or line end; run() puts "vindrel: " before it and writes it to the
/// error stream. Neither leaves an output file behind.
#pragma once

#include <stdexcept>
#include <string>

namespace cli {

/// What was asked can't be done: a wrong name, value, file or option. Exit code 2.
class UserError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The effect or its module answered with an error. Exit code 1.
class EffectError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace cli
