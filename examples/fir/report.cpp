// Text for the terminal, for a file of taps and for gnuplot.
#include "report.hpp"

#include "common/gnuplot.hpp"
#include "common/input_error.hpp"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace fir {
namespace {

double decibels(double magnitude) { return 20.0 * std::log10(std::max(magnitude, 1e-20)); }

void print_band(const Band& band, const Ripple& ripple, double rate) {
    std::printf("band         %g to %g: ", rate * band.first, rate * band.last);
    if (band.desired == 0.0) std::printf("stops, %.2f dB down", -decibels(ripple.greatest));
    else
        std::printf("%g, %+.4f to %+.4f dB", band.desired, decibels(ripple.least / std::abs(band.desired)),
                    decibels(ripple.greatest / std::abs(band.desired)));
    std::printf(", off by up to %.3g\n", ripple.error);
}

/// Half of them: the others are their mirror image.
void print_taps(const std::vector<double>& taps) {
    for (std::size_t k = 0; k < (taps.size() + 1) / 2; ++k) {
        const char* separator = k % 4 == 3 ? "\n" : "";
        std::printf("%s%19.12g%s", k % 4 == 0 ? "    " : "", taps[k], separator);
    }
    if ((taps.size() + 1) / 2 % 4 != 0) std::puts("");
}

} // namespace

void print(const Options& options, const Filter& filter) {
    const std::size_t taps = filter.taps.size();
    std::printf("filter       %zu taps, symmetric, delay %g samples\n", taps, 0.5 * static_cast<double>(taps - 1));
    for (std::size_t b = 0; b < options.bands.size(); ++b) print_band(options.bands[b], filter.ripple[b], options.rate);
    std::printf("error        %.6g  weighted, at each of %d extrema\n", filter.level, filter.used + 1);
    if (filter.used < filter.terms)
        std::printf("             %d of %d coefficients: more are beyond rounding\n", filter.used, filter.terms);
    std::printf("taps         1 to %zu, the others are their mirror image\n", (taps + 1) / 2);
    print_taps(filter.taps);
}

void write_taps(const std::string& path, const Filter& filter) {
    std::FILE* file = std::fopen(path.c_str(), "w");
    if (file == nullptr) throw common::InputError(path, std::strerror(errno));
    for (const double tap : filter.taps) std::fprintf(file, "%.17g\n", tap);
    errno = 0;
    const bool failed = std::ferror(file) != 0;
    if ((std::fclose(file) != 0) || failed) throw common::InputError(path, std::strerror(errno ? errno : EIO));
}

bool plot(const Options& options, const Filter& filter) {
    const std::string title = std::to_string(filter.taps.size()) + " taps";
    const int points = std::max(1000, 8 * static_cast<int>(filter.taps.size())); // some of them in every lobe
    return common::draw(options.plot, title, [&](std::FILE* script) {
        std::fputs("set xlabel 'frequency'\nset ylabel 'response in dB'\n$response << END\n", script);
        double least = 0.0, greatest = -HUGE_VAL;
        for (int i = 0; i <= points; ++i) {
            const double f = 0.5 * i / points, response = decibels(std::abs(filter.amplitude(f)));
            std::fprintf(script, "%.10g %.6g\n", options.rate * f, response);
            greatest = std::max(greatest, response);
        }
        for (std::size_t b = 0; b < options.bands.size(); ++b) // zeros go down without end, lobes do not
            if (filter.ripple[b].greatest > 0.0) least = std::min(least, decibels(filter.ripple[b].greatest));
        std::fputs("END\n", script);
        for (const Band& band : options.bands) // shaded
            std::fprintf(script,
                         "set object rectangle from first %.10g, graph 0 to first %.10g, graph 1 behind "
                         "fillcolor rgb '#eef3f8' fillstyle solid noborder\n",
                         options.rate * band.first, options.rate * band.last);
        std::fprintf(script, "plot [0:%.10g] [%g:%g] $response with lines linewidth 1.5 notitle\n", 0.5 * options.rate,
                     std::floor(least / 10.0 - 2.0) * 10.0, std::ceil(greatest / 10.0 + 0.5) * 10.0);
    });
}

} // namespace fir
