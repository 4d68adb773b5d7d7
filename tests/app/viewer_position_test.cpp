// SPDX-License-Identifier: MIT
// The source of positions while the viewer runs: chosen in its settings, in use at once, kept.
#include "app/globals.h"
#include "app/main_window.h"
#include "app/viewer.h"
#include "page/page_display.h"
#include "persist/page_file.h"
#include "persist/registry_store.h"
#include "position/source/position_source_setting.h"
#include "support/dialog_script.h"
#include "support/qt_app.h"
#include "support/temporary_home.h"
#include "window/modal.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace raincast {
namespace {

constexpr int kDeadline = 30'000; // milliseconds
const QString kSource = QStringLiteral("GPS Source");
constexpr char kSentence[] = "$GPRMC,183000,A,4130.000,N,10515.000,W,0,0,150607,,\r\n";

QAction* findEntry(const QMenu& menu, const QString& text) {
    for (QAction* entry : menu.actions()) {
        if (entry->text().remove(u'&') == text) {
            return entry;
        }
        QAction* const found = entry->menu() != nullptr ? findEntry(*entry->menu(), text) : nullptr;
        if (found != nullptr) {
            return found;
        }
    }
    return nullptr;
}

class ViewerPositionTest : public test::GuiTest {
protected:
    ViewerPositionTest() {
        EXPECT_TRUE(server.listen(QHostAddress(QStringLiteral("127.0.0.1"))));
        // Not a first start, which asks for a radar site before anything else.
        CAppPaged pages;
        pages.append(std::make_unique<CPageDisplay>()).setName(QStringLiteral("Blank"));
        QDir().mkpath(home.programFolder());
        EXPECT_TRUE(PageFile(home.pageFile(), examinePages<CAppPaged>).save(pages));
    }
    ~ViewerPositionTest() override {
        PositionSourceSetting::choose(QString());
        Modal::forgetEnd();
    }

    QString address() const { return QStringLiteral("tcp:127.0.0.1:%1").arg(server.serverPort()); }
    bool connects() { return connects(server); }
    bool connects(QTcpServer& to) {
        if (!QTest::qWaitFor([&to] { return to.hasPendingConnections(); }, kDeadline)) {
            return false;
        }
        peer.reset(to.nextPendingConnection());
        return true;
    }
    void choose(QDialog& dialog) { choose(dialog, server, kSentence, u", fix\n41°30.000'N"); }
    // What a user does in the dialog, and what they see there.
    void choose(QDialog& dialog, QTcpServer& from, const char* sentences, QStringView sees) {
        auto* const kinds = dialog.findChild<QComboBox*>();
        kinds->setFocus();
        QTest::keyClicks(kinds, "TCP");
        auto* const address = dialog.findChild<QLineEdit*>();
        address->selectAll();
        QTest::keyClicks(address, QStringLiteral("127.0.0.1:%1").arg(from.serverPort()));
        for (auto* button : dialog.findChildren<QAbstractButton*>()) {
            if (button->text() == QStringLiteral("&Try")) {
                QTest::mouseClick(button, Qt::LeftButton);
            }
        }
        ASSERT_TRUE(connects(from));
        peer->write(sentences);
        EXPECT_TRUE(QTest::qWaitFor([&] { return shows(dialog, sees); }, kDeadline))
            << "the window's heart beats on";
        QTest::keyClick(&dialog, Qt::Key_Return);
    }
    static bool shows(QDialog& dialog, QStringView text) {
        for (const auto* label : dialog.findChildren<QLabel*>()) {
            if (label->text().contains(text)) {
                return true;
            }
        }
        return false;
    }
    static void inLoop(std::function<void()> step) { QTimer::singleShot(0, qApp, std::move(step)); }
    std::optional<QString> saved() const {
        return RegistryStore::inStandardFolders().string(
            RegistryStore::Branch::user,
            QStringLiteral("Software/Quorvane/Raincast_1/CPositionSource"),
            QStringLiteral("position_source")
        );
    }

    test::TemporaryHome home;
    QTcpServer server;
    QTcpServer other;
    std::unique_ptr<QTcpSocket> peer;
};

TEST_F(ViewerPositionTest, ASourceThatIsChosenIsInUseAtOnceAndKept) {
    test::DialogScript script;
    script.expect(kSource, [this](QDialog& dialog) { choose(dialog); });
    {
        Viewer viewer({});
        inLoop([&] {
            QAction* const entry =
                findEntry(*viewer.window()->pageMenu(), QStringLiteral("GPS Source..."));
            ASSERT_NE(entry, nullptr);
            entry->trigger();
            viewer.requestEnd();
        });
        EXPECT_EQ(viewer.run(), 0);
    }
    EXPECT_EQ(saved(), address());
    Modal::forgetEnd();
    PositionSourceSetting::choose(QString());

    Viewer again({});
    bool connected = false;
    inLoop([&] {
        connected = connects();
        again.requestEnd();
    });
    EXPECT_EQ(again.run(), 0);
    EXPECT_TRUE(connected) << "the next start opens it";
}

// A fix in the dialog is a position for the maps, even if the source before it sent something else.
TEST_F(ViewerPositionTest, ASourceOfGgaAndVtgGivesPositionsAfterOneOfRmc) {
    ASSERT_TRUE(other.listen(QHostAddress(QStringLiteral("127.0.0.1"))));
    test::DialogScript script;
    Viewer viewer({});
    const CDataGPSPosition& drawn = viewer.feeds().received().published();
    const auto openDialog = [&viewer] {
        findEntry(*viewer.window()->pageMenu(), QStringLiteral("GPS Source..."))->trigger();
    };
    inLoop([&] {
        script.expect(kSource, [this](QDialog& dialog) { choose(dialog); });
        openDialog();
        EXPECT_TRUE(drawn.valid());
        EXPECT_EQ(drawn.latitude, 41.5);
        script.expect(kSource, [&](QDialog& dialog) {
            choose(
                dialog, other,
                "$GPVTG,90,T,,M,12,N,,K\r\n"
                "$GPGGA,183000,4230.000,N,10515.000,W,1,8,1.0,10,M,,,,\r\n",
                u", fix\n42°30.000'N"
            );
        });
        openDialog();
        EXPECT_TRUE(drawn.valid());
        EXPECT_EQ(drawn.latitude, 42.5);
        EXPECT_EQ(drawn.speed, 12);
        viewer.requestEnd();
    });
    EXPECT_EQ(viewer.run(), 0);
}

TEST_F(ViewerPositionTest, ASourceForOneRunIsNotKeptByLookingAtIt) {
    test::DialogScript script;
    script.expect(kSource, [](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Return); });
    AppOptions options;
    options.nmea = address();
    Viewer viewer(options);
    inLoop([&] {
        EXPECT_TRUE(connects());
        findEntry(*viewer.window()->pageMenu(), QStringLiteral("GPS Source..."))->trigger();
        viewer.requestEnd();
    });
    EXPECT_EQ(viewer.run(), 0);
    EXPECT_EQ(saved(), QString());
}

} // namespace
} // namespace raincast
