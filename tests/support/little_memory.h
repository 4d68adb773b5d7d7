// SPDX-License-Identifier: MIT
#pragma once

#include <sys/resource.h>

#include <fstream>
#include <string>

namespace raincast {

/// This process gets little more memory than it has already while this lives; who asks for more
/// fails as on a small machine.
class LittleMemory {
public:
    explicit LittleMemory(rlim_t bytesMore) {
        getrlimit(RLIMIT_DATA, &m_before);
        const rlimit limit{taken() + bytesMore, m_before.rlim_max};
        setrlimit(RLIMIT_DATA, &limit);
    }
    ~LittleMemory() { setrlimit(RLIMIT_DATA, &m_before); }
    LittleMemory(const LittleMemory&) = delete;
    LittleMemory& operator=(const LittleMemory&) = delete;

private:
    static rlim_t taken() {
        std::ifstream status("/proc/self/status");
        for (std::string word; status >> word;) {
            if (rlim_t kilobytes = 0; word == "VmData:" && status >> kilobytes) {
                return kilobytes * 1024;
            }
        }
        return 0;
    }

    rlimit m_before{};
};

} // namespace raincast
