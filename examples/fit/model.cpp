// A named model is a formula with an estimate of its parameters; nothing else sets it apart from a user's formula.
#include "model.hpp"

#include "common/input_error.hpp"
#include "start_values.hpp"

#include <charconv>

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

} // namespace

Model model_of(const std::string& text) {
    if (text == "exponential") return {"a*exp(-b*x)+c", start_of_exponential};
    if (text == "logistic") return {"a/(1+exp(-k*(x-x0)))+c", start_of_logistic};
    if (text == "gauss") return peaks_of("gauss:1");
    if (text.starts_with("gauss:")) return peaks_of(text);
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
