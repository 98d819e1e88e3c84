// What the handle-based solvers answer.
#pragma once

namespace nxl::tr {

enum Status : int { success = 1501, invalid_option = 1502, out_of_memory = 1503 };

} // namespace nxl::tr
