#include "bench/routines.hpp"
#include <algorithm>
#include <stdexcept>

namespace nxl::bench {

const Routine& routine(const std::string& name) {
    for (const auto* rows : {&level1_routines(), &level2_routines(), &level3_routines(), &factor_routines(),
                             &lapack_routines(), &eigen_routines(), &nonsymmetric_routines(), &primitive_routines()})
        if (const auto found = std::ranges::find(*rows, name, &Routine::name); found != rows->end()) return *found;
    throw std::runtime_error("no routine is called " + name);
}

} // namespace nxl::bench
