/// One promise being tried: what it may ask for, and where it tells what it saw.
///
/// Everything told goes to a file at once, so that it is known after a crash.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <string>

namespace check {

/// Ends a trial whose promise can't be tried with this module; what() is the reason.
struct Skipped : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// To be called while an exception of the module is being handled: "an exception left the module", with its text where
/// it has one.
std::string whatWasThrown();

class Trial {
 public:
  /// @param report  the file that gets lines; made new
  Trial(std::string module, uint64_t seed, const std::filesystem::path& report);
  ~Trial();
  Trial(const Trial&) = delete;
  Trial& operator=(const Trial&) = delete;

  const std::string& module() const { return module_; }  ///< its path
  uint64_t seed() const { return seed_; }

  /// What is done from now on, in words that go on behind "while": "drawing 3 x 1 pixels at 8 bits".
  void step(const std::string& what);
  const std::string& currentStep() const { return step_; }

  /// The promise isn't kept. Findings that differ in their numbers or their steps alone are told once, with their
  /// count.
  void finding(const std::string& seen) { tell("finding", seen); }
  /// Worth knowing, and no breach.
  void warning(const std::string& seen) { tell("warning", seen); }
  /// What was tried, for the report: "312 frames drawn".
  void note(const std::string& text) { write("note", text); }

  /// Ends the trial with nothing more to tell.
  void finished();
  void skipped(const std::string& reason);

 private:
  void tell(const char* kind, const std::string& seen);
  void write(const char* kind, const std::string& text);
  std::string module_;
  uint64_t seed_;
  std::FILE* file_;
  std::string step_;
  struct Told {
    std::string first;  ///< as it was written
    int32_t count = 0;
  };
  std::map<std::string, Told> told_;  ///< by text without its numbers
};

}  // namespace check
