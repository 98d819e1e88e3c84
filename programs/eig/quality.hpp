// How good vectors are, and the choice between a routine for real and one for complex numbers.
#pragma once

#include "direct_method.hpp"
#include "nxl.h"
#include "spectrum.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <type_traits>

namespace eig {

using solve::routine_of;

template <class T> constexpr bool kReal = std::is_same_v<T, double>;

/// The largest 2-norm of A v - lambda v.
template <class T, class Value>
double largest_residual(const solve::SparseMatrix<T>& a, const std::vector<Value>& lambda, const solve::Block<T>& v) {
    std::vector<T> product(static_cast<std::size_t>(a.n));
    double largest = 0.0;
    for (int j = 0; j < v.count; ++j) {
        const T* column = v.column(j);
        solve::multiply(a, column, product.data());
        double sum = 0.0;
        for (std::size_t i = 0; i < product.size(); ++i)
            sum += std::norm(product[i] - lambda[static_cast<std::size_t>(j)] * column[i]);
        largest = std::max(largest, std::sqrt(sum));
    }
    return largest;
}

/// The largest element of |V^H V - I|.
template <class T> double loss_of_orthogonality(const solve::Block<T>& v) {
    const auto m = static_cast<std::size_t>(v.count);
    std::vector<T> gram(m * m);
    const double one = 1.0, zero = 0.0;
    routine_of<T>(dsyrk, zherk)("U", kReal<T> ? "T" : "C", &v.count, &v.n, &one, v.value.data(), &v.n, &zero,
                                gram.data(), &v.count);
    double largest = 0.0;
    for (std::size_t j = 0; j < m; ++j)
        for (std::size_t i = 0; i <= j; ++i)
            largest = std::max(largest, std::abs(gram[i + m * j] - (i == j ? 1.0 : 0.0)));
    return largest;
}

} // namespace eig
