// SPDX-License-Identifier: MIT
#include "position/source/file_source.h"

#include "core/busy_guard.h"
#include "core/text.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <utility>

namespace raincast {

namespace {

using std::chrono::milliseconds;

// So much is read and given out before other events have their turn.
constexpr std::size_t kPieceSize = 64 * 1024;
constexpr milliseconds kAfterOthers{0};
constexpr milliseconds kWhileBusy{100};

QString systemError() {
    return QString::fromLocal8Bit(std::strerror(errno));
}

} // namespace

FileSource::FileSource(Timers& timers, QString path, double rate)
    : m_path(std::move(path)), m_rate(rate), m_pace(rate),
      m_alarm(timers.make([this] { play(); })) {}

FileSource::~FileSource() {
    close();
}

QString FileSource::openFile() {
    // Anything but a file could block: O_NONBLOCK lets a pipe be opened, to be turned away.
    const QByteArray path = QFile::encodeName(m_path);
    m_file = FileDescriptor(::open(path.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat status {};
    if (!m_file.isOpen() || ::fstat(m_file.get(), &status) != 0) {
        return systemError();
    }
    return S_ISREG(status.st_mode) ? QString() : Text::tr("Not a file");
}

void FileSource::open(Sink& sink) {
    m_sink = &sink;
    m_buffer.clear();
    m_played = 0;
    m_waited = false;
    m_failure.clear();
    m_pace = NmeaPace(m_rate);
    if (const QString failure = openFile(); !failure.isEmpty()) {
        end(failure);
        return;
    }
    m_alarm->start(kAfterOthers);
}

void FileSource::close() {
    m_alarm->stop();
    m_file.reset();
    m_sink = nullptr;
}

void FileSource::play() {
    if (BusyGuard::active()) {
        m_alarm->start(kWhileBusy);
        return;
    }
    for (std::size_t played = 0; played < kPieceSize;) {
        const std::string_view piece = nextPiece();
        if (piece.empty()) {
            end(m_failure);
            return;
        }
        if (!isDue(piece)) {
            return;
        }
        m_played += piece.size();
        played += piece.size();
        m_sink->received(piece);
        if (m_sink == nullptr) {
            return;
        }
    }
    m_alarm->start(kAfterOthers);
}

bool FileSource::isDue(std::string_view piece) {
    if (std::exchange(m_waited, false)) {
        return true;
    }
    const milliseconds wait = m_pace.waitBefore(piece);
    if (wait == milliseconds{0}) {
        return true;
    }
    m_waited = true;
    m_alarm->start(wait);
    return false;
}

std::string_view FileSource::nextPiece() {
    bool atEnd = false;
    while (true) {
        // Taken again in each round: filling moves the buffer, also at the end of the file.
        const std::string_view rest = std::string_view(m_buffer).substr(m_played);
        const std::size_t lineEnd = rest.find('\n');
        if (m_rate > 0 && lineEnd != std::string_view::npos) {
            return rest.substr(0, lineEnd + 1);
        }
        const bool enough = m_rate > 0 ? rest.size() >= kPieceSize : !rest.empty();
        if (enough || atEnd) {
            return rest;
        }
        atEnd = !fill();
    }
}

bool FileSource::fill() {
    m_buffer.erase(0, m_played);
    m_played = 0;
    const std::size_t kept = m_buffer.size();
    m_buffer.resize(kept + kPieceSize);
    const ssize_t count = ::read(m_file.get(), m_buffer.data() + kept, kPieceSize);
    if (count < 0) {
        m_failure = systemError();
    }
    m_buffer.resize(kept + (count > 0 ? static_cast<std::size_t>(count) : 0));
    return count > 0;
}

void FileSource::end(const QString& failure) {
    Sink* sink = m_sink;
    close();
    if (failure.isEmpty()) {
        sink->finished();
    } else {
        sink->broken(m_path + QStringLiteral(": ") + failure);
    }
}

} // namespace raincast
