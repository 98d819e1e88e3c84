// The host's progress callback. Routines that report progress call NXL_PROGRESS, not this.
#pragma once

namespace nxl {

using ProgressCallback = int (*)(const int* thread, const int* step, const char* stage, int stage_length);

/// Null takes the callback away.
void set_progress_callback(ProgressCallback callback);

/// Calls the callback once, with addresses of the integers 1, 2 and 3 and the value 4, and returns its answer. Returns
/// 0 when none is set.
int test_progress_callback();

} // namespace nxl
