// SPDX-License-Identifier: MIT
#include "position/source/serial_source.h"

#include "core/text.h"

#include <QFile>
#include <QSocketNotifier>

#include <fcntl.h>
#include <termios.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <utility>

namespace raincast {

namespace {

struct Speed {
    int baud;
    speed_t code;
};

constexpr Speed kSpeeds[] = {
    {1200, B1200},     {2400, B2400},     {4800, B4800},     {9600, B9600},
    {19200, B19200},   {38400, B38400},   {57600, B57600},   {115200, B115200},
    {230400, B230400}, {460800, B460800}, {921600, B921600},
};

const Speed* findSpeed(int baud) {
    const Speed* found =
        std::find_if(std::begin(kSpeeds), std::end(kSpeeds), [baud](const Speed& s) {
            return s.baud == baud;
        });
    return found != std::end(kSpeeds) ? found : nullptr;
}

QString systemError() {
    if (errno == ENOTTY) {
        return Text::tr("Not a serial device");
    }
    return QString::fromLocal8Bit(std::strerror(errno));
}

// Raw bytes at the given speed, whatever the modem lines say. False leaves the reason in errno.
bool configure(int file, speed_t speed) {
    termios settings{};
    if (::tcgetattr(file, &settings) != 0) {
        return false;
    }
    ::cfmakeraw(&settings);
    ::cfsetspeed(&settings, speed);
    settings.c_cflag |= CLOCAL | CREAD;
    settings.c_cflag &= ~static_cast<tcflag_t>(CSTOPB | CRTSCTS);
    // Asking for at least one byte makes an empty read mean that the device is gone.
    settings.c_cc[VMIN] = 1;
    settings.c_cc[VTIME] = 0;
    return ::tcsetattr(file, TCSANOW, &settings) == 0;
}

} // namespace

SerialSource::SerialSource(Timers& timers, QString device, int baud)
    : m_device(std::move(device)), m_baud(baud), m_ready(timers, [this] { service(); }) {}

SerialSource::~SerialSource() {
    close();
}

bool SerialSource::isSpeed(int baud) {
    return findSpeed(baud) != nullptr;
}

QString SerialSource::openDevice() {
    const Speed* speed = findSpeed(m_baud);
    if (speed == nullptr) {
        return Text::tr("%1 is not a speed").arg(m_baud);
    }
    // Without O_NONBLOCK opening waits for the carrier, and with O_NOCTTY the device cannot become
    // the terminal that sends us its interrupts.
    const QByteArray path = QFile::encodeName(m_device);
    m_file = FileDescriptor(::open(path.constData(), O_RDONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    if (!m_file.isOpen() || !configure(m_file.get(), speed->code)) {
        return systemError();
    }
    ::tcflush(m_file.get(), TCIFLUSH); // what was sent at another speed
    return {};
}

void SerialSource::open(Sink& sink) {
    m_sink = &sink;
    if (const QString error = openDevice(); !error.isEmpty()) {
        fail(error);
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(m_file.get(), QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, [this] {
        // It would fire on and on until the bytes are read, which may have to wait.
        m_notifier->setEnabled(false);
        m_ready.call();
    });
}

void SerialSource::close() {
    m_ready.cancel();
    if (m_notifier) {
        // Kept until the next opening: it may be the one that calls us.
        m_notifier->setEnabled(false);
    }
    m_file.reset();
    m_sink = nullptr;
}

void SerialSource::service() {
    char bytes[4096];
    const ssize_t count = ::read(m_file.get(), bytes, sizeof bytes);
    if (count > 0) {
        m_sink->received({bytes, static_cast<std::size_t>(count)});
    } else if (count == 0) {
        fail(Text::tr("The device was unplugged"));
    } else if (errno != EAGAIN && errno != EINTR) {
        fail(systemError());
    }
    if (m_file.isOpen()) {
        m_notifier->setEnabled(true);
    }
}

void SerialSource::fail(const QString& why) {
    Sink* sink = m_sink;
    close();
    sink->broken(m_device + QStringLiteral(": ") + why);
}

} // namespace raincast
