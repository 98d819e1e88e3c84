// The error handler of BLAS and LAPACK.
#include "service/errors.hpp"
#include "service/messages.hpp"
#include <algorithm>

namespace nxl {
namespace {

constexpr int longest_name = 20;

enum MessageId : int { bad_parameter = 6, internal_condition = 7, no_work_memory = 8, incompatible_options = 9 };

} // namespace

bool report_argument(const char* name, int position) {
    XERBLA(name, &position, 6);
    return true;
}

void print_error(const char* name, int info, int name_length) {
    char terminated[longest_name + 1] = {};
    std::copy_n(name, std::clamp(name_length, 0, longest_name), terminated);
    const int negated = static_cast<int>(0U - static_cast<unsigned>(info)); // the most negative one stays itself
    if (info == 1000) return nxl_msg_print(1, no_work_memory, 1, terminated);
    if (info == 1001) return nxl_msg_print(1, incompatible_options, 1, terminated);
    if (info > 0) return nxl_msg_print(1, bad_parameter, 2, info, terminated);
    nxl_msg_print(1, internal_condition, 2, negated, terminated);
}

} // namespace nxl
