// SPDX-License-Identifier: MIT
#include "radar/radar_update.h"

#include "core/clock.h"
#include "core/text.h"
#include "radar/cache.h"
#include "radar/catalogue/frame_name.h"
#include "radar/catalogue/products.h"
#include "radar/file_kinds.h"
#include "radar/frame_tag.h"
#include "radar/warning_texts.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <iterator>
#include <utility>

namespace raincast {

namespace {

// An automatic update is due when the next image may be expected.
constexpr FileTime kNextUpdateAfter = 8 * kFileTimePerMinute;
// Makes the animation start over on its second tick after an update.
constexpr int kCounterAfterUpdate = 10;

/// What a server's source of frames lacks, by its header.
struct Outage {
    const char* source;
    const char* text;
};
constexpr Outage kOutages[] = {
    {"no-product", Text::marked("This radar makes no such product.")},
    {"radar-down", Text::marked("The radar itself is down.")},
    {"provider", Text::marked("The provider does not answer.")},
    {"network", Text::marked("This machine has no network.")},
};

QString outageText(const QByteArray& source) {
    const auto* const found =
        std::find_if(std::begin(kOutages), std::end(kOutages), [&source](const Outage& outage) {
            return source == outage.source;
        });
    return found == std::end(kOutages) ? QString() : Text::of(found->text);
}

} // namespace

void discardFrames(RadarState& state) {
    state.frames.clear();
    state.position = 0;
    state.current = {};
}

void discardOtherFrames(RadarState& state) {
    const QString product = ProductCode(state.product).toString();
    const auto other = [&](const RadarFrame& frame) {
        const QString name = QFileInfo(frame.path).fileName();
        const auto time = frameTime(name);
        return !time || name != frameFileName(state.siteId, *time, product);
    };
    if (std::any_of(state.frames.begin(), state.frames.end(), other)) {
        discardFrames(state);
    }
}

RadarUpdate::RadarUpdate(
    RadarState& state, RadarUpdateObserver& observer, CHttpTransfer& transfer,
    PictureLoaders loaders
)
    : m_state(state), m_observer(observer), m_transfer(transfer), m_loaders(std::move(loaders)),
      m_product(ProductCode(state.product).toString()) {}

void RadarUpdate::UpdateRadar(Done done) {
    m_done = std::move(done);
    discardOtherFrames(m_state);
    setStatus(Text::tr("Updating radar image...\n"));
    m_observer.repaint();
    m_transfer.FetchQuotedStrings(
        listingDirectory(m_state.siteId, m_product),
        [this](const CHttpTransfer::Listing& names) { takeListing(names); }
    );
}

void RadarUpdate::takeListing(const CHttpTransfer::Listing& names) {
    if (!names) {
        fail(Text::tr("Could not access server.\n"));
        return;
    }
    m_background.run(
        [names = *names, site = m_state.siteId, product = m_product, now = Clock::latestNow()] {
            return std::make_shared<const FrameListing>(names, site, product, now);
        },
        [this](const std::shared_ptr<const FrameListing>& listing) { startSearch(listing); }
    );
}

void RadarUpdate::startSearch(std::shared_ptr<const FrameListing> listing) {
    m_listing = std::move(listing);
    if (!m_listing->newest()) {
        fail(Text::tr("No radar images found on server.\n"));
        return;
    }
    const auto makeFolder = [root = m_state.cacheRoot(), site = m_state.siteId] {
        return makeSiteFolder(root, site);
    };
    m_background.run(makeFolder, [this](const tl::expected<void, QString>& made) {
        if (!made) {
            m_writeFailure = made.error();
        }
        const int frames = m_state.animate ? m_state.frameCount : 1;
        m_run.emplace(
            FrameSearch({m_state.siteId, m_product, frames, m_state.frameInterval}, m_listing),
            [this](const QString& name) { beginFrame(name); },
            [this](const FrameSearch& search, const LoadedPicture& picture) {
                takeFrame(search, picture);
            }
        );
        m_observer.progress(0, frames);
        m_run->start();
        if (m_run->over()) {
            endSearch();
        }
    });
}

void RadarUpdate::beginFrame(const QString& name) {
    if (m_state.cacheFolder.isEmpty()) {
        m_background.later([this, name] { frameEnded(name, {}); });
        return;
    }
    if (m_loaders.isKnown && m_loaders.isKnown(cached(name))) {
        m_background.later([this, name] { frameLoaded(name, {}, LoadedPicture{}); });
        return;
    }
    loadFrame(name);
}

// Loads a frame from the cache. One that is not there, or is no picture, is fetched.
void RadarUpdate::loadFrame(const QString& name, const std::optional<Fetched>& fetched) {
    const auto load = [file = cached(name), load = m_loaders.frame,
                       isTagged = fetched && isNewest(name),
                       tag = fetched ? fetched->tag : QByteArray()] {
        if (isTagged) {
            noteFrameTag(file, tag);
        }
        return load(file);
    };
    m_background.run(load, [this, name, fetched](const std::optional<LoadedPicture>& picture) {
        frameLoaded(name, fetched, picture);
    });
}

void RadarUpdate::frameLoaded(
    const QString& name, const std::optional<Fetched>& fetched,
    const std::optional<LoadedPicture>& picture
) {
    const bool ended = picture || fetched;
    if (!ended) {
        fetchFrame(name);
    }
    beginWarnings(); // behind the newest frame
    if (picture && !fetched) {
        recheck(name);
    }
    if (ended) {
        frameEnded(name, {picture, fetched.has_value(), fetched && fetched->last});
    }
}

void RadarUpdate::fetchFrame(const QString& name) {
    if (m_writeFailure) {
        frameEnded(name, {{}, true, true});
        return;
    }
    const QString path = listingDirectory(m_state.siteId, m_product) + name;
    m_transfer.DownloadToFile(path, cached(name), kGifFile, [this, name](const Fetched& fetched) {
        if (fetched.writeFailure && !m_writeFailure) {
            m_writeFailure = fetched.writeFailure;
            m_transfer.giveUp();
        }
        if (fetched.kept) {
            loadFrame(name, fetched);
        } else {
            frameEnded(name, {{}, true, fetched.last || m_writeFailure});
        }
    });
}

void RadarUpdate::frameEnded(const QString& name, FrameRun::Outcome outcome) {
    if (m_searchEnded) {
        return;
    }
    m_run->ended(name, std::move(outcome));
    if (m_run->over()) {
        endSearch();
    }
}

void RadarUpdate::takeFrame(const FrameSearch& search, const LoadedPicture& picture) {
    m_state.imageWidth = picture.size.width();
    m_state.imageHeight = picture.size.height();
    m_state.nextUpdate = std::max(m_state.nextUpdate, search.time() + kNextUpdateAfter);
    if (search.found() == 0) {
        discardFrames(m_state); // those of before
    }
    prepend({picture.bitmap, clockText(search.time()), cached(*search.next())});
    m_observer.progress(search.found() + 1, search.wanted());
}

// The first frame, the newest, is shown while the older ones are fetched.
void RadarUpdate::prepend(RadarFrame frame) {
    m_state.frames.insert(m_state.frames.begin(), std::move(frame));
    if (m_state.frames.size() > 1) {
        ++m_state.position;
        return;
    }
    m_state.position = 0;
    m_state.current = m_state.frames.front();
    m_state.animationCounter = m_state.frameCount + kCounterAfterUpdate;
    m_observer.repaint();
}

bool RadarUpdate::isNewest(const QString& name) const {
    return m_listing && frameTime(name) == m_listing->newest();
}

// Asks for other bytes of the newest frame, whose file was there, where its server may have some.
void RadarUpdate::recheck(const QString& name) {
    if (m_recheckPending || m_writeFailure || !isNewest(name)) {
        return;
    }
    m_recheckPending = true;
    m_background.run(
        [file = cached(name)] { return frameTag(file); },
        [this, name](const QByteArray& tag) {
            tag.isEmpty() ? recheckEnded() : recheckWith(tag, name);
        }
    );
}

void RadarUpdate::recheckWith(const QByteArray& tag, const QString& name) {
    m_recheckTransfer = m_transfer.sibling();
    m_recheckTransfer->DownloadIfOther(
        listingDirectory(m_state.siteId, m_product) + name, cached(name), kSoundGifFile, tag,
        [this, name](const Fetched& fetched) {
            fetched.kept ? takeOtherBytes(name, fetched.tag) : recheckEnded();
        }
    );
}

void RadarUpdate::takeOtherBytes(const QString& name, const QByteArray& tag) {
    const auto load = [file = cached(name), load = m_loaders.frame, tag] {
        noteFrameTag(file, tag);
        return load(file);
    };
    const auto take = [this, file = cached(name)](const std::optional<LoadedPicture>& picture) {
        if (picture) {
            replace(file, picture->bitmap);
        }
        recheckEnded();
    };
    m_background.run(load, take);
}

void RadarUpdate::replace(const QString& file, const Bitmap& bitmap) {
    for (RadarFrame& frame : m_state.frames) {
        frame.bitmap = frame.path == file ? bitmap : frame.bitmap;
    }
    if (m_state.current.path == file) {
        m_state.current.bitmap = bitmap;
        m_observer.repaint();
    }
}

void RadarUpdate::recheckEnded() {
    m_recheckPending = false;
    endWhenComplete();
}

// The present warnings are fetched for each update.
void RadarUpdate::beginWarnings() {
    if (!m_state.showWarnings || m_writeFailure || m_warningsTransfer) {
        return;
    }
    m_warningsPending = true;
    m_warningsFetched = Clock::current().now();
    if (m_listing && !Clock::current().isKnown()) { // by a clock of 1970 they would look old
        m_warningsFetched = m_listing->newest().value_or(m_warningsFetched);
    }
    m_warningsTransfer = m_transfer.sibling();
    m_warningsTransfer->DownloadToFile(
        warningsPath(m_state.siteId, ProductRange(m_state.product).toString()),
        cached(warningsFileName(m_state.siteId)), kGifFile,
        [this](const Fetched& fetched) {
            if (!m_writeFailure) {
                m_writeFailure = fetched.writeFailure;
            }
            fetched.kept ? loadFetchedWarnings() : warningsEnded();
        }
    );
}

void RadarUpdate::loadFetchedWarnings() {
    const RadarWarnings fetched{
        nullptr, m_state.siteId, ProductRange(m_state.product).toString(), m_warningsFetched};
    m_background.run(
        [root = m_state.cacheRoot(), fetched, load = m_loaders.warnings] {
            noteWarnings(root, fetched);
            return loadWarnings(root, fetched.siteId, fetched.range, load);
        },
        [this](const RadarWarnings& warnings) {
            if (warnings.picture) {
                takeWarnings(warnings);
                m_observer.repaint();
            }
            fetchWarningTexts();
        }
    );
}

// The texts of before stand in until those of the picture come.
void RadarUpdate::takeWarnings(const RadarWarnings& warnings) {
    const bool same = m_state.warnings.isOf(warnings.siteId, warnings.range);
    const auto before = same ? m_state.warnings.texts : nullptr;
    m_state.warnings = warnings;
    m_state.warnings.texts = before;
}

// Texts of before are not those of the picture that came.
void RadarUpdate::fetchWarningTexts() {
    const QString file = warningTextsFile(m_state.cacheRoot(), m_state.siteId);
    const QString range = ProductRange(m_state.product).toString();
    m_warningsTransfer->DownloadIfThere(
        warningTextsPath(m_state.siteId, range), file, kWarningTextsFile,
        [this, file](const Fetched& fetched) { loadFetchedTexts(fetched.kept ? QString() : file); }
    );
}

void RadarUpdate::loadFetchedTexts(const QString& outdated) {
    const QString site = m_state.siteId;
    const QString range = ProductRange(m_state.product).toString();
    const auto load = [root = m_state.cacheRoot(), site, range, outdated] {
        if (!outdated.isEmpty()) {
            QFile::remove(outdated);
        }
        return loadWarningTexts(root, site, range);
    };
    m_background.run(load, [this, site, range](const std::shared_ptr<const WarningTexts>& texts) {
        if (m_state.warnings.isOf(site, range)) {
            m_state.warnings.texts = texts;
        }
        warningsEnded();
    });
}

void RadarUpdate::warningsEnded() {
    m_warningsPending = false;
    endWhenComplete();
}

void RadarUpdate::endSearch() {
    m_searchEnded = true;
    if (m_run->found() == 0) {
        fail(outcome());
        return;
    }
    if (m_run->missing() > 0) {
        setStatus(outcome(), cause());
    }
    m_background.run(
        [root = m_state.cacheRoot(), site = m_state.siteId, product = m_product,
         listing = m_listing] { deleteStaleFrames(root, site, product, listing->names()); },
        [this] {
            m_listing.reset();
            endWhenComplete();
        }
    );
    for (const auto* const beside : {&m_warningsTransfer, &m_recheckTransfer}) {
        if (m_run->brokenOff() && *beside) {
            (*beside)->giveUp();
        }
    }
}

// All that is left are the warnings, other bytes of the newest frame and the deletion of stale
// ones.
void RadarUpdate::endWhenComplete() {
    if (!m_searchEnded || m_warningsPending || m_recheckPending || m_listing) {
        return;
    }
    setStatus(outcome(), cause());
    end(true);
}

// The status text after the search.
QString RadarUpdate::outcome() const {
    if (m_writeFailure) {
        return cacheFailureText(m_state.cacheRoot(), *m_writeFailure);
    }
    if (m_run->found() == 0) {
        return Text::tr("Could not download\nany radar images.\n");
    }
    return m_run->missing() > 0 ? Text::tr("Could not get\nall images.\n") : QString();
}

// What the server lacks, even if its frames of before came, or did wrong. A cache that could not be
// written is named by the status.
QString RadarUpdate::cause() const {
    if (m_writeFailure) {
        return {};
    }
    const QString outage = outageText(m_transfer.listingSource());
    const bool complete = m_run && m_run->missing() == 0;
    return !outage.isEmpty() || complete ? outage : m_transfer.trouble();
}

// The frames of before stay.
void RadarUpdate::fail(const QString& status) {
    setStatus(status, cause());
    end(false);
}

void RadarUpdate::end(bool updated) {
    m_observer.repaint();
    // From the event loop: what is called may end this.
    m_background.later([done = m_done, updated] { done(updated); });
}

void RadarUpdate::setStatus(const QString& status, const QString& cause) {
    m_state.cause = cause;
    if (m_state.status != status) {
        m_state.status = status;
        m_observer.statusChanged(status);
    }
}

QString RadarUpdate::cached(const QString& name) const {
    return siteCacheFolder(m_state.cacheRoot(), m_state.siteId) + u'/' + name;
}

} // namespace raincast
