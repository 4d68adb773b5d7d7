// SPDX-License-Identifier: MIT
#include "radar/frame_tag.h"

#include "core/whole_file.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace raincast {

namespace {

constexpr qint64 kMostNoteBytes = 512;
constexpr qint64 kMostFrameBytes = qint64{4} << 20;

/// BMX_20070615_1830_N0R.gif: BMX_2_N0R.tag
QString noteFile(const QString& frameFile) {
    const QFileInfo frame(frameFile);
    const QString name = frame.completeBaseName();
    return frame.path() + u'/' + name.section(u'_', 0, 0) + QStringLiteral("_2_") +
           name.section(u'_', -1) + QStringLiteral(".tag");
}

QByteArray nameOf(const QString& frameFile) {
    return QFileInfo(frameFile).fileName().toLatin1();
}

/// Empty for a file that cannot be read.
QByteArray hashOf(const QString& frameFile) {
    const auto bytes = readWhole(frameFile, kMostFrameBytes);
    return bytes ? QCryptographicHash::hash(*bytes, QCryptographicHash::Sha1).toHex()
                 : QByteArray();
}

bool isVisible(const QByteArray& text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return ' ' < c && c <= '~'; });
}

} // namespace

void noteFrameTag(const QString& frameFile, const QByteArray& tag) {
    const QString note = noteFile(frameFile);
    const QByteArray hash = hashOf(frameFile);
    if (tag.isEmpty() || !isVisible(tag) || hash.isEmpty()) {
        QFile::remove(note);
        return;
    }
    const QByteArray text = nameOf(frameFile) + ' ' + tag + ' ' + hash + '\n';
    static_cast<void>(replaceFile(note, text, Lasting::no));
}

QByteArray frameTag(const QString& frameFile) {
    const auto note = readWhole(noteFile(frameFile), kMostNoteBytes);
    const QList<QByteArray> words = note.value_or(QByteArray()).trimmed().split(' ');
    const bool isOfFrame = words.size() == 3 && words[0] == nameOf(frameFile) &&
                           isVisible(words[1]) && words[2] == hashOf(frameFile);
    return isOfFrame ? words[1] : QByteArray();
}

} // namespace raincast
