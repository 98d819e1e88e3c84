// Text for the terminal, for a table and for gnuplot.
#include "report.hpp"

#include "common/gnuplot.hpp"
#include "common/input_error.hpp"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace fit {
namespace {

void print_parameters(const std::vector<std::string>& names, const Fit& fit) {
    std::size_t width = 0;
    for (const std::string& name : names) width = std::max(width, name.size());
    for (std::size_t k = 0; k < names.size(); ++k) {
        std::printf("%-11s  %-*s = %-14.8g", k == 0 ? "parameters" : "", static_cast<int>(width), names[k].c_str(),
                    fit.value[k]);
        if (!fit.error.empty() && std::isnan(fit.error[k])) std::printf(" on its bound");
        else if (!fit.error.empty()) std::printf(" +- %.3g", fit.error[k]);
        std::puts("");
    }
    if (fit.error.empty() && fit.converged) std::puts("             as many as points: standard errors cannot be told");
}

} // namespace

void print(const std::string& file, const Data& data, const std::string& formula, const std::vector<std::string>& names,
           const Fit& fit) {
    const auto [first, last] = std::minmax_element(data.x.begin(), data.x.end());
    std::printf("data         %s: %d point%s, x from %g to %g%s\n", file.c_str(), data.count(),
                data.count() == 1 ? "" : "s", *first, *last, data.sigma.empty() ? "" : ", standard deviations given");
    std::printf("model        %s\n", formula.c_str());
    print_parameters(names, fit);
    std::printf("residual     %.6g  2-norm of y - fit%s\n", fit.residual,
                data.sigma.empty() ? "" : " over standard deviations");
    const double square = fit.residual * fit.residual / fit.freedom;
    if (fit.freedom > 0 && data.sigma.empty())
        std::printf("deviation    %.6g  of a point from the curve, %d degrees of freedom\n", std::sqrt(square),
                    fit.freedom);
    if (fit.freedom > 0 && !data.sigma.empty())
        std::printf("chi-square   %.6g  reduced, %d degrees of freedom\n", square, fit.freedom);
    std::printf("iterations   %d: %s\n", fit.iterations, fit.reason.c_str());
}

void write_table(const std::string& path, const Data& data, const Fit& fit) {
    std::FILE* file = std::fopen(path.c_str(), "w");
    if (file == nullptr) throw common::InputError(path, std::strerror(errno));
    std::fputs("x,y,fit,residual\n", file);
    for (std::size_t i = 0; i < data.x.size(); ++i)
        std::fprintf(file, "%.17g,%.17g,%.17g,%.17g\n", data.x[i], data.y[i], fit.fitted[i], data.y[i] - fit.fitted[i]);
    errno = 0;
    const bool failed = std::ferror(file) != 0;
    if ((std::fclose(file) != 0) || failed) throw common::InputError(path, std::strerror(errno ? errno : EIO));
}

void plot(const std::string& path, const Data& data, Expression& model, const Fit& fit, const std::string& title) {
    constexpr int pieces = 500; // of the curve
    common::draw(path, title, [&](std::FILE* script) {
        const bool named = data.names.size() >= 2;
        std::fprintf(script,
                     "set xlabel %s noenhanced\nset ylabel %s noenhanced\nset key above\nset offsets graph 0.02, graph "
                     "0.02\n$points << END\n",
                     common::label(named ? data.names[0] : "x").c_str(),
                     common::label(named ? data.names[1] : "y").c_str());
        for (std::size_t i = 0; i < data.x.size(); ++i)
            std::fprintf(script, "%.10g %.10g %.10g\n", data.x[i], data.y[i], data.sigma.empty() ? 0.0 : data.sigma[i]);
        std::fputs("END\n$curve << END\n", script);
        const auto [first, last] = std::minmax_element(data.x.begin(), data.x.end());
        for (int i = 0; i <= pieces; ++i) {
            const double x = *first + (*last - *first) * i / pieces, y = model(x, fit.value.data());
            if (std::isfinite(y)) std::fprintf(script, "%.10g %.10g\n", x, y);
            else std::fputs("\n", script); // a gap
        }
        std::fprintf(script,
                     "END\nplot $points with %s pointtype 7 pointsize 0.6 linecolor 1 title 'data', "
                     "$curve with lines linewidth 2 linecolor 2 title 'fit'\n",
                     data.sigma.empty() ? "points" : "yerrorbars");
    });
}

} // namespace fit
