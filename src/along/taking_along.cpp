// SPDX-License-Identifier: MIT
#include "along/taking_along.h"

#include "basemap/basemap_load.h"
#include "basemap/radar_view.h"
#include "core/background.h"
#include "core/text.h"
#include "geo/geo_reference.h"
#include "image/image_file.h"
#include "net/http_transfer.h"
#include "radar/catalogue/products.h"
#include "radar/radar_update.h"

#include <optional>
#include <utility>

namespace raincast {

namespace {

/// Things that a silent server may cost, each of them half a minute.
constexpr int kMostSilences = 2;

/// A product of each range: its layers are those of all products of the range.
constexpr int kProductsOfRanges[] = {0, 2};
constexpr std::size_t kThings = kRadarProductCount + std::size(kProductsOfRanges);

QString joined(const QString& first, const QString& second) {
    return QString(first + u' ' + second).simplified();
}

} // namespace

/// What became of a thing.
struct TakingAlong::Outcome {
    QString missing{}; ///< what could not be had, and why; empty: nothing
    QString notKept{}; ///< why the cache could not be written; empty if it could
    QString silent{};  ///< that the radar's server does not answer; empty if it does
    bool basemapSilent = false;
};

/// One thing of a site on its way into the cache. Its end cancels it.
class TakingAlong::Thing : public RadarView {
public:
    Thing(TakingAlong& run, int product)
        : m_run(run), m_state(run.m_plan.like), m_siteId(run.siteId()) {
        m_state.siteId = m_siteId;
        m_state.product = product;
        discardFrames(m_state);
    }
    ~Thing() override = default;
    Thing(const Thing&) = delete;
    Thing& operator=(const Thing&) = delete;

    virtual void start() = 0;
    [[nodiscard]] virtual QString name() const = 0;
    [[nodiscard]] virtual qint64 bytes() const = 0;

    void statusChanged(const QString& /*status*/) override {}
    void repaint() override {}
    void progress(int /*done*/, int /*wanted*/) override { m_run.report(); }
    [[nodiscard]] ImagePixel centrePixel() const override { return {}; }
    [[nodiscard]] GeoPosition centrePosition() const override { return {}; }
    [[nodiscard]] GeoReference& geoReference() override { return m_place; }
    void geoReferenceChanged(GeoPosition /*centre*/) override {}
    void showWaiting(bool /*waiting*/) override {}
    void contentChanged() override {}

protected:
    static QString silence(const CHttpTransfer& transfer) {
        return transfer.hasGivenUp() ? transfer.trouble() : QString();
    }

    TakingAlong& m_run;
    RadarState m_state;
    QString m_siteId;
    GeoReference m_place;
};

/// The frames of a product; the warnings of the first one.
class TakingAlong::Product : public Thing {
public:
    Product(TakingAlong& run, int product)
        : Thing(run, product), m_transfer(run.m_downloads, run.m_plan.servers.radar, true, false),
          m_update(m_state, *this, m_transfer, shownPictures()) {
        m_state.showWarnings = product == kDefaultProduct;
    }

    [[nodiscard]] QString name() const override {
        return Text::of(radarProducts()[static_cast<std::size_t>(m_state.product)].nameText());
    }
    [[nodiscard]] qint64 bytes() const override { return m_transfer.bytesTaken(); }
    void start() override {
        m_update.UpdateRadar([this](bool /*updated*/) {
            Outcome outcome{joined(m_state.status, m_state.cause)};
            if (m_update.writeFailure()) {
                outcome.notKept = outcome.missing;
            } else {
                outcome.silent = silence(m_transfer);
            }
            m_run.ended(outcome);
        });
    }

private:
    CHttpTransfer m_transfer;
    RadarUpdate m_update;
};

/// The map layers of a range and the world file that places them.
class TakingAlong::Layers : public Thing {
public:
    Layers(TakingAlong& run, int product) : Thing(run, product) {
        m_shown.counties = m_shown.cities = !run.m_basemapSilent;
        load();
    }

