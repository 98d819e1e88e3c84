// nxl-info in many environments: its counts and reasons, against what libnxl.so answers to this program in the same
// ones.
#include "nxl.h"
#include "tests/programs/run_program.hpp"
#include <algorithm>
#include <cstdio>
#include <regex>
#include <vector>

namespace {

/// What stands behind a member's name in JSON, up to the end of its line.
std::string member(const std::string& json, const std::string& name) {
    std::smatch found;
    const bool any = std::regex_search(json, found, std::regex("\\n  \"" + name + "\": (.*[^,\\n]),?\\n"));
    return any ? found[1].str() : "no " + name;
}

/// The member `name` of one domain's count.
std::string of_domain(const std::string& json, const std::string& domain, const std::string& name) {
    std::smatch found;
    const std::string threads = member(json, "threads");
    const std::regex pattern('"' + domain + R"(": \{[^}]*")" + name + R"(": "?([^",}]*))");
    return std::regex_search(threads, found, pattern) ? found[1].str() : "no " + domain;
}

class Info : public program_test::Program {
  protected:
    static constexpr const char* clean =
        "env -u NXL_NUM_THREADS -u NXL_DOMAIN_NUM_THREADS -u NXL_DYNAMIC -u OMP_NUM_THREADS -u NXL_DEBUG_CPU_TYPE ";
    Info() : Program(NXL_INFO_PROGRAM) {}

    std::string json(const std::string& environment) const {
        const auto result = run("--json", clean + environment);
        EXPECT_EQ(result.status, 0) << environment;
        EXPECT_EQ(result.err, "") << environment;
        return result.out;
    }
    /// What a shell's command prints.
    std::string output_of(const std::string& command) const {
        EXPECT_EQ(std::system((command + " >'" + (folder_ / "printed").string() + "'").c_str()), 0) << command;
        return read("printed");
    }
    /// What the library tells a program in this environment: counts of the four domains, and dynamic adjustment.
    std::string answers(const std::string& environment) const {
        const auto self = std::filesystem::read_symlink("/proc/self/exe").string();
        return output_of(clean + environment + " '" + self + "' answers");
    }
};

struct Case {
    const char* environment;
    const char* source; // of the count of BLAS
    const char* warning = nullptr;
};

TEST_F(Info, CountsAreThoseOfTheLibraryAndReasonsThoseOfTheEnvironment) {
    const std::string usual = member(json(""), "warnings"); // none, unless the tests run on part of the machine
    for (const auto& [environment, source, warning] : {
             Case{"", "OpenMP"},
             Case{"OMP_NUM_THREADS=1", "OMP_NUM_THREADS"},
             Case{"NXL_NUM_THREADS=1 OMP_NUM_THREADS=2", "NXL_NUM_THREADS"},
             Case{"NXL_NUM_THREADS=5 NXL_DYNAMIC=FALSE", "NXL_NUM_THREADS", "asks for 5 threads"},
             Case{"NXL_NUM_THREADS=9999", "NXL_NUM_THREADS", "asks for 9999 threads"},
             Case{"NXL_NUM_THREADS=1 NXL_DOMAIN_NUM_THREADS=NXL_BLAS=1", "NXL_DOMAIN_NUM_THREADS"},
             Case{"NXL_DOMAIN_NUM_THREADS='NXL_BLASS=3,NXL_FFT=1'", "OpenMP", "'NXL_BLASS' is not"},
             Case{"NXL_DOMAIN_NUM_THREADS='NXL_FFT=1,=3'", "OpenMP", "a name is missing"},
             Case{"NXL_NUM_THREADS=4x", "NXL_NUM_THREADS", "counts as 1"},
             Case{"NXL_NUM_THREADS=0", "OpenMP", "sets no count"},
             Case{"NXL_DYNAMIC=False", "OpenMP", "leaves dynamic adjustment on"},
             Case{"NXL_NUM_THREAD=3", "OpenMP", "is it NXL_NUM_THREADS?"},
             Case{"NXL_BLAS=3", "OpenMP", "belongs into NXL_DOMAIN_NUM_THREADS"},
             Case{"NXL_DEBUG_CPU_TYPE=x", "OpenMP", "NXL_DEBUG_CPU_TYPE='x'"},
             Case{"NXL_VECTOR_BITS=64", "OpenMP", "NXL_VECTOR_BITS='64'"},
         }) {
        const std::string out = json(environment);
        std::string told;
        for (const char* domain : {"all", "blas", "fft", "vml"}) told += of_domain(out, domain, "count") + " ";
        EXPECT_EQ(told + (member(out, "dynamic") == "true" ? "1" : "0"), answers(environment)) << environment;
        EXPECT_EQ(of_domain(out, "blas", "source"), source) << environment;
        const std::string warnings = member(out, "warnings");
        if (warning) EXPECT_NE(warnings.find(warning), std::string::npos) << environment << ": " << warnings;
        else EXPECT_EQ(warnings, usual) << environment;
    }
}

