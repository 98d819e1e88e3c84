// The reports of the reverse-communication solvers and preconditioners: a frame, a header and a few lines, on standard
// output or appended to a file in the current directory.
#pragma once

namespace nxl::rci {

/// Where reports go that the caller does not want on standard output.
struct ReportFile {
    const char* name;
    int notice; // message that tells standard output, with the name filled in, that a report is there; 0: none
};

/// What ipar(2) says when reports go to standard output.
inline constexpr int standard_output = 6;

/// What a report shows in place of "%s", an integer, or of "%e", a real number.
struct ReportValue {
    bool is_real;
    int integer;
    double real;
};

/// A report under construction. Every piece is cut after 512 characters; pieces that no longer fit are left out.
class Report {
    static constexpr int piece_length = 512;
    static constexpr int most_pieces = 6; // hyphens, header, four lines

    char text_[1 + most_pieces * (piece_length + 1) + 1];
    int length_ = 0;

    void append(const char* piece);

  public:
    /// A new line, a line of hyphens and the header line, message `header`.
    explicit Report(int header);

    /// Adds message `id` as a line; its "%s" takes the integer, its "%e" the real number.
    Report& line(int id);
    Report& line(int id, int value);
    Report& line(int id, double value);
    Report& line(int id, int first, int second);

    /// Adds messages first, first + 1, ... as lines.
    Report& lines(int first, int count);

    /// The same with values, which the lines take one by one, as many as each has places for: at most two integers, or
    /// one real number.
    Report& lines(int first, int count, const ReportValue* values);

    /// Sends the report where `destination`, the caller's ipar(2), wants it. A file that cannot be opened costs the
    /// report, and standard output is told; nothing else happens.
    void send(int destination, const ReportFile& file) const;

    const char* text() const { return text_; }
};

/// The report on a number that no routine should ask for, under its family's warning header.
Report wrong_request(int warning_header);

} // namespace nxl::rci
