// The choice of a method by its name.
#include "method.hpp"

#include "common/input_error.hpp"

#include <algorithm>

namespace solve {
namespace {

/// The methods for real and complex matrices.
template <class T> std::unique_ptr<Method<T>> make_general_method(const Settings& settings) {
    if (settings.method == "auto") return make_automatic<T>(settings);
    if (settings.method == "direct") return make_sparse_direct<T>(settings);
    if (settings.method == "lu") return make_lu<T>();
    if (settings.method == "cholesky") return make_cholesky<T>();
    if (settings.method == "ldl") return make_ldl<T>();
    if (settings.method == "qr") return make_qr<T>();
    if (settings.method == "svd") return make_svd<T>(settings);
    throw common::UsageError("no method of the name '" + settings.method + "'");
}

} // namespace

template <> std::unique_ptr<Method<double>> make_method(const Settings& settings) {
    if (settings.method == "cg") return make_conjugate_gradients(settings);
    if (settings.method == "fgmres") return make_fgmres(settings);
    return make_general_method<double>(settings);
}

template <> std::unique_ptr<Method<Complex>> make_method(const Settings& settings) {
    if (settings.method == "cg" || settings.method == "fgmres")
        throw Refusal("method " + settings.method + " needs a real matrix, this one is complex");
    return make_general_method<Complex>(settings);
}

/// Ten times what exact arithmetic needs, but no run without end.
int default_limit(int n) { return static_cast<int>(std::clamp(10L * n, 100L, 100000L)); }

} // namespace solve
