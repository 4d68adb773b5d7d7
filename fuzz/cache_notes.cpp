// SPDX-License-Identifier: MIT
// The notes beside cached pictures: when warnings were fetched, which tag a frame has, and what
// other programs wish of a folder. A note that is not sound is as none.
#include "core/folder_wish.h"
#include "image/image_file.h"
#include "input.h"
#include "radar/cache.h"
#include "radar/frame_tag.h"
#include "radar/warnings_file.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <sys/file.h>

namespace raincast {
namespace {

void write(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}

void checkWarnings(const QString& cache, const QByteArray& note) {
    write(cache + QStringLiteral("/TLX/TLX_Warnings_0.time"), note);
    for (const char* range : {"Short", "Long"}) {
        const QString word = QString::fromLatin1(range);
        const RadarWarnings warnings =
            loadWarnings(cache, QStringLiteral("TLX"), word, shownPictures().warnings);
        require(!warnings.picture);
        if (!note.contains(range)) {
            require(!hasWarningsOf(cache, QStringLiteral("TLX"), word));
        }
    }
}

void checkTag(const QString& cache, const QByteArray& note) {
    const QString frame = cache + QStringLiteral("/TLX/TLX_20261121_1752_N0R.gif");
    write(frame, "frame");
    write(cache + QStringLiteral("/TLX/TLX_2_N0R.tag"), note);
    // It becomes the header of a request.
    const QByteArray tag = frameTag(frame);
    for (const char c : tag) {
        require(' ' < c && c <= '~');
    }
    noteFrameTag(frame, note);
    require(frameTag(frame).isEmpty() || frameTag(frame) == note);
}

void checkWish(const QString& cache, const QByteArray& bytes) {
    const QString path = cache + QStringLiteral("/.wish-abcdef");
    write(path, bytes);
    QFile living(path);
    require(living.open(QIODevice::ReadOnly) && flock(living.handle(), LOCK_EX | LOCK_NB) == 0);
    require(FolderWish(cache, 4).greatest() >= 4);
    living.close();
    require(FolderWish(cache, 4).greatest() == 4 && !QFile::exists(path));
}

} // namespace
} // namespace raincast

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    static const QTemporaryDir cache;
    static const bool made = QDir().mkpath(cache.filePath(QStringLiteral("TLX")));
    require(made);
    Input input(data, size);
    checkWarnings(cache.path(), input.line());
    checkTag(cache.path(), input.line());
    checkWish(cache.path(), input.rest());
    return 0;
}
