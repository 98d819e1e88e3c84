// A library under test, loaded at run time: nxl itself, or a peer that is there on this machine.
#pragma once
#include <string>
#include <vector>

namespace nxl::bench {

/// How a complex function result comes back.
enum class ComplexResult { through_first_pointer, by_value };

/// A routine's address in one library, and what else a caller has to know.
struct Symbol {
    void* address = nullptr; // null when the library lacks the routine
    ComplexResult complex_result = ComplexResult::by_value;
};

class Library {
    void* handle_;
    std::string name_suffix_;
    ComplexResult complex_result_;
    void (*set_threads_)(int);

  public:
    std::string name;    // as a column is headed
    std::string version; // with what the library says about its choice of kernels

    /// `file` is what the dynamic linker looks for. Null when it is not there.
    static Library nxl(const std::string& file);
    static std::vector<Library> openblas(); // none or one
    static std::vector<Library> peers();
    static std::vector<Library> hand_loops();     // built with nxl-bench, for the primitives
    static Library peer(const std::string& file); // with Fortran's names, a trailing underscore; throws
    std::string file() const;                     // that was loaded

    bool loaded() const { return handle_ != nullptr; }
    Symbol symbol(const std::string& routine) const;
    void set_threads(int threads) const { set_threads_(threads); }

  private:
    Library(std::string library_name, const std::string& file, std::string name_suffix, ComplexResult complex_result);
    template <class Function> Function* function(const char* symbol_name) const;
    void find_thread_control(const char* symbol_name);
};

/// Makes peers that are loaded from now on start this many threads of their own, and no spare ones.
void limit_threads_of_peers(int threads);

} // namespace nxl::bench
