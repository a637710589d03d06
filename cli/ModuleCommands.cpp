#include <cstdlib>
#include <optional>
#include <system_error>

#include "cli/CommandTable.h"
#include "cli/Commands.h"
#include "cli/ControlTable.h"
#include "cli/EffectSession.h"
#include "cli/HostControls.h"
#include "cli/UserError.h"
#include "cli/presets/PresetStack.h"

namespace cli {
namespace {

standin::ParameterValues valuesFor(const EffectSession& session, const Arguments& arguments) {
  const PresetStack stack(arguments.presets, arguments.pathsOfPreset);
  return session.values(stack.scaled(arguments.scale, std::nullopt, session.controls()), arguments.sets,
                        arguments.layers, plainLayers(arguments.mostMemory));
}

/// Names the answer to the stand-in for the module's dialog while it lives.
class DialogAnswer {
 public:
  explicit DialogAnswer(const char* answer) { setenv(variable, answer, 1); }
  DialogAnswer(const DialogAnswer&) = delete;
  DialogAnswer& operator=(const DialogAnswer&) = delete;
  ~DialogAnswer() { unsetenv(variable); }

 private:
  static constexpr const char* variable = "VINDREL_DIALOG_ANSWER";
};

}  // namespace

void listControls(const Arguments& arguments, const Surroundings& surroundings) {
  EffectSession session(arguments.module, Defaults::stored);
  const bool withValues = !arguments.presets.empty() || !arguments.sets.empty() || !arguments.layers.empty();
  standin::ParameterValues values;
  std::vector<ControlFacts> controls = session.controls();
  if (withValues) {
    values = valuesFor(session, arguments);
    session.check(session.host().updateParamsUi(values), "while it was asked which controls to grey");
    controls = factsOf(session.host().controls());
  }
  if (arguments.describe) {
    describeControl(surroundings.out, findControl(controls, *arguments.describe));
    return;
  }
  const auto write = arguments.json ? writeControlJson : writeControlTable;
  write(surroundings.out, controls, withValues ? &values : nullptr);
}

void showAbout(const Arguments& arguments, const Surroundings& surroundings) {
  EffectSession session(arguments.module, Defaults::stored);
  std::string text = session.host().about();
  // The host's message box takes a carriage return for a line end; a terminal would write over the line.
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\r') continue;
    if (i + 1 < text.size() && text[i + 1] == '\n') {
      text.erase(i, 1);
    } else {
      text[i] = '\n';
    }
  }
  surroundings.out << text << '\n';
}

void answerOptions(const Arguments& arguments, const Surroundings& surroundings) {
  const bool save = arguments.optionsAction == OptionsAction::save;
  EffectSession session(arguments.module, Defaults::stored);
  const standin::ParameterValues values = valuesFor(session, arguments);
  PF_Err error = PF_Err_NONE;
  {
    const DialogAnswer answer(save ? "save" : "restore");
    error = session.host().doDialog(values);
  }
  session.check(error, "in its options dialog");

  // The module says nothing on whether it could write, so its file is looked at.
  const std::filesystem::path settings = std::filesystem::path(arguments.module).replace_extension("ini");
  std::error_code ignored;
  const bool exists = std::filesystem::exists(settings, ignored);
  if (exists != save) {
    throw EffectError(std::string("the module could not ") + (save ? "write" : "remove") + " '" + settings.string() +
                      "'");
  }
  surroundings.out << (save ? "Saved as values of new instances in " : "Forgot what was saved in ") << settings.string()
                   << '\n';
}

void printCompletion(const Arguments& arguments, const Surroundings& surroundings) {
  const EffectSession session(arguments.module, Defaults::builtIn);
  surroundings.out << completionFor(arguments.shell, session.controls());
}

void printManPage(const Arguments& arguments, const Surroundings& surroundings) {
  const EffectSession session(arguments.module, Defaults::builtIn);
  surroundings.out << manPage(session.controls());
}

}  // namespace cli
