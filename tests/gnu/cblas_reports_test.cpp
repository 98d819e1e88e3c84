// What CBLAS and the GNU names report, to handlers that this program defines: every routine, every position, both
// orders.
#include "tests/support/argument_faults.hpp"

namespace {
std::string told; // a line for each report
}

extern "C" {
void cblas_xerbla(int p, const char* rout, const char*, ...) { told += rout + (" " + std::to_string(p)) + "\n"; }
void xerbla_(const char* name, const int* info, std::size_t length);
void xerbla_(const char* name, const int* info, std::size_t length) {
    told += std::string(name, length) + " " + std::to_string(*info) + "\n";
}
void dtrsm_(const char*, const char*, const char*, const char*, const int*, const int*, const double*, const double*,
            const int*, double*, const int*, std::size_t, std::size_t, std::size_t, std::size_t);
void zgetrf_(const int*, const int*, void*, const int*, int*, int*);
}

namespace {

using namespace nxl_test;

std::string told_during(const std::function<void()>& body) {
    told.clear();
    body();
    return told;
}

const std::vector<ArgumentFamily> families = {
    {{{"cblas_dgemv", run<cblas_dgemv>}, {"cblas_zgemv", run<cblas_zgemv>}},
     "",
     {{"C N 3 4 * * 3 * 1 * * -2", "1=0 2=110 3=-1 4=-1 7=2 9=0 12=0"},
      {"R T 3 4 * * 4 * 1 * * -2", "1=103 2=114 3=-1 4=-1 7=3 9=0 12=0"},
      {"R C 0 0 * * 1 * 1 * * 1", "2=999 7=0"}}},
    {{{"cblas_dger", run<cblas_dger>}, {"cblas_zgeru", run<cblas_zgeru>}, {"cblas_zgerc", run<cblas_zgerc>}},
     "",
     {{"C 3 4 * * 1 * -2 * 3", "1=0 2=-1 3=-1 6=0 8=0 10=2"}, {"R 3 4 * * 1 * 1 * 4", "2=-1 3=-1 6=0 8=0 10=3"}}},
    {{{"cblas_dsymv", run<cblas_dsymv>}, {"cblas_zhemv", run<cblas_zhemv>}},
     "",
     {{"C U 3 * * 3 * 1 * * -2", "1=0 2=120 3=-1 6=2 8=0 11=0"}, {"R L 3 * * 3 * 1 * * 1", "2=0 3=-1 6=2 8=0 11=0"}}},
    {{{"cblas_dsyr", run<cblas_dsyr>}, {"cblas_zher", run<cblas_zher>}},
     "",
     {{"C U 3 * * -2 * 3", "1=0 2=123 3=-1 6=0 8=2"}, {"R L 3 * * 1 * 3", "2=0 3=-1 6=0 8=2"}}},
    {{{"cblas_dsyr2", run<cblas_dsyr2>}, {"cblas_zher2", run<cblas_zher2>}},
     "",
     {{"C U 3 * * 1 * -2 * 3", "1=0 2=0 3=-1 6=0 8=0 10=2"}, {"R L 3 * * 1 * 1 * 3", "2=0 3=-1 6=0 8=0 10=2"}}},
    {{{"cblas_dtrmv", run<cblas_dtrmv>},
      {"cblas_dtrsv", run<cblas_dtrsv>},
      {"cblas_ztrmv", run<cblas_ztrmv>},
      {"cblas_ztrsv", run<cblas_ztrsv>}},
     "",
     {{"C U N N 3 * 3 * -2", "1=0 2=0 3=0 4=130 5=-1 7=2 9=0"}, {"R L C U 3 * 3 * 1", "2=0 3=0 4=133 5=-1 7=2 9=0"}}},
    {{{"cblas_dgemm", run<cblas_dgemm>}, {"cblas_zgemm", run<cblas_zgemm>}},
     "",
     {{"C N N 3 4 5 * * 3 * 5 * * 3", "1=0 2=0 3=0 4=-1 5=-1 6=-1 9=2 11=4 14=2"},
      {"C T C 3 4 5 * * 5 * 4 * * 3", "9=4 11=3 14=2"},
      {"R N N 3 4 5 * * 5 * 4 * * 4", "2=0 3=0 4=-1 5=-1 6=-1 9=4 11=3 14=3"},
      {"R C T 3 4 5 * * 3 * 5 * * 4", "9=2 11=4 14=3"},
      {"R N N 0 0 0 * * 1 * 1 * * 1", "9=0 11=0 14=0"}}},
    {{{"cblas_dsymm", run<cblas_dsymm>}, {"cblas_zsymm", run<cblas_zsymm>}, {"cblas_zhemm", run<cblas_zhemm>}},
     "",
     {{"C L U 3 4 * * 3 * 3 * * 3", "1=0 2=140 3=0 4=-1 5=-1 8=2 10=2 13=2"},
      {"R L U 3 4 * * 3 * 4 * * 4", "2=143 3=0 4=-1 5=-1 8=2 10=3 13=3"},
      {"R R L 3 4 * * 4 * 4 * * 4", "8=3 10=3 13=3"}}},
    {{{"cblas_dsyrk", run<cblas_dsyrk>}},
     "",
     {{"C U N 3 5 * * 3 * * 3", "1=0 2=0 3=0 4=-1 5=-1 8=2 11=2"},
      {"R L N 3 5 * * 5 * * 3", "2=0 3=0 4=-1 5=-1 8=4 11=2"},
      {"R L C 3 5 * * 3 * * 3", "8=2"}}},
    {{{"cblas_zsyrk", run<cblas_zsyrk>}},
     "",
     {{"C U T 3 5 * * 5 * * 3", "2=0 3=113 4=-1 5=-1 8=4 11=2"}, {"R L N 3 5 * * 5 * * 3", "3=113 8=4 11=2"}}},
    {{{"cblas_zherk", run<cblas_zherk>}},
     "",
     {{"C U C 3 5 * * 5 * * 3", "2=0 3=112 4=-1 5=-1 8=4 11=2"}, {"R L N 3 5 * * 5 * * 3", "3=112 8=4 11=2"}}},
    {{{"cblas_dsyr2k", run<cblas_dsyr2k>}},
     "",
     {{"C U N 3 5 * * 3 * 3 * * 3", "1=0 2=0 3=0 4=-1 5=-1 8=2 10=2 13=2"},
      {"R L T 3 5 * * 3 * 3 * * 3", "2=0 3=0 4=-1 5=-1 8=2 10=2 13=2"},
      {"R L N 3 5 * * 5 * 5 * * 3", "8=4 10=4"}}},
    {{{"cblas_zsyr2k", run<cblas_zsyr2k>}},
     "",
     {{"C U T 3 5 * * 5 * 5 * * 3", "3=113 8=4 10=4 13=2"}, {"R L N 3 5 * * 5 * 5 * * 3", "3=113 8=4 10=4 13=2"}}},
    {{{"cblas_zher2k", run<cblas_zher2k>}},
     "",
     {{"C U C 3 5 * * 5 * 5 * * 3", "3=112 8=4 10=4 13=2"}, {"R L N 3 5 * * 5 * 5 * * 3", "3=112 8=4 10=4 13=2"}}},
    {{{"cblas_dtrmm", run<cblas_dtrmm>},
      {"cblas_dtrsm", run<cblas_dtrsm>},
      {"cblas_ztrmm", run<cblas_ztrmm>},
      {"cblas_ztrsm", run<cblas_ztrsm>}},
     "",
     {{"C L U N N 3 4 * * 3 * 3", "1=0 2=0 3=0 4=0 5=0 6=-1 7=-1 10=2 12=2"},
      {"R L U C N 3 4 * * 3 * 4", "2=0 3=0 4=0 5=0 6=-1 7=-1 10=2 12=3"},
      {"R R L T U 3 4 * * 4 * 4", "10=3 12=3"}}},
};

const ArgumentFaults
    faults({told_during,
            [](const std::string& name, std::size_t position) { return name + " " + std::to_string(position) + "\n"; }},
           families);

TEST(CblasReports, EachFaultAndTheFirstOfSeveralAreReported) { faults.each_is_reported_and_the_first_of_several(); }
TEST(CblasReports, CallsOnTheEdgeOfRightAreNotReported) { faults.calls_on_the_edge_of_right_are_silent(false); }

TEST(GnuReports, ReachTheProgramsHandlerWithNameAndLength) {
    const int minus = -1, one = 1;
    const double alpha = 1.0;
    double b[2] = {1.0, 1.0};
    int pivot = 7, info = 7;
    told.clear();
    dtrsm_("L", "U", "N", "N", &minus, &one, &alpha, b, &one, b, &one, 1, 1, 1, 1);
    zgetrf_(&one, &minus, b, &one, &pivot, &info);
    EXPECT_EQ(told, "DTRSM  5\nZGETRF 2\n");
    EXPECT_EQ(info, -2);
    EXPECT_EQ(pivot, 7);
}

} // namespace
