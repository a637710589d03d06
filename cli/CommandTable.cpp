#include "cli/CommandTable.h"

#include "cli/CommandWords.h"

namespace cli {
namespace {

/// Choices stand in the help as "8|16|32".
std::vector<std::string> choicesIn(const std::string& shown) {
  std::vector<std::string> choices;
  std::size_t begin = 0;
  for (std::size_t bar = 0; (bar = shown.find('|', begin)) != std::string::npos; begin = bar + 1) {
    choices.push_back(shown.substr(begin, bar - begin));
  }
  if (!choices.empty()) choices.push_back(shown.substr(begin));
  return choices;
}

Word wordOf(const OptionFacts& option) {
  if (option.name == "--set") return Word::set;
  if (option.name == "--layer") return Word::layer;
  if (option.name == "--describe") return Word::control;
  if (!option.choices.empty()) return Word::oneOf;
  if (option.shown.starts_with("FILE")) return Word::file;
  return option.shown.empty() ? Word::none : Word::any;
}

OptionFacts factsOf(const CLI::Option& option) {
  OptionFacts facts;
  facts.help = option.get_description();
  if (option.get_positional()) {
    facts.name = option.get_name(true);
    // Pictures stand in files, but for the names of commands and shells.
    facts.shown = option.get_type_name();
    facts.choices = choicesIn(facts.shown);
    facts.word = facts.choices.empty() ? Word::file : Word::oneOf;
    return facts;
  }
  facts.name = "--" + option.get_lnames().front();
  if (option.get_items_expected_max() > 0) facts.shown = option.get_type_name();
  facts.choices = choicesIn(facts.shown);
  facts.word = wordOf(facts);
  return facts;
}

}  // namespace

std::vector<CommandFacts> commandTable() {
  CLI::App app;
  Words words;
  declareCommands(app, words);
  std::vector<CommandFacts> table;
  for (const CLI::App* command : app.get_subcommands({})) {
    CommandFacts facts{command->get_name(), command->get_description(), {}, {}};
    for (const CLI::Option* option : command->get_options()) {
      (option->get_positional() ? facts.places : facts.options).push_back(factsOf(*option));
    }
    table.push_back(std::move(facts));
  }
  return table;
}

}  // namespace cli
