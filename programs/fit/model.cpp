// A named model is a formula with an estimate of its parameters; nothing else sets it apart from a user's formula.
#include "model.hpp"

#include "start_values.hpp"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <numeric>
#include <utility>
#include <vector>

namespace fit {
namespace {

constexpr int kMostPeaks = 20;

/// Peak k has height h, position p and standard deviation w; c, or c + d*x, is the background.
std::string formula_of_peaks(int peaks, bool linear) {
    std::string formula;
    for (int k = 1; k <= peaks; ++k) {
        const std::string i = std::to_string(k);
        formula += "h" + i + "*exp(-((x-p" + i + ")/w" + i + ")^2/2)+";
    }
    return formula + (linear ? "c+d*x" : "c");
}

Model peaks_of(const std::string& text) {
    const auto colon = text.find(':', 6);
    const std::string count = text.substr(6, colon == std::string::npos ? colon : colon - 6);
    int peaks = 0;
    const auto [end, error] = std::from_chars(count.data(), count.data() + count.size(), peaks);
    const bool counted = error == std::errc() && end == count.data() + count.size() && peaks >= 1;
    const bool linear = colon != std::string::npos;
    if (!counted || peaks > kMostPeaks || (linear && text.substr(colon) != ":linear"))
        throw common::UsageError("--model: '" + text + "' is not gauss:K or gauss:K:linear with 1 to " +
                                 std::to_string(kMostPeaks) + " peaks");
    return {formula_of_peaks(peaks, linear), [=](const Data& data) { return start_of_peaks(data, peaks, linear); }};
}

/// How many letters have to be put in, left out or changed to make one word of the other: Levenshtein's distance.
std::size_t distance(const std::string& a, const std::string& b) {
    std::vector<std::size_t> row(b.size() + 1); // from the letters of a so far to the first letters of b
    std::iota(row.begin(), row.end(), 0);
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t change = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({change, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

/// The model whose name is nearest to that at the front of `text`, or begins as it does; empty when none is near.
std::string nearest(const std::string& text) {
    std::string name;
    for (const char c : text.substr(0, text.find(':')))
        name += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    for (const std::string known : {"exponential", "logistic", "gauss", "gaussian"}) {
        const bool begins = name.size() >= 3 && (known.starts_with(name) || name.starts_with(known));
        if (begins || distance(name, known) <= known.size() / 4) return known.starts_with("gauss") ? "gauss:K" : known;
    }
    return "";
}

} // namespace

common::UsageError no_model(const std::string& text, const std::string& why) {
    const std::string near = nearest(text);
    return common::UsageError("--model: '" + text + "' " + why +
                              "; the named models are exponential, logistic, gauss:K and gauss:K:linear" +
                              (near.empty() ? "" : "; is " + near + " meant?"));
}

Model model_of(const std::string& text) {
    if (text == "exponential") return {"a*exp(-b*x)+c", start_of_exponential};
    if (text == "logistic") return {"a/(1+exp(-k*(x-x0)))+c", start_of_logistic};
    if (text == "gauss") return peaks_of("gauss:1");
    if (text.starts_with("gauss:")) return peaks_of(text);
    if (text.find(':') != std::string::npos && text.find('?') == std::string::npos)
        throw no_model(text, "is neither a named model nor a formula");
    return {text, [](const Data&) { return Start{}; }};
}

std::string list_of_models() {
    return "  exponential       a*exp(-b*x)+c\n"
           "  logistic          a/(1+exp(-k*(x-x0)))+c\n"
           "  gauss:K           K peaks h1*exp(-((x-p1)/w1)^2/2), ..., on a background c\n"
           "  gauss:K:linear    the same on a background c+d*x\n"
           "  any formula in x, such as \"a*sin(w*x+p)\": its other names are the parameters\n";
}

} // namespace fit
