// SPDX-License-Identifier: MIT
#pragma once

#include <QLocale>
#include <QString>

namespace raincast {

/// An amount of bytes for people, whatever their language: "31 MB".
[[nodiscard]] inline QString dataSizeText(qint64 bytes) {
    const QLocale locale(QLocale::English, QLocale::UnitedStates);
    return locale.formattedDataSize(bytes, 0, QLocale::DataSizeSIFormat);
}

} // namespace raincast
