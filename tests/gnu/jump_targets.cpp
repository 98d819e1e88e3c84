// jump_targets ROUTINE...: whether the GNU name of each routine is a jump to its entry in libnxl.so. Prints those that
// are not, and returns their number.
#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <string>

namespace {

/// The address in the slot that the code at `code` jumps through; null when it is no such jump.
const void* target_of(const unsigned char* code) {
    constexpr unsigned char landing[] = {0xF3, 0x0F, 0x1E, 0xFA}; // endbr64
    if (std::memcmp(code, landing, sizeof landing) == 0) code += sizeof landing;
    if (code[0] != 0xFF || code[1] != 0x25) return nullptr; // jmp *distance(%rip)
    std::int32_t distance = 0;
    std::memcpy(&distance, code + 2, sizeof distance);
    const void* target = nullptr;
    std::memcpy(&target, code + 6 + distance, sizeof target);
    return target;
}

} // namespace

int main(int count, char** names) {
    void* const library = dlopen("libnxl.so.0", RTLD_NOW | RTLD_NOLOAD);
    void* const companion = dlopen("libnxl_gnu.so.0", RTLD_NOW | RTLD_NOLOAD);
    if (!library || !companion || count < 2) return 100;
    int wrong = 0;
    for (int i = 1; i < count; ++i) {
        std::string name = names[i];
        const void* entry = dlsym(library, name.c_str());
        std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::tolower(c); });
        const void* jump = dlsym(companion, (name + "_").c_str());
        if (entry && jump && target_of(static_cast<const unsigned char*>(jump)) == entry) continue;
        std::printf("%s_ is no jump to %s\n", name.c_str(), names[i]);
        ++wrong;
    }
    return std::min(wrong, 99);
}
