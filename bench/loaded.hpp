// The routines of a peer whose header was there when nxl-bench was configured and whose library is there when it runs.
#pragma once
#include <dlfcn.h>
#include <string>

namespace nxl::bench {

class LoadedLibrary {
    void* handle_;
    bool complete_;

  public:
    /// `file` is what the dynamic linker looks for.
    explicit LoadedLibrary(const std::string& file)
        : handle_(dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL)),
          complete_(handle_ != nullptr) {}

    /// Whether the library and all routines that were looked for are there.
    bool complete() const { return complete_; }

    template <class Function> void find(const char* name, Function*& function) {
        function = handle_ ? reinterpret_cast<Function*>(dlsym(handle_, name)) : nullptr;
        complete_ = complete_ && function != nullptr;
    }
};

} // namespace nxl::bench
