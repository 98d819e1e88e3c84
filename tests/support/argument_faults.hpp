// One engine for what routines make of bad arguments. A call is a line of words, one for each argument:
//     *        room for a scalar or an array, filled with values that an update would change
//     # ~ !    pivots, workspace, and the place of LAPACK's info
//     3 -1     an integer, by reference or by value
//     N        an option letter, or in CBLAS the enumerator of that letter
// Its faults stand beside it as position=value, positions from 1.
#pragma once
#include "nxl_cblas.h"
#include <algorithm>
#include <array>
#include <functional>
#include <gtest/gtest.h>
#include <numeric>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace nxl_test {

using Words = std::vector<std::string>;

inline Words words(const std::string& text) {
    std::istringstream stream(text);
    Words result;
    for (std::string word; stream >> word;) result.push_back(word);
    return result;
}

/// The memory behind the words of one call.
struct CallArguments {
    Words words;
    std::vector<std::array<double, 128>> rooms;
    std::array<double, 128> workspace{};
    std::vector<int> integers, pivots = std::vector<int>(16);
    int info = 77;

    explicit CallArguments(Words given) : words(std::move(given)), rooms(words.size()), integers(words.size()) {
        for (std::size_t i = 0; i < words.size(); ++i) rooms[i].fill(1.25 + static_cast<double>(i));
        std::iota(pivots.begin(), pivots.end(), 1);
    }
    bool is_number(std::size_t i) const { return words[i][0] == '-' || (words[i][0] >= '0' && words[i][0] <= '9'); }
    void* place(std::size_t i) {
        if (words[i] == "*") return rooms[i].data();
        if (words[i] == "#") return pivots.data();
        if (words[i] == "~") return workspace.data();
        if (words[i] == "!") return &info;
        if (!is_number(i)) return words[i].data();
        integers[i] = std::stoi(words[i]);
        return &integers[i];
    }
    template <class P> P argument(std::size_t i) {
        if constexpr (std::is_pointer_v<P>) return static_cast<P>(place(i));
        else if constexpr (std::is_same_v<P, double>) return rooms[i][0];
        else return static_cast<P>(is_number(i) ? std::stoi(words[i]) : enumerator(P{}, words[i][0]));
    }

  private:
    static int enumerator(int, char) { return 0; }
    static int enumerator(CBLAS_ORDER, char c) { return c == 'R' ? CblasRowMajor : CblasColMajor; }
    static int enumerator(CBLAS_TRANSPOSE, char c) {
        return c == 'N' ? CblasNoTrans : c == 'T' ? CblasTrans : CblasConjTrans;
    }
    static int enumerator(CBLAS_UPLO, char c) { return c == 'U' ? CblasUpper : CblasLower; }
    static int enumerator(CBLAS_DIAG, char c) { return c == 'U' ? CblasUnit : CblasNonUnit; }
    static int enumerator(CBLAS_SIDE, char c) { return c == 'L' ? CblasLeft : CblasRight; }
};

using Runner = void (*)(CallArguments& arguments);
template <class... P, std::size_t... I>
void apply(void (*entry)(P...) noexcept, CallArguments& arguments, std::index_sequence<I...>) {
    ASSERT_EQ(arguments.words.size(), sizeof...(P));
    entry(arguments.argument<P>(I)...);
}
template <class... P> void apply(void (*entry)(P...) noexcept, CallArguments& arguments) {
    apply(entry, arguments, std::index_sequence_for<P...>());
}
template <auto Entry> void run(CallArguments& arguments) { apply(Entry, arguments); }

/// Routines of one argument list; the letters that each of their options, in order, may be; calls that are right, with
/// leading dimensions as small as they may be, and their faults.
struct ArgumentFamily {
    std::vector<std::pair<std::string, Runner>> routines;
    const char* letters;
    std::vector<std::pair<const char*, const char*>> calls;
};

