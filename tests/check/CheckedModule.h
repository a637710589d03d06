// Runs the check on the small modules of these tests, with the host's program for the processes.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "check/Promise.h"
#include "check/Runner.h"

inline std::filesystem::path faultyModule(const std::string& name) {
  return std::filesystem::absolute(std::filesystem::path(FAULTY_FOLDER) / (name + FAULTY_SUFFIX));
}

inline std::vector<check::Result> checkModule(const std::string& module, std::vector<const check::Promise*> promises,
                                              check::Expectations expectations = {}, double timeFactor = 1) {
  check::RunSettings settings;
  settings.module = faultyModule(module);
  settings.promises = std::move(promises);
  settings.jobs = 2;
  settings.timeFactor = timeFactor;
  settings.repeatWith = "check it";
  settings.expectations = std::move(expectations);
  return check::runPromises(settings, HOST_PROGRAM);
}

inline check::Result checkOne(const std::string& module, const char* promise, check::Expectations expectations = {},
                              double timeFactor = 1) {
  return checkModule(module, {check::findPromise(promise)}, std::move(expectations), timeFactor).at(0);
}

inline std::vector<check::Result> checkAll(const std::string& module) {
  std::vector<const check::Promise*> all;
  for (const check::Subject& subject : check::subjects()) {
    for (const check::Promise& promise : subject.promises) all.push_back(&promise);
  }
  // Slow machines, sanitizers and Wine are no fault of the module.
  return checkModule(module, std::move(all), {}, 4);
}
