// The check of a matrix's pattern that iparam(27) asks for.
#include "solvers_ds/kernel/default/pardiso/checks.hpp"
#include "solvers_ds/kernel/default/pardiso/matrix_type.hpp"

namespace nxl::pardiso {
namespace {

/// The last place of each fault, and the lowest code among them.
class Findings {
    struct Place {
        i32 index, first, second;
    };
    Place places_[4] = {};
    bool found_[4] = {};

  public:
    void record(i32 code, i32 index, i32 first, i32 second) {
        places_[code - inner::row_pointers] = {index, first, second};
        found_[code - inner::row_pointers] = true;
    }
    i32 report(Parameters iparam) const {
        for (int fault = 0; fault < 4; ++fault) {
            if (!found_[fault]) continue;
            iparam[Iparam::fault_place] = places_[fault].index;
            iparam[Iparam::fault_first] = places_[fault].first;
            iparam[Iparam::fault_second] = places_[fault].second;
            return inner::row_pointers + fault;
        }
        return 0;
    }
};

void check_row_pointers(const Call& call, Findings& findings) {
    const i32* ia = call.ia;
    if (ia[0] != 1) findings.record(inner::row_pointers, 1, ia[0], ia[1]);
    for (i32 i = 1; i <= call.neqns; ++i)
        if (ia[i] <= ia[i - 1]) findings.record(inner::row_pointers, i, ia[i - 1], ia[i]);
}

/// Only where the row pointers are in order: they say what there is of ja.
void check_columns(const Call& call, Findings& findings) {
    const i32 *ia = call.ia, *ja = call.ja;
    const bool triangle = stores_triangle(call.mtype);
    for (i32 i = 1; i <= call.neqns; ++i) {
        const i32 first = ia[i - 1], last = ia[i] - 1;
        if (triangle && ja[first - 1] < i) findings.record(inner::below_diagonal, i, first, ja[first - 1]);
        for (i32 j = first; j <= last; ++j) {
            const i32 column = ja[j - 1];
            if (column < 1 || column > call.neqns) findings.record(inner::column_range, j, column, call.neqns);
            if (j < last && column >= ja[j]) findings.record(inner::column_order, j, column, ja[j]);
        }
    }
}

} // namespace

i32 check_csr(const Call& call) {
    Findings findings;
    check_row_pointers(call, findings);
    if (const i32 code = findings.report(call.iparam)) return code;
    check_columns(call, findings);
    return findings.report(call.iparam);
}

} // namespace nxl::pardiso
