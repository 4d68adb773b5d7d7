// SPDX-License-Identifier: MIT
#include "fetch/fetch_command.h"

#include "fetch/fetch_options.h"
#include "fetch/known_pictures.h"
#include "fetch/terminal_report.h"
#include "net/downloads.h"
#include "net/http_transfer.h"
#include "radar/cache.h"
#include "radar/radar_update.h"

#include <QDir>
#include <QEventLoop>

#include <memory>
#include <ostream>

namespace raincast {

namespace {

/// For --quiet.
class NoReport : public RadarUpdateObserver {
public:
    void statusChanged(const QString& /*status*/) override {}
    void repaint() override {}
    void progress(int /*done*/, int /*wanted*/) override {}
};

std::unique_ptr<RadarUpdateObserver>
makeReport(const FetchOptions& options, const FetchStreams& streams) {
    if (options.quiet) {
        return std::make_unique<NoReport>();
    }
    return std::make_unique<TerminalReport>(streams.report, streams.reportIsTerminal);
}

RadarState stateFor(const FetchOptions& options) {
    RadarState state;
    state.siteId = options.siteId;
    state.product = options.product;
    state.animate = options.frames > 1;
    state.frameCount = options.frames;
    state.frameInterval = options.intervalMinutes;
    state.showWarnings = options.warnings;
    state.cacheFolder =
        options.cacheFolder.isEmpty()
            ? ChooseDefaultCache()
            : QDir::cleanPath(QDir::current().absoluteFilePath(options.cacheFolder));
    return state;
}

/// Makes the update and waits for it.
bool update(RadarState& state, RadarUpdateObserver& report, CHttpTransfer& transfer) {
    QEventLoop loop;
    bool result = false;
    // Shared with threads that may outlive the update.
    const auto known = std::make_shared<KnownPictures>(KnownPictures::usualIndex());
    RadarUpdate run(
        state, report, transfer,
        {[known](const QString& file) { return known->load(file); },
         {},
         [known](const QString& file) { return known->isKnown(file); }}
    );
    run.UpdateRadar([&](bool updated) {
        result = updated;
        loop.quit();
    });
    loop.exec();
    known->save();
    return result;
}

FetchExit fetch(const FetchOptions& options, const FetchStreams& streams, Downloads& downloads) {
    RadarState state = stateFor(options);
    if (state.cacheFolder.isEmpty()) {
        if (!options.quiet) {
            streams.report << "There is no folder for the image cache.\n";
        }
        return FetchExit::noFrame;
    }
    bool updated = false;
    {
        const auto report = makeReport(options, streams);
        CHttpTransfer transfer(downloads, options.radarServer, true, false);
        updated = update(state, *report, transfer);
    }
    for (const RadarFrame& frame : state.frames) {
        streams.frames << frame.path.toLocal8Bit().constData() << '\t'
                       << frame.timeText.toStdString() << '\n';
    }
    streams.frames.flush();
    if (!updated) {
        return FetchExit::noFrame;
    }
    return state.status.isEmpty() ? FetchExit::allFrames : FetchExit::someFrames;
}

} // namespace

FetchExit runFetch(const QStringList& arguments, const FetchStreams& streams) {
    const auto options = readFetchOptions(arguments);
    if (!options) {
        return static_cast<FetchExit>(printAnswer(options.error(), streams.frames, streams.report));
    }
    Downloads downloads;
    if (options->verbose) {
        downloads.reportTo([&streams](const QString& url, const QString& outcome) {
            streams.report << url.toStdString() << ' ' << outcome.toStdString() << std::endl;
        });
    }
    return fetch(*options, streams, downloads);
}

} // namespace raincast
