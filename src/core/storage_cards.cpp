// SPDX-License-Identifier: MIT
#include "core/storage_cards.h"

#include "core/whole_file.h"

#include <QDir>
#include <QFile>
#include <QList>

#include <algorithm>
#include <optional>

namespace raincast {

namespace {

// A machine has some dozens of mounts, a hundred bytes each.
constexpr qint64 kMostBytes = qint64{16} * 1024 * 1024;

struct Mount {
    QByteArray point;
    bool isCard = false;
};

bool isOctal(char c) {
    return c >= '0' && c <= '7';
}

// Spaces, tabs, line ends and backslashes stand as "\040" in the table.
QByteArray unescaped(const QByteArray& field) {
    QByteArray text;
    for (qsizetype i = 0; i < field.size(); ++i) {
        const bool escape = field[i] == '\\' && i + 3 < field.size() && isOctal(field[i + 1]) &&
                            isOctal(field[i + 2]) && isOctal(field[i + 3]);
        if (!escape) {
            text.append(field[i]);
            continue;
        }
        const int code =
            (field[i + 1] - '0') * 64 + (field[i + 2] - '0') * 8 + (field[i + 3] - '0');
        text.append(static_cast<char>(code));
        i += 3;
    }
    return text;
}

bool isWhereCardsAre(const QByteArray& point) {
    return point.startsWith("/media/") || point.startsWith("/run/media/") ||
           point.startsWith("/mnt/");
}

bool isReadOnly(const QByteArray& options) {
    return options.split(',').contains("ro");
}

// 36 35 8:17 / /media/mia/SD\040CARD rw,nosuid shared:1 - vfat /dev/sdb1 rw,fmask=0022
// number, parent, device, root, mount point, its options, any number of optional fields, a hyphen,
// file system, source, the file system's options
std::optional<Mount> parsedMount(const QByteArray& line) {
    const QList<QByteArray> fields = line.split(' ');
    const qsizetype hyphen = fields.indexOf("-", 6);
    if (hyphen < 0 || fields.size() < hyphen + 4) {
        return std::nullopt;
    }
    Mount mount;
    mount.point = unescaped(fields[4]);
    // A card is a device of this machine; a network share and a file system in memory are not.
    mount.isCard = isWhereCardsAre(mount.point) && fields[hyphen + 2].startsWith("/dev/") &&
                   !isReadOnly(fields[5]) && !isReadOnly(fields[hyphen + 3]);
    return mount;
}

bool hides(const Mount& later, const QByteArray& point) {
    return point == later.point || later.point == "/" || point.startsWith(later.point + '/');
}

} // namespace

QStringList storageCardsIn(const QByteArray& mountTable) {
    QList<QByteArray> cards;
    for (const QByteArray& line : mountTable.split('\n')) {
        const std::optional<Mount> mount = parsedMount(line);
        if (!mount) {
            continue;
        }
        const auto hidden = [&](const QByteArray& card) { return hides(*mount, card); };
        cards.erase(std::remove_if(cards.begin(), cards.end(), hidden), cards.end());
        if (mount->isCard) {
            cards.append(mount->point);
        }
    }
    QStringList paths;
    for (const QByteArray& card : cards) {
        // A name of bytes that are no text leads nowhere once it is one.
        if (const QString path = QFile::decodeName(card); QFile::encodeName(path) == card) {
            paths.append(path);
        }
    }
    return paths;
}

QStringList ListStorageCards() {
    const QString root = qEnvironmentVariable(kCardRootVariable);
    if (!root.isEmpty()) {
        QStringList cards;
        const QDir folder(root);
        for (const QString& name :
             folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden, QDir::Name)) {
            cards.append(folder.filePath(name));
        }
        return cards;
    }
    const auto table = readWhole(QStringLiteral("/proc/self/mountinfo"), kMostBytes);
    return table ? storageCardsIn(*table) : QStringList();
}

} // namespace raincast