/// How a library reports: what was reported while a body ran, and the report of a position.
struct Reporting {
    std::string (*watch)(const std::function<void()>& body);
    std::string (*report)(const std::string& name, std::size_t position);
};

class ArgumentFaults {
    const Reporting reporting_;
    const std::vector<ArgumentFamily>& families_;

    struct Fault {
        std::size_t position;
        std::string value;
    };
    static std::vector<Fault> faults_of(const char* text) {
        std::vector<Fault> result;
        for (const std::string& word : words(text))
            result.push_back({std::stoul(word), word.substr(word.find('=') + 1)});
        return result;
    }
    void expect_report(const std::string& name, Runner runner, const Words& call, std::size_t position) const {
        CallArguments arguments(call);
        const auto before = arguments.rooms;
        EXPECT_EQ(reporting_.watch([&] { runner(arguments); }), reporting_.report(name, position));
        EXPECT_TRUE(arguments.rooms == before) << name;
        const bool tells = std::find(call.begin(), call.end(), "!") != call.end();
        EXPECT_EQ(arguments.info, tells ? -static_cast<int>(position) : 77) << name;
    }
    void expect_silence(Runner runner, const Words& call) const {
        CallArguments arguments(call);
        EXPECT_EQ(reporting_.watch([&] { runner(arguments); }), "");
        EXPECT_GE(arguments.info, 0);
    }
    template <class Body> void for_each_call(Body&& body) const {
        for (const ArgumentFamily& family : families_)
            for (const auto& [name, runner] : family.routines)
                for (const auto& [call, faults] : family.calls) {
                    SCOPED_TRACE(name + " " + call);
                    body(name, runner, words(call), faults_of(faults));
                }
    }

  public:
    ArgumentFaults(const Reporting& reporting, const std::vector<ArgumentFamily>& families)
        : reporting_(reporting),
          families_(families) {}

    /// Each by its position, and nothing else happens. Then from the last to the first, all kept: the newest stands
    /// first and is the one reported.
    void each_is_reported_and_the_first_of_several() const {
        for_each_call([this](const std::string& name, Runner runner, const Words& call, const auto& faults) {
            Words all = call;
            for (auto fault = faults.rbegin(); fault != faults.rend(); ++fault) {
                Words one = call;
                one[fault->position - 1] = all[fault->position - 1] = fault->value;
                expect_report(name, runner, one, fault->position);
                expect_report(name, runner, all, fault->position);
            }
        });
    }
    void calls_on_the_edge_of_right_are_silent(bool in_lower_case) const {
        for_each_call([&](const std::string&, Runner runner, Words call, const auto&) {
            expect_silence(runner, call);
            if (!in_lower_case) return;
            for (std::string& word : call)
                if (word[0] >= 'A' && word[0] <= 'Z') word[0] = static_cast<char>(word[0] + 32);
            expect_silence(runner, call);
        });
    }
    /// In either case, and no others. All integers are 3, so no letter makes a leading dimension too small.
    void options_take_their_letters() const {
        for (const ArgumentFamily& family : families_) {
            Words call = words(family.calls[0].first);
            for (std::string& word : call)
                if (word[0] == '-' || (word[0] >= '0' && word[0] <= '9')) word = "3";
            const Words letters = words(family.letters);
            for (const auto& [name, runner] : family.routines)
                for (std::size_t option = 0; option < letters.size(); ++option)
                    for (int byte = '@'; byte <= '{'; ++byte) {
                        SCOPED_TRACE(name + " option " + std::to_string(option + 1) + " " + static_cast<char>(byte));
                        Words changed = call;
                        changed[option] = static_cast<char>(byte);
                        const auto capital = static_cast<char>(byte - (byte >= 'a' && byte <= 'z' ? 32 : 0));
                        if (letters[option].find(capital) != std::string::npos) expect_silence(runner, changed);
                        else expect_report(name, runner, changed, option + 1);
                    }
        }
    }
};

} // namespace nxl_test
