// The message printer. Its lock is the one that standard output has, so that a line stays whole among the host's own
// too.
#include "service/messages.hpp"
#include "service/message_table.hpp"
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace nxl {
namespace {

constexpr int buffer_size = 512; // as reported; a text may be one character longer

/// vsnprintf's answer, the length of the whole text, with 0 for a text that cannot be converted.
int fill_in(char* text, std::size_t size, const char* format, va_list values) {
    text[0] = '\0';
    const int length = std::vsnprintf(text, size, format, values);
    return length < 0 ? 0 : length;
}

[[noreturn, gnu::cold]] void stop_on_overflow(int id, int length) {
    std::printf("\nNXL INTERNAL ERROR: message buffer overflow.");
    std::fflush(nullptr);
    std::printf("\n       Message N %d   Lenght: %d   Buffer size: %d\n", id, length, buffer_size);
    std::fflush(nullptr);
    std::exit(8);
}

constexpr int most_conversions = 10; // in a routine name, the longest text that a caller can put into a message

/// Whether printf can take a filled-in text as its format without arguments of its own: few conversions, none that
/// writes ("%n"), and none with a width, a precision or a position, which could make it print gigabytes or look for
/// arguments far away.
bool may_be_format(const char* text) {
    int conversions = 0;
    for (const char* at = std::strchr(text, '%'); at; at = std::strchr(at, '%')) {
        ++at;
        at += std::strspn(at, "-+ #0'I"); // flags
        if (*at == '\0' || std::strchr("123456789*.", *at)) return false;
        at += std::strspn(at, "hlLqjztZ"); // sizes
        if (*at == '\0' || *at == 'n' || (*at != '%' && ++conversions > most_conversions)) return false;
        ++at;
    }
    return true;
}

/// Prints a filled-in text as a format. Each conversion finds an empty string: 26 of them reach as far as ten long
/// doubles do, five arguments in registers and the rest on the stack.
void print_as_format(const char* text) {
    const char no[16] = {};
    if (!may_be_format(text)) {
        std::fputs(text, stdout);
        return;
    }
    std::printf(text, no, no, no, no, no, no, no, no, no, no, no, no, no, no, no, no, no, no, no, no, no, no, no, no,
                no, no);
}

void print_line(const char* text) {
    flockfile(stdout);
    print_as_format(text);
    std::printf("%s", message_table[0]);
    funlockfile(stdout); // before the flush, which waits for the lock of every stream in turn
    std::fflush(nullptr);
}

} // namespace

const char* nxl_msg_text(int id) {
    if (id <= 0 || id >= message_count) return "";
    const char* text = message_table[static_cast<std::size_t>(id)];
    return text ? text : "";
}

const char* nxl_msg_format(int id, int nargs, ...) {
    static thread_local constinit char text[buffer_size + 1];
    if (nargs <= 0) return nxl_msg_text(id);
    va_list values;
    va_start(values, nargs);
    fill_in(text, sizeof text, nxl_msg_text(id), values);
    va_end(values);
    return text;
}

void nxl_msg_print(int, int id, int nargs, ...) {
    if (id == 0) {
        std::printf("%s", message_table[0]);
        return;
    }
    if (nargs <= 0) return print_line(nxl_msg_text(id));
    char text[buffer_size + 2]; // its end and the character that the check lets through
    va_list values;
    va_start(values, nargs);
    const int length = fill_in(text, sizeof text, nxl_msg_text(id), values);
    va_end(values);
    if (length - 1 > buffer_size) stop_on_overflow(id, length);
    print_line(text);
}

} // namespace nxl
