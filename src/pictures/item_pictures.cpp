// SPDX-License-Identifier: MIT
#include "pictures/item_pictures.h"

#include "image/cached_frames.h"
#include "pictures/save_dialog.h"
#include "player/loop_setting.h"
#include "window/command_set.h"
#include "window/message_box.h"

#include <QBuffer>
#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace raincast {

namespace {

// As on the screen, where the newest frame stays for three steps.
constexpr int kStepsOfNewest = 3;

QString cannotSave(const QString& path, const QString& reason) {
    return Text::tr("%1 cannot be written: %2.").arg(path, reason);
}

WholeFile::Result writePng(const QString& path, const QImage& picture) {
    QBuffer png;
    if (!png.open(QIODevice::WriteOnly) || !picture.save(&png, "PNG")) {
        return tl::unexpected(Text::tr("There is not enough memory"));
    }
    return replaceFile(path, png.data(), Lasting::yes);
}

} // namespace

// The row's button cancels, or takes note of the end.
ItemPictures::ItemPictures(Source source)
    : m_source(std::move(source)), m_row(m_source.item, [this] { m_saving.reset(); }) {}

ItemPictures::~ItemPictures() = default;

bool ItemPictures::hasPicture() const {
    const CPageDisplay* const page = m_source.item.page();
    return page != nullptr && page->widget() != nullptr && !m_source.area().isEmpty();
}

// After a start the first frame is shown while the others are read.
bool ItemPictures::hasLoop() const {
    return m_source.state.frames.size() >= 2 && !lacksLaterFrames(m_source.state);
}

bool ItemPictures::command(int id) {
    static constexpr std::pair<int, void (ItemPictures::*)()> kCommands[] = {
        {kSavePicture, &ItemPictures::savePicture},
        {kCopyPicture, &ItemPictures::copyPicture},
        {kSaveLoop, &ItemPictures::saveLoop},
    };
    for (const auto& [command, operation] : kCommands) {
        if (command == id) {
            if (hasPicture()) {
                (this->*operation)();
            }
            return true;
        }
    }
    return false;
}

void ItemPictures::prepareMenu(QMenu& menu) const {
    enableCommand(menu, kSaveLoop, hasLoop());
}

/// What the item is painted on, and how it looks.
struct ItemPictures::Canvas {
    QSize page;
    QRect area;
    QColor ground;
    QFont font;
    CItemMapView::Look look;

    [[nodiscard]] QImage paint(CItemMapView& item) const {
        QImage picture(page, QImage::Format_RGB32);
        picture.fill(ground);
        QPainter painter(&picture);
        painter.setFont(font);
        painter.setClipRect(area);
        item.drawAs(look, painter);
        painter.end();
        return picture.copy(area.intersected(picture.rect()));
    }
};

ItemPictures::Canvas ItemPictures::canvas() const {
    const CPageDisplay& page = *m_source.item.page();
    return {
        page.deviceSize(), m_source.area(), page.widget()->palette().color(QPalette::Base),
        page.widget()->font(), m_source.item.look()};
}

QImage ItemPictures::paint() const {
    return hasPicture() ? canvas().paint(m_source.item) : QImage();
}

void ItemPictures::savePicture() {
    const QImage picture = paint(); // as it is now: the loop may go on behind the dialog
    SaveDialog dialog(Text::tr("Save Picture"), m_source.name() + QStringLiteral(".png"));
    QWidget* const window = m_source.item.page()->widget();
    if (dialog.run(window) != Dialog::kOk) {
        return;
    }
    if (const auto written = writePng(dialog.path(), picture); !written) {
        messageBox(window, cannotSave(dialog.path(), written.error()), Text::tr("Save Picture"));
    }
}

void ItemPictures::copyPicture() {
    QGuiApplication::clipboard()->setImage(paint());
}

void ItemPictures::saveLoop() {
    if (lacksLaterFrames(m_source.state)) {
        return;
    }
    SaveDialog dialog(Text::tr("Save Loop"), m_source.name() + QStringLiteral(".gif"));
    if (dialog.run(m_source.item.page()->widget()) != Dialog::kOk || !hasPicture()) {
        return;
    }
    const QString path = dialog.path();
    writeLoop(path, [this, path](const WholeFile::Result& result) { loopSaved(path, result); });
    m_row.say(Text::tr("Saving the loop..."), Text::tr("&Cancel"));
}

void ItemPictures::writeLoop(const QString& path, Done done) {
    if (!hasPicture()) {
        done(tl::unexpected(Text::tr("There is no picture")));
        return;
    }
    const int count = std::max(static_cast<int>(m_source.state.frames.size()), 1);
    m_saving = std::make_unique<LoopSaving>(
        path, count, painter(),
        [this, count](int written) {
            m_row.goOn(Text::tr("Saving the loop: %1 of %2 frames").arg(written).arg(count));
        },
        std::move(done)
    );
}

// The item goes on meanwhile: another view, another size, other frames.
LoopSaving::Paint ItemPictures::painter() const {
    const int step = kLoopSpeeds[static_cast<std::size_t>(LoopSetting::speed())].milliseconds;
    RadarState& state = m_source.state;
    auto frames = state.frames;
    if (frames.empty()) {
        frames.push_back(state.current);
    }
    return [step, &state, frames = std::move(frames), canvas = canvas(), site = state.siteId,
            product = state.product,
            &item = m_source.item](int index) -> std::optional<AnimatedGif::Frame> {
        if (state.siteId != site || state.product != product) {
            return std::nullopt; // its map is another one
        }
        const auto frame = static_cast<std::size_t>(index);
        const RadarFrame shown = std::exchange(state.current, frames[frame]);
        const QImage picture = canvas.paint(item);
        state.current = shown;
        const bool newest = frame + 1 == frames.size();
        return AnimatedGif::Frame{picture, newest ? step * kStepsOfNewest : step};
    };
}

void ItemPictures::loopSaved(const QString& path, const WholeFile::Result& result) {
    m_saving.reset();
    m_row.say(
        result ? Text::tr("The loop is in %1.").arg(path) : cannotSave(path, result.error()),
        Text::tr("&OK")
    );
}

} // namespace raincast
