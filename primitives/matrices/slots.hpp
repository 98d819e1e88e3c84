// The slots of the matrix kernels, bound by vector width.
#pragma once
#include "primitives/matrices/matrix_table.hpp"
#include "service/kernel_slot.hpp"

namespace nxl {

template <> const MatrixTable& bound_table();

inline constinit KernelSlot<&MatrixTable::transpose_d> transpose_d_slot;
inline constinit KernelSlot<&MatrixTable::transpose_c> transpose_c_slot;
inline constinit KernelSlot<&MatrixTable::adjoint_c> adjoint_c_slot;
inline constinit KernelSlot<&MatrixTable::transpose_square_d> transpose_square_d_slot;
inline constinit KernelSlot<&MatrixTable::transpose_square_c> transpose_square_c_slot;
inline constinit KernelSlot<&MatrixTable::adjoint_square_c> adjoint_square_c_slot;
inline constinit KernelSlot<&MatrixTable::row_exchange_d> row_exchange_d_slot;
inline constinit KernelSlot<&MatrixTable::row_exchange_c> row_exchange_c_slot;

} // namespace nxl