TEST_F(Info, ClassAndWidthAreThoseTaken) {
    const std::string out = json("NXL_DEBUG_CPU_TYPE=2 NXL_VECTOR_BITS=128 NXL_MM_DISABLE=0");
    EXPECT_EQ(member(out, "class"), "2");
    EXPECT_EQ(member(out, "class_detected"), member(json(""), "class"));
    EXPECT_EQ(member(out, "vector_bits"), "128");
    EXPECT_EQ(member(out, "vector_source"), "\"NXL_VECTOR_BITS\"");
    EXPECT_EQ(member(out, "scratch_cached"), "false");
    EXPECT_EQ(member(json(""), "scratch_cached"), "true");
    EXPECT_NE(run("", "NXL_DEBUG_CPU_TYPE=2").out.find("2 (NXL_DEBUG_CPU_TYPE; detected: "), std::string::npos);
}

TEST_F(Info, ANarrowedMaskIsWarnedOf) {
    const std::string plain = json("");
    const std::string first = std::to_string(std::atoi(member(plain, "processors_allowed").c_str() + 1));
    if (member(plain, "processors_online").find_first_of(",-") == std::string::npos) { // one: no mask is narrower
        EXPECT_EQ(member(json("NXL_NUM_THREADS=1 taskset -c " + first), "warnings"), "[]");
        return;
    }
    const auto narrowed = run("", std::string(clean) + "NXL_NUM_THREADS=2 taskset -c " + first);
    EXPECT_EQ(narrowed.status, 0);
    EXPECT_EQ(narrowed.err.rfind("nxl-info: warning: the affinity mask", 0), 0U) << narrowed.err;
    EXPECT_NE(narrowed.out.find("as the affinity mask is narrowed"), std::string::npos) << narrowed.out;
    const std::string out = json("NXL_NUM_THREADS=2 taskset -c " + first);
    EXPECT_EQ(of_domain(out, "all", "count"), "1");
    EXPECT_EQ(of_domain(out, "all", "limit"), "physical cores");
    EXPECT_NE(member(out, "warnings").find("one thread"), std::string::npos);
    EXPECT_EQ(member(json("NXL_NUM_THREADS=1 NXL_DYNAMIC=FALSE taskset -c " + first), "warnings"), "[]");
}

TEST_F(Info, EveryVariableOfTheLibraryIsKnown) { // a new one has to be entered in nxl-info's list
    const std::string names =
        output_of(R"(grep -rhoE 'environment\("NXL_[A-Z_]+"' ')" NXL_SERVICE_FOLDER R"(' | cut -d'"' -f2 | sort -u)");
    EXPECT_NE(names.find("NXL_NUM_THREADS\n"), std::string::npos) << names;
    const std::string setting = std::regex_replace(names, std::regex("\n"), "=1 ");
    EXPECT_EQ(member(json(setting), "warnings").find("not a variable"), std::string::npos) << setting;
}

TEST_F(Info, UsageAndOutputErrorsHaveTheirStatus) {
    EXPECT_EQ(run("--help").status, 0);
    EXPECT_EQ(run("--version").out.rfind("nxl-info ", 0), 0U);
    expect_refused({"--jsn", 2, "..."});
    const auto unwritten = run("", R"(sh -c '"$0" --json >/dev/full')");
    EXPECT_EQ(unwritten.status, 1);
    EXPECT_EQ(unwritten.err, "nxl-info: cannot write to standard output\n");
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 2 && std::string(argv[1]) == "answers") {
        for (int domain = 0; domain < 4; ++domain) std::printf("%d ", NXL_Domain_Get_Max_Threads(domain));
        std::printf("%d", NXL_Get_Dynamic());
        return 0;
    }
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
