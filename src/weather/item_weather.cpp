// SPDX-License-Identifier: MIT
#include "weather/item_weather.h"

#include "core/folders.h"
#include "map/map_menu.h"
#include "net/http_settings.h"
#include "page/item_catalogue.h"
#include "persist/record_reader.h"
#include "persist/record_writer.h"
#include "radar/animation.h"
#include "radar/cache.h"
#include "radar/catalogue/frame_name.h"
#include "radar/catalogue/products.h"
#include "radar/catalogue/sites.h"
#include "radar/image/image_file.h"
#include "radar/radar_view.h"
#include "weather/dlg_animation.h"
#include "weather/dlg_layers.h"
#include "weather/dlg_station.h"
#include "weather/dlg_storage.h"
#include "weather/image_age.h"
#include "weather/picture_texts.h"
#include "weather/servers_setting.h"
#include "weather/weather_settings.h"
#include "window/commands.h"
#include "window/menu_table.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPainter>

#include <algorithm>
#include <optional>
#include <utility>

namespace raincast {

namespace {

constexpr std::int32_t kTickPeriod = 5; // heartbeats: half a second
constexpr ImagePixel kImageCentre{300, 275};

constexpr MenuRow kEntries[] = {
    menuEntry(kNearbyStations, u"&Nearby Stations"),
    menuEntry(kAllStations, u"&All Stations"),
    menuEntry(kAnimation, u"Ani&mation"),
    menuEntry(kLayers, u"&Layers"),
    menuEntry(kStorage, u"&Storage"),
};
constexpr MenuRow kPopUp[] = {subMenu(u"&Weather", kEntries), kMapMenu};
constexpr MenuRow kBar[] = {subMenu(u"", kPopUp)};
const MenuTableRecord menu(CItemWeather::kMenu, kBar);

const ItemCatalogueEntry catalogueEntry(
    QStringLiteral("Weather:Radar"), kTypeItemWeather, ItemCatalogueEntry::kRankWeather
);

/// A site and product that wait for an item to be shown.
struct Choice {
    QString siteId;
    std::optional<int> product;
};
std::optional<Choice> choiceForFirst;
QString welcomeSite;

/// Whether a page file's text can be a site's id; anything else is no site.
bool isSiteId(const QString& text) {
    return text.size() == 3 && std::all_of(text.begin(), text.end(), [](QChar unit) {
               return unit < QChar(128) && unit.isLetterOrNumber();
           });
}

/// When a frame was taken, as its file's name has it; 0 if that has no time.
FileTime timeOf(const RadarFrame& frame) {
    return frameTime(QFileInfo(frame.path).fileName());
}

/// Whether a page file's cache root can be used here.
bool isUsableFolder(const QString& path) {
    return QDir::isAbsolutePath(path) && EnsureFolder(path);
}

} // namespace

const SerializableType<CItemWeather> CItemWeather::cType{kTypeItemWeather};

/// The item as loads and updates see it.
class CItemWeather::View : public RadarView {
public:
    explicit View(CItemWeather& item) : m_item(item) {}

