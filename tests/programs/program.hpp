// Runs nxl-solve as a user does.
#pragma once

#include "run_program.hpp"

namespace solve_test {

using program_test::number_after;
using program_test::Outcome;

class Program : public program_test::Program {
  protected:
    Program() : program_test::Program(NXL_SOLVE_PROGRAM) {}
};

} // namespace solve_test
