// The errors that all programs share, by this program's name.
#pragma once

#include "common/input_error.hpp"

namespace solve {

using common::InputError;
using common::UsageError;

} // namespace solve
