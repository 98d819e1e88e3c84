// The choice of a decomposition by the matrix.
#include "spectrum.hpp"

namespace eig {

Spectrum decompose(const AnyMatrix& matrix, const Wish& wish) {
    return std::visit(
        [&](const auto& a) -> Spectrum {
            if (!solve::is_hermitian(a))
                throw Refusal("the matrix is not " + std::string(matrix.index() == 0 ? "symmetric" : "Hermitian"));
            return self_adjoint(a, wish);
        },
        matrix);
}

} // namespace eig
