#include "frei0r/Effect.h"

#include <dlfcn.h>

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <system_error>

#include "cli/UserError.h"

namespace video {
namespace {

namespace fs = std::filesystem;

fs::path ownFile() {
  static const int place = 0;  // lies in this library
  Dl_info facts{};
  return dladdr(&place, &facts) != 0 && facts.dli_fname != nullptr ? fs::path(facts.dli_fname) : fs::path();
}

fs::path moduleFile() {
  const char* const named = std::getenv("VINDREL_MODULE");
  if (named != nullptr && *named != '\0') return named;
  const fs::path library = ownFile();
  fs::path beside = library.parent_path() / "Vindrel.so";
  std::error_code ignored;
  if (fs::exists(beside, ignored)) return beside;
  fs::path behindLinks = fs::canonical(library, ignored).parent_path() / "Vindrel.so";
  if (fs::exists(behindLinks, ignored)) return behindLinks;
  throw cli::UserError("no module '" + beside.string() + "'; the variable VINDREL_MODULE names another one");
}

std::mutex sharedMutex;
std::shared_ptr<Effect> shared;
bool toldTrouble = false;

}  // namespace

Effect::Effect() : session(moduleFile(), cli::Defaults::builtIn), parameters(parametersOf(session.controls())) {}

std::shared_ptr<Effect> sharedEffect() {
  const std::scoped_lock lock(sharedMutex);
  if (shared != nullptr) return shared;
  try {
    shared = std::make_shared<Effect>();
  } catch (const std::exception& error) {
    // Programs ask for one thing after another, whether there is an effect or not.
    if (!toldTrouble) complain(error.what());
    toldTrouble = true;
  }
  return shared;
}

void dropSharedEffect() {
  const std::scoped_lock lock(sharedMutex);
  shared.reset();
}

void complain(const std::string& text) {
  std::cerr << "vindrel: " + text + "\n" << std::flush;
}

}  // namespace video
