// SPDX-License-Identifier: MIT
#include "app/local_server.h"

#include "core/program_paths.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>

#include <utility>

namespace raincast {

namespace {

constexpr int kStartMilliseconds = 10'000;
// The program's end waits for it.
constexpr int kEndMilliseconds = 100;
// A server that does not come up will hardly do so at the next update.
constexpr int kMostFailures = 3;

/// The address in the line that a server prints when it listens: "Serving sample weather at
/// http://127.0.0.1:8155/"; empty for any other line.
QString addressIn(const QByteArray& line) {
    const QUrl url = QUrl::fromEncoded(line.mid(line.lastIndexOf(' ') + 1).trimmed());
    const bool isReadyLine = line.startsWith("Serving ") && url.scheme() == u"http";
    return isReadyLine && url.port() > 0 ? url.authority() : QString();
}

} // namespace

QString LocalServer::installedProgram() {
    return programFor(programFolder());
}

QString LocalServer::programFor(const QString& viewerFolder) {
    const QString name = QStringLiteral("/raincast-server");
    const QString beside = viewerFolder + name;
    return QFileInfo(beside).isFile()
               ? beside
               : QDir::cleanPath(
                     viewerFolder + QStringLiteral("/" RAINCAST_PROGRAMS_FOLDER) + name
                 );
}

LocalServer::LocalServer(QString program, QStringList arguments)
    : m_program(std::move(program)), m_arguments(std::move(arguments)) {
    m_limit.setSingleShot(true);
    QObject::connect(&m_limit, &QTimer::timeout, [this] {
        letGo();
        failed();
    });
}

LocalServer::~LocalServer() {
    letGo();
    for (auto* const process : m_ending.findChildren<QProcess*>()) {
        process->disconnect();
        if (!process->waitForFinished(kEndMilliseconds)) {
            process->kill();
            process->waitForFinished(kEndMilliseconds);
        }
    }
}

void LocalServer::use(Ready ready) {
    const bool starts = !m_waiting.empty();
    if (!starts && (!m_address.isEmpty() || m_failures >= kMostFailures)) {
        ready(m_address);
        return;
    }
    m_waiting.push_back(std::move(ready));
    if (!starts) {
        start();
    }
}

void LocalServer::start() {
    letGo();
    if (!QFileInfo(m_program).isExecutable()) {
        failed();
        return;
    }
    m_process = std::make_unique<QProcess>();
    m_process->setStandardErrorFile(QProcess::nullDevice());
    m_process->setProgram(m_program);
    m_process->setArguments(
        m_arguments +
        QStringList{
            QStringLiteral("--listen"), QStringLiteral("127.0.0.1:0"),
            QStringLiteral("--end-with-parent"), QStringLiteral("--quiet")}
    );
    QObject::connect(m_process.get(), &QProcess::readyReadStandardOutput, [this] { readOutput(); });
    QObject::connect(
        m_process.get(), &QProcess::stateChanged,
        [this](QProcess::ProcessState state) {
            if (state == QProcess::NotRunning) {
                m_address.clear();
                if (m_limit.isActive()) {
                    failed();
                }
            }
        }
    );
    m_limit.start(kStartMilliseconds);
    m_process->start(QIODevice::ReadOnly);
}

void LocalServer::readOutput() {
    while (m_process->canReadLine()) {
        const QString address = addressIn(m_process->readLine());
        if (!address.isEmpty() && m_limit.isActive()) {
            m_limit.stop();
            m_address = address;
            m_failures = 0;
            for (const Ready& ready : std::exchange(m_waiting, {})) {
                ready(address);
            }
            return;
        }
    }
}

void LocalServer::failed() {
    m_limit.stop();
    ++m_failures;
    for (const Ready& ready : std::exchange(m_waiting, {})) {
        ready({});
    }
}

void LocalServer::end() {
    letGo();
    m_failures = 0;
    m_limit.stop();
    for (const Ready& ready : std::exchange(m_waiting, {})) {
        ready({});
    }
}

// This may be a call of the process: it goes later.
void LocalServer::letGo() {
    m_address.clear();
    QProcess* const process = m_process.release();
    if (process == nullptr) {
        return;
    }
    process->disconnect();
    process->setParent(&m_ending);
    if (process->state() == QProcess::NotRunning) {
        process->deleteLater();
        return;
    }
    QObject::connect(process, &QProcess::finished, process, &QObject::deleteLater);
    QTimer::singleShot(kStartMilliseconds, process, &QProcess::kill);
    process->terminate();
}

} // namespace raincast
