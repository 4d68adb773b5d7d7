// SPDX-License-Identifier: MIT
#pragma once

#include <QProxyStyle>

namespace raincast {

/// The style of the desktop with buttons, fields, menu entries and list rows high enough for a
/// finger. Installed on the application when the screen is a touch screen; dialogs follow, since
/// their units grow until every control has the height that the style asks for.
class TouchStyle : public QProxyStyle {
public:
    /// `base` becomes this style's own; `height` is the least height in logical pixels.
    TouchStyle(QStyle* base, int height);

    QSize sizeFromContents(
        ContentsType type, const QStyleOption* option, const QSize& contents, const QWidget* widget
    ) const override;

private:
    int m_height;
};

/// Puts a TouchStyle over the application's style if the screen is a touch screen.
void useTouchStyle();

} // namespace raincast
