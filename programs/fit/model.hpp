// The models that have a name, and what a name or a formula on the command line stands for.
#pragma once

#include "common/input_error.hpp"
#include "data.hpp"

#include <functional>
#include <map>
#include <string>

namespace fit {

/// Values to start from, by the names of parameters.
using Start = std::map<std::string, double>;

struct Model {
    std::string formula;
    std::function<Start(const Data&)> estimate; // a start from the data; for those parameters that it can tell
};

/// exponential, logistic, gauss:K, gauss:K:linear, or a formula. Throws UsageError.
Model model_of(const std::string& text);

/// Says that `text` is no model, and why, and which there are; of a name much like it, that it may be meant.
common::UsageError no_model(const std::string& text, const std::string& why);

/// For --help: a line for each named model.
std::string list_of_models();

} // namespace fit
