// Seconds from the processor's time-stamp counter.
#pragma once

namespace nxl {

/// Seconds since the counter's own origin: only differences mean anything. The first call takes a tenth of a second, in
/// which the counter's rate is measured.
double counter_seconds();

} // namespace nxl
