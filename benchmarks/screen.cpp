// SPDX-License-Identifier: MIT
#include "screen.h"

#include "process_cost.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>
#include <QtEndian>

#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr int kDeadline = 60'000; // milliseconds
constexpr unsigned long kLookMicroseconds = 300;
constexpr quint32 kEachPixel = 8; // of a row, and each such row
constexpr int kEchoPixels = 20;
constexpr std::array<QRgb, 2> kEchoes{0x00FF00, 0xFFFF00};

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "%s\n", what);
    std::exit(1);
}

/// Runs Xvfb, which finds a display of its own and writes its number.
QString startServer(QProcess& server, const QString& folder) {
    int ends[2];
    if (pipe(ends) != 0) {
        fail("There is no pipe.");
    }
    process_cost::endWithUs(server);
    server.setStandardErrorFile(QProcess::nullDevice());
    server.start(
        QStringLiteral("Xvfb"),
        {"-displayfd", QString::number(ends[1]), "-screen", "0", "1280x1024x24", "-fbdir", folder}
    );
    const bool started = server.waitForStarted(kDeadline);
    close(ends[1]);
    QByteArray number;
    char digit = 0;
    while (started && read(ends[0], &digit, 1) == 1 && digit != '\n') {
        number += digit;
    }
    close(ends[0]);
    if (number.isEmpty()) {
        fail("Xvfb does not start.");
    }
    return u':' + QString::fromLatin1(number);
}

} // namespace

/// Xvfb keeps its screen in a file in the form of xwd: numbers of 32 bits, the highest byte first,
/// then a name, a map of colours and the pixels.
Screen::Screen() {
    m_display = startServer(m_server, m_folder.path());
    auto* file = new QFile(m_folder.filePath(QStringLiteral("Xvfb_screen0")), &m_server);
    const uchar* const start =
        file->open(QIODevice::ReadOnly) ? file->map(0, file->size()) : nullptr;
    if (start == nullptr) {
        fail("The screen cannot be read.");
    }
    const auto number = [start](int place) { return qFromBigEndian<quint32>(start + 4 * place); };
    m_width = number(4);
    m_height = number(5);
    m_stride = number(12);
    m_pixels = start + number(0) + 12 * number(19);
}

Screen::~Screen() {
    m_server.terminate();
    m_server.waitForFinished(kDeadline);
}

QProcessEnvironment Screen::environment(QProcessEnvironment base) const {
    base.insert(QStringLiteral("DISPLAY"), m_display);
    base.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    base.remove(QStringLiteral("WAYLAND_DISPLAY"));
    return base;
}

int Screen::count(const std::function<bool(QRgb)>& wanted) const {
    int found = 0;
    for (quint32 row = 0; row < m_height; row += kEachPixel) {
        const uchar* const line = m_pixels + std::size_t{row} * m_stride;
        for (quint32 column = 0; column < m_width; column += kEachPixel) {
            found += wanted(qFromLittleEndian<quint32>(line + 4 * column) & 0xFFFFFF) ? 1 : 0;
        }
    }
    return found;
}

// Its own ground is black.
bool Screen::showsSomething(int side) const {
    const int across = side / static_cast<int>(kEachPixel);
    return count([](QRgb pixel) { return pixel != 0; }) >= across * across;
}

bool Screen::showsEchoes() const {
    return count([](QRgb pixel) { return pixel == kEchoes[0] || pixel == kEchoes[1]; }) >=
           kEchoPixels;
}

void Screen::waitFor(const Seen& seen, const QString& otherwise) const {
    const QDeadlineTimer deadline(kDeadline);
    while (!seen()) {
        if (deadline.hasExpired()) {
            fail(qPrintable(otherwise));
        }
        QThread::usleep(kLookMicroseconds);
    }
}

void Screen::waitUntil(const Seen& seen, const QString& program) const {
    waitFor(seen, program + QStringLiteral(" does not show what it should."));
}

void Screen::waitUntilEmpty(const QString& program) const {
    waitFor(
        [this] { return count([](QRgb pixel) { return pixel != 0; }) == 0; },
        program + QStringLiteral(" has ended, and something stays on the screen.")
    );
}

double Screen::millisecondsUntil(
    const Seen& seen, const QProcessEnvironment& environment, const QString& program,
    const QStringList& arguments
) const {
    QProcess process;
    process_cost::endWithUs(process);
    process.setProcessEnvironment(environment);
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    QElapsedTimer timer;
    timer.start();
    process.start(program, arguments);
    if (!process.waitForStarted(kDeadline)) {
        fail(qPrintable(program + QStringLiteral(" does not start.")));
    }
    waitUntil(seen, program);
    const double milliseconds = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    process.kill();
    process.waitForFinished(kDeadline);
    waitUntilEmpty(program);
    return milliseconds;
}