    [[nodiscard]] QString name() const override {
        return ProductRange(m_state.product) == u"Short" ? Text::tr("maps")
                                                         : Text::tr("long range maps");
    }
    [[nodiscard]] qint64 bytes() const override {
        return m_bytesBefore + m_load->radarTransfer().bytesTaken();
    }
    void start() override {
        m_load->loadToFirstFailure({}, [this](bool complete) {
            if (complete || m_load->cacheFailure() || m_load->radarTransfer().hasGivenUp()) {
                end();
            } else {
                goOn();
            }
        });
    }

private:
    void load() {
        m_basemaps = {};
        m_load.emplace(RadarScene{
            m_state, m_shown, m_basemaps, *this, m_run.m_plan.servers, m_run.m_downloads});
    }
    // One that the item cannot do without is missing; what it can show without it comes as well.
    void goOn() {
        m_trouble = m_load->trouble();
        m_bytesBefore = bytes();
        load();
        m_load->loadLayers([this](bool /*complete*/) { end(); });
    }
    void end() {
        Outcome outcome;
        if (const auto failure = m_load->cacheFailure()) {
            outcome.notKept = failure->simplified();
        } else {
            outcome.silent = silence(m_load->radarTransfer());
            outcome.basemapSilent = m_load->basemapTransfer().hasGivenUp();
        }
        const int skipped = m_shown.counties ? 0 : 2; // with the cities
        const int missing = m_basemaps.missing + skipped + (m_place.valid() ? 0 : 1);
        if (missing > 0) {
            const QString count =
                Text::counted("%n files are missing.", "%n file is missing.", missing);
            outcome.missing =
                joined(count, m_load->trouble().isEmpty() ? m_trouble : m_load->trouble());
        }
        m_run.ended(outcome);
    }

    BasemapLayers m_shown;
    Basemaps m_basemaps;
    QString m_trouble;
    qint64 m_bytesBefore = 0;
    std::optional<BasemapLoad> m_load;
};

TakingAlong::TakingAlong(AlongPlan plan, Downloads& downloads, Report report, Done done)
    : m_plan(std::move(plan)), m_downloads(downloads), m_report(std::move(report)),
      m_done(std::move(done)) {
    m_result.wanted = static_cast<int>(m_plan.siteIds.size());
    begin();
}

TakingAlong::~TakingAlong() = default;

const QString& TakingAlong::siteId() const {
    return m_plan.siteIds[m_next / kThings];
}

void TakingAlong::begin() {
    const std::size_t thing = m_next % kThings;
    if (thing < kRadarProductCount) {
        m_thing = std::make_unique<Product>(*this, static_cast<int>(thing));
    } else {
        m_thing = std::make_unique<Layers>(*this, kProductsOfRanges[thing - kRadarProductCount]);
    }
    m_thing->start();
}

AlongResult TakingAlong::result() const {
    AlongResult result = m_result;
    result.bytes += m_thing ? m_thing->bytes() : 0;
    return result;
}

void TakingAlong::report() {
    m_report(
        {siteId() + u' ' + m_thing->name(), static_cast<int>(m_next),
         static_cast<int>(m_plan.siteIds.size() * kThings), result().bytes}
    );
}

void TakingAlong::ended(const Outcome& outcome) {
    m_result.bytes += m_thing->bytes();
    if (!outcome.missing.isEmpty()) {
        m_result.missing +=
            siteId() + u' ' + m_thing->name() + QStringLiteral(": ") + outcome.missing;
    }
    m_basemapSilent = m_basemapSilent || outcome.basemapSilent;
    m_silences = outcome.silent.isEmpty() ? 0 : m_silences + 1;
    const bool silent = m_silences == kMostSilences;
    m_result.stopped = silent ? outcome.silent : outcome.notKept;
    m_thing.reset();
    ++m_next;
    const bool siteEnded = m_next % kThings == 0;
    if (siteEnded) {
        const auto missing = m_result.missing.size();
        m_result.sites += missing == m_missingBefore ? 1 : 0;
        m_missingBefore = missing;
    }
    if (!m_result.stopped.isEmpty() || m_next == m_plan.siteIds.size() * kThings) {
        const Done done = m_done; // it may end this
        done(m_result);
    } else {
        begin();
    }
}

} // namespace raincast
