#include "hosts/console/Program.h"

int main(int argc, char** argv) {
  return hosts::console::RunProgram(argc, argv);
}
