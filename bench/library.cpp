// Loading libraries side by side. Each is opened apart from the others and prefers its own symbols, because all of them
// define the same names.
#include "bench/library.hpp"
#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <link.h>
#include <stdexcept>
#include <utility>

namespace nxl::bench {

Library::Library(std::string library_name, const std::string& file, std::string name_suffix,
                 ComplexResult complex_result)
    : handle_(dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_DEEPBIND)),
      name_suffix_(std::move(name_suffix)),
      complex_result_(complex_result),
      set_threads_([](int) {}),
      name(std::move(library_name)) {}

template <class Function> Function* Library::function(const char* symbol_name) const {
    return reinterpret_cast<Function*>(dlsym(handle_, symbol_name));
}

void Library::find_thread_control(const char* symbol_name) {
    if (auto* found = function<void(int)>(symbol_name)) set_threads_ = found;
}

Symbol Library::symbol(const std::string& routine) const {
    return {dlsym(handle_, (routine + name_suffix_).c_str()), complex_result_};
}

Library Library::nxl(const std::string& file) {
    Library library("nxl", file, "", ComplexResult::through_first_pointer);
    if (!library.loaded()) throw std::runtime_error("cannot load the library: " + std::string(dlerror()));
    library.find_thread_control("NXL_Set_Num_Threads");
    library.version = NXL_BENCH_VERSION;
    return library;
}

std::vector<Library> Library::openblas() {
    std::vector<Library> found;
    if (Library peer("OpenBLAS", "libopenblas.so.0", "_", ComplexResult::by_value); peer.loaded()) {
        peer.find_thread_control("openblas_set_num_threads");
        if (auto* config = peer.function<const char*()>("openblas_get_config")) peer.version = config();
        found.push_back(std::move(peer));
    }
    return found;
}

std::vector<Library> Library::peers() {
    std::vector<Library> found = openblas();
    if (Library blis("BLIS", "libblis.so.4", "_", ComplexResult::by_value); blis.loaded()) {
        auto* version = blis.function<const char*()>("bli_info_get_version_str");
        auto* arch = blis.function<int()>("bli_arch_query_id");
        auto* arch_name = blis.function<const char*(int)>("bli_arch_string");
        if (version) blis.version = version();
        if (arch && arch_name) blis.version += std::string(", ") + arch_name(arch());
        found.push_back(std::move(blis));
    }
    return found;
}

std::vector<Library> Library::hand_loops() {
    Library peer("hand loops", "libhand_loops.so", "", ComplexResult::through_first_pointer);
    if (!peer.loaded()) throw std::runtime_error("cannot load the hand loops: " + std::string(dlerror()));
    peer.version = "-O3 -mavx2 -mfma";
    std::vector<Library> found;
    found.push_back(std::move(peer));
    return found;
}

Library Library::peer(const std::string& file) {
    const std::string base = file.substr(file.rfind('/') + 1);
    Library library(base.substr(0, base.find(".so")), file, "_", ComplexResult::by_value);
    if (!library.loaded()) throw std::runtime_error("cannot load the peer: " + std::string(dlerror()));
    library.version = library.file();
    return library;
}

std::string Library::file() const {
    link_map* map = nullptr;
    if (dlinfo(handle_, RTLD_DI_LINKMAP, &map) != 0) return {};
    std::error_code trouble;
    const auto path = std::filesystem::canonical(map->l_name, trouble);
    return trouble ? map->l_name : path.string();
}

void limit_threads_of_peers(int threads) {
    const std::string count = std::to_string(threads);
    setenv("OPENBLAS_NUM_THREADS", count.c_str(), 1);
    setenv("BLIS_NUM_THREADS", count.c_str(), 1);
}

} // namespace nxl::bench
