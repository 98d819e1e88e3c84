// What a reverse-communication solver of linear systems asks of its caller, or how it ended.
#pragma once

namespace nxl::rci {

/// Values of RCI_request.
enum Request : int {
    finished = 0,
    apply_matrix = 1,
    test_by_caller = 2,
    apply_preconditioner = 3,
    judge_new_norm = 4, // FGMRES: is the norm of the vector just made to be taken as zero?
    limit_reached = -1,
    zero_curvature = -2,
    division_by_zero = -10,
    endless_loop = -11,
    impossible_entry = -12,
    check_has_findings = -1000,
    impossible_size = -1100,
    stop_system = 1003 // from the caller
};

} // namespace nxl::rci
