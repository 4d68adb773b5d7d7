// SPDX-License-Identifier: MIT
#include "position/navigator/navigator_lock.h"

#include "position/navigator/navigator_waiting.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <thread>

namespace raincast {

namespace {

// Others hold the mutex for as long as one exchange takes: a few milliseconds.
constexpr std::chrono::milliseconds kTryAgain{10};

} // namespace

std::unique_ptr<NavigatorLock> NavigatorLock::open(const QByteArray& path) {
    // The sticky bit keeps those away who clear the folder of files that look forgotten: two files
    // of that name would be two mutexes.
    constexpr mode_t kMode = S_IRUSR | S_IWUSR | S_ISVTX;
    constexpr int kFlags = O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    FileDescriptor file(path.isEmpty() ? -1 : ::open(path.constData(), kFlags, kMode));
    return file.isOpen() ? std::unique_ptr<NavigatorLock>(new NavigatorLock(std::move(file)))
                         : nullptr;
}

bool NavigatorLock::wait() {
    // Not one blocking call: windows are painted meanwhile, and the program may be asked to end.
    NavigatorWaiting waiting;
    while (::flock(m_file.get(), LOCK_EX | LOCK_NB) != 0) {
        if ((errno != EWOULDBLOCK && errno != EINTR) || !waiting.goesOn()) {
            return false;
        }
        std::this_thread::sleep_for(kTryAgain);
    }
    return true;
}

void NavigatorLock::release() {
    ::flock(m_file.get(), LOCK_UN);
}

} // namespace raincast
