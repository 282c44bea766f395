#include <iostream>

#include "platform/program.h"
#include "render/run.h"

int main(int argc, char** argv) {
  return marklet::RunMarkletRender(marklet::ProgramArguments(argc, argv), std::cout, std::cerr);
}
