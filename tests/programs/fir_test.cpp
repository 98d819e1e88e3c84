// nxl-fir from outside: taps against the response that they were designed for, the drawing, and what is refused.
#include "run_program.hpp"
#include "terminal.hpp"

#include <algorithm>
#include <cmath>
#include <sstream>
#include <vector>

namespace {

using program_test::number_after;

class Fir : public program_test::Program {
  protected:
    Fir() : program_test::Program(NXL_FIR_PROGRAM) {}

    std::vector<double> taps() const {
        std::istringstream text(read("taps"));
        std::vector<double> taps;
        for (double tap = 0.0; text >> tap;) taps.push_back(tap);
        return taps;
    }
};

struct Band {
    double first, last, desired, weight;
};

/// |sum of h(k) exp(-2 pi i f k)|, whatever the symmetry.
double magnitude(const std::vector<double>& taps, double f) {
    double re = 0.0, im = 0.0;
    for (std::size_t k = 0; k < taps.size(); ++k) {
        re += taps[k] * std::cos(2.0 * M_PI * f * static_cast<double>(k));
        im += taps[k] * std::sin(2.0 * M_PI * f * static_cast<double>(k));
    }
    return std::hypot(re, im);
}

TEST_F(Fir, TapsHaveTheResponseThatWasAskedFor) {
    struct Case {
        std::size_t taps;
        std::string options;
        std::vector<Band> bands;
    };
    const Case cases[] = {
        {61, "", {{0, 0.2, 1, 1}, {0.25, 0.5, 0, 1}}},
        {60, "", {{0, 0.2, 1, 1}, {0.25, 0.5, 0, 1}}},
        {3, "", {{0, 0.2, 1, 1}, {0.25, 0.5, 0, 1}}},
        {4, "--rate 2 --bands 0,0.4,0.6,1", {{0, 0.2, 1, 1}, {0.3, 0.5, 0, 1}}},
        {101,
         "--rate 48000 --bands 0,4800,5760,12000,12960,24000 --desired 0,2,0 --weights 10,1,5",
         {{0, 0.1, 0, 10}, {0.12, 0.25, 2, 1}, {0.27, 0.5, 0, 5}}},
        {72,
         "--bands 0,0.1,0.15,0.3,0.35,0.4999 --desired 0,1,0",
         {{0, 0.1, 0, 1}, {0.15, 0.3, 1, 1}, {0.35, 0.5, 0, 1}}},
        {41, "--bands 0,0.3,0.4,0.5 --desired 0,1", {{0, 0.3, 0, 1}, {0.4, 0.5, 1, 1}}},
        {9, "--bands 0.1,0.101,0.2,0.3", {{0.1, 0.101, 1, 1}, {0.2, 0.3, 0, 1}}},
    };
    for (const Case& c : cases) {
        const auto run = this->run("--output taps --taps " + std::to_string(c.taps) + " " + c.options);
        EXPECT_EQ(run.status, 0) << c.options << run.err;
        const auto h = taps();
        ASSERT_EQ(h.size(), c.taps) << c.options;
        for (std::size_t k = 0; k < h.size(); ++k) EXPECT_EQ(h[k], h[h.size() - 1 - k]) << k;
        double worst = 0.0;
        for (const Band& band : c.bands)
            for (int i = 0; i <= 3000; ++i) {
                const double f = band.first + (band.last - band.first) * i / 3000.0;
                worst = std::max(worst, band.weight * std::abs(magnitude(h, f) - band.desired));
            }
        const double level = number_after(run.out, "\nerror ");
        EXPECT_NEAR(worst, level, 0.015 * level) << c.taps << c.options; // the grid is not endlessly fine
        EXPECT_LT(level, c.taps > 40 ? 0.1 : 1.0);
        EXPECT_NE(run.out.find(" " + std::to_string((c.taps + 1) / 2 + 1) + " extrema"), std::string::npos);
    }
}

TEST_F(Fir, ReportsDecibels) {
    const auto run = this->run("--density 100 --rate 1000 --bands 0,200,250,500 --desired 2,0");
    const double level = number_after(run.out, "\nerror ");
    EXPECT_NEAR(number_after(run.out, "stops, "), -20.0 * std::log10(level), 0.02);
    EXPECT_NEAR(number_after(run.out, "2, "), 20.0 * std::log10(1.0 - 0.5 * level), 2e-3);
    EXPECT_NE(run.out.find("250 to 500"), std::string::npos);
    EXPECT_EQ(this->run("--quiet").out, "");
}

TEST_F(Fir, MoreTapsThanRoundingAllowsAreZero) {
    const auto run = this->run("--taps 501 --output taps");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find("more are beyond rounding"), std::string::npos);
    const auto h = taps();
    ASSERT_EQ(h.size(), 501u);
    EXPECT_EQ(h[0], 0.0);
    EXPECT_LT(magnitude(h, 0.3), 1e-5);
    EXPECT_NEAR(magnitude(h, 0.1), 1.0, 1e-5);
}

