// The reader of lines that all programs share, by this program's name.
#pragma once

#include "common/line_reader.hpp"

namespace solve {

using common::LineReader;
using common::lines_of;
using common::open_lines;

} // namespace solve
