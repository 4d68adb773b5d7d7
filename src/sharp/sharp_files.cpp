// SPDX-License-Identifier: MIT
#include "sharp/sharp_files.h"

#include "core/clock.h"
#include "core/folders.h"
#include "radar/cache.h"
#include "radar/image/image_file.h"
#include "sharp/detail.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include <utility>

namespace raincast {

namespace {

/// None where a file is no picture of the size.
SharpPicture readPicture(const QString& file, const SharpSource& source, int detail) {
    const QSize size(kRadarImageWidth * detail, kRadarImageHeight * detail);
    const Bitmap picture = LoadImageFile(file, qint64{size.width()} * size.height());
    const bool isFrame = source.use == SharpSource::Use::frame;
    const bool isFit = picture && picture->size() == size &&
                       (!isFrame || picture->format() == QImage::Format_Indexed8);
    return isFit ? SharpPicture(std::move(*picture), detail, isFrame && detail == kMostDetail)
                 : SharpPicture();
}

/// Whether a cached file is that of the described one at present.
bool isOf(const QString& file, const QString& described) {
    const QFileInfo sharp(file);
    return sharp.isFile() && sharp.lastModified() == QFileInfo(described).lastModified();
}

SharpPicture readCached(const SharpSource& source, int detail) {
    for (; detail > 1; detail /= 2) {
        const QString file = sharpCacheFile(source.file, detail);
        if (!isOf(file, source.file)) {
            continue;
        }
        if (auto picture = readPicture(file, source, detail)) {
            return picture;
        }
    }
    return {};
}

/// Reads a file that came and gives it the time of the described one. What is no picture of the
/// size goes again.
SharpPicture takeFetched(const SharpSource& source, int detail) {
    QFile file(sharpCacheFile(source.file, detail));
    auto picture = readPicture(file.fileName(), source, detail);
    const QFileInfo described(source.file);
    const bool stays =
        picture && described.isFile() && file.open(QIODevice::ReadWrite) &&
        file.setFileTime(described.lastModified(), QFileDevice::FileModificationTime);
    if (!stays) {
        file.remove();
    }
    return picture;
}

} // namespace

SharpFiles::SharpFiles(Downloads& downloads, RadarServers servers)
    : m_downloads(downloads), m_servers(std::move(servers)) {}

void SharpFiles::look(const SharpSource& source, int detail, Looked done) {
    m_background.run([source, detail] { return readCached(source, detail); }, std::move(done));
}

void SharpFiles::fetch(const SharpSource& source, int detail, int above, Fetched done) {
    ++m_running;
    fetchNext({source, detail, above, std::move(done)});
}

bool SharpFiles::mayFetch() const {
    return m_retry.over(Clock::real().now());
}

// One object is for one action and gives up for good: each burst of pictures has its own.
CHttpTransfer& SharpFiles::transfer(SharpSource::Server server) {
    auto& transfer = m_transfers[static_cast<std::size_t>(server)];
    if (!transfer) {
        const bool isRadar = server == SharpSource::Server::radar;
        transfer = std::make_unique<CHttpTransfer>(
            m_downloads, isRadar ? m_servers.radar : m_servers.basemap, true, false
        );
    }
    return *transfer;
}

void SharpFiles::fetchNext(Wanted wanted) {
    const SharpSource& source = wanted.source;
    CHttpTransfer& from = transfer(source.server);
    while (wanted.detail > wanted.above && (from.isAbsent(sharpRoot(source.path, wanted.detail)) ||
                                            from.isAbsent(sharpPath(source.path, wanted.detail)))) {
        wanted.detail /= 2;
    }
    if (wanted.detail <= wanted.above) {
        m_background.later([this, wanted] { ended(wanted, Outcome::absent, {}); });
        return;
    }
    const QString file = sharpCacheFile(source.file, wanted.detail);
    m_background.run(
        [folder = QFileInfo(file).path()] { return makeFolder(folder).has_value(); },
        [this, file, wanted = std::move(wanted)](bool made) {
            if (!made) {
                ended(wanted, Outcome::failed, {});
                return;
            }
            CHttpTransfer& radar = transfer(wanted.source.server);
            const QString path = sharpPath(wanted.source.path, wanted.detail);
            radar.DownloadIfThere(
                path, file, wanted.source.kind,
                [this, path, wanted](const CHttpTransfer::Fetched& fetched) {
                    if (fetched.kept) {
                        read(wanted);
                    } else if (transfer(wanted.source.server).isAbsent(path)) {
                        noteAbsent(wanted);
                        fetchNext(wanted);
                    } else {
                        m_background.later([this, wanted] { ended(wanted, Outcome::failed, {}); });
                    }
                }
            );
        }
    );
}

void SharpFiles::read(Wanted wanted) {
    m_background.run(
        [source = wanted.source, detail = wanted.detail] { return takeFetched(source, detail); },
        [this, wanted](SharpPicture picture) {
            if (!picture) {
                noteAbsent(wanted);
                fetchNext(wanted);
                return;
            }
            m_haveSome.insert(sharpRoot(wanted.source.path, wanted.detail));
            ended(wanted, Outcome::came, std::move(picture));
        }
    );
}

void SharpFiles::noteAbsent(const Wanted& wanted) {
    CHttpTransfer& from = transfer(wanted.source.server);
    from.noteAbsent(sharpPath(wanted.source.path, wanted.detail));
    const QString root = sharpRoot(wanted.source.path, wanted.detail);
    if (!m_haveSome.contains(root) && !m_lackOne.insert(root).second) {
        from.noteAbsent(root);
    }
}

void SharpFiles::ended(const Wanted& wanted, Outcome outcome, SharpPicture picture) {
    if (outcome != Outcome::absent) {
        m_retry.ended(outcome == Outcome::came, Clock::real().now());
    }
    if (--m_running == 0) {
        m_transfers = {};
    }
    const Fetched done = wanted.done; // it may end this
    done(outcome, std::move(picture));
}

} // namespace raincast
