// What levels 2 and 3 of BLAS report about bad arguments: every routine and every position, to the byte.
#include "nxl.h"
#include "tests/support/captured.hpp"
#include <array>
#include <sstream>
#include <utility>
#include <vector>

namespace {

using nxl_test::printed_by;

/// Any routine, called with its arguments' addresses.
using Runner = void (*)(const std::vector<void*>& arguments);

template <class... P, std::size_t... I>
void apply(void (*routine)(P...) noexcept, const std::vector<void*>& arguments, std::index_sequence<I...>) {
    ASSERT_EQ(arguments.size(), sizeof...(P));
    routine(static_cast<P>(arguments[I])...);
}
template <class... P> void apply(void (*routine)(P...) noexcept, const std::vector<void*>& arguments) {
    apply(routine, arguments, std::index_sequence_for<P...>());
}
template <auto Routine> void run(const std::vector<void*>& arguments) { apply(Routine, arguments); }

struct Routine {
    std::string name;
    Runner run;
};

/// A call that is right, with leading dimensions as small as they may be: letters, integers, and * for a scalar or an
/// array; and what makes it wrong, as position=value.
struct Call {
    const char *arguments, *faults;
};

/// Routines of one argument list; the letters that each of their options, in order, may be.
struct Family {
    std::vector<Routine> routines;
    const char* letters;
    std::vector<Call> calls;
};

const std::vector<Family> families = {
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
};

std::vector<std::string> words(const char* text) {
    std::istringstream stream(text);
    std::vector<std::string> result;
    for (std::string word; stream >> word;) result.push_back(word);
    return result;
}

/// Runs a routine on arguments written as in Call. What each * stands for is room enough for any of these calls, filled
/// with values that an update would change.
class Attempt {
    using Room = std::array<double, 128>;
    std::vector<Room> data_, before_;
    std::string printed_;

  public:
    Attempt(Runner runner, std::vector<std::string> arguments) : data_(arguments.size()) {
        std::vector<int> integers(arguments.size());
        std::vector<void*> addresses;
        for (std::size_t i = 0; i < arguments.size(); ++i) {
            const char first = arguments[i][0];
            data_[i].fill(1.25 + static_cast<double>(i));
            if (first == '*') addresses.push_back(data_[i].data());
            else if (first == '-' || (first >= '0' && first <= '9')) {
                integers[i] = std::stoi(arguments[i]);
                addresses.push_back(&integers[i]);
            } else addresses.push_back(arguments[i].data());
        }
        before_ = data_;
        printed_ = printed_by([&] { runner(addresses); });
    }
    const std::string& printed() const { return printed_; }
    bool data_untouched() const { return data_ == before_; }
};

struct Fault {
    std::size_t position; // from 1
    std::string value;
};

std::vector<Fault> faults_of(const Call& call) {
    std::vector<Fault> result;
    for (const std::string& word : words(call.faults))
        result.push_back({std::stoul(word), word.substr(word.find('=') + 1)});
    return result;
}

std::string report(const std::string& name, std::size_t position) {
    return "NXL ERROR: Parameter " + std::to_string(position) + " was incorrect on entry to " + name + "\n";
}

template <class Body> void for_each_call(Body&& body) {
    for (const Family& family : families)
        for (const Routine& routine : family.routines)
            for (const Call& call : family.calls) {
                SCOPED_TRACE(routine.name + " " + call.arguments);
                body(routine, call);
            }
}

TEST(Arguments, EachFaultIsReportedByItsPositionAndNothingElseHappens) {
    for_each_call([](const Routine& routine, const Call& call) {
        for (const Fault& fault : faults_of(call)) {
            std::vector<std::string> arguments = words(call.arguments);
            arguments[fault.position - 1] = fault.value;
            const Attempt attempt(routine.run, arguments);
            EXPECT_EQ(attempt.printed(), report(routine.name, fault.position));
            EXPECT_TRUE(attempt.data_untouched());
        }
    });
}

// Faults from the last to the first, all kept: the newest stands first and is the one reported.
TEST(Arguments, TheFirstOfSeveralFaultsIsReported) {
    for_each_call([](const Routine& routine, const Call& call) {
        std::vector<std::string> arguments = words(call.arguments);
        const std::vector<Fault> faults = faults_of(call);
        for (auto fault = faults.rbegin(); fault != faults.rend(); ++fault) {
            arguments[fault->position - 1] = fault->value;
            EXPECT_EQ(Attempt(routine.run, arguments).printed(), report(routine.name, fault->position));
        }
    });
}

TEST(Arguments, CallsOnTheEdgeOfRightAreNotReported) {
    for_each_call([](const Routine& routine, const Call& call) {
        EXPECT_EQ(Attempt(routine.run, words(call.arguments)).printed(), "");
        std::string lower_case = call.arguments;
        for (char& c : lower_case) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
        EXPECT_EQ(Attempt(routine.run, words(lower_case.c_str())).printed(), "");
    });
}

// All integers are 3 here, so no letter makes a leading dimension too small.
TEST(Arguments, OptionsTakeTheirLettersInEitherCaseAndNoOthers) {
    for (const Family& family : families) {
        std::vector<std::string> arguments = words(family.calls[0].arguments);
        for (std::string& argument : arguments)
            if (argument != "*" && (argument[0] < 'A' || argument[0] > 'Z')) argument = "3";
        const std::vector<std::string> letters = words(family.letters);
        for (const Routine& routine : family.routines)
            for (std::size_t option = 0; option < letters.size(); ++option)
                for (int byte = '@'; byte <= '{'; ++byte) {
                    std::vector<std::string> changed = arguments;
                    changed[option] = static_cast<char>(byte);
                    const bool lower = byte >= 'a' && byte <= 'z';
                    const bool right = letters[option].find(static_cast<char>(byte - 32 * lower)) != std::string::npos;
                    EXPECT_EQ(Attempt(routine.run, changed).printed(), right ? "" : report(routine.name, option + 1))
                        << static_cast<char>(byte) << " as argument " << option + 1;
                }
    }
}

TEST(Arguments, ZsyrReportsNothingAndLeavesAlone) {
    for (const char* arguments : {"X 3 * * 1 * 3", "U -1 * * 1 * 3", "L 3 * * 0 * 3", "U 3 * * 1 * 2", "L 3 * * 1 * -3",
                                  "U -2147483648 * * 0 * -2147483648", "L 0 * * 1 * 1"}) {
        const Attempt attempt(run<ZSYR>, words(arguments));
        EXPECT_EQ(attempt.printed(), "") << arguments;
        EXPECT_TRUE(attempt.data_untouched()) << arguments;
    }
}

} // namespace