TEST_F(Fir, DrawsTheResponse) {
    EXPECT_EQ(run("--plot r.svg").status, 0);
    EXPECT_EQ(run("--plot hz.svg --rate 1000 --desired 0,0").status, 0);
    EXPECT_EQ(run("--plot r.png").status, 0);
    const std::string drawing = read("r.svg"), stops = read("hz.svg");
    EXPECT_TRUE(drawing.starts_with("<?xml"));
    for (const char* text : {"response in dB", "Passband ripple", "frequency in cycles per sample"})
        EXPECT_NE(drawing.find(text), std::string::npos) << text;
    EXPECT_GT(drawing.size(), 10000u);
    EXPECT_NE(stops.find("frequency in Hz"), std::string::npos);
    EXPECT_EQ(stops.find("ripple"), std::string::npos); // nothing passes
    EXPECT_TRUE(read("r.png").starts_with("\x89PNG"));
    const auto without = run("--plot q.svg", "mkdir -p empty && PATH=\"$PWD/empty\"");
    EXPECT_EQ(without.status, 1);
    EXPECT_EQ(without.err, "nxl-fir: q.svg: no plot: gnuplot is not installed\n");
    EXPECT_NE(without.out.find("taps"), std::string::npos);
}

TEST_F(Fir, CtrlCEndsALongDesignOnALineOfItsOwn) {
    const auto session = program_test::interrupt_at("\rdesigning 8001 taps  1 s", NXL_FIR_PROGRAM,
                                                    {"--taps", "8001", "--bands", "0,0.2,0.2003,0.5"});
    const std::string& shown = session.shown;
    EXPECT_TRUE(session.interrupted()) << session.status;
    EXPECT_TRUE(shown.ends_with("\n") && shown.find("filter") == std::string::npos) << shown;
}

TEST_F(Fir, RefusesInOneLine) {
    expect_refused({
        {"--taps 60 --bands 0,0.2,0.3,0.5 --desired 0,1", 1,
         "60 taps: a filter of even length is zero at half the sampling rate: take an odd number of taps"},
        {"--output no/where", 1, "no/where: No such file or directory"},
        {"--bands 0,0.2,0.3", 2, "--bands: two edges for each band, not 3 in all"},
        {"--bands 0,0.2,0.2,0.5", 2, "--bands: the edges do not ascend"},
        {"--bands 0,0.2,0.3,0.6", 2, "--bands: an edge is not in 0 to half the rate"},
        {"--bands=-0.1,0.2", 2, "--bands: an edge is not in 0 to half the rate"},
        {"--bands nan,0.2", 2, "--bands: an edge is not in 0 to half the rate"},
        {"--desired 1,0,1", 2, "--desired: 3 for 2 bands"},
        {"--desired inf,0", 2, "--desired: not a number"},
        {"--weights 1", 2, "--weights: 1 for 2 bands"},
        {"--weights 1,0", 2, "--weights: not above 0"},
        {"--rate 0", 2, "--rate: not above 0"},
        {"--rate 48000 --bands 0,0.2,0.25,0.5", 2,
         "--bands: are edges up to 0.5 fractions of the rate? With --rate they are in Hz: leave --rate out, or "
         "multiply "
         "them by 48000"},
        {"--plot r.pdf", 2, "--plot: 'r.pdf' ends neither in .svg nor in .png"},
    });
    for (const char* arguments : {"--taps 2", "--taps 9000", "--taps x", "--density 1", "--nonsense", "extra"})
        expect_refused({arguments, 2, "..."});
    EXPECT_TRUE(run("--version").out.starts_with("nxl-fir "));
    EXPECT_NE(run("--help").out.find("--bands"), std::string::npos);
}

} // namespace