    void statusChanged(const QString& /*status*/) override {}
    void repaint() override { m_item.refresh(); }
    void progress(int done, int wanted) override {
        m_item.m_progressDone = done;
        m_item.m_progressWanted = wanted;
        m_item.refresh();
    }
    // With the whole image in view no other site is wanted, wherever the item's centre lies.
    [[nodiscard]] ImagePixel centrePixel() const override {
        return m_item.wholeImageInView() ? kImageCentre : m_item.CItemMapView::centrePixel();
    }
    [[nodiscard]] GeoPosition centrePosition() const override {
        return m_item.CItemMapView::centrePosition();
    }
    [[nodiscard]] GeoReference& geoReference() override {
        return m_item.CItemMapView::geoReference();
    }
    void geoReferenceChanged(GeoPosition centre) override { m_item.placeImage(centre); }
    void showWaiting(bool waiting) override {
        if (waiting) {
            QGuiApplication::setOverrideCursor(Qt::WaitCursor);
            return;
        }
        QGuiApplication::restoreOverrideCursor();
        m_item.m_progressWanted = 0;
    }
    void contentChanged() override {
        if (CPageDisplay* page = m_item.page()) {
            page->contentChanged();
        }
    }

private:
    CItemWeather& m_item;
};

CItemWeather::CItemWeather()
    : CItemMapView(kMenu), Counter(kTickPeriod), m_viewOfLoads(std::make_unique<View>(*this)) {
    m_state.cacheFolder = ChooseDefaultCache();
}

CItemWeather::~CItemWeather() = default;

bool CItemWeather::Read(CSerialReader& reader) {
    if (!CItemMapView::Read(reader)) {
        return false;
    }
    CRecordReader record(reader);
    QString siteId;
    record.string(siteId);
    m_state.siteId = isSiteId(siteId) ? siteId : QString();
    m_viewStored = !m_state.siteId.isEmpty();
    WeatherSettingsBlock block = encodeWeatherSettings(m_state, m_layers);
    record.bytes(block);
    decodeWeatherSettings(block, m_state, m_layers);
    std::int32_t count = 0;
    record.value(count);
    readFrames(record, count);
    QString cacheFolder;
    record.string(cacheFolder);
    record.end();
    if (isUsableFolder(cacheFolder)) {
        m_state.cacheFolder = cacheFolder;
    }
    return true;
}

/// Reads as many frames as the record really has; more than can be shown are passed over.
void CItemWeather::readFrames(CRecordReader& record, std::int32_t count) {
    m_state.frames.clear();
    for (std::int32_t i = 0; i < count && record.more(); ++i) {
        RadarFrame frame;
        record.string(frame.path);
        record.string(frame.timeText);
        if (m_state.frames.size() < kMostFrames) {
            m_state.frames.push_back(std::move(frame));
        }
    }
}

bool CItemWeather::Write(CSerialWriter& writer) const {
    if (!CItemMapView::Write(writer)) {
        return false;
    }
    CRecordWriter record(writer);
    record.string(m_state.siteId);
    record.bytes(encodeWeatherSettings(m_state, m_layers));
    record.value(static_cast<std::int32_t>(m_state.frames.size()));
    for (const RadarFrame& frame : m_state.frames) {
        record.string(frame.path);
        record.string(frame.timeText);
    }
    record.string(m_state.cacheFolder);
    return record.end();
}

void CItemWeather::draw(QPainter& painter) {
    m_stack.setLayers(
        {QSize(m_state.imageWidth, m_state.imageHeight), m_basemaps.topo, m_state.current.bitmap,
         m_basemaps.overlay}
    );
    m_stack.draw(painter, area(), view());
    const int linesAbove = linesHeight(painter.fontMetrics());
    const PictureTexts present = texts();
    drawPictureTexts(painter, area().adjusted(0, linesAbove, 0, 0), present);
    m_ageShown = present.age;
    CItemMapView::draw(painter);
    drawProgress(painter, area(), m_progressDone, m_progressWanted);
}

QRect CItemWeather::opaqueArea() const {
    const bool opaque = m_basemaps.topo || m_basemaps.overlay;
    const QSize size(m_state.imageWidth, m_state.imageHeight);
    return opaque ? LayerStack::imageArea(area(), view(), size) : QRect();
}

PictureTexts CItemWeather::texts() const {
    PictureTexts texts;
    texts.status = m_state.status;
    if (m_state.siteId.isEmpty() && m_state.status.isEmpty()) {
        texts.status = QStringLiteral("No radar site is chosen.\nMenu: Weather, All Stations");
    }
    if (m_state.current.bitmap) {
        texts.time = m_state.current.timeText;
    }
    if (shownFrame() != nullptr) {
        texts.about = caption();
    }
    texts.age = ageText();
    return texts;
}

/// Between two rounds of the animation nothing is on the screen for a moment: what is said of the
/// picture stays the newest frame's then.
const RadarFrame* CItemWeather::shownFrame() const {
    if (m_state.current.bitmap) {
        return &m_state.current;
    }
    const bool loaded = !m_state.frames.empty() && m_state.frames.back().bitmap;
    return loaded ? &m_state.frames.back() : nullptr;
}

/// The age of the newest frame, whichever is on the screen.
QString CItemWeather::ageText() const {
    if (shownFrame() == nullptr || m_state.frames.empty()) {
        return {};
    }
    return imageAgeText(timeOf(m_state.frames.back()), Clock::current().now());
}

QString CItemWeather::productText() const {
    return radarProducts()[static_cast<std::size_t>(m_state.product)].nameText().toString();
}

QString CItemWeather::caption() const {
    if (m_state.siteId.isEmpty()) {
        return {};
    }
    QString caption = m_state.siteId + u' ' + productText();
    const RadarFrame* const shown = shownFrame();
    const FileTime time = shown != nullptr ? timeOf(*shown) : 0;
    if (time != 0) {
        const CalendarTime local = toLocalCalendar(time);
        caption += QString::asprintf(" %04d-%02d-%02d", local.year, local.month, local.day);
    }
    return caption;
}

void CItemWeather::windowCreated() {
    show();
}

void CItemWeather::chooseForFirst(const QString& siteId, std::optional<int> product) {
    choiceForFirst = Choice{siteId, product};
}

void CItemWeather::welcome(const QString& siteId) {
    welcomeSite = siteId;
}

void CItemWeather::show() {
    const QString welcomed = std::exchange(welcomeSite, QString());
    if (const auto choice = std::exchange(choiceForFirst, std::nullopt)) {
        m_state.product = choice->product.value_or(m_state.product);
        loadBasemaps(choice->siteId, true);
        return;
    }
    if (m_state.siteId.isEmpty() && !welcomed.isEmpty()) {
        m_state.animate = true;
        loadBasemaps(welcomed, true);
        return;
    }
    if (m_state.siteId.isEmpty()) {
        chooseStation({});
        return;
    }
    if (geoReference().valid()) {
        return;
    }
    m_state.status = QStringLiteral("Loading...");
    refresh();
    bool needRadar = m_state.frames.empty();
    loadFrames(needRadar);
    if (!m_state.frames.empty()) {
        rewindAnimation(m_state);
    }
    loadBasemaps(m_state.siteId, needRadar);
}

/// Loads the frames that are not loaded; the first that cannot be ends it.
void CItemWeather::loadFrames(bool& needRadar) {
    for (RadarFrame& frame : m_state.frames) {
        if (!frame.bitmap && QFileInfo(frame.path).isFile()) {
            frame.bitmap = LoadImageFile(frame.path, kMostRadarPixels);
        }
        if (!frame.bitmap) {
            needRadar = true;
            return;
        }
    }
}

bool CItemWeather::loadBasemaps(const QString& siteId, bool updateRadar) {
    return LoadBasemaps(
        m_state, m_layers, m_basemaps, *m_viewOfLoads, ServersSetting::current(), siteId,
        updateRadar
    );
}

/// The image has a new place on the earth. A view that showed a place goes on showing it; one that
/// never showed any begins with the radar in its middle.
void CItemWeather::placeImage(GeoPosition centreBefore) {
    geoReferenceChanged();
    if (centreBefore.longitude != 0) {
        static_cast<void>(setView(kImageCentre, centreBefore));
    } else if (!m_viewStored) {
        showPixel(kImageCentre);
    }
    m_viewStored = true;
}

bool CItemWeather::requestUpdate() {
    if (m_state.siteId.isEmpty()) {
        return false;
    }
    // An image that is not placed (its page was not shown yet, or its layers could not be loaded)
    // tells nothing of where the user looks: the item keeps its site.
    if (!geoReference().valid()) {
        return loadBasemaps(m_state.siteId, true);
    }
    return RequestUpdate(m_state, m_layers, m_basemaps, *m_viewOfLoads, ServersSetting::current());
}

bool CItemWeather::wholeImageInView() const {
    const PagePoint first = view().toPage({0, 0});
    const PagePoint last = view().toPage({m_state.imageWidth - 1, m_state.imageHeight - 1});
    return rectangle().contains(first) && rectangle().contains(last);
}

bool CItemWeather::command(int id, int notification) {
    switch (id) {
    case kNearbyStations:
        chooseStation(centrePosition());
        return true;
    case kAllStations:
        chooseStation({});
        return true;
    case kUpdate:
        if (m_state.siteId.isEmpty()) {
            chooseStation({});
        } else {
            requestUpdate();
        }
        return true;
    case kAnimation:
        editAnimation();
        return true;
    case kLayers:
        editLayers();
        return true;
    case kStorage:
        editStorage();
        return true;
    default:
        return CItemMapView::command(id, notification);
    }
}

void CItemWeather::chooseStation(GeoPosition position) {
    raincast::CDlgStation dialog(position, m_state.siteId);
    if (dialog.run(page()->widget()) == Dialog::kOk && !dialog.chosenSite().isEmpty()) {
        loadBasemaps(dialog.chosenSite(), true);
    }
}

void CItemWeather::editAnimation() {
    if (raincast::CDlgAnimation(m_state).run(page()->widget()) == Dialog::kOk) {
        requestUpdate();
    }
}

void CItemWeather::editLayers() {
    raincast::CDlgLayers dialog(m_state, m_layers);
    if (dialog.run(page()->widget()) != Dialog::kOk || m_state.siteId.isEmpty()) {
        return;
    }
    if (dialog.basemapsChanged()) {
        loadBasemaps(m_state.siteId, false);
    }
    if (dialog.radarChanged()) {
        requestUpdate();
    }
}

void CItemWeather::editStorage() {
    StorageRequest request;
    request.viewCentre = centrePosition();
    request.cacheFolder = m_state.cacheFolder;
    request.siteId = m_state.siteId;
    request.progress = [this](int done, int wanted) {
        m_viewOfLoads->progress(done, wanted);
        // As a waiting transfer does: the move may take as long.
        if (httpHooks().waiting) {
            httpHooks().waiting();
        }
    };
    raincast::CDlgStorage dialog(std::move(request), [this](bool waiting) {
        m_viewOfLoads->showWaiting(waiting);
    });
    dialog.run(page()->widget());
    followCache(dialog.cacheFolder());
    invalidate();
}

/// The cache lies elsewhere now, and the frames' files with it.
void CItemWeather::followCache(const QString& folder) {
    const QString before = std::exchange(m_state.cacheFolder, folder) + u'/';
    const auto follow = [&](RadarFrame& frame) {
        if (frame.path.startsWith(before)) {
            frame.path.replace(0, before.size(), folder + u'/');
        }
    };
    std::for_each(m_state.frames.begin(), m_state.frames.end(), follow);
    follow(m_state.current);
}

void CItemWeather::Tick() {
    const FileTime now = CHeartbeat::program().now();
    if (updateIsDue(m_state, now)) {
        requestUpdate();
        postponeUpdate(m_state, now);
        return;
    }
    // A page has a window only while it is the one on the screen. What stands still is painted
    // again when the words for its age change, and not for every second of it.
    const bool onScreen = page() != nullptr && page()->widget() != nullptr;
    if (onScreen && (stepAnimation(m_state) || ageText() != m_ageShown)) {
        invalidate();
    }
}

} // namespace raincast
