// What levels 2 and 3 of BLAS and LAPACK report about bad arguments: every routine and every position, to the byte.
#include "nxl.h"
#include "tests/support/argument_faults.hpp"
#include "tests/support/captured.hpp"

namespace {

using namespace nxl_test;

const std::vector<ArgumentFamily> families = {
    // Level 2.
    {{{"DGEMV ", run<dgemv>}, {"ZGEMV ", run<zgemv>}},
     "NTC",
     {{"N 3 4 * * 3 * 1 * * -2", "1=X 2=-1 3=-1 6=2 8=0 11=0"},
      {"T 3 4 * * 3 * -1 * * 2", "1=X 2=-2147483648 3=-2147483648 6=-2147483648 8=0 11=0"},
      {"C 5 0 * * 5 * 1 * * 1", "6=4"},
      {"N 0 4 * * 1 * 1 * * 1", "1=X 2=-1 3=-1 6=0 8=0 11=0"}}},
    {{{"DGER  ", run<dger>}, {"ZGERU ", run<zgeru>}, {"ZGERC ", run<zgerc>}},
     "",
     {{"3 4 * * 1 * -2 * 3", "1=-1 2=-1 5=0 7=0 9=2"},
      {"0 4 * * 1 * 1 * 1", "1=-1 2=-1 5=0 7=0 9=0"},
      {"3 0 * * 1 * 1 * 3", "9=2"}}},
    {{{"DSYR  ", run<dsyr>}, {"ZHER  ", run<zher>}},
     "UL",
     {{"U 3 * * -2 * 3", "1=X 2=-1 5=0 7=2"}, {"L 0 * * 1 * 1", "1=X 2=-1 5=0 7=0"}}},
    {{{"DSYR2 ", run<dsyr2>}, {"ZHER2 ", run<zher2>}},
     "UL",
     {{"U 3 * * 1 * -2 * 3", "1=X 2=-1 5=0 7=0 9=2"}, {"L 0 * * 1 * 1 * 1", "1=X 2=-1 5=0 7=0 9=0"}}},
    {{{"DSYMV ", run<dsymv>}, {"ZHEMV ", run<zhemv>}},
     "UL",
     {{"U 3 * * 3 * 1 * * -2", "1=X 2=-1 5=2 7=0 10=0"}, {"L 0 * * 1 * 1 * * 1", "1=X 2=-1 5=0 7=0 10=0"}}},
    {{{"DTRMV ", run<dtrmv>}, {"DTRSV ", run<dtrsv>}, {"ZTRMV ", run<ztrmv>}, {"ZTRSV ", run<ztrsv>}},
     "UL NTC UN",
     {{"U N N 3 * 3 * -2", "1=X 2=X 3=X 4=-1 6=2 8=0"}, {"L C U 0 * 1 * 1", "1=X 2=X 3=X 4=-1 6=0 8=0"}}},
    // Level 3.
    {{{"DGEMM ", run<dgemm>}, {"ZGEMM ", run<zgemm>}},
     "NTC NTC",
     {{"N N 3 4 5 * * 3 * 5 * * 3", "1=X 2=X 3=-1 4=-1 5=-1 8=2 10=4 13=2"},
      {"T C 3 4 5 * * 5 * 4 * * 3", "1=X 2=X 3=-1 4=-1 5=-1 8=4 10=3 13=2"},
      {"C T 3 4 5 * * 5 * 4 * * 3", "8=4 10=3 13=2"},
      {"N T 5 4 3 * * 5 * 4 * * 5", "8=4 10=3 13=4"},
      {"T N 5 4 3 * * 3 * 3 * * 5", "8=2 10=2 13=4"},
      {"N N 0 0 0 * * 1 * 1 * * 1", "1=X 2=X 3=-1 4=-1 5=-1 8=0 10=0 13=0"}}},
    {{{"DSYMM ", run<dsymm>}, {"ZSYMM ", run<zsymm>}, {"ZHEMM ", run<zhemm>}},
     "LR UL",
     {{"L U 3 4 * * 3 * 3 * * 3", "1=X 2=X 3=-1 4=-1 7=2 9=2 12=2"},
      {"R L 3 4 * * 4 * 3 * * 3", "1=X 2=X 3=-1 4=-1 7=3 9=2 12=2"},
      {"L U 0 4 * * 1 * 1 * * 1", "1=X 2=X 3=-1 4=-1 7=0 9=0 12=0"},
      {"R U 3 0 * * 1 * 3 * * 3", "7=0"}}},
    {{{"DSYRK ", run<dsyrk>}},
     "UL NTC",
     {{"U N 3 5 * * 3 * * 3", "1=X 2=X 3=-1 4=-1 7=2 10=2"},
      {"L T 3 5 * * 5 * * 3", "7=4 10=2"},
      {"L C 3 5 * * 5 * * 3", "7=4 10=2"},
      {"U N 0 0 * * 1 * * 1", "1=X 2=X 3=-1 4=-1 7=0 10=0"},
      {"U T 3 0 * * 1 * * 3", "7=0"}}},
    {{{"ZSYRK ", run<zsyrk>}},
     "UL NT",
     {{"U N 3 5 * * 3 * * 3", "1=X 2=C 3=-1 4=-1 7=2 10=2"}, {"L T 3 5 * * 5 * * 3", "2=C 7=4 10=2"}}},
    {{{"ZHERK ", run<zherk>}},
     "UL NC",
     {{"U N 3 5 * * 3 * * 3", "1=X 2=T 3=-1 4=-1 7=2 10=2"}, {"L C 3 5 * * 5 * * 3", "2=T 7=4 10=2"}}},
    {{{"DSYR2K", run<dsyr2k>}},
     "UL NTC",
     {{"U N 3 5 * * 3 * 3 * * 3", "1=X 2=X 3=-1 4=-1 7=2 9=2 12=2"},
      {"L T 3 5 * * 5 * 5 * * 3", "7=4 9=4 12=2"},
      {"L C 3 5 * * 5 * 5 * * 3", "7=4 9=4 12=2"},
      {"U N 0 0 * * 1 * 1 * * 1", "1=X 2=X 3=-1 4=-1 7=0 9=0 12=0"}}},
    {{{"ZSYR2K", run<zsyr2k>}},
     "UL NT",
     {{"U N 3 5 * * 3 * 3 * * 3", "1=X 2=C 3=-1 4=-1 7=2 9=2 12=2"}, {"L T 3 5 * * 5 * 5 * * 3", "2=C 7=4 9=4 12=2"}}},
    {{{"ZHER2K", run<zher2k>}},
     "UL NC",
     {{"U N 3 5 * * 3 * 3 * * 3", "1=X 2=T 3=-1 4=-1 7=2 9=2 12=2"}, {"L C 3 5 * * 5 * 5 * * 3", "2=T 7=4 9=4 12=2"}}},
    {{{"DTRMM ", run<dtrmm>}, {"DTRSM ", run<dtrsm>}, {"ZTRMM ", run<ztrmm>}, {"ZTRSM ", run<ztrsm>}},
     "LR UL NTC UN",
     {{"L U N N 3 4 * * 3 * 3", "1=X 2=X 3=X 4=X 5=-1 6=-1 9=2 11=2"},
      {"R L C U 3 4 * * 4 * 3", "1=X 2=X 3=X 4=X 5=-1 6=-1 9=3 11=2"},
      {"L U T N 0 4 * * 1 * 1", "1=X 2=X 3=X 4=X 5=-1 6=-1 9=0 11=0"},
      {"R U N N 3 0 * * 1 * 3", "9=0"}}},
    // LAPACK; Fortran's lengths of the options come last.
    {{{"DGETRF", run<dgetrf>}, {"ZGETRF", run<zgetrf>}},
     "",
     {{"3 4 * 3 # !", "1=-1 2=-2147483648 4=2"}, {"0 4 * 1 # !", "1=-2147483648 2=-1 4=0"}}},
    {{{"DGETRS", run<dgetrs>}, {"ZGETRS", run<zgetrs>}},
     "NTC",
     {{"N 3 2 * 3 # * 3 ! 1", "1=X 2=-1 3=-1 5=2 8=2"}, {"C 0 2 * 1 # * 1 ! 1", "1=X 2=-1 3=-1 5=0 8=0"}}},
    {{{"DGETRI", run<dgetri>}, {"ZGETRI", run<zgetri>}},
     "",
     {{"3 * 3 # ~ 3 !", "1=-1 3=2 6=2"}, {"0 * 1 # ~ 1 !", "1=-1 3=0 6=0"}}},
    {{{"DPOTRF", run<dpotrf>},
      {"ZPOTRF", run<zpotrf>},
      {"ZPOTF2", run<ZPOTF2>},
      {"DPOTRI", run<dpotri>},
      {"ZPOTRI", run<zpotri>}},
     "UL",
     {{"U 3 * 3 ! 1", "1=X 2=-1 4=2"}, {"L 0 * 1 ! 1", "1=X 2=-1 4=0"}}},
    {{{"DPOTRS", run<dpotrs>}, {"ZPOTRS", run<zpotrs>}},
     "UL",
     {{"U 3 2 * 3 * 3 ! 1", "1=X 2=-1 3=-1 5=2 7=2"}, {"L 0 5 * 1 * 1 ! 1", "1=X 2=-1 3=-1 5=0 7=0"}}},
    {{{"DTRTRI", run<dtrtri>}, {"ZTRTRI", run<ztrtri>}},
     "UL UN",
     {{"U N 3 * 3 ! 1 1", "1=X 2=X 3=-1 5=2"}, {"L U 0 * 1 ! 1 1", "1=X 2=X 3=-1 5=0"}}},
    {{{"DTRTRS", run<dtrtrs>}, {"ZTRTRS", run<ztrtrs>}},
     "UL NTC UN",
     {{"U N N 3 2 * 3 * 3 ! 1 1 1", "1=X 2=X 3=X 4=-1 5=-1 7=2 9=2"},
      {"L C U 0 2 * 1 * 1 ! 1 1 1", "1=X 2=X 3=X 4=-1 5=-1 7=0 9=0"}}},
    {{{"DTRCON", run<dtrcon>}, {"ZTRCON", run<ztrcon>}},
     "OI UL UN",
     {{"O U N 3 * 3 * ~ # ! 1 1 1", "1=F 2=X 3=X 4=-1 6=2"}, {"I L U 0 * 1 * ~ # ! 1 1 1", "1=M 2=X 3=X 4=-1 6=0"}}},
    {{{"DSYTRF", run<dsytrf>}, {"ZSYTRF", run<zsytrf>}, {"ZHETRF", run<zhetrf>}},
     "UL",
     {{"U 3 * 3 # ~ 1 ! 1", "1=X 2=-1 4=2 7=0"}, {"L 0 * 1 # ~ 1 ! 1", "1=X 2=-1 4=0 7=-2"}}},
    {{{"DSYTRS", run<dsytrs>}, {"ZSYTRS", run<zsytrs>}, {"ZHETRS", run<zhetrs>}},
     "UL",
     {{"U 3 2 * 3 # * 3 ! 1", "1=X 2=-1 3=-1 5=2 8=2"}, {"L 0 2 * 1 # * 1 ! 1", "1=X 2=-1 3=-1 5=0 8=0"}}},
    {{{"DSYTRI", run<dsytri>}, {"ZSYTRI", run<zsytri>}, {"ZHETRI", run<zhetri>}},
     "UL",
     {{"U 3 * 3 # ~ ! 1", "1=X 2=-1 4=2"}, {"L 0 * 1 # ~ ! 1", "1=X 2=-1 4=0"}}},
    {{{"DSYCON", run<dsycon>}},
     "UL",
     {{"U 3 * 3 # * * ~ # ! 1", "1=X 2=-1 4=2"}, {"L 0 * 1 # * * ~ # ! 1", "1=X 2=-1 4=0"}}},
    {{{"ZSYCON", run<zsycon>}, {"ZHECON", run<zhecon>}},
     "UL",
     {{"U 3 * 3 # * * ~ ! 1", "1=X 2=-1 4=2"}, {"L 0 * 1 # * * ~ ! 1", "1=X 2=-1 4=0"}}},
    {{{"DSYRFS", run<dsyrfs>}, {"ZSYRFS", run<zsyrfs>}, {"ZHERFS", run<zherfs>}},
     "UL",
     {{"U 3 2 * 3 * 3 # * 3 * 3 * * ~ # ! 1", "1=X 2=-1 3=-1 5=2 7=2 10=2 12=2"},
      {"L 0 1 * 1 * 1 # * 1 * 1 * * ~ # ! 1", "1=X 2=-1 3=-1 5=0 7=0 10=0 12=0"}}},
    {{{"DTRRFS", run<dtrrfs>}, {"ZTRRFS", run<ztrrfs>}},
     "UL NTC UN",
     {{"U N N 3 2 * 3 * 3 * 3 * * ~ # ! 1 1 1", "1=X 2=X 3=X 4=-1 5=-1 7=2 9=2 11=2"},
      {"L T U 0 1 * 1 * 1 * 1 * * ~ # ! 1 1 1", "1=X 2=X 3=X 4=-1 5=-1 7=0 9=0 11=0"}}},
};

const ArgumentFaults faults({[](const std::function<void()>& body) { return printed_by(body); },
                             [](const std::string& name, std::size_t position) {
                                 return "NXL ERROR: Parameter " + std::to_string(position) +
                                        " was incorrect on entry to " + name + "\n";
                             }},
                            families);

TEST(Arguments, EachFaultAndTheFirstOfSeveralAreReported) { faults.each_is_reported_and_the_first_of_several(); }
TEST(Arguments, CallsOnTheEdgeOfRightAreNotReported) { faults.calls_on_the_edge_of_right_are_silent(true); }
TEST(Arguments, OptionsTakeTheirLettersInEitherCaseAndNoOthers) { faults.options_take_their_letters(); }

TEST(Arguments, ZsyrReportsNothingAndLeavesAlone) {
    for (const char* call : {"X 3 * * 1 * 3", "U -1 * * 1 * 3", "L 3 * * 0 * 3", "U 3 * * 1 * 2", "L 3 * * 1 * -3",
                             "U -2147483648 * * 0 * -2147483648", "L 0 * * 1 * 1"}) {
        CallArguments arguments(words(call));
        const auto before = arguments.rooms;
        EXPECT_EQ(printed_by([&] { run<ZSYR>(arguments); }), "") << call;
        EXPECT_TRUE(arguments.rooms == before) << call;
    }
}

} // namespace
