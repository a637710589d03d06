/// What is promised of an effect module, and the list of all of it.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace check {

class Trial;

/// What a broken promise is to the module.
enum class Weight {
  kMust,   ///< a failure: hosts or users are harmed
  kShould  ///< a warning: it may be meant so
};

struct Promise {
  std::string_view name;  ///< kebab-case; never changed, since lists and scripts know it
  std::string_view sentence;
  Weight weight = Weight::kMust;
  double seconds = 0;  ///< the time limit of its process
  /// Tries it, in a process of its own.
  void (*run)(Trial&) = nullptr;
};

/// Promises about one thing.
struct Subject {
  std::string_view title;
  std::span<const Promise> promises;
};

/// All subjects in the order in which they are told.
const std::vector<Subject>& subjects();

/// Null when there is none of this name.
const Promise* findPromise(std::string_view name);

/// The time limit of a promise that says nothing else; seconds.
inline constexpr double kUsualSeconds = 60;

}  // namespace check
