// Chains of small bulges, which are chased down the diagonal in windows.
#pragma once
#include "lapack/kernel/source/nonsymmetric/schur.hpp"
#include "lapack/kernel/source/nonsymmetric/window_products.hpp"
#include "service/slice.hpp"

namespace nxl {

/// Bulges of one chain. A longer one does more at once, but its windows are larger, and the work in them is not done by
/// products.
inline constexpr i64 longest_chain = 16;
/// Order of the windows of so many bulges: the chain, three rows for a bulge, and as many rows for it to move on.
/// Products take whole registers of it.
constexpr i64 chain_window(i64 bulges) { return round_up(6 * bulges, 8); }
inline constexpr i64 largest_chain_window = chain_window(longest_chain);

/// One QR sweep of rows first .. end - 1, at least three, with `pairs` pairs of shifts. `u`: largest_chain_window^2
/// elements.
template <class T>
void sweep_with_shifts(const SchurIteration<T>& s, i64 first, i64 end, const Eigenpair* shifts, i64 pairs, T* u,
                       const WindowProducts<T>& products);

} // namespace nxl
