// SPDX-License-Identifier: MIT
#pragma once

#include "along/along_plan.h"

#include <QStringList>

#include <functional>
#include <memory>

namespace raincast {

class Downloads;

/// What has been taken along.
struct AlongResult {
    int sites = 0;       ///< of which all is there
    int wanted = 0;      ///< sites
    qint64 bytes = 0;    ///< that were fetched; what the cache had needs none
    QStringList missing; ///< a line for each thing that could not be had, and why
    QString stopped;     ///< why not everything was tried; empty if it was
};

/// Fetches all products and layers of sites into the cache, in the background, one thing at a time,
/// by the updates and loads that items on the screen make. The products of a site come first, with
/// the warnings beside the first one. What cannot be had is noted, and the next thing tried; but a
/// cache that cannot be written and a server that is silent twice in a row end it.
///
/// What it leaves in the cache is what an update leaves there: offline nothing cleans it up but the
/// user, and an update that gets newer frames replaces the older ones.
class TakingAlong {
public:
    struct Progress {
        QString thing; ///< "TLX Base Velocity"
        int done = 0;  ///< things
        int wanted = 0;
        qint64 bytes = 0; ///< so far
    };
    using Report = std::function<void(const Progress& progress)>;
    using Done = std::function<void(const AlongResult& result)>;

    /// Begins. `report` is called at each step, `done` once, at the end, which may end this; both
    /// from the event loop. The downloads are borrowed.
    TakingAlong(AlongPlan plan, Downloads& downloads, Report report, Done done);
    /// Cancels what is not done: nothing is called any more.
    ~TakingAlong();
    TakingAlong(const TakingAlong&) = delete;
    TakingAlong& operator=(const TakingAlong&) = delete;

    /// What there is so far.
    [[nodiscard]] AlongResult result() const;

private:
    class Thing;
    class Product;
    class Layers;
    struct Outcome;

    void begin();
    void report();
    void ended(const Outcome& outcome);
    [[nodiscard]] const QString& siteId() const;

    AlongPlan m_plan;
    Downloads& m_downloads;
    Report m_report;
    Done m_done;
    AlongResult m_result;
    std::size_t m_next = 0;        ///< of all things
    qsizetype m_missingBefore = 0; ///< lines, when the site was begun
    int m_silences = 0;            ///< in a row
    bool m_basemapSilent = false;
    std::unique_ptr<Thing> m_thing;
};

} // namespace raincast
