// Building and sending the solvers' reports.
#include "solvers_rci/report.hpp"
#include "service/messages.hpp"
#include <cstdio>
#include <cstring>

namespace nxl::rci {
namespace {

enum MessageId : int { line_end = 0, hyphens = 396, unknown_number = 407, cannot_create = 408, cannot_save = 409 };

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
    char digits[16];
    std::snprintf(digits, sizeof digits, "%i", value);
    append(nxl_msg_format(id, 1, digits));
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
