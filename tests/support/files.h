// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

namespace raincast {

/// Writes a file for a test; its folder is made if missing.
inline void writeFile(const QString& path, const QByteArray& bytes = "x") {
    ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path())) << qPrintable(path);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << qPrintable(path);
    ASSERT_EQ(file.write(bytes), bytes.size()) << qPrintable(path);
}

/// The bytes of a file; "(none)" when it cannot be read.
inline QByteArray readFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

/// As if nobody had written to a file for so long.
inline void backdate(const QString& path, qint64 seconds) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite)) << qPrintable(path);
    const QDateTime then = QDateTime::currentDateTime().addSecs(-seconds);
    ASSERT_TRUE(file.setFileTime(then, QFileDevice::FileModificationTime)) << qPrintable(path);
}

/// The names of everything in a folder, sorted and joined by spaces.
inline std::string namesIn(const QString& folder) {
    return QDir(folder)
        .entryList(
            QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name
        )
        .join(u' ')
        .toStdString();
}

} // namespace raincast
