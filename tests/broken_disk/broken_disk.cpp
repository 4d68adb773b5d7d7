// SPDX-License-Identifier: MIT
// Reading the file that BROKEN_DISK_FILE names fails behind its first BROKEN_DISK_AFTER bytes, as
// it does on a disk with a bad sector.
#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

bool isBroken(int descriptor) {
    const char* const broken = std::getenv("BROKEN_DISK_FILE");
    char link[64];
    std::snprintf(link, sizeof(link), "/proc/self/fd/%d", descriptor);
    char name[4096];
    const ssize_t length = readlink(link, name, sizeof(name));
    return broken != nullptr && length == static_cast<ssize_t>(std::strlen(broken)) &&
           std::memcmp(name, broken, static_cast<std::size_t>(length)) == 0;
}

} // namespace

extern "C" ssize_t read(int descriptor, void* to, size_t count) {
    using Read = ssize_t (*)(int, void*, size_t);
    static const auto real = reinterpret_cast<Read>(dlsym(RTLD_NEXT, "read"));
    if (isBroken(descriptor)) {
        const char* const after = std::getenv("BROKEN_DISK_AFTER");
        const long good = after != nullptr ? std::atol(after) : 0;
        const long left = good - static_cast<long>(lseek(descriptor, 0, SEEK_CUR));
        if (left <= 0) {
            errno = EIO;
            return -1;
        }
        count = std::min(count, static_cast<size_t>(left));
    }
    return real(descriptor, to, count);
}
