// SPDX-License-Identifier: MIT
#include "page/painted_icon.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>

namespace raincast {

namespace {

// Icons are drawn on a square of this extent, then scaled.
constexpr double kExtent = 24;

class PaintedIcon : public QIconEngine {
public:
    explicit PaintedIcon(DrawIcon draw) : m_draw(draw) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const bool disabled = mode == QIcon::Disabled;
        const auto group = disabled ? QPalette::Disabled : QPalette::Active;
        const double scale = qMin(rect.width(), rect.height()) / kExtent;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(QRectF(rect).center());
        painter->scale(scale, scale);
        painter->translate(-kExtent / 2, -kExtent / 2);
        m_draw(*painter, QGuiApplication::palette().color(group, QPalette::ButtonText));
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return pixmap;
    }

    [[nodiscard]] QIconEngine* clone() const override { return new PaintedIcon(m_draw); }

private:
    DrawIcon m_draw;
};

} // namespace

QIcon paintedIcon(DrawIcon draw) {
    return QIcon(new PaintedIcon(draw));
}

} // namespace raincast
