/// The stand-in host as a program: loads a module of any maker, lists its controls, renders raw frames.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace standin {

/// Runs one command; without one, or with "help", it tells which there are.
/// @param arguments  UTF-8, without the program's own name
/// @return 0; 1 with one line on err when something failed; 2 with one line for words that are no command
int runHostProgram(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);

}  // namespace standin
