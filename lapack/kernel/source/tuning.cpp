// Block sizes and crossover points of LAPACK, from one source.
#include "lapack/kernel/source/tuning.hpp"

namespace nxl {

i64 ILAENV(const i64*, const char*, const char*, const i64*, const i64*, const i64*, const i64*, int, int) {
    return 64;
}

} // namespace nxl
