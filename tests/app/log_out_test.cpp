// SPDX-License-Identifier: MIT
#include "app/log_out.h"
#include "support/qt_app.h"

#include <QGuiApplication>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

namespace raincast {
namespace {

class LogOutTest : public test::GuiTest {
protected:
    LogOutTest() {
        m_window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&m_window));
    }
    static void ask() {
        const int signal = qApp->metaObject()->indexOfSignal("commitDataRequest(QSessionManager&)");
        ASSERT_GE(signal, 0);
        int nobodyLooksAtIt = 0;
        void* arguments[] = {nullptr, &nobodyLooksAtIt};
        QMetaObject::activate(qApp, signal, arguments);
    }

    QWidget m_window;
    int m_saves = 0;
    LogOut m_logOut{[this] { ++m_saves; }};
};

TEST_F(LogOutTest, EachRequestIsACall) {
    EXPECT_FALSE(m_logOut.underWay());
    ask();
    EXPECT_EQ(m_saves, 1);
    EXPECT_TRUE(m_logOut.underWay());
    ask();
    EXPECT_EQ(m_saves, 2);
}

TEST_F(LogOutTest, OnlyTheUserEndsIt) {
    ask();
    QTest::mouseMove(&m_window, QPoint(5, 5));
    m_window.resize(100, 50);
    QTest::keyRelease(&m_window, Qt::Key_Escape);
    EXPECT_TRUE(m_logOut.underWay());
    QTest::keyPress(&m_window, Qt::Key_Down);
    EXPECT_FALSE(m_logOut.underWay());
    ask();
    EXPECT_TRUE(m_logOut.underWay());
    QTest::mouseClick(&m_window, Qt::LeftButton);
    EXPECT_FALSE(m_logOut.underWay());
}

} // namespace
} // namespace raincast
