// Texts as the message catalogue has them, for tests that ask which of them a report shows.
#pragma once
#include "service/messages.hpp"
#include <string>
#include <vector>

namespace nxl_test {

/// Messages first, first + 1, ... as lines; their conversions, all of two characters, take the values in turn.
inline std::string catalogue(int first, int count, const std::vector<std::string>& values = {}) {
    std::string text = nxl::nxl_msg_text(first);
    for (int id = first + 1; id < first + count; ++id) text += std::string("\n") + nxl::nxl_msg_text(id);
    std::size_t from = 0;
    for (const std::string& value : values) {
        from = text.find('%', from);
        text.replace(from, 2, value);
        from += value.size();
    }
    return text;
}

/// A report of such lines under its header, message `header`.
inline std::string report(int header, const std::string& lines) {
    return "\n" + catalogue(396, 1) + "\n" + catalogue(header, 1) + "\n" + lines + "\n";
}

} // namespace nxl_test
