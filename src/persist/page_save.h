// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <optional>
#include <tl/expected.hpp>

namespace raincast {

/// One save of the page file on its way to the disk: PageFile::prepare() makes it, write() carries
/// it out, in any thread, and PageFile::finish() takes it back.
struct PageSave {
    QString path;
    QByteArray bytes;
    std::size_t pages = 0; ///< in them

    /// What the .bak file has to hold before the page file is replaced; written unless it does.
    struct Backup {
        QString path;
        QByteArray bytes;
        bool written = false;
    };
    std::optional<Backup> backup;

    /// What came of it: the reason of a failure has no full stop. Before write() it is not saved.
    tl::expected<void, QString> result = tl::make_unexpected(QStringLiteral("It is not saved yet"));

    /// Puts it all on the disk, the .bak file first. After a failure the page file is unchanged.
    void write();
};

} // namespace raincast
