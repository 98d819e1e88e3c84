// The choice of a method by its name.
#include "method.hpp"

#include "input_error.hpp"

namespace solve {

template <> std::unique_ptr<Method<double>> make_method(const Settings& settings) {
    if (settings.method == "cg") return make_conjugate_gradients(settings);
    throw UsageError("no method of the name '" + settings.method + "'");
}

template <> std::unique_ptr<Method<Complex>> make_method(const Settings& settings) {
    if (settings.method == "cg") throw Refusal("method cg needs a real matrix, this one is complex");
    throw UsageError("no method of the name '" + settings.method + "'");
}

} // namespace solve
