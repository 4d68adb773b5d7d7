// SPDX-License-Identifier: MIT
#include "weather/item_weather.h"

#include "core/clock.h"
#include "core/user_change.h"
#include "map/map_menu.h"
#include "page/item_catalogue.h"
#include "radar/animation.h"
#include "radar/cache.h"
#include "radar/catalogue/products.h"
#include "replay/past_storms.h"
#include "sharp/detail.h"
#include "sharp/detail_setting.h"
#include "weather/image_age.h"
#include "weather/item_weather_dialogs.h"
#include "weather/item_weather_loading.h"
#include "weather/picture_texts.h"
#include "weather/radar_record.h"
#include "weather/weather_reading.h"
#include "window/command_set.h"
#include "window/commands.h"
#include "window/menu_table.h"

#include <QFileInfo>
#include <QMenu>
#include <QPainter>

#include <optional>
#include <utility>

namespace raincast {

namespace {

constexpr std::int32_t kTickPeriod = 5; // heartbeats: half a second

// In the order of the product table.
constexpr MenuRow kProductEntries[] = {
    menuEntry(kFirstProduct, Text::marked("&Base Reflectivity"), "1"),
    menuEntry(kFirstProduct + 1, Text::marked("&Composite Reflectivity"), "2"),
    menuEntry(kFirstProduct + 2, Text::marked("&Long Range Reflectivity"), "3"),
    menuEntry(kFirstProduct + 3, Text::marked("1 &Hour Precipitation"), "4"),
    menuEntry(kFirstProduct + 4, Text::marked("&Total Precipitation"), "5"),
    menuEntry(kFirstProduct + 5, Text::marked("&Velocity"), "6"),
    menuEntry(kFirstProduct + 6, Text::marked("&Storm Relative Velocity"), "7"),
};
constexpr MenuRow kPictureEntries[] = {
    kPictureRows[0], kPictureRows[1], kPictureRows[2], menuSeparator(), kTakeAlongRow};
constexpr MenuRow kEntries[] = {
    menuEntry(kNearbyStations, Text::marked("&Nearby Stations")),
    menuEntry(kAllStations, Text::marked("&All Stations")),
    subMenu(Text::marked("&Product"), kProductEntries),
    subMenu(Text::marked("L&oop"), kLoopRows),
    menuEntry(kAnimation, Text::marked("Ani&mation")),
    menuEntry(kLayers, Text::marked("&Layers")),
    menuEntry(kStorage, Text::marked("&Storage")),
    menuEntry(kListWarnings, Text::marked("&Warnings..."), "W"),
    menuEntry(kDismissWarning, Text::marked("&Dismiss Warning"), "D"),
    subMenu(Text::marked("Pi&ctures"), kPictureEntries),
};
constexpr MenuRow kReadingEntries[] = {
    menuEntry(kShowScale, Text::marked("Show &Scale")),
    menuEntry(kRingsRoundRadar, Text::marked("Rings Round &Radar")),
    menuEntry(kRingsRoundPosition, Text::marked("Rings Round &You")),
    menuEntry(kMeasure, Text::marked("&Measure")),
    menuEntry(kTrackStorm, Text::marked("&Track a Storm")),
};
constexpr MenuRow kPlaceEntries[] = {
    menuEntry(kAddMarkHere, Text::marked("&Add Mark Here")),
    menuEntry(kMeasureFromHere, Text::marked("&Measure From Here")),
    menuEntry(kTrackStorm, Text::marked("&Track This Storm")),
    menuEntry(kCopyPosition, Text::marked("&Copy Position")),
    menuEntry(kCentreHere, Text::marked("Centre &Here")),
    menuEntry(kSetTargetHere, Text::marked("&Set as Target")),
};
constexpr MenuRow kPopUp[] = {
    subMenu(Text::marked("&Weather"), kEntries), subMenu(Text::marked("&Reading"), kReadingEntries),
    kMapMenu};
constexpr MenuRow kBar[] = {subMenu("", kPopUp)};
const MenuTableRecord menu(CItemWeather::kMenu, kBar);

const ItemCatalogueEntry catalogueEntry(
    Text::marked("Weather:Radar"), kTypeItemWeather, ItemCatalogueEntry::kRankWeather
);

} // namespace

const SerializableType<CItemWeather> CItemWeather::cType{kTypeItemWeather};

CItemWeather::CItemWeather()
    : CItemMapView(kMenu), Counter(kTickPeriod), m_loading(std::make_unique<Loading>(*this)),
      m_reading(std::make_unique<Reading>(*this)),
      m_sharp([this](bool came) { came ? invalidate() : followSharp(); }),
      m_taps([this](QPoint place) { tapped(place); }),
      m_player(
          *this, m_state, [this] { return loading(); },
          [this](int before) { coveredBelowChanged(before); }
      ),
      m_pictures({*this, m_state, [this] { return area(); }, [this] { return pictureName(); }}),
      m_along(*this, [this] { return m_loading->scene(); }) {
    m_state.cacheFolder = ChooseDefaultCache();
}

CItemWeather::~CItemWeather() = default;

void CItemWeather::useDownloads(Downloads& downloads) {
    m_loading->use(downloads);
}

bool CItemWeather::loading() const {
    return m_loading->running();
}

bool CItemWeather::pictureComing() const {
    return m_loading->pictureComing();
}

bool CItemWeather::Read(CSerialReader& reader) {
    if (!CItemMapView::Read(reader)) {
        return false;
    }
    readRadarRecord(reader, m_state, m_layers);
    m_viewStored = !m_state.siteId.isEmpty();
    return true;
}

bool CItemWeather::Write(CSerialWriter& writer) const {
    return CItemMapView::Write(writer) && writeRadarRecord(writer, m_state, m_layers);
}

void CItemWeather::draw(QPainter& painter) {
    // Of words of which a part is painted nothing may be noted as painted.
    const bool isPart = !drawsAs() && !area().isEmpty() && painter.hasClipping() &&
                        !painter.clipBoundingRect().contains(QRectF(area()));
    if (isPart && wordsChanged()) {
        invalidate();
    }
    if (!drawsAs()) {
        m_sharp.use(wantedDetail(), m_state);
    }
    m_stack.setLayers(layersToDraw());
    m_stack.draw(painter, area(), view());
    const int linesAbove = linesHeight(painter.fontMetrics());
    const PictureTexts present = texts();
    drawPictureTexts(painter, area().adjusted(0, linesAbove, 0, 0), present);
    if (!drawsAs()) {
        m_ageShown = present.age.text;
        m_replayShown = replayLine();
        m_tellerShown = Clock::real().teller();
    }
    CItemMapView::draw(painter);
    m_reading->draw(painter);
    const auto [done, wanted] = m_loading->progress();
    drawProgress(painter, area(), done, wanted);
    m_player.itemDrawn();
    m_loading->loadOthers();
    if (!drawsAs()) {
        followSharp();
    }
}

LayerStack::Layers CItemWeather::layersToDraw() {
    const Basemaps& maps = m_loading->basemaps();
    const Bitmap warnings =
        warningsUse(m_state) == WarningsUse::drawn ? m_state.warnings.picture : nullptr;
    if (wantedDetail() != m_sharp.wanted()) { // a loop is saved as it looked when that began
        return {imageSize(), maps.topo, m_state.current.bitmap, maps.overlay, warnings};
    }
    return {
        imageSize(),
        m_sharp.ground(maps.topo),
        m_sharp.frame(m_state.current),
        m_sharp.overlay(maps.overlay),
        m_sharp.warnings(warnings),
        m_sharp.detail(),
        m_sharp.keyOf(m_state.current)};
}

DetailedBitmap CItemWeather::shownEchoes() {
    return wantedDetail() == m_sharp.wanted() ? m_sharp.frame(m_state.current)
                                              : DetailedBitmap(m_state.current.bitmap);
}

double CItemWeather::pixelRatio() const {
    const QWidget* const window = page() != nullptr ? page()->widget() : nullptr;
    return window != nullptr ? window->devicePixelRatioF() : 1;
}

int CItemWeather::wantedDetail() const {
    return DetailSetting::automatic() ? raincast::wantedDetail(view(), rectangle().toRect().size())
                                      : 1;
}

// Sharp pictures wait until nothing else is loaded.
void CItemWeather::followSharp() {
    if (m_loading->held()) {
        return;
    }
    const int detail = wantedDetail();
    const QRect seen = LayerStack::imageArea(area(), view(), imageSize());
    m_sharp.follow(
        m_loading->presentScene(),
        {detail, lettersDetail(detail, pixelRatio()), !seen.isEmpty(), !m_loading->pictureComing()}
    );
}

QRect CItemWeather::opaqueArea() const {
    const Basemaps& maps = m_loading->basemaps();
    const bool opaque = maps.topo || maps.overlay;
    const QSize size(m_state.imageWidth, m_state.imageHeight);
    return opaque ? LayerStack::imageArea(area(), view(), size) : QRect();
}

PictureTexts CItemWeather::texts() const {
    PictureTexts texts;
    texts.status = overPicture();
    if (m_state.siteId.isEmpty() && m_state.status.isEmpty()) {
        texts.status = Text::tr("No radar site is chosen.\nMenu: Weather, All Stations");
    }
    if (m_state.current.bitmap) {
        const auto taken = takenAt(m_state.current);
        texts.time = taken ? Text::clock(toLocalCalendar(*taken), Text::Hours::upTo12)
                           : m_state.current.timeText;
    }
    if (shownFrame() != nullptr) {
        texts.about = about();
    }
    texts.age = age();
    return texts;
}

QString CItemWeather::overPicture() const {
    QString text = m_state.status + m_state.cause;
    for (const QString& line : {clockLine(Clock::real().teller()), replayLine()}) {
        const bool hasBoth = !line.isEmpty() && !text.isEmpty();
        text = line + (hasBoth ? QStringLiteral("\n") : QString()) + text;
    }
    if (warningsUse(m_state) == WarningsUse::stale) {
        const CalendarTime local = toLocalCalendar(m_state.warnings.fetched);
        text += text.isEmpty() || text.endsWith(u'\n') ? "" : "\n";
        text += Text::tr("Warnings of %1 are not shown").arg(Text::clock(local));
    }
    return text;
}

// Between two rounds of the animation the screen is empty for a moment; the texts stay those of the
// newest frame then.
const RadarFrame* CItemWeather::shownFrame() const {
    if (m_state.current.bitmap) {
        return &m_state.current;
    }
    const bool loaded = !m_state.frames.empty() && m_state.frames.back().bitmap;
    return loaded ? &m_state.frames.back() : nullptr;
}

// The age of the newest frame, whichever is on the screen.
ImageAge CItemWeather::age() const {
    if (shownFrame() == nullptr || m_state.frames.empty()) {
        return {};
    }
    const auto taken = takenAt(m_state.frames.back());
    return taken ? imageAge(*taken, Clock::current().now()) : ImageAge();
}

QString CItemWeather::productText() const {
    return Text::of(radarProducts()[static_cast<std::size_t>(m_state.product)].nameText());
}

QString CItemWeather::pictureName() const {
    const QString product = ProductCode(m_state.product).toString();
    const RadarFrame* const shown = shownFrame();
    const QString frame = shown != nullptr ? QFileInfo(shown->path).completeBaseName() : QString();
    const QString name = m_state.siteId.isEmpty() ? QStringLiteral("radar") : m_state.siteId;
    return frame.isEmpty() ? name + u'_' + product : frame;
}

QString CItemWeather::caption() const {
    const QStringList parts = {about(), replayLine()};
    const bool hasBoth = !parts[0].isEmpty() && !parts[1].isEmpty();
    return parts.join(hasBoth ? QStringLiteral(" - ") : QString());
}

QString CItemWeather::about() const {
    if (m_state.siteId.isEmpty()) {
        return {};
    }
    QString about = m_state.siteId + u' ' + productText();
    const RadarFrame* const shown = shownFrame();
    if (const auto time = shown != nullptr ? takenAt(*shown) : std::nullopt) {
        about += u' ' + Text::date(toLocalCalendar(*time));
    }
    return about;
}

void CItemWeather::windowCreated() {
    m_loading->watch(*page()->widget());
    if (m_loading->begin(std::exchange(m_first, {}))) {
        return;
    }
    if (m_state.siteId.isEmpty()) {
        Dialogs(*this).chooseStation({});
    } else {
        m_loading->resume();
    }
}

// The image has a new place on the earth. A view that showed a place still shows it; a new one
// begins with the whole image, and what was fitted stays so.
void CItemWeather::placeImage(GeoPosition centreBefore) {
    const bool isFitted = m_viewStored && !following() && showsWholeImage();
    geoReferenceChanged();
    if (isFitted || (!m_viewStored && centreBefore.longitude == 0)) {
        showWholeImage();
    } else if (centreBefore.longitude != 0) {
        static_cast<void>(setView(kImageCentre, centreBefore));
    }
    m_viewStored = true;
}

bool CItemWeather::character(char16_t unit) {
    if (u'1' <= unit && unit < u'1' + static_cast<int>(kRadarProductCount)) {
        showProduct(unit - u'1');
        return true;
    }
    return m_player.character(unit) || m_warnings.character(unit) || CItemMapView::character(unit);
}

void CItemWeather::menuPopUp(QMenu& menu) {
    CItemMapView::menuPopUp(menu);
    if (!firstOnPage()) {
        return;
    }
    for (int product = 0; product < static_cast<int>(kRadarProductCount); ++product) {
        checkCommand(menu, kFirstProduct + product, product == m_state.product);
    }
    m_player.prepareMenu(menu);
    m_pictures.prepareMenu(menu);
    m_along.prepareMenu(menu);
    m_warnings.prepareMenu(menu);
    m_reading->prepareMenu(menu);
}

void CItemWeather::showProduct(int product) {
    if (product == m_state.product) {
        return;
    }
    // The two sizes of map have layers of their own.
    const bool otherLayers = ProductRange(product) != ProductRange(m_state.product);
    m_state.product = product;
    UserChange::announce();
    if (otherLayers && !m_state.siteId.isEmpty()) {
        m_loading->loadThenUpdate(m_state.siteId);
    } else {
        m_loading->update();
    }
}

bool CItemWeather::command(int id, int notification) {
    if (kFirstProduct <= id && id <= kLastProduct) {
        showProduct(id - kFirstProduct);
        return true;
    }
    switch (id) {
    case kNearbyStations:
        Dialogs(*this).chooseStation(centrePosition());
        return true;
    case kAllStations:
        Dialogs(*this).chooseStation({});
        return true;
    case kUpdate:
        if (m_state.siteId.isEmpty()) {
            Dialogs(*this).chooseStation({});
        } else if (!m_loading->running()) {
            m_loading->update();
        }
        return true;
    case kStop:
        if (m_reading->end()) {
            return true;
        }
        m_loading->stop();
        return false; // to all items of the page
    case kAnimation:
        Dialogs(*this).editAnimation();
        return true;
    case kLayers:
        Dialogs(*this).editLayers();
        return true;
    case kStorage:
        Dialogs(*this).editStorage();
        return true;
    default:
        return m_reading->command(id) || m_player.command(id) || m_pictures.command(id) ||
               m_along.command(id) || m_warnings.command(id) ||
               CItemMapView::command(id, notification);
    }
}

bool CItemWeather::keyDown(int key) {
    return m_reading->key(key) || CItemMapView::keyDown(key);
}

bool CItemWeather::stylusDown(int x, int y, Qt::KeyboardModifiers keys) {
    m_taps.pressed(onPage(x, y));
    return CItemMapView::stylusDown(x, y, keys);
}

void CItemWeather::stylusUp(int x, int y) {
    const QPoint place = onPage(x, y);
    if (m_taps.lifted(place) && !m_reading->tapped(place)) {
        m_taps.awaitSecond(place);
    }
}

// A single one that reads nothing.
void CItemWeather::tapped(QPoint place) {
    if (!m_warnings.tapped(place)) {
        m_player.tapped();
    }
}

void CItemWeather::stylusLost() {
    m_taps.ended();
    CItemMapView::stylusLost();
}

bool CItemWeather::doublePress(int x, int y) {
    m_taps.ended();
    return m_reading->pressedAgain(onPage(x, y)) || CItemMapView::doublePress(x, y);
}

void CItemWeather::pointerMoved(int x, int y) {
    m_reading->pointerMoved(onPage(x, y));
}

void CItemWeather::pointerRested(int x, int y) {
    m_reading->pointerRested(onPage(x, y));
}

void CItemWeather::pointerLeft() {
    m_reading->pointerLeft();
}

std::span<const MenuRow> CItemWeather::contextMenu(int x, int y) {
    return CItemMapView::contextMenu(x, y).empty() ? std::span<const MenuRow>()
                                                   : std::span<const MenuRow>(kPlaceEntries);
}

QString CItemWeather::contextHeading(int x, int y) const {
    return m_reading->heading(onPage(x, y));
}

void CItemWeather::Tick() {
    const FileTime now = Clock::current().now();
    limitUpdate(m_state, now);
    if (updateIsDue(m_state, now)) {
        m_loading->updateDueAt(now);
    }
    m_loading->loadOthers();
    m_warnings.follow();
    // A page has a window only while it is on the screen. A picture that stands still is painted
    // again only when the words for its age change.
    const bool onScreen = page() != nullptr && page()->widget() != nullptr;
    if (!onScreen) {
        m_player.loop().stopClock();
        m_sharp.release();
        m_stack.releaseFine();
        return;
    }
    if (wantedDetail() != m_sharp.wanted()) {
        invalidate(); // the setting has changed
    }
    followSharp();
    const Reading::Held held = m_reading->holdFrame();
    if (held.holds) {
        m_player.loop().stopClock();
    }
    const bool moved = held.holds ? held.changed : m_player.tick();
    if (moved || wordsChanged()) {
        invalidate();
    }
}

// Whether time alone has made words out of date that are on the screen.
bool CItemWeather::wordsChanged() const {
    return age().text != m_ageShown || m_reading->wordsChanged() || replayLine() != m_replayShown ||
           Clock::real().teller() != m_tellerShown;
}

bool CItemWeather::readsPosition() const {
    return m_reading->readsPosition();
}

} // namespace raincast
