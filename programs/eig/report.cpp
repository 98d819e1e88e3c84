// Text for the terminal, arrays, and curves for gnuplot.
#include "report.hpp"

#include "common/gnuplot.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numbers>

namespace eig {
namespace {

constexpr std::size_t kShown = 6; // values of a report that was not asked for all

std::string text_of(Complex value, bool real) {
    char text[64]; // NOLINT: two numbers and what stands around them
    if (real) std::snprintf(text, sizeof text, "%.10g", value.real());
    else std::snprintf(text, sizeof text, "%.10g%+.10gi", value.real(), value.imag());
    return text;
}

void print_values(const Spectrum& s, bool all, bool vibration) {
    const std::size_t count = all ? s.value.size() : std::min(s.value.size(), kShown);
    for (std::size_t k = 0; k < count; ++k) {
        std::printf("%11zu  %s", k + 1, text_of(s.value[k], s.real).c_str());
        if (vibration) std::printf("  %.4g Hz", frequency(s.value[k].real()));
        std::puts("");
    }
    if (count < s.value.size()) std::printf("        ...  %s\n", text_of(s.value.back(), s.real).c_str());
}

void print_rank(const Singular& s, double largest) {
    std::printf("rank         %d, values above %.2e of the largest\n", s.rank, s.rcond);
    if (s.smallest > 0.0) std::printf("condition    %.2e  largest / smallest\n", largest / s.smallest);
    else std::puts("condition    inf  the smallest is 0");
}

void print_quality(const Spectrum& s) {
    std::printf("residual     %.2e  %s / |A|, the largest\n", s.residual,
                s.singular ? "|A v - s u|, |A^H u - s v|" : "|A v - lambda v|");
    if (s.orthogonality)
        std::printf("orthogonal   %.2e  |V^H V - I|%s, its largest element\n", *s.orthogonality,
                    s.singular ? ", |U^H U - I|" : "");
}

} // namespace

double frequency(double value) { return std::sqrt(std::max(value, 0.0)) / (2.0 * std::numbers::pi); }

void print(const Report& r, const Spectrum& s) {
    std::printf("matrix       %s: %s\n", r.source.c_str(), r.facts.c_str());
    std::printf("method       %s\n", s.method.c_str());
    std::printf(s.singular ? "singular     %zu, descending\n" : "eigenvalues  %zu%s\n", s.value.size(),
                r.vibration ? ", squares of angular frequencies in 1/s^2" : "");
    print_values(s, r.all_values, r.vibration);
    if (s.singular) print_rank(*s.singular, s.norm);
    if (s.vectors() > 0) print_quality(s);
    std::printf("time         %s %.3f s, decomposition %.3f s\n", r.generated ? "generate" : "read", r.input_seconds,
                r.seconds);
}

namespace {

/// Whether real values ask for a logarithmic scale: positive ones over more than three decimal orders. Of singular
/// values those that are 0 are left out of it.
bool far_apart(const Spectrum& s) {
    if (!s.real || s.value.empty()) return false;
    const double first = s.value.front().real(), last = s.value.back().real();
    return s.singular ? first > 1e3 * last : first > 0.0 && last > 1e3 * first;
}

} // namespace

void plot(const std::string& path, const std::string& title, const Spectrum& s) {
    common::draw(path, title, [&](std::FILE* script) {
        std::fprintf(script,
                     s.real ? "set xlabel 'number'\nset ylabel '%s'\n" : "set xlabel 'real'\nset ylabel 'imaginary'\n",
                     s.singular ? "singular value" : "eigenvalue");
        if (far_apart(s)) std::fputs("set logscale y\nset format y '10^{%L}'\n", script);
        std::fputs("set offsets graph 0.02, graph 0.02, graph 0.02, graph 0.02\n$values << END\n", script);
        for (std::size_t k = 0; k < s.value.size(); ++k)
            std::fprintf(script, "%.10g %.10g\n", s.real ? static_cast<double>(k + 1) : s.value[k].real(),
                         s.real ? s.value[k].real() : s.value[k].imag());
        std::fputs("END\nplot $values with points pointtype 7 pointsize 0.4 title ''\n", script);
    });
}

void write_values(const std::string& path, const Spectrum& s) {
    const int n = static_cast<int>(s.value.size());
    if (s.real) {
        solve::Block<double> real(n, 1);
        std::transform(s.value.begin(), s.value.end(), real.value.begin(), [](Complex v) { return v.real(); });
        return solve::write_block(path, real);
    }
    solve::Block<Complex> block(n, 1);
    block.value = s.value;
    solve::write_block(path, block);
}

void write_vectors(const std::string& path, const AnyBlock& vectors) {
    std::visit([&](const auto& block) { solve::write_block(path, block); }, vectors);
}

} // namespace eig
