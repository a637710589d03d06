#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <system_error>
#include <variant>
#include <vector>

#include "cli/CommandTable.h"
#include "cli/Commands.h"
#include "cli/ControlTable.h"
#include "cli/EffectSession.h"
#include "cli/HostControls.h"
#include "cli/UserError.h"
#include "cli/files/FileBytes.h"
#include "cli/files/Interrupts.h"
#include "cli/files/PutFile.h"
#include "cli/files/SettingsFile.h"
#include "cli/presets/PresetStack.h"

namespace cli {
namespace {

namespace fs = std::filesystem;

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

void answerDialog(EffectSession& session, const char* answer, const standin::ParameterValues& values) {
  PF_Err error = PF_Err_NONE;
  {
    const DialogAnswer given(answer);
    error = session.host().doDialog(values);
  }
  session.check(error, "in its options dialog");
}

/// A folder of our own for as long as it lives.
class PassingFolder {
 public:
  PassingFolder() {
    std::error_code error;
    const fs::path passing = fs::temp_directory_path(error);
    if (error) throw UserError("there is no folder for passing files; TMPDIR must name one");
    std::string name = (passing / "vindrel-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
      throw UserError("can't make the folder " + quoted(fs::path(name)) + ": " +
                      std::generic_category().message(errno));
    }
    path_ = name;
  }
  PassingFolder(const PassingFolder&) = delete;
  PassingFolder& operator=(const PassingFolder&) = delete;
  ~PassingFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }

  fs::path operator/(const char* name) const { return path_ / name; }

 private:
  fs::path path_;
};

/// True when a new instance begins with these values, but for places and layers, which mean something only in a
/// project. Numbers are stored with six decimals.
bool beginsWith(const standin::ParameterValues& begun, const standin::ParameterValues& values) {
  for (int32_t index = 1; index <= values.size(); ++index) {
    const auto& wanted = values.value(index);
    const auto& got = begun.value(index);
    if (const auto* number = std::get_if<double>(&wanted)) {
      const auto* other = std::get_if<double>(&got);
      // An angle is rounded to 65536ths of a degree once more.
      if (other == nullptr || std::abs(*other - *number) > 3e-5) return false;
    } else if (const auto* color = std::get_if<PF_Pixel>(&wanted)) {
      const auto* other = std::get_if<PF_Pixel>(&got);
      if (other == nullptr || color->red != other->red || color->green != other->green || color->blue != other->blue) {
        return false;
      }
    } else if (const auto* whole = std::get_if<int32_t>(&wanted)) {
      const auto* other = std::get_if<int32_t>(&got);
      if (other == nullptr || *other != *whole) return false;
    }
  }
  return true;
}

/// The module writes its file value by value and says nothing on whether it could. So it does that in a folder of its
/// own, is asked there for what a new instance begins with, and only then the file is put in its place, whole.
void saveSettings(const Arguments& arguments, const fs::path& settings) {
  checkPlace(settings);
  // One life of the module after the other: what is loaded twice is loaded once, with one set of its variables.
  const standin::ParameterValues values = valuesFor(EffectSession(arguments.module, Defaults::stored), arguments);

  const SettingsLock lock(settings, SettingsLock::Way::write);
  std::vector<uint8_t> content;
  {
    const HeldInterrupts held;
    const PassingFolder folder;
    const fs::path place = folder / "Module.so";
    const fs::path written = settingsFileOf(place);
    std::error_code ignored;
    // Other versions of the module have sections of their own in it.
    if (fs::exists(settings, ignored)) putFile(written, readFile(settings, "settings file", mostSettings));
    {
      EffectSession saving(arguments.module, place);
      answerDialog(saving, "save", values);
      if (fs::exists(written, ignored)) content = readFile(written, "settings file", mostSettings);
      // What was left out once comes with the second time, or is the value that is there anyway.
      answerDialog(saving, "save", values);
    }
    if (content.empty() || readFile(written, "settings file", mostSettings) != content ||
        !beginsWith(EffectSession(arguments.module, place).host().defaults(), values)) {
      throw EffectError("the module could not write all of its settings");
    }
  }
  putFile(settings, content);
}

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
  const fs::path settings = settingsFileOf(arguments.module);
  if (arguments.optionsAction == OptionsAction::save) {
    saveSettings(arguments, settings);
    surroundings.out << "Saved as values of new instances in " << settings.string() << '\n';
    return;
  }
  EffectSession session(arguments.module, Defaults::stored);
  const SettingsLock lock(settings, SettingsLock::Way::write);
  answerDialog(session, "restore", session.host().defaults());
  // The module says nothing on whether it could remove its file.
  std::error_code ignored;
  if (fs::exists(settings, ignored)) throw EffectError("the module could not remove " + quoted(settings));
  surroundings.out << "Forgot what was saved in " << settings.string() << '\n';
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
