// The configuration of out-of-core work: defaults, the environment, one text file.
#pragma once
#include "solvers_ds/kernel/default/pardiso/handle.hpp"

namespace nxl::pardiso {

/// Stem, memory limit and keep-file flag, from the environment and from pardiso_ooc.cfg. A variable goes before a line
/// of the file, which is not read where the variables give all three.
void read_ooc_configuration(const OocContext& ooc, bool messages);

/// Takes a line of the file: "key = value", and a comment from the first "#" on. Values that variables gave stay.
struct GivenByVariable {
    bool stem, max_core, keep_file;
    bool all() const { return stem && max_core && keep_file; }
};
void take_configuration_line(const OocContext& ooc, const char* line, const GivenByVariable& given);

} // namespace nxl::pardiso
