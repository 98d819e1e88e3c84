// Starts for the named models, read off the data: close enough for the trust region to find the fit from there.
#pragma once

#include "model.hpp"

namespace fit {

Start start_of_exponential(const Data& data);
Start start_of_logistic(const Data& data);
Start start_of_peaks(const Data& data, int peaks, bool linear);

} // namespace fit
