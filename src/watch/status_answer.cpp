// SPDX-License-Identifier: MIT
#include "watch/status_answer.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>

namespace raincast {

bool saysUnreachable(const QByteArray& status) {
    const QJsonObject page = QJsonDocument::fromJson(status).object();
    return !page[QStringLiteral("reachable")].toBool(true);
}

std::optional<FileTime> replayStartIn(const QByteArray& status) {
    const QJsonObject page = QJsonDocument::fromJson(status).object();
    const auto started = QDateTime::fromString(
        page[QStringLiteral("replay")][QStringLiteral("started")].toString(), Qt::ISODateWithMs
    );
    if (!started.isValid()) {
        return std::nullopt;
    }
    return kUnixEpoch + started.toMSecsSinceEpoch() * (kFileTimePerSecond / 1000);
}

} // namespace raincast
