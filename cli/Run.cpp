#include "cli/Run.h"

#include <exception>
#include <new>

#include "cli/Arguments.h"
#include "cli/Commands.h"
#include "cli/UserError.h"
#include "cli/presets/LookFiles.h"

namespace cli {
namespace {

int dispatch(Arguments arguments, const Surroundings& surroundings) {
  if (arguments.module.empty()) arguments.module = surroundings.programFolder / "Vindrel.so";
  for (std::filesystem::path& preset : arguments.presets) {
    preset = findLook(preset.string(), surroundings, presetFiles);
  }
  arguments.programFolder = surroundings.programFolder;
  switch (arguments.command) {
    case Command::render:
      return render(arguments, surroundings);
    case Command::sheet:
      drawSheet(arguments, surroundings);
      break;
    case Command::controls:
      listControls(arguments, surroundings);
      break;
    case Command::about:
      showAbout(arguments, surroundings);
      break;
    case Command::options:
      answerOptions(arguments, surroundings);
      break;
    case Command::check:
      return checkPromises(arguments, surroundings);
    case Command::screens:
      printScreens(arguments, surroundings);
      break;
    case Command::presets:
      usePresets(arguments, surroundings);
      break;
    case Command::completion:
      printCompletion(arguments, surroundings);
      break;
    case Command::man:
      printManPage(arguments, surroundings);
      break;
    case Command::showText:
      surroundings.out << arguments.text;
      break;
  }
  return exitDone;
}

int complain(const Surroundings& surroundings, const char* text, int exitCode) {
  surroundings.err << "vindrel: " << text << '\n';
  return exitCode;
}

}  // namespace

int run(const std::vector<std::string>& words, const Surroundings& surroundings) {
  try {
    const int exitCode = dispatch(parseArguments(words), surroundings);
    surroundings.out.flush();
    if (!surroundings.out) throw UserError("can't write the results");
    return exitCode;
  } catch (const UserError& error) {
    return complain(surroundings, error.what(), exitWrongUse);
  } catch (const EffectError& error) {
    return complain(surroundings, error.what(), exitEffectFailed);
  } catch (const std::bad_alloc&) {
    return complain(surroundings, "out of memory", exitEffectFailed);
  } catch (const std::exception& error) {
    return complain(surroundings, error.what(), exitEffectFailed);
  }
}

}  // namespace cli
