// SPDX-License-Identifier: MIT
#pragma once

#include <QProxyStyle>

namespace raincast {

/// The style of the desktop, fitted to the screen. A menu that is higher than the screen scrolls:
/// further columns would end up outside of a narrow one. A press on a slider's groove takes the
/// handle there. On a touch screen buttons, fields, menu entries and list rows are high enough for
/// a finger; dialogs follow, since their units grow until every control has the height that the
/// style asks for.
class ScreenStyle : public QProxyStyle {
public:
    /// `base` becomes this style's own; `height` is the least height in logical pixels, 0 for as
    /// high as the base has it.
    ScreenStyle(QStyle* base, int height);

    int styleHint(
        StyleHint hint, const QStyleOption* option, const QWidget* widget,
        QStyleHintReturn* returnData
    ) const override;
    QSize sizeFromContents(
        ContentsType type, const QStyleOption* option, const QSize& contents, const QWidget* widget
    ) const override;

private:
    int m_height;
};

/// A new style of the desktop's kind, without what a ScreenStyle adds; the caller's own.
[[nodiscard]] QStyle* makeDesktopStyle();

/// Puts a ScreenStyle over the application's style.
void useScreenStyle();

} // namespace raincast
