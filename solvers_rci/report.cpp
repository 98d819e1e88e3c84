// Building and sending the solvers' reports.
#include "solvers_rci/report.hpp"
#include "service/messages.hpp"
#include <cstdio>
#include <cstring>

namespace nxl::rci {
namespace {

enum MessageId : int { line_end = 0, hyphens = 396, unknown_number = 407, cannot_create = 408, cannot_save = 409 };

/// An integer as text, for "%s".
struct Digits {
    char text[16];

    explicit Digits(int value) { std::snprintf(text, sizeof text, "%i", value); }
};

int places_in(const char* text) {
    int places = 0;
    for (; *text != '\0'; ++text) places += *text == '%' ? 1 : 0;
    return places;
}

} // namespace

Report::Report(int header) {
    text_[length_++] = '\n';
    text_[length_] = '\0';
    line(hyphens).line(header);
}

void Report::append(const char* piece) {
    const int length = static_cast<int>(strnlen(piece, piece_length));
    if (length_ + length + 2 > static_cast<int>(sizeof text_)) return;
    std::memcpy(text_ + length_, piece, static_cast<std::size_t>(length));
    length_ += length;
    text_[length_++] = '\n';
    text_[length_] = '\0';
}

Report& Report::line(int id) {
    append(nxl_msg_text(id));
    return *this;
}

Report& Report::line(int id, int value) {
    append(nxl_msg_format(id, 1, Digits(value).text));
    return *this;
}

Report& Report::line(int id, int first, int second) {
    append(nxl_msg_format(id, 2, Digits(first).text, Digits(second).text));
    return *this;
}

Report& Report::line(int id, double value) {
    append(nxl_msg_format(id, 1, value));
    return *this;
}

Report& Report::lines(int first, int count) {
    for (int id = first; id < first + count; ++id) line(id);
    return *this;
}

Report& Report::lines(int first, int count, const ReportValue* values) {
    for (int id = first; id < first + count; ++id) {
        const int places = places_in(nxl_msg_text(id));
        if (places == 0) line(id);
        else if (places == 2) line(id, values[0].integer, values[1].integer);
        else if (values->is_real) line(id, values->real);
        else line(id, values->integer);
        values += places;
    }
    return *this;
}

void Report::send(int destination, const ReportFile& file) const {
    if (destination == standard_output) {
        std::printf("%.3079s", text_);
        std::fflush(stdout);
        return;
    }
    std::FILE* stream = std::fopen(file.name, "a+");
    if (!stream) {
        nxl_msg_print(1, line_end, 0);
        nxl_msg_print(1, cannot_create, 1, file.name);
        nxl_msg_print(1, cannot_save, 0);
        return;
    }
    if (file.notice != 0) {
        nxl_msg_print(1, line_end, 0);
        nxl_msg_print(1, file.notice, 1, file.name);
    }
    std::fputs(text_, stream);
    std::fclose(stream);
}

Report wrong_request(int warning_header) { return Report(warning_header).line(unknown_number); }

} // namespace nxl::rci
