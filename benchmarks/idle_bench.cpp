// SPDX-License-Identifier: MIT
// What an idle minute costs: the viewer with a radar picture on its page, beside an empty window
// whose timer fires every 100 ms as the viewer's does. Both run at once, offscreen, for as many
// seconds as the first argument says (60 unless told otherwise); printed is the time that their
// processes spent on a processor meanwhile.
#include "support/gif_maker.h"
#include "support/http_server.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr int kSeconds = 60;
constexpr int kStartSeconds = 5;  // until both have painted what there is
constexpr int kDeadline = 60'000; // milliseconds

/// A program of a home of its own, ended with SIGTERM when this goes.
class Running {
public:
    Running(const char* program, const QStringList& arguments) {
        auto environment = QProcessEnvironment::systemEnvironment();
        for (const char* name :
             {"XDG_CONFIG_HOME", "XDG_CONFIG_DIRS", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"}) {
            environment.insert(QString::fromLatin1(name), m_home.path());
        }
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        m_process.setProcessEnvironment(environment);
        m_process.setStandardErrorFile(QProcess::nullDevice());
        m_process.start(QString::fromLocal8Bit(program), arguments);
        m_process.waitForStarted(kDeadline);
    }
    ~Running() {
        m_process.terminate();
        m_process.waitForFinished(kDeadline);
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

    /// Milliseconds on a processor so far, in the program and in the system for it.
    [[nodiscard]] double spent() const {
        QFile file(QStringLiteral("/proc/%1/stat").arg(m_process.processId()));
        if (!file.open(QIODevice::ReadOnly)) {
            std::fprintf(stderr, "A program has ended early.\n");
            std::exit(1);
        }
        // 4242 (raincast) S 1 4242 ...: utime and stime are the 14th and 15th field.
        const QByteArray line = file.readAll();
        const auto fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
        const double ticks = fields.value(11).toDouble() + fields.value(12).toDouble();
        return ticks * 1000 / static_cast<double>(sysconf(_SC_CLK_TCK));
    }

private:
    QTemporaryDir m_home;
    QProcess m_process;
};

/// Serves one radar picture of the site MUX, placed on the earth.
void publish(raincast::HttpServer& server) {
    const QString folder = QStringLiteral("/ridge/RadarImg/N0R/MUX/");
    const QString name = QStringLiteral("MUX_20190519_0554_N0R.gif");
    server.serve(
        QStringLiteral("/ridge/Overlays/Cities/Short/MUX_City_Short.gfw"),
        "0.009\n0\n0\n-0.009\n-124.6\n39.6\n"
    );
    server.serve(folder, '"' + name.toLatin1() + '"');
    server.serve(folder + name, raincast::makeGif({.screen = {600, 550}}));
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const int asked = QCoreApplication::arguments().value(1).toInt();
    const int seconds = asked > 0 ? asked : kSeconds;
    raincast::HttpServer server;
    publish(server);
    const Running viewer(
        RAINCAST_PROGRAM,
        {QStringLiteral("--site"), QStringLiteral("MUX"), QStringLiteral("--radar-server"),
         server.host(), QStringLiteral("--basemap-server"), server.host()}
    );
    const Running bare(BARE_WINDOW_PROGRAM, {QStringLiteral("--idle")});
    QThread::sleep(kStartSeconds);
    const double viewerBefore = viewer.spent();
    const double bareBefore = bare.spent();
    QThread::sleep(static_cast<unsigned long>(seconds));
    const double viewerSpent = viewer.spent() - viewerBefore;
    const double bareSpent = bare.spent() - bareBefore;
    std::printf(
        "%d idle seconds: the viewer %.0f ms of processor time, an empty window %.0f ms; "
        "%.2f %% of a processor more (aim: at most 0.1 %%)\n",
        seconds, viewerSpent, bareSpent, (viewerSpent - bareSpent) / seconds / 10
    );
    return 0;
}
