// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_descriptor.h"
#include "position/navigator/navigator_port.h"

#include <QByteArray>

namespace raincast {

/// A mutex between processes: a file whose lock (flock) is the mutex. The file is made on first
/// need, is empty and stays; the system releases the lock of a process that ends, however it does.
class NavigatorLock : public NavigatorPort::Mutex {
public:
    /// Null when the file is missing and cannot be made.
    [[nodiscard]] static std::unique_ptr<NavigatorLock> open(const QByteArray& path);

    [[nodiscard]] bool wait() override;
    void release() override;

private:
    explicit NavigatorLock(FileDescriptor file) : m_file(std::move(file)) {}

    FileDescriptor m_file;
};

} // namespace raincast
