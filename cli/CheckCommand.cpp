#include "check/CheckCommand.h"

#include "cli/Commands.h"
#include "cli/UserError.h"

namespace cli {

int checkPromises(const Arguments& arguments, const Surroundings& surroundings) {
  try {
    check::CheckWords words = check::readCheckWords(arguments.checkWords);
    words.module = arguments.module;
    return check::runCheck(words, surroundings.programFolder / "vindrel", "vindrel check", surroundings.out);
  } catch (const check::BadInput& error) {
    throw UserError(error.what());
  }
}

}  // namespace cli
