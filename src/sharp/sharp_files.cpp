// SPDX-License-Identifier: MIT
#include "sharp/sharp_files.h"

#include "core/clock.h"
#include "core/folders.h"
#include "image/image_file.h"
#include "radar/cache.h"
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

/// What became of a file that came.
struct Taken {
    enum class Kind {
        good,
        noPicture, ///< of the size
        outdated,  ///< the described one has other bytes by now, or the file has gone
    };
    Kind kind;
    SharpPicture picture{};
};

/// Reads a file that came and gives it the time that the described one had when it was asked for.
/// What is no picture of the size goes again, and what is of other bytes by now.
Taken takeFetched(const SharpSource& source, const QDateTime& described, int detail) {
    QFile file(sharpCacheFile(source.file, detail));
    if (QFileInfo(source.file).lastModified() != described) {
        file.remove();
        return {Taken::Kind::outdated};
    }
    auto picture = readPicture(file.fileName(), source, detail);
    const bool isThere = file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly);
    if (picture) {
        static_cast<void>(file.setFileTime(described, QFileDevice::FileModificationTime));
        return {Taken::Kind::good, std::move(picture)};
    }
    file.remove();
    return {isThere ? Taken::Kind::noPicture : Taken::Kind::outdated};
}

} // namespace

SharpFiles::SharpFiles(Downloads& downloads, RadarServers servers, SharpServers& known)
    : m_downloads(downloads), m_servers(std::move(servers)), m_known(known) {}

void SharpFiles::look(const SharpSource& source, int detail, Looked done) {
    m_background.run(
        [source, detail] { return readCached(source, detail); },
        [this, path = source.path, done = std::move(done)](SharpPicture picture) {
            if (picture) {
                m_known.noteSome(sharpRoot(path, picture.detail()));
            }
            done(std::move(picture));
        }
    );
}

void SharpFiles::fetch(const SharpSource& source, int detail, int above, Fetched done) {
    ++m_running;
    const QDateTime described = QFileInfo(source.file).lastModified();
    fetchNext({source, described, detail, above, std::move(done)});
}

bool SharpFiles::mayFetchFrom(SharpSource::Server server) const {
    return m_waits[static_cast<std::size_t>(server)].over(Clock::real().now());
}

int SharpFiles::mostAtATime(const SharpSource& source, int detail) const {
    return m_known.hasSome(sharpRoot(source.path, detail)) ? kMostAtATime : 1;
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
    const QString& path = wanted.source.path;
    const CHttpTransfer& from = transfer(wanted.source.server);
    const auto isAbsent = [&](int detail) {
        return from.isAbsent(sharpRoot(path, detail)) || from.isAbsent(sharpPath(path, detail));
    };
    while (wanted.detail > wanted.above && isAbsent(wanted.detail)) {
        wanted.detail /= 2;
    }
    if (wanted.detail <= wanted.above) {
        m_background.later([this, wanted] { ended(wanted, Outcome::absent, {}); });
        return;
    }
    const QString folder = QFileInfo(sharpCacheFile(wanted.source.file, wanted.detail)).path();
    m_background.run(
        [folder] { return makeFolder(folder).has_value(); },
        [this, wanted](bool made) { made ? download(wanted) : ended(wanted, Outcome::failed, {}); }
    );
}

void SharpFiles::download(const Wanted& wanted) {
    const QString path = sharpPath(wanted.source.path, wanted.detail);
    transfer(wanted.source.server)
        .DownloadIfThere(
            path, sharpCacheFile(wanted.source.file, wanted.detail), wanted.source.kind,
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

void SharpFiles::read(const Wanted& wanted) {
    m_background.run(
        [source = wanted.source, described = wanted.described, detail = wanted.detail] {
            return takeFetched(source, described, detail);
        },
        [this, wanted](Taken taken) {
            if (taken.kind == Taken::Kind::noPicture) {
                noteAbsent(wanted);
                fetchNext(wanted);
                return;
            }
            const bool isGood = taken.kind == Taken::Kind::good;
            if (isGood) {
                m_known.noteSome(sharpRoot(wanted.source.path, wanted.detail));
            }
            ended(wanted, isGood ? Outcome::came : Outcome::failed, std::move(taken.picture));
        }
    );
}

void SharpFiles::noteAbsent(const Wanted& wanted) {
    CHttpTransfer& from = transfer(wanted.source.server);
    from.noteAbsent(sharpPath(wanted.source.path, wanted.detail));
    const QString root = sharpRoot(wanted.source.path, wanted.detail);
    if (m_known.lacksAll(root, wanted.source.use)) {
        from.noteAbsent(root);
    }
}

void SharpFiles::ended(const Wanted& wanted, Outcome outcome, SharpPicture picture) {
    if (--m_running == 0) {
        settleWaits();
    }
    const Fetched done = wanted.done; // it may end this
    done(outcome, std::move(picture));
}

// However many requests a server left unanswered: it counts once.
void SharpFiles::settleWaits() {
    for (std::size_t server = 0; server < m_transfers.size(); ++server) {
        if (const auto transfer = std::exchange(m_transfers[server], nullptr)) {
            m_waits[server].ended(!transfer->hasGivenUp(), Clock::real().now());
        }
    }
}

} // namespace raincast
