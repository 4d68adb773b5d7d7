// SPDX-License-Identifier: MIT
#include "position/navigator/qv_transaction.h"

#include "persist/little_endian.h"
#include "position/finite_float.h"
#include "position/navigator/navigator_link.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <utility>

namespace raincast {

namespace {

constexpr std::uint32_t kUserMessage = 0x0400;
constexpr std::uint32_t kRequestFollows = 16;

// Applies a system call to the bytes until all of them are through or it moves no more.
template<class Bytes, class Move>
bool moveAll(int file, Bytes bytes, Move move) {
    while (!bytes.empty()) {
        const ssize_t count = move(file, bytes.data(), bytes.size());
        if (count > 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            return false;
        }
    }
    return true;
}

} // namespace

CQV_transaction::CQV_transaction(NavigatorLink& link)
    : m_link(link), m_hasMutex(link.mutex && link.mutex->wait()) {}

CQV_transaction::~CQV_transaction() {
    m_file.reset();
    if (m_hasMutex) {
        m_link.mutex->release();
    }
}

NavigatorStatus CQV_transaction::Call(std::uint32_t request) {
    // The file is not opened the same way again: m_openForWriting and m_openForReading stay.
    m_file.reset();
    if (!m_hasMutex || !m_link.window || !m_link.window->exists()) {
        return kNavigatorGone;
    }
    const auto answer = m_link.window->send({kUserMessage, kRequestFollows, request});
    return static_cast<NavigatorStatus>(answer.value_or(kNavigatorGone));
}

// Others may be able to put things into the file's folder: only a plain file of this user is
// opened, no link is followed, and nothing is waited for.
FileDescriptor CQV_transaction::openShared(int flags) const {
    const QByteArray path = QFile::encodeName(m_link.file);
    constexpr mode_t kMode = S_IRUSR | S_IWUSR;
    FileDescriptor file(::open(path.constData(), flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, kMode)
    );
    struct stat status {};
    const bool good = file.isOpen() && ::fstat(file.get(), &status) == 0 &&
                      S_ISREG(status.st_mode) && status.st_uid == ::geteuid();
    return good ? std::move(file) : FileDescriptor();
}

bool CQV_transaction::startWriting() {
    if (!m_openForWriting) {
        m_openForReading = false;
        m_file = m_hasMutex ? openShared(O_WRONLY | O_CREAT) : FileDescriptor();
        m_openForWriting = m_file.isOpen() && ::ftruncate(m_file.get(), 0) == 0;
    }
    return m_openForWriting && m_file.isOpen();
}

bool CQV_transaction::startReading() {
    if (!m_openForReading) {
        m_openForWriting = false;
        m_file = m_hasMutex ? openShared(O_RDONLY) : FileDescriptor();
        m_openForReading = m_file.isOpen();
    }
    return m_openForReading && m_file.isOpen();
}

template<class T>
NavigatorStatus CQV_transaction::writeValue(T value) {
    const auto bytes = toLittleEndian(value);
    const bool written =
        startWriting() && moveAll(m_file.get(), std::span<const std::uint8_t>(bytes), ::write);
    return written ? kNavigatorSuccess : kNavigatorFileFailed;
}

template<class T>
NavigatorStatus CQV_transaction::readValue(T& value) {
    std::array<std::uint8_t, sizeof(T)> bytes{};
    if (!startReading() || !moveAll(m_file.get(), std::span<std::uint8_t>(bytes), ::read)) {
        return kNavigatorFileFailed;
    }
    value = loadLittleEndian<T>(bytes.data());
    return kNavigatorSuccess;
}

NavigatorStatus CQV_transaction::WriteUInt32(std::uint32_t value) {
    return writeValue(value);
}

NavigatorStatus CQV_transaction::WriteDouble(double value) {
    return writeValue(value);
}

NavigatorStatus CQV_transaction::ReadUInt32(std::uint32_t& value) {
    return readValue(value);
}

NavigatorStatus CQV_transaction::ReadBool(bool& value) {
    std::uint32_t number = 0;
    const NavigatorStatus status = ReadUInt32(number);
    if (status == kNavigatorSuccess) {
        value = number != 0;
    }
    return status;
}

NavigatorStatus CQV_transaction::ReadDouble(double& value) {
    return readValue(value);
}

NavigatorStatus CQV_transaction::ReadFloat(float& value) {
    double number = 0;
    const NavigatorStatus status = ReadDouble(number);
    if (status == kNavigatorSuccess) {
        value = finiteFloat(number);
    }
    return status;
}

} // namespace raincast
