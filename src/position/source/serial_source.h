// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_descriptor.h"
#include "core/idle_call.h"
#include "position/source/position_source.h"

#include <QString>

#include <memory>

class QSocketNotifier;

namespace raincast {

/// A receiver at a serial device: eight bits, no parity, no flow control.
class SerialSource : public PositionSource {
public:
    SerialSource(Timers& timers, QString device, int baud);
    ~SerialSource() override;

    void open(Sink& sink) override;
    void close() override;

    /// True for the speeds that serial devices have, 4800 among them.
    [[nodiscard]] static bool isSpeed(int baud);

private:
    [[nodiscard]] QString openDevice();
    void service();
    void fail(const QString& why);

    QString m_device;
    int m_baud;
    Sink* m_sink = nullptr;
    FileDescriptor m_file;
    std::unique_ptr<QSocketNotifier> m_notifier;
    IdleCall m_ready;
};

} // namespace raincast
