#include "hosts/panel/Program.h"

int main(int argc, char** argv) {
  return hosts::panel::RunProgram(argc, argv);
}
