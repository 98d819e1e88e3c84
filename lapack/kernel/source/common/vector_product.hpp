// Products with one vector, of which panels and solutions make many.
#pragma once
#include "service/kernel_slot.hpp"
#include "service/matrix.hpp"

namespace nxl {

/// y := y - op(A) x on this thread: such products are too small to pay for a region each.
template <class T> void subtract_vector_product(char op, const Operand<T>& a, const T* x, T* y) {
    slot_of<T, &KernelTable::dgemv, &KernelTable::zgemv>()(op, a.rows, a.columns, T(-1.0), a.data, a.ld, x, 1, T(1.0),
                                                           y, 1);
}

} // namespace nxl
