// The command line as CLI11 sees it.
#include "options.hpp"

#include "common/command_line.hpp"
#include "common/gnuplot.hpp"

#include <cmath>
#include <cstdio>

namespace fir {
namespace {

struct Lists {
    std::vector<double> edges, desired, weights;
};

void declare(CLI::App& app, Options& o, Lists& lists) {
    app.set_version_flag("--version", "nxl-fir " NXL_FIR_VERSION);
    app.footer("Exit status: 0 designed, 1 no such filter, file or plot, or no memory, 2 bad usage, 3 not converged.\n"
               "Example: nxl-fir --rate 48000 --taps 81 --bands 0,8000,10000,24000 --plot lowpass.svg");
    app.add_option("--taps", o.taps, "Length of the filter, odd or even")
        ->check(CLI::Range(3, 8001))
        ->option_text("N [61]");
    app.add_option("--rate", o.rate, "Sampling rate; edges are then in Hz, else fractions of it")->option_text("HZ");
    app.add_option("--bands", lists.edges, "Edges of the bands, two for each, ascending")
        ->delimiter(',')
        ->option_text("F1,F2,... [0,0.2,0.25,0.5 of the rate]");
    app.add_option("--desired", lists.desired, "Magnitude in each band")
        ->delimiter(',')
        ->option_text("D1,... [1,0,1,0,...]");
    app.add_option("--weights", lists.weights, "Weight of the error in each band")
        ->delimiter(',')
        ->option_text("W1,... [1,1,...]");
    app.add_option("--density", o.density, "Points of the grid per coefficient")
        ->check(CLI::Range(4, 1000))
        ->option_text("N [32]");
    app.add_option("--output", o.output, "Write the taps, one per line")->option_text("FILE");
    app.add_option("--plot", o.plot, "Draw the response and the ripple in dB through gnuplot")
        ->check(common::fault_of_drawing)
        ->option_text("FILE.svg|FILE.png");
    app.add_flag("--quiet", o.quiet, "Print nothing but errors");
}

void check_edges(const std::vector<double>& edges) {
    if (edges.empty() || edges.size() % 2 != 0)
        throw common::UsageError("--bands: two edges for each band, not " + std::to_string(edges.size()) + " in all");
    if (!(edges.front() >= 0.0) || !(edges.back() <= 0.5))
        throw common::UsageError("--bands: an edge is not in 0 to half the rate");
    for (std::size_t i = 1; i < edges.size(); ++i)
        if (!(edges[i - 1] < edges[i])) throw common::UsageError("--bands: the edges do not ascend");
}

/// Fractions given together with a rate would make a filter for next to nothing of the spectrum.
void check_unit(const std::vector<double>& edges, double rate) {
    constexpr double least_rate = 10.0; // below it, edges up to 1 may well be meant
    if (edges.empty() || rate < least_rate || !(edges.back() <= 1.0)) return;
    const bool of_half = edges.back() > 0.5;
    char text[200];
    std::snprintf(
        text, sizeof text,
        "--bands: are edges up to %g fractions of %sthe rate? With --rate they are in Hz: leave --rate out%s, "
        "or multiply them by %g",
        edges.back(), of_half ? "half " : "", of_half ? " and halve them" : "", of_half ? 0.5 * rate : rate);
    throw common::UsageError(text);
}

/// The numbers that were given for the bands; without any, the two in turn.
std::vector<double> per_band(const std::string& option, const std::vector<double>& given, std::size_t bands,
                             double even, double odd) {
    std::vector<double> values = given;
    for (std::size_t b = 0; given.empty() && b < bands; ++b) values.push_back(b % 2 == 0 ? even : odd);
    if (values.size() != bands)
        throw common::UsageError(option + ": " + std::to_string(given.size()) + " for " + std::to_string(bands) +
                                 " bands");
    return values;
}

std::vector<Band> bands_of(const Lists& lists, double rate) {
    if (!(rate > 0.0) || !std::isfinite(rate)) throw common::UsageError("--rate: not above 0");
    check_unit(lists.edges, rate);
    std::vector<double> edges{0.0, 0.2, 0.25, 0.5};
    if (!lists.edges.empty()) edges = lists.edges;
    if (!lists.edges.empty())
        for (double& edge : edges) edge /= rate;
    check_edges(edges);
    const std::size_t count = edges.size() / 2;
    const std::vector<double> desired = per_band("--desired", lists.desired, count, 1.0, 0.0);
    const std::vector<double> weights = per_band("--weights", lists.weights, count, 1.0, 1.0);
    std::vector<Band> bands;
    for (std::size_t b = 0; b < count; ++b) {
        if (!std::isfinite(desired[b])) throw common::UsageError("--desired: not a number");
        if (!(weights[b] > 0.0) || !std::isfinite(weights[b])) throw common::UsageError("--weights: not above 0");
        bands.push_back({edges[2 * b], edges[2 * b + 1], desired[b], weights[b]});
    }
    return bands;
}

} // namespace

std::optional<Options> parse_options(int argc, char** argv) {
    Options options;
    Lists lists;
    CLI::App app("Designs a linear-phase filter whose largest error is least.", "nxl-fir");
    declare(app, options, lists);
    if (!common::parse(app, argc, argv)) return std::nullopt;
    options.in_hertz = app.count("--rate") > 0;
    options.bands = bands_of(lists, options.rate);
    return options;
}

} // namespace fir
