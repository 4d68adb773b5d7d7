// SPDX-License-Identifier: MIT
// Recorded logs, behind a byte for their pace: whatever they hold, all of it comes, in order, and
// playing it ends.
#include "../tests/support/manual_timers.h"
#include "input.h"
#include "position/source/file_source.h"

#include <QFile>
#include <QTemporaryDir>

namespace raincast {
namespace {

class Collector : public PositionSource::Sink {
public:
    void received(std::string_view bytes) override {
        require(!bytes.empty() && bytes.size() <= 64 * 1024);
        m_log.append(bytes.data(), static_cast<qsizetype>(bytes.size()));
    }
    void broken(const QString& /*why*/) override { std::abort(); }
    void finished() override { m_isFinished = true; }

    [[nodiscard]] const QByteArray& log() const { return m_log; }
    [[nodiscard]] bool isFinished() const { return m_isFinished; }

private:
    QByteArray m_log;
    bool m_isFinished = false;
};

} // namespace
} // namespace raincast

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    static const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("log.nmea"));
    Input input(data, size);
    const double rate = input.byte() % 3 * 10.0;
    const QByteArray log = input.rest();
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(log) == log.size());
    file.close();

    ManualTimers timers;
    Collector collector;
    FileSource source(timers, path, rate);
    source.open(collector);
    while (timers.fire() >= 0) {
    }
    require(collector.isFinished() && collector.log() == log);
    return 0;
}
