// The equations as a linear system: row i + p j of it is that of element (i, j).
#include "lapack/kernel/source/nonsymmetric/small_sylvester.hpp"
#include "lapack/kernel/source/common/scalars.hpp"
#include <algorithm>
#include <utility>

namespace nxl {
namespace {

template <class T> T element(bool adjoint, const Matrix<const T>& a, i64 i, i64 j) {
    return adjoint ? conj_if<true>(a(j, i)) : a(i, j);
}

constexpr double room = 0.0625 / safe_minimum; // an unknown may grow by the others

template <class T> SmallSolution<T> divide(T pivot, T c, double least) {
    const bool perturbed = abs1(pivot) < least;
    if (perturbed) pivot = least;
    const double size = abs1(pivot), largest = abs1(c);
    const double scale = size < 1.0 && largest > size * room ? 0.0625 / largest : 1.0;
    return {{c * scale / pivot}, scale, perturbed};
}

/// s x = the solution, so that no element leaves the range.
template <class T, int N> class SmallSystem {
    T m_[N][N] = {}, x_[N] = {};
    int place_[N]; // where the unknowns have gone
    const double least_;
    bool perturbed_ = false;

    void bring_largest_to(int k) {
        int row = k, column = k;
        for (int i = k; i < N; ++i)
            for (int j = k; j < N; ++j)
                if (abs1(m_[i][j]) > abs1(m_[row][column])) row = i, column = j;
        std::swap(m_[k], m_[row]);
        std::swap(x_[k], x_[row]);
        for (int i = 0; i < N; ++i) std::swap(m_[i][k], m_[i][column]);
        std::swap(place_[k], place_[column]);
        if (abs1(m_[k][k]) >= least_) return;
        m_[k][k] = least_;
        perturbed_ = true;
    }

  public:
    explicit SmallSystem(double least) : least_(least) {
        for (int i = 0; i < N; ++i) place_[i] = i;
    }

    T& operator()(i64 i, i64 j) { return m_[i][j]; }
    T& right_hand_side(i64 i) { return x_[i]; }

    void eliminate() {
        for (int k = 0; k < N; ++k) {
            bring_largest_to(k);
            for (int i = k + 1; i < N; ++i) {
                const T factor = m_[i][k] / m_[k][k];
                x_[i] -= factor * x_[k];
                for (int j = k + 1; j < N; ++j) m_[i][j] -= factor * m_[k][j];
            }
        }
    }
    SmallSolution<T> solve() {
        SmallSolution<T> solution{{}, 1.0, perturbed_};
        const double largest = largest_abs1(N, x_);
        for (int i = 0; i < N; ++i)
            if (const double pivot = abs1(m_[i][i]); pivot < 1.0 && largest > pivot * room)
                solution.scale = std::min(solution.scale, 0.0625 / largest);
        for (int i = N - 1; i >= 0; --i) {
            T sum = x_[i] * solution.scale;
            for (int j = i + 1; j < N; ++j) sum -= m_[i][j] * x_[j];
            x_[i] = sum / m_[i][i];
        }
        for (int i = 0; i < N; ++i) solution.x[place_[i]] = x_[i];
        return solution;
    }
};

/// The equation of p by q elements, N in all.
template <class T, int N>
SmallSolution<T> solve_system(bool adjoint_a, bool adjoint_b, double sign, const Matrix<const T>& a,
                              const Matrix<const T>& b, const T* c, double least) {
    const i64 p = a.rows, q = b.rows;
    SmallSystem<T, N> system(least);
    for (i64 j = 0; j < q; ++j)
        for (i64 i = 0; i < p; ++i) {
            const i64 row = i + p * j;
            system.right_hand_side(row) = c[row];
            for (i64 k = 0; k < p; ++k) system(row, k + p * j) += element(adjoint_a, a, i, k);
            for (i64 k = 0; k < q; ++k) system(row, i + p * k) += sign * element(adjoint_b, b, k, j);
        }
    system.eliminate();
    return system.solve();
}

} // namespace

template <class T>
SmallSolution<T> solve_small_sylvester(bool adjoint_a, bool adjoint_b, double sign, const Operand<T>& a,
                                       const Operand<T>& b, const T* c, double least) {
    const i64 p = a.rows, q = b.rows;
    if (p * q == 1) return divide(conj_if(adjoint_a, a(0, 0)) + sign * conj_if(adjoint_b, b(0, 0)), c[0], least);
    if (p * q == 2) return solve_system<T, 2>(adjoint_a, adjoint_b, sign, a, b, c, least);
    return solve_system<T, 4>(adjoint_a, adjoint_b, sign, a, b, c, least);
}

template SmallSolution<double> solve_small_sylvester(bool, bool, double, const Operand<double>&, const Operand<double>&,
                                                     const double*, double);
template SmallSolution<zcomplex> solve_small_sylvester(bool, bool, double, const Operand<zcomplex>&,
                                                       const Operand<zcomplex>&, const zcomplex*, double);

} // namespace nxl
