// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_descriptor.h"
#include "core/timers.h"
#include "position/nmea/nmea_pace.h"
#include "position/source/position_source.h"

#include <QString>

#include <memory>
#include <string>
#include <string_view>

namespace raincast {

/// A recorded log, played once: line by line at the pace that its own times tell (NmeaPace), or
/// piece by piece at once, with other events having their turn in between.
class FileSource : public PositionSource {
public:
    /// Rate: how many times as fast as it was written; 0 means at once.
    FileSource(Timers& timers, QString path, double rate);
    ~FileSource() override;

    void open(Sink& sink) override;
    void close() override;

private:
    [[nodiscard]] QString openFile();
    void play();
    [[nodiscard]] bool isDue(std::string_view piece);
    [[nodiscard]] std::string_view nextPiece();
    [[nodiscard]] bool fill();
    void end(const QString& failure);

    QString m_path;
    double m_rate;
    Sink* m_sink = nullptr;
    FileDescriptor m_file;
    QString m_failure; ///< why reading ended early
    NmeaPace m_pace;
    std::string m_buffer;
    std::size_t m_played = 0; ///< how much of the buffer was given out
    bool m_waited = false;    ///< for the next line
    std::unique_ptr<Alarm> m_alarm;
};

} // namespace raincast
