// The library as a plug-in brings it: loaded, called on several threads, unloaded, again and again.
#include "nxl.h"
#include "tests/support/host_allocator.hpp"
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <semaphore>
#include <thread>
#include <vector>

namespace {

constexpr int n = 300;

class Plugin {
    void* library_ = dlopen(NXL_LIBRARY, RTLD_NOW | RTLD_LOCAL);

  public:
    Plugin() { EXPECT_NE(library_, nullptr) << dlerror(); }
    ~Plugin() { dlclose(library_); }
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;

    template <class Function> Function* find(const char* name) const {
        return reinterpret_cast<Function*>(dlsym(library_, name));
    }
    /// An element of a product of matrices of ones: n.
    double product() const {
        const std::vector<double> ones(n * n, 1.0);
        std::vector<double> c(n * n, 0.0);
        const double one = 1.0;
        find<decltype(dgemm)>("dgemm")("N", "N", &n, &n, &n, &one, ones.data(), &n, ones.data(), &n, &one, c.data(),
                                       &n);
        return c.back();
    }
};

TEST(Unload, GivesAllMemoryBackAndLetsThreadsEnd) {
    for (int round = 0; round < 3; ++round) {
        std::binary_semaphore called{0}, unloaded{0};
        std::thread survivor;
        {
            const Plugin plugin;
            plugin.find<decltype(NXL_Set_Dynamic)>("NXL_Set_Dynamic")(0);
            plugin.find<decltype(NXL_Set_Num_Threads)>("NXL_Set_Num_Threads")(2);
            survivor = std::thread([&] {
                EXPECT_EQ(plugin.product(), n);
                called.release();
                unloaded.acquire();
            });
            called.acquire();
            EXPECT_EQ(plugin.product(), n);
            EXPECT_GT(nxl_test::live_blocks(), 0);
        }
        EXPECT_EQ(dlopen(NXL_LIBRARY, RTLD_NOW | RTLD_NOLOAD), nullptr); // else this tests nothing
        EXPECT_EQ(nxl_test::live_blocks(), 0);
        unloaded.release();
        survivor.join(); // must not look for code that is gone
    }
}

} // namespace
