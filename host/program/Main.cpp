#include <iostream>

#include "host/program/HostProgram.h"

int main(int count, char** words) {
  return standin::runHostProgram({words + 1, words + count}, std::cout, std::cerr);
}
