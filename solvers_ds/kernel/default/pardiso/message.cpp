// Codes come in five runs, each of which has consecutive rows in the catalogue, and one code per matrix type.
#include "solvers_ds/kernel/default/pardiso/message.hpp"

namespace nxl::pardiso {
namespace {

struct Run {
    int first_code, last_code, first_id;
};
constexpr int first_banner = 772;
constexpr int banner_types[] = {1, 2, -2, 3, 4, -4, 6, 11, 13};
constexpr Run runs[] = {{static_cast<int>(Text::summary), static_cast<int>(Text::summary), 781},
                        {static_cast<int>(Text::summary_of_clean), static_cast<int>(Text::progress_backward), 782},
                        {static_cast<int>(heading_of(Error::parameters)), static_cast<int>(Text::matrix_heading), 860},
                        {static_cast<int>(Text::clean_impossible), static_cast<int>(Text::iteration_limit), 880},
                        {static_cast<int>(Text::ooc_cfg_path), static_cast<int>(Text::ooc_total_megabytes), 940}};

} // namespace

int catalogue_id(int code) {
    int id = first_banner;
    for (const int type : banner_types) {
        if (code == type) return id;
        ++id;
    }
    for (const Run& run : runs)
        if (code >= run.first_code && code <= run.last_code) return run.first_id + code - run.first_code;
    return 0;
}

} // namespace nxl::pardiso
