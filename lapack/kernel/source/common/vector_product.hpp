// Products with one vector, of which panels and solutions make many.
#pragma once
#include "service/kernel_slot.hpp"
#include "service/matrix.hpp"
#include <type_traits>

namespace nxl {

/// y := alpha op(A) x + beta y on this thread: such products are too small to pay for a region each. No rows or columns
/// at all leave y as it is.
template <class T>
void vector_product(char op, std::type_identity_t<T> alpha, const Operand<T>& a, const T* x,
                    std::type_identity_t<T> beta, T* y) {
    slot_of<T, &KernelTable::dgemv, &KernelTable::zgemv>()(op, a.rows, a.columns, alpha, a.data, a.ld, x, 1, beta, y,
                                                           1);
}
/// y := y - op(A) x
template <class T> void subtract_vector_product(char op, const Operand<T>& a, const T* x, T* y) {
    vector_product<T>(op, -1.0, a, x, 1.0, y);
}

} // namespace nxl
