// nxl-fit from outside: parameters and standard errors against what is known, and every way in which it refuses.
#include "run_program.hpp"

#include <cmath>
#include <functional>
#include <random>
#include <regex>
#include <sstream>
#include <vector>

namespace {

using program_test::number_after;

struct Estimate {
    double value = std::nan(""), error = std::nan("");
};

Estimate parameter(const std::string& report, const std::string& name) {
    const std::regex line("(?:^|\n)(?:parameters)? +" + name + " += (\\S+) *(?:\\+- (\\S+))?");
    std::smatch found;
    if (!std::regex_search(report, found, line)) return {};
    return {std::stod(found[1]), found[2].matched ? std::stod(found[2]) : std::nan("")};
}

struct Truth {
    std::string model; // and options
    std::function<double(double)> y;
    double first, last;
    std::vector<std::pair<std::string, double>> parameters;
};

double peak(double x, double h, double p, double w) { return h * std::exp(-0.5 * (x - p) * (x - p) / (w * w)); }

const Truth truths[] = {
    {"exponential",
     [](double x) { return 2.5 * std::exp(-0.7 * x) + 0.4; },
     0,
     8,
     {{"a", 2.5}, {"b", 0.7}, {"c", 0.4}}},
    {"exponential",
     [](double x) { return 2.5 * std::exp(0.7 * x) + 4.0; },
     0,
     5,
     {{"a", 2.5}, {"b", -0.7}, {"c", 4.0}}},
    {"logistic",
     [](double x) { return 5.0 / (1.0 + std::exp(-1.3 * (x - 4.0))) + 1.0; },
     -2,
     10,
     {{"a", 5}, {"k", 1.3}, {"x0", 4}, {"c", 1}}},
    {"logistic",
     [](double x) { return 5.0 / (1.0 + std::exp(1.3 * (x - 4.0))) + 1.0; },
     -2,
     10,
     {{"a", 5}, {"k", -1.3}, {"x0", 4}, {"c", 1}}},
    {"gauss", [](double x) { return peak(x, 3, 2, 0.5) + 1.0; }, -3, 8, {{"h1", 3}, {"p1", 2}, {"w1", 0.5}, {"c", 1}}},
    {"gauss:2:linear",
     [](double x) { return peak(x, 3, 200, 5) + peak(x, 2, 240, 8) + 10.0 + 0.02 * x; },
     150,
     300,
     {{"h1", 3}, {"p1", 200}, {"w1", 5}, {"h2", 2}, {"p2", 240}, {"w2", 8}, {"c", 10}, {"d", 0.02}}},
    {"'a*sin(w*x+p)' --start a=1,w=1.4",
     [](double x) { return 2.0 * std::sin(1.5 * x + 0.3); },
     0,
     10,
     {{"a", 2}, {"w", 1.5}, {"p", 0.3}}},
    // The first step from here leads to where the formula has no value, and has to be taken back.
    {"'ln(b*x+1.0D0)' --start b=1d2", [](double x) { return std::log(0.5 * x + 1.0); }, 0, 10, {{"b", 0.5}}},
    {"'a1d0*exp(-x^2/2.5d-1/s)'",
     [](double x) { return 3.0 * std::exp(-x * x / 2.0); },
     -3,
     3,
     {{"a1d0", 3}, {"s", 8}}},
};

class Fit : public program_test::Program {
  protected:
    Fit() : program_test::Program(NXL_FIT_PROGRAM) {}

