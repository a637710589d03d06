#include "check/Trial.h"

#include <algorithm>
#include <cctype>
#include <exception>

namespace check {

namespace {

std::string withoutNumbers(const std::string& text) {
  std::string plain;
  for (const char letter : text) {
    const bool digit = std::isdigit(static_cast<unsigned char>(letter)) != 0;
    if (!digit) {
      plain += letter;
    } else if (plain.empty() || plain.back() != '#') {
      plain += '#';
    }
  }
  return plain;
}

}  // namespace

std::string whatWasThrown() {
  try {
    throw;
  } catch (const std::exception& thrown) {
    return std::string("an exception left the module: ") + thrown.what();
  } catch (...) {
    return "an exception left the module";
  }
}

Trial::Trial(std::string module, uint64_t seed, const std::filesystem::path& report)
    : module_(std::move(module)), seed_(seed), file_(std::fopen(report.string().c_str(), "wb")) {
  if (file_ == nullptr) throw std::runtime_error("can't write " + report.string());
}

Trial::~Trial() {
  std::fclose(file_);
}

void Trial::write(const char* kind, const std::string& text) {
  std::string line = text;
  std::replace_if(
      line.begin(), line.end(), [](char letter) { return static_cast<unsigned char>(letter) < ' '; }, ' ');
  std::fprintf(file_, "%s %s\n", kind, line.c_str());
  std::fflush(file_);
}

void Trial::step(const std::string& what) {
  if (what == step_) return;
  step_ = what;
  write("step", what);
}

void Trial::tell(const char* kind, const std::string& seen) {
  Told& told = told_[withoutNumbers(kind + seen)];
  if (++told.count > 1) return;
  told.first = step_.empty() ? seen : "while " + step_ + ": " + seen;
  write(kind, told.first);
}

void Trial::finished() {
  for (const auto& [plain, told] : told_) {
    if (told.count > 1) write("count", std::to_string(told.count) + " " + told.first);
  }
  write("done", "");
}

void Trial::skipped(const std::string& reason) {
  write("skip", reason);
  write("done", "");
}

}  // namespace check
