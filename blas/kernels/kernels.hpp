// The kernels of a target, declared with the signatures of the table.
#pragma once
#include "blas/kernels/target.hpp"

namespace nxl::NXL_TARGET {

template <class Pointer> struct Pointee;
template <class Fn> struct Pointee<Fn*> {
    using type = Fn;
};
template <class Pointer> using Kernel = typename Pointee<Pointer>::type;

Kernel<decltype(KernelTable::dasum)> dasum;
Kernel<decltype(KernelTable::daxpy)> daxpy;
Kernel<decltype(KernelTable::dcopy)> dcopy;
Kernel<decltype(KernelTable::ddot)> ddot;
Kernel<decltype(KernelTable::dnrm2)> dnrm2;
Kernel<decltype(KernelTable::drot)> drot;
Kernel<decltype(KernelTable::drotg)> drotg;
Kernel<decltype(KernelTable::drotm)> drotm;
Kernel<decltype(KernelTable::drotmg)> drotmg;
Kernel<decltype(KernelTable::dscal)> dscal;
Kernel<decltype(KernelTable::dswap)> dswap;
Kernel<decltype(KernelTable::idamax)> idamax;
Kernel<decltype(KernelTable::idamin)> idamin;

Kernel<decltype(KernelTable::dzasum)> dzasum;
Kernel<decltype(KernelTable::dznrm2)> dznrm2;
Kernel<decltype(KernelTable::izamax)> izamax;
Kernel<decltype(KernelTable::izamin)> izamin;
Kernel<decltype(KernelTable::zaxpy)> zaxpy;
Kernel<decltype(KernelTable::zcopy)> zcopy;
Kernel<decltype(KernelTable::zdotc)> zdotc;
Kernel<decltype(KernelTable::zdotu)> zdotu;
Kernel<decltype(KernelTable::zdrot)> zdrot;
Kernel<decltype(KernelTable::zdscal)> zdscal;
Kernel<decltype(KernelTable::zrot)> zrot;
Kernel<decltype(KernelTable::zrotg)> zrotg;
Kernel<decltype(KernelTable::zscal)> zscal;
Kernel<decltype(KernelTable::zswap)> zswap;

Kernel<decltype(KernelTable::daxpyi)> daxpyi;
Kernel<decltype(KernelTable::ddoti)> ddoti;
Kernel<decltype(KernelTable::dgthr)> dgthr;
Kernel<decltype(KernelTable::dsctr)> dsctr;
Kernel<decltype(KernelTable::zaxpyi)> zaxpyi;
Kernel<decltype(KernelTable::zdotci)> zdotci;
Kernel<decltype(KernelTable::zdotui)> zdotui;
Kernel<decltype(KernelTable::zgthr)> zgthr;
Kernel<decltype(KernelTable::zsctr)> zsctr;

} // namespace nxl::NXL_TARGET