    /// 120 points of the curve at x in `x_unit` and y in `y_unit`, with noise of that deviation; sigma tells it.
    void write_points(const Truth& t, double noise, bool sigma = false) const {
        std::mt19937 bits(7); // NOLINT: the same noise at each run
        std::normal_distribution<double> normal;
        std::ostringstream text;
        text.precision(17);
        for (int i = 0; i < 120; ++i) {
            const double x = t.first + (t.last - t.first) * i / 119.0;
            text << x << ',' << t.y(x) + noise * normal(bits);
            if (sigma) text << ',' << noise;
            text << '\n';
        }
        write("d.csv", text.str());
    }
};

TEST_F(Fit, FindsWhatMadeThePoints) {
    for (const Truth& t : truths) {
        write_points(t, 0.0);
        const auto run = this->run("d.csv --model " + t.model);
        EXPECT_EQ(run.status, 0) << t.model << run.err << run.out;
        for (const auto& [name, value] : t.parameters)
            EXPECT_NEAR(parameter(run.out, name).value, value, 1e-6 * std::abs(value)) << t.model << " " << name;
    }
}

TEST_F(Fit, NoiseMovesParametersByTheirStandardErrors) {
    for (const Truth& t : truths) {
        write_points(t, 0.05, true);
        const auto run = this->run("d.csv --model " + t.model);
        EXPECT_EQ(run.status, 0) << t.model << run.err << run.out;
        EXPECT_NEAR(number_after(run.out, "chi-square "), 1.0, 0.5) << t.model;
        for (const auto& [name, value] : t.parameters) {
            const auto [found, error] = parameter(run.out, name);
            EXPECT_NEAR(found, value, 4.0 * error) << t.model << " " << name;
            EXPECT_GT(std::abs(found - value), 1e-4 * error) << t.model << " " << name;
        }
    }
    const auto shipped = run("'" NXL_FIT_DECAY "' --model exponential");
    for (const auto& [name, value] : truths[0].parameters)
        EXPECT_NEAR(parameter(shipped.out, name).value, value, 4.0 * parameter(shipped.out, name).error) << name;
    EXPECT_NEAR(number_after(shipped.out, "deviation "), 0.03, 0.01);
}

TEST_F(Fit, UnitsDoNotMatter) { // catches tolerances that take x or y for about 1
    const Truth tiny{"exponential",
                     [](double x) { return 1e-12 * std::exp(-1e6 * x) + 2e-13; },
                     0,
                     5e-6,
                     {{"a", 1e-12}, {"b", 1e6}, {"c", 2e-13}}};
    const Truth huge{"'a*exp(-b*x)+c' --start a=5e12,b=5e-7,c=1e11",
                     [](double x) { return 1e13 * std::exp(-1e-6 * x); },
                     0,
                     5e6,
                     {{"a", 1e13}, {"b", 1e-6}}};
    for (const Truth& t : {tiny, huge}) {
        write_points(t, 0.0);
        const auto run = this->run("d.csv --model " + t.model);
        EXPECT_EQ(run.status, 0) << run.err;
        for (const auto& [name, value] : t.parameters)
            EXPECT_NEAR(parameter(run.out, name).value, value, 1e-6 * value) << name;
    }
}

// A line through x = 1 .. 5: mean 3, sum of squares about it 10; the residuals about 1.2 + 0.6 x have the squares 4.4.
const std::string kLine[] = {"1 2", "2 2", "3 4", "4 2", "5 5"};

TEST_F(Fit, StandardErrorsMeetTheClosedForms) {
    std::string plain, weighted;
    for (const std::string& point : kLine) {
        plain += point + "\n";
        weighted += point + " 0.5\n";
    }
    write("plain", plain);
    const auto line = run("plain --model 'a+b*x'");
    const double s = std::sqrt(number_after(line.out, "residual ") * number_after(line.out, "residual ") / 3.0);
    EXPECT_NEAR(parameter(line.out, "a").value, 1.2, 1e-7);
    EXPECT_NEAR(parameter(line.out, "b").value, 0.6, 1e-7);
    EXPECT_NEAR(s * s, 4.4 / 3.0, 1e-4);
    EXPECT_NEAR(number_after(line.out, "deviation "), s, 1e-5);
    EXPECT_NEAR(parameter(line.out, "b").error, s / std::sqrt(10.0), 0.002);
    EXPECT_NEAR(parameter(line.out, "a").error, s * std::sqrt(0.2 + 0.9), 0.006);

    write("weighted", weighted);
    const auto known = run("weighted --model 'a+b*x'");
    EXPECT_NEAR(parameter(known.out, "b").error, 0.5 / std::sqrt(10.0), 0.0006);
    EXPECT_NEAR(number_after(known.out, "chi-square "), s * s / 0.25, 1e-3);

    write("mean", "0 10 1\n0 20 2\n0 30 4\n"); // weights 1, 1/4, 1/16
    const auto mean = run("mean --model 'a+0*x'");
    EXPECT_NEAR(parameter(mean.out, "a").value, (10.0 + 5.0 + 1.875) / 1.3125, 1e-6);
    EXPECT_NEAR(parameter(mean.out, "a").error, 1.0 / std::sqrt(1.3125), 0.001);
}

TEST_F(Fit, ReadsWhatTablesLookLike) {
    write("plain", "1 2\n2 2\n3 4\n");
    const auto wanted = parameter(run("plain --model 'a+b*x'").out, "b");
    for (const std::string text :
         {"# note\n\ntime, signal\n1,2 # here\n 2 , +2.0\n3,4e0\n", "\xEF\xBB\xBFx;y\r\n1;2\r\n2;2\r\n3;4\r\n",
          "t\ty\n1\t 2\n  2\t2  \n3 4", "1d0 .2D1\n2.d+0 2\n30D-01 4\n", "3 4\n1 2\n2 2\n"}) {
        write("d", text);
        const auto run = this->run("d --model 'a+b*x'");
        EXPECT_EQ(run.status, 0) << text << run.err;
        EXPECT_NEAR(parameter(run.out, "b").value, wanted.value, 1e-7) << text;
    }
}

TEST_F(Fit, TablePlotAndQuiet) {
    write("d", "# x and y\ntime;signal in \xB5V\n2;2\n1;2\n3;4\n"); // of the names one is not in UTF-8
    const bool has_gnuplot = std::system("gnuplot --version >/dev/null 2>&1") == 0;
    const auto run = this->run("d --quiet --model 'a+b*x' --output t.csv --plot p.svg");
    EXPECT_EQ(run.status, has_gnuplot ? 0 : 1) << run.err;
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(read("p.svg").find(">signal in ?V<") != std::string::npos, has_gnuplot);
    std::istringstream table(read("t.csv"));
    std::string line;
    std::getline(table, line);
    EXPECT_EQ(line, "x,y,fit,residual");
    const double rows[][2] = {{2, 2}, {1, 2}, {3, 4}}; // the line through them is 2/3 + x
    for (const auto& [x, y] : rows) {
        std::getline(table, line);
        double found[4] = {};
        ASSERT_EQ(std::sscanf(line.c_str(), "%lf,%lf,%lf,%lf", &found[0], &found[1], &found[2], &found[3]), 4) << line;
        EXPECT_EQ(found[0], x);
        EXPECT_EQ(found[1], y);
        EXPECT_NEAR(found[2], 2.0 / 3.0 + x, 1e-8);
        EXPECT_NEAR(found[3], y - 2.0 / 3.0 - x, 1e-8);
    }
    EXPECT_FALSE(std::getline(table, line));
    const auto without =
        this->run("d --quiet --model 'a+b*x' --max-iterations 1 --start a=9 --plot q.svg", "PATH=/nonexistent");
    EXPECT_EQ(without.status, 1); // of two failures this is the one, but both are told
    EXPECT_TRUE(without.err.starts_with("nxl-fit: not converged")) << without.err;
    EXPECT_TRUE(without.err.ends_with("nxl-fit: q.svg: no plot: gnuplot is not installed\n")) << without.err;
    if (!has_gnuplot) return;
    EXPECT_EQ(this->run("d --quiet --model 'a+b*x' --plot \"it's.PNG\"").status, 0);
    EXPECT_TRUE(read("it's.PNG").starts_with("\x89PNG"));
    for (const auto& [name, reason] :
         {std::pair{"none/p.png", "No such file or directory"}, {"full.svg", "it could not be written whole"}}) {
        const auto lost =
            this->run("d --quiet --model 'a+b*x' --plot " + std::string(name), "ln -sf /dev/full full.svg &&");
        EXPECT_EQ(lost.status, 1);
        EXPECT_EQ(lost.err, "nxl-fit: " + std::string(name) + ": no plot: " + reason + "\n");
    }
}

TEST_F(Fit, AsManyPointsAsParametersLeaveNoStandardErrors) {
    write("d", "1 2\n2 5\n");
    const auto run = this->run("d --model 'a+b*x'");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_NEAR(parameter(run.out, "b").value, 3.0, 1e-6);
    EXPECT_TRUE(std::isnan(parameter(run.out, "b").error)) << run.out;
    EXPECT_NE(run.out.find("standard errors cannot be told"), std::string::npos) << run.out;
    write("d", "1 2 0.5\n2 5 0.5\n");
    EXPECT_NEAR(parameter(this->run("d --model 'a+b*x'").out, "b").error, 0.5 * std::sqrt(2.0), 0.001);
}

TEST_F(Fit, BoundsHoldAndWhatIsHeldCountsAsKnown) {
    std::string points;
    for (const std::string& point : kLine) points += point + " 0.5\n";
    write("d", points);
    // With the slope at most 0.3 the best intercept is 3 - 0.3 * 3, and the mean's variance is left: 0.25 / 5.
    for (const std::string bounds :
         {"--upper b=0.3", "--lower b=-1 --upper b=0.3 --start b=7", "--lower b=0.3 --upper b=0.3"}) {
        const auto run = this->run("d --model 'a+b*x' " + bounds);
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_NE(run.out.find("b = 0.3            on its bound\n"), std::string::npos) << run.out;
        EXPECT_NEAR(parameter(run.out, "a").value, 2.1, 1e-7) << bounds;
        EXPECT_NEAR(parameter(run.out, "a").error, 0.5 / std::sqrt(5.0), 0.001) << bounds;
        EXPECT_NE(run.out.find("4 degrees of freedom"), std::string::npos) << run.out;
    }
    const auto low = run("d --model 'a+b*x' --lower a=3 --upper b=0.2"); // a line through (0, 3)
    EXPECT_NEAR(parameter(low.out, "b").value, 6.0 / 55.0, 1e-7) << low.out;
    EXPECT_NEAR(parameter(low.out, "b").error, 0.5 / std::sqrt(55.0), 0.0005);
    const auto loose = run("d --model 'a+b*x' --lower a=-9,b=-9 --upper a=9,b=9");
    EXPECT_NEAR(parameter(loose.out, "b").value, 0.6, 1e-7);
    EXPECT_NEAR(parameter(loose.out, "b").error, 0.5 / std::sqrt(10.0), 0.0006);
}

TEST_F(Fit, FaultsGetOneLineAndTheirStatus) {
    const std::string good = "1 2\n2 2\n3 4\n4 3\n", line = "--model 'a+b*x'",
                      named = "; the named models are exponential, logistic, gauss:K and gauss:K:linear";
    const std::tuple<std::string, std::string, int, std::string> faults[] = {
        {"x,y\n1,2\n\n2,z\n", line, 1, "d:4: 'z' is not a number"},
        {"1,2\n2,\n", line, 1, "d:2: a field is empty"},
        {"1 2\n# two\n2 2 3\n", line, 1, "d:3: 3 columns, but 2 before"},
        {"1 2 3 4\n", line, 1, "d:1: two or three columns are expected: x, y, sigma"},
        {"1\n2\n", line, 1, "d:1: two or three columns are expected: x, y, sigma"},
        {"1 2 1\n2 2 0\n", line, 1, "d:2: a standard deviation has to be positive"},
        {"1 2\n2 inf\n", line, 1, "d:2: 'inf' is not a finite number"},
        {"1 2\n1e999 2\n", line, 1, "d:2: '1e999' is not a finite number"},
        {"x y\nu v\n", line, 1, "d:2: 'u' is not a number"},
        {"x y\n", line, 1, "d: the file holds no points"},
        {"1 2\n", line, 1, "d: too few points: 1 for 2 parameters"},
        {good, "--model 'a+b+c*x'", 1,
         "d: the parameters cannot be told apart: 'b' does nothing that those before it do not do"},
        {good, "--model 'a+0*b+0*x'", 1, "d: parameter 'b' has no effect on the fit"},
        {good, "--model 'ln(1.5*a-x)'", 1,
         "d: at the start the formula has no finite value at x = 2; give others by --start"},
        {good, line + " --output none/t.csv", 1, "none/t.csv: No such file or directory"},
        {good, line + " --output /dev/full", 1, "/dev/full: No space left on device"},
        {good, "--model 'a=x'", 2, "--model: '=' at position 2: a formula in x is expected"},
        {good, "--model 'a+x,b'", 2, "--model: one formula is expected, not several"},
        {good, "--model 'x^2'", 2, "--model: 'x^2' has no parameter to fit"},
        {good, "--model ''", 2, "--model: the formula is empty"},
        {good, "--model gauss:0", 2, "--model: 'gauss:0' is not gauss:K or gauss:K:linear with 1 to 20 peaks"},
        {good, "--model gauss:2:cubic", 2,
         "--model: 'gauss:2:cubic' is not gauss:K or gauss:K:linear with 1 to 20 peaks"},
        {good, "--model logistc", 2, "--model: 'logistc' has no x in it" + named + "; is logistic meant?"},
        {good, "--model Gausian:2", 2,
         "--model: 'Gausian:2' is neither a named model nor a formula" + named + "; is gauss:K meant?"},
        {good, "--model a+b", 2, "--model: 'a+b' has no x in it" + named},
        {good, line + " --plot p.pdf", 2, "--plot: 'p.pdf' ends neither in .svg nor in .png"},
        {good, line + " --start a=1,c=2", 2, "--start: the model has no parameter 'c', but a, b"},
        {good, line + " --start a=1,b", 2, "--start: 'b' is not NAME=NUMBER"},
        {good, line + " --upper c=2", 2, "--upper: the model has no parameter 'c', but a, b"},
        {good, line + " --lower a=2 --upper a=1", 2, "--lower: the bound of 'a' is above that of --upper"},
        {good, "", 2, "--model is required"},
        {good, "--model exponential --start a=1,b=1,c=1 --max-iterations 1", 3,
         "not converged after 1 iterations: the limit of iterations was reached"},
    };
    for (const auto& [points, arguments, status, message] : faults) {
        write("d", points);
        expect_refused({"d " + arguments, status, message});
    }
    for (const std::string formula : {"a+*x", "a*exp(x", "nosuch(a,x)", "a $ x", "\"text\""}) // the parser's own words
        expect_refused({"d --model '" + formula + "'", 2, "...nxl-fit: --model: "});
    const auto flat = run("d --model '-a^2+0*x'"); // the derivative vanishes where the residual is least
    EXPECT_EQ(flat.status, 3);
    EXPECT_TRUE(flat.err.ends_with(", but the residual is not at right angles to the derivatives\n")) << flat.err;
    EXPECT_TRUE(std::isnan(parameter(flat.out, "a").error)) << flat.out;
    expect_refused({"none --model a*x", 1, "none: No such file or directory"});
}

} // namespace
