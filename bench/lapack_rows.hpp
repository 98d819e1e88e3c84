// A row of a LAPACK routine, by the words of its argument list.
#pragma once
#include "bench/argument_list.hpp"
#include "bench/rows.hpp"

namespace nxl::bench {

inline Routine lapack(const char* name, Work (*work)(const Case&), const char* arguments) {
    return {name, work, [list = ArgumentList(arguments)](Symbol symbol, Operands& operands, i64 calls) {
                list.call(symbol, operands, calls);
            }};
}

/// Work on n elements of `a`, each of them stored too when that is what is restored.
template <class T> Work work_on(double multiply_adds, double elements, int terms, const Layout& layout) {
    return work_in_elements<T>(multiply_adds, elements, layout.restored[0] != 0 ? elements : 0.0, terms, layout);
}

} // namespace nxl::bench
