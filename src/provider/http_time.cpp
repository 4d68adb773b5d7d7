// SPDX-License-Identifier: MIT
#include "provider/http_time.h"

#include <QDateTime>
#include <QLocale>

namespace raincast {

FileTime readHttpTime(const QByteArray& text) {
    QDateTime time = QLocale::c().toDateTime(
        QString::fromLatin1(text), QStringLiteral("ddd, dd MMM yyyy HH:mm:ss 'GMT'")
    );
    time.setTimeSpec(Qt::UTC);
    return time.isValid() && time.toSecsSinceEpoch() >= 0
               ? kUnixEpoch + time.toSecsSinceEpoch() * kFileTimePerSecond
               : 0;
}

} // namespace raincast
