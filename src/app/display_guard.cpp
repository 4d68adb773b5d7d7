// SPDX-License-Identifier: MIT
#include "app/display_guard.h"

#include "core/text.h"

#include <QByteArray>
#include <QString>
#include <QtGlobal>

#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

namespace raincast {

namespace {

// Qt's messages until the outcome is known: printed after success, replaced by our sentence after
// failure.
std::vector<std::pair<QtMsgType, QString>> heldBack;
QtMessageHandler usual = nullptr;

void holdBack(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
    if (type != QtFatalMsg) {
        heldBack.emplace_back(type, text);
        return;
    }
    const QString sentence =
        Text::tr("There is no display to open a window on; start it from a desktop, set DISPLAY or "
                 "WAYLAND_DISPLAY, or have a picture made with --screenshot FILE.");
    std::fprintf(stderr, "raincast: %s\n", qUtf8Printable(sentence));
    // Returning would abort the process. There is nothing to save yet.
    std::_Exit(1);
}

// The offscreen platform remarks on every window that it has no window manager.
void withoutRemark(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (!text.startsWith(u"This plugin does not support")) {
        usual(type, context, text);
    }
}

} // namespace

void drawOffscreenWithoutDisplay() {
    if (!qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        return;
    }
    // Qt takes the first platform of the list that works.
    QByteArray platforms;
    if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
        platforms += "wayland;";
    }
    if (!qEnvironmentVariableIsEmpty("DISPLAY")) {
        platforms += "xcb;";
    }
    qputenv("QT_QPA_PLATFORM", platforms + "offscreen");
}

DisplayGuard::DisplayGuard() {
    heldBack.clear();
    usual = qInstallMessageHandler(holdBack);
}

DisplayGuard::~DisplayGuard() {
    qInstallMessageHandler(withoutRemark);
    for (const auto& [type, text] : heldBack) {
        qt_message_output(type, {}, text);
    }
    heldBack.clear();
}

} // namespace raincast
