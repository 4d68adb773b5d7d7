// SPDX-License-Identifier: MIT
#include "support/qt_app.h"

#include <QApplication>
#include <QFont>
#include <QTest>

namespace raincast::test {

QApplication& qtApp() {
    static int argumentCount = 1;
    static char name[] = "raincast_tests";
    static char* arguments[] = {name, nullptr};
    static auto* const app = [] {
        auto* const made = new QApplication(argumentCount, arguments);
        QApplication::setStyle(QStringLiteral("Fusion"));
        QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 9));
        // The end of one test's last window is not the end of the program.
        QApplication::setQuitOnLastWindowClosed(false);
        return made;
    }();
    return *app;
}

void show(QWidget& window) {
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    settle();
}

void settle() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

GuiTest::GuiTest() {
    qtApp();
}

GuiTest::~GuiTest() {
    settle();
}

} // namespace raincast::test
