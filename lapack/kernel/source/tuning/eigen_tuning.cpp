// Which routines gather their reflections, and the answers to queries by name.
#include "lapack/kernel/source/tuning/eigen_tuning.hpp"

namespace nxl {
namespace {

i64 accumulation(const RoutineName& name, i64 active) {
    const auto matrix = name.matrix(), operation = name.operation();
    if (matrix == "GG" && (operation == "HRD" || operation == "HD3"))
        return std::max(i64{1}, MultishiftSizes::gathering(active));
    if (operation == "EXC") return MultishiftSizes::gathering(active);
    const bool iterates = (matrix == "HS" && operation == "EQR") || (matrix == "LA" && operation.starts_with("QR"));
    return iterates ? MultishiftSizes::gathering(MultishiftSizes::shifts(active)) : 0;
}

} // namespace

i64 eigen_tuning(EigenQuery query, const RoutineName& name, i64 ilo, i64 ihi) {
    const i64 active = ihi - ilo + 1;
    switch (query) {
    case EigenQuery::least_order: return MultishiftSizes::least_order;
    case EigenQuery::deflation_window: return MultishiftSizes::window(active);
    case EigenQuery::nibble: return MultishiftSizes::nibble;
    case EigenQuery::shifts: return MultishiftSizes::shifts(active);
    case EigenQuery::accumulate: return accumulation(name, active);
    }
    return -1;
}

} // namespace nxl
