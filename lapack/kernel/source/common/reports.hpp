// What LAPACK tells the host beside bad arguments: that there is no memory, and progress. Both go through exports that
// a host may replace.
#pragma once
#include "service/errors.hpp"

namespace nxl {

/// There was no memory for an integer array of routine `name`: reports it, and sets info so that nobody takes the call
/// for done.
inline void refuse_for_memory(const char* name, i64& info) {
    info = -1000; // the number that the report bears
    report_no_memory(name);
}

/// Tells the host that routine `name` (six characters) has come to `column` on this thread. True when the host asks to
/// stop.
inline bool stop_requested(const char* name, i64 thread, i64 column) {
    const int narrow_thread = static_cast<int>(thread), narrow_column = static_cast<int>(column);
    return (NXL_PROGRESS(&narrow_thread, &narrow_column, name, 6) & 1) != 0;
}

} // namespace nxl
