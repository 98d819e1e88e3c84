// The choice of a decomposition by the matrix, and of values by their numbers.
#include "spectrum.hpp"

#include <algorithm>

namespace eig {

std::pair<int, int> Selection::numbers_of(int n) const {
    const auto from_start = [n](int number) { return number < 0 ? n + 1 + number : number; };
    const int lowest = from_start(first), highest = std::min(from_start(last), n);
    if (lowest < 1 || lowest > highest) throw Refusal("of its " + std::to_string(n) + " values --values names none");
    return {lowest, highest};
}

Spectrum decompose(const AnyMatrix& matrix, const Wish& wish) {
    return std::visit(
        [&](const auto& a) -> Spectrum {
            if (wish.singular) return singular_values(a, wish);
            if (!a.square()) throw Refusal("eigenvalues need a square matrix, this one is " + solve::shape_of(a));
            return solve::is_hermitian(a) ? self_adjoint(a, wish) : general(a, wish);
        },
        matrix);
}

} // namespace eig
