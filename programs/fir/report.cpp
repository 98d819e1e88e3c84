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

bool is_passband(const Band& band) { return band.desired != 0.0; }

/// Shades what lies between two frequencies.
void shade(std::FILE* script, double first, double last) {
    std::fprintf(script,
                 "set object rectangle from first %.10g, graph 0 to first %.10g, graph 1 behind fillcolor rgb "
                 "'#e3ecf5' fillstyle solid noborder\n",
                 first, last);
}

/// Over all frequencies. Zeros go down without end, lobes do not: they and the bands decide how far down is shown.
void draw_response(std::FILE* script, const Options& options, const Filter& filter) {
    const Amplitude amplitude(filter.taps);
    const int points = std::max(1000, 8 * static_cast<int>(filter.taps.size())); // some of them in every lobe
    double least = 0.0, greatest = -HUGE_VAL;
    std::fputs("$response << END\n", script);
    for (int i = 0; i <= points; ++i) {
        const double f = 0.5 * i / points, response = decibels(std::abs(amplitude(f)));
        std::fprintf(script, "%.10g %.6g\n", options.rate * f, response);
        greatest = std::max(greatest, response);
    }
    std::fputs("END\n", script);
    for (std::size_t b = 0; b < options.bands.size(); ++b) {
        if (filter.ripple[b].greatest > 0.0) least = std::min(least, decibels(filter.ripple[b].greatest));
        shade(script, options.rate * options.bands[b].first, options.rate * options.bands[b].last);
    }
    std::fprintf(script,
                 "set title 'Response of %zu taps (shaded: the bands)'\nset ylabel 'response in dB'\n"
                 "plot [0:%.10g] [%g:%g] $response with lines linewidth 1.5 notitle\n",
                 filter.taps.size(), 0.5 * options.rate, std::floor(least / 10.0 - 2.0) * 10.0,
                 std::ceil(greatest / 10.0 + 0.5) * 10.0);
}

/// From the first passband to the last, each relative to what is desired in it.
void draw_ripple(std::FILE* script, const Options& options, const Filter& filter) {
    const Amplitude amplitude(filter.taps);
    double first = HUGE_VAL, last = 0.0;
    std::fputs("unset object\n$ripple << END\n", script);
    for (const Band& band : options.bands) {
        if (!is_passband(band)) continue;
        first = std::min(first, band.first);
        last = std::max(last, band.last);
        const double width = band.last - band.first;
        const int points = 500 + static_cast<int>(16.0 * width * static_cast<double>(filter.taps.size()));
        for (int i = 0; i <= points; ++i) {
            const double f = band.first + width * i / points;
            std::fprintf(script, "%.10g %.6g\n", options.rate * f, decibels(std::abs(amplitude(f) / band.desired)));
        }
        std::fputs("\n", script); // the curve stops here
    }
    std::fputs("END\n", script);
    for (const Band& band : options.bands)
        if (is_passband(band)) shade(script, options.rate * band.first, options.rate * band.last);
    std::fprintf(script,
                 "set title 'Passband ripple'\nset ylabel 'ripple in dB'\n"
                 "plot [%.10g:%.10g] $ripple with lines linewidth 1.5 notitle\n",
                 options.rate * first, options.rate * last);
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

void plot(const Options& options, const Filter& filter) {
    const bool passes = std::any_of(options.bands.begin(), options.bands.end(), is_passband);
    common::draw(options.plot, "",
                 [&](std::FILE* script) {
                     if (passes) std::fputs("set multiplot layout 2,1\n", script);
                     std::fprintf(script, "set lmargin 14\nset rmargin 3\nset xlabel 'frequency in %s'\n",
                                  options.in_hertz ? "Hz" : "cycles per sample");
                     draw_response(script, options, filter);
                     if (passes) draw_ripple(script, options, filter);
                     if (passes) std::fputs("unset multiplot\n", script);
                 },
                 {.height = passes ? 760 : 460});
}

} // namespace fir
