// The workspace that a caller of LAPACK hands in, with the question how much of it serves best.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// `length` elements, of which a routine needs `least` and can use `best`. A length of -1 asks for `best` alone, which
/// every call finds in the first element.
template <class T> class Workspace {
    T* const work_;
    const i64 length_, best_;
    const bool suffices_;

  public:
    Workspace(T* work, i64 length, i64 least, i64 best)
        : work_(work),
          length_(length),
          best_(best),
          suffices_(length == -1 || length >= least) {
        work_[0] = T(static_cast<double>(best));
    }
    /// The routine has come to its end: the first element tells `best` again.
    ~Workspace() { work_[0] = T(static_cast<double>(best_)); }
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;

    bool is_query() const { return length_ == -1; }
    bool suffices() const { return suffices_; }
    T* data() const { return work_; }
    i64 length() const { return length_; }
};

/// Parts of one array, taken from its start in turn.
template <class T> class Sections {
    T* next_;

  public:
    explicit Sections(T* start) : next_(start) {}
    T* take(i64 length) {
        T* const section = next_;
        next_ += length;
        return section;
    }
};

} // namespace nxl
