// Both forms of the numeric Jacobian. Dennis and Schnabel, Numerical Methods for Unconstrained Optimization (1983),
// section 5.4, here with a step relative to the component of x where that is above eps, and eps itself elsewhere.
#include "solvers_tr/kernel/d_jacobi_withMP.hpp"
#include "blas/calls.hpp"
#include "service/handle_memory.hpp"
#include "service/parallel.hpp"
#include "service/scratch.hpp"
#include "service/threads.hpp"
#include "solvers_tr/kernel/status.hpp"
#include <cmath>

namespace nxl::tr {
namespace {

constexpr int serial_allocation_failed = -1;

/// What the caller's handle points to. x and fjac stay the caller's.
struct JacobiRecord {
    int n, m;
    double* x;
    double* fjac;
    double eps;
    int column; // from 1; beyond n when all is done
    double divisor;
    double saved; // x(column) as the caller has it
};

/// The two points of a component of value v, and the divisor, which has the sign of a relative step.
struct Difference {
    double forward, backward, divisor;

    Difference(double v, double eps) : forward(v + eps), backward(v - eps), divisor(2.0 * eps) {
        if (!(eps < std::fabs(v))) return;
        forward = (eps + 1.0) * v;
        backward = (1.0 - eps) * v;
        divisor = 2.0 * eps * v;
    }
};

/// column := (f1 - f2) / divisor. f1 is used up.
void finish_column(i64 m, double divisor, double* f1, const double* f2, double* column) {
    axpy(m, -1.0, f2, 1, f1, 1);
    scal(m, 1.0 / divisor, f1, 1);
    copy(m, f1, 1, column, 1);
}

int ask_forward(JacobiRecord& record) {
    double& component = record.x[record.column - 1];
    record.saved = component;
    component = Difference(record.saved, record.eps).forward;
    return evaluate_forward;
}

int ask_backward(JacobiRecord& record) {
    const Difference difference(record.saved, record.eps);
    record.x[record.column - 1] = difference.backward;
    record.divisor = difference.divisor;
    return evaluate_backward;
}

int finish_and_go_on(JacobiRecord& record, double* f1, const double* f2) {
    record.x[record.column - 1] = record.saved;
    finish_column(record.m, record.divisor, f1, f2, record.fjac + i64{record.column - 1} * record.m);
    ++record.column;
    return record.column > record.n ? jacobian_done : ask_forward(record);
}

int next_request(JacobiRecord& record, double* f1, const double* f2, int request) {
    if (record.column > record.n) return jacobian_done;
    switch (request) {
    case evaluate_forward: return ask_backward(record);
    case evaluate_backward: return finish_and_go_on(record, f1, f2);
    default: return ask_forward(record);
    }
}

/// The direct form: one column, with work of the calling thread's own.
struct Columns {
    Function fcn;
    int n, m;
    double* fjac;
    double eps;

    void compute(int column, double* x, double* f1, double* f2) const {
        const double saved = x[column];
        const Difference difference(saved, eps);
        x[column] = difference.forward;
        fcn(&m, &n, x, f1);
        x[column] = difference.backward;
        fcn(&m, &n, x, f2);
        x[column] = saved;
        finish_column(m, difference.divisor, f1, f2, fjac + i64{column} * m);
    }
};

int serial(const Columns& columns, double* x) {
    const Scratch<double> f1(columns.m), f2(columns.m);
    if (!f1.data() || !f2.data()) return serial_allocation_failed;
    for (int column = 0; column < columns.n; ++column) columns.compute(column, x, f1.data(), f2.data());
    return success;
}

/// Slice s of the work arrays, of which there is one per thread, takes the columns s, s + threads, ...
int DJAC_F_OMP(const Columns& columns, const double* x, int threads) {
    const i64 m = columns.m, n = columns.n;
    const Scratch<double> f1(threads * m), f2(threads * m), points(threads * n);
    if (!f1.data() || !f2.data() || !points.data()) return out_of_memory;
    for (int slice = 0; slice < threads; ++slice) copy(n, x, 1, points.data() + slice * n, 1);
    parallel_blocks(threads, std::min(threads, columns.n), [&](int slice) {
        for (i64 column = slice; column < n; column += threads)
            columns.compute(static_cast<int>(column), points.data() + slice * n, f1.data() + slice * m,
                            f2.data() + slice * m);
    });
    return success;
}

} // namespace

int jacobi_init(void** handle, int n, int m, double* x, double* fjac, double eps) {
    if (!handle || n < 1 || m < 1 || !(eps > 0.0)) return invalid_option;
    auto* record = take_for_handle<JacobiRecord>(1);
    if (!record) return out_of_memory;
    *record = {.n = n, .m = m, .x = x, .fjac = fjac, .eps = eps, .column = 1, .divisor = 0.0, .saved = 0.0};
    *handle = record;
    return success;
}

int jacobi_solve(void** handle, double* f1, double* f2, int& request) {
    auto* record = record_of<JacobiRecord>(handle);
    if (!record) return invalid_option;
    request = next_request(*record, f1, f2, request);
    return success;
}

int jacobi_delete(void** handle) {
    auto* record = record_of<JacobiRecord>(handle);
    if (!record) return invalid_option;
    give_back(record);
    return success;
}

int jacobi(Function fcn, int n, int m, double* fjac, double* x, double eps) {
    if (n < 1 || !(eps > 0.0)) return invalid_option;
    const Columns columns{fcn, n, m, fjac, eps};
    const int threads = max_threads(domain_all);
    const int status = threads > 1 ? DJAC_F_OMP(columns, x, threads) : serial(columns, x);
    return status == serial_allocation_failed ? out_of_memory
                                              : success; // of the threaded form's failure nothing is told
}

} // namespace nxl::tr
