// SPDX-License-Identifier: MIT
// Reading the file that BROKEN_DISK_FILE names fails behind its first BROKEN_DISK_AFTER bytes, as
// it does on a disk with a bad sector. While there is a file BROKEN_DISK_WHILE, no file below the
// folder BROKEN_DISK_FOLDER can be read or written, as when a card is pulled out.
#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

/// The name of an open file; empty where it has none.
std::string nameOf(int descriptor) {
    char link[64];
    std::snprintf(link, sizeof(link), "/proc/self/fd/%d", descriptor);
    char name[4096];
    const ssize_t length = readlink(link, name, sizeof(name));
    return {name, static_cast<std::size_t>(std::max<ssize_t>(length, 0))};
}

bool isBroken(int descriptor) {
    const char* const broken = std::getenv("BROKEN_DISK_FILE");
    return broken != nullptr && nameOf(descriptor) == broken;
}

bool isOut(int descriptor) {
    const char* const flag = std::getenv("BROKEN_DISK_WHILE");
    const char* const folder = std::getenv("BROKEN_DISK_FOLDER");
    return flag != nullptr && folder != nullptr && access(flag, F_OK) == 0 &&
           nameOf(descriptor).starts_with(folder);
}

template<typename Function>
Function next(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

ssize_t fail() {
    errno = EIO;
    return -1;
}

} // namespace

extern "C" ssize_t write(int descriptor, const void* from, size_t count) {
    static const auto real = next<ssize_t (*)(int, const void*, size_t)>("write");
    return isOut(descriptor) ? fail() : real(descriptor, from, count);
}

extern "C" ssize_t read(int descriptor, void* to, size_t count) {
    static const auto real = next<ssize_t (*)(int, void*, size_t)>("read");
    if (isOut(descriptor)) {
        return fail();
    }
    if (isBroken(descriptor)) {
        const char* const after = std::getenv("BROKEN_DISK_AFTER");
        const long good = after != nullptr ? std::atol(after) : 0;
        const long left = good - static_cast<long>(lseek(descriptor, 0, SEEK_CUR));
        if (left <= 0) {
            return fail();
        }
        count = std::min(count, static_cast<size_t>(left));
    }
    return real(descriptor, to, count);
}
