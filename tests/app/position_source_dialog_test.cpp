// SPDX-License-Identifier: MIT
#include "app/position_source_dialog.h"
#include "app/position_source_settings_type.h"
#include "page/global_settings_type.h"
#include "position/position_receiver.h"
#include "position/source/position_source_setting.h"
#include "support/dialog_script.h"
#include "support/event_loop.h"
#include "support/fake_source.h"
#include "support/manual_timers.h"
#include "support/qt_app.h"
#include "support/test_clock.h"

#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTcpServer>
#include <QTcpSocket>

#include <gmock/gmock.h>

#include <memory>
#include <optional>

namespace raincast {
namespace {

using test::DialogScript;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using State = PositionReceiver::State;

const QString kCaption = QStringLiteral("GPS Source");
const QString kMessage = QStringLiteral("Raincast");
constexpr char kSentence[] = "$GPRMC,183000,A,4130.000,N,10515.000,W,0,0,150607,,\r\n";

template<typename Widget>
Widget& control(QDialog& dialog, int id) {
    return *dialog.findChild<Widget*>(QString::number(id));
}

std::string labelText(QDialog& dialog, int id) {
    return control<QLabel>(dialog, id).text().toStdString();
}

std::string arrivals(QDialog& dialog) {
    return labelText(dialog, PositionSourceDialog::kArrivals);
}

std::string inUse(QDialog& dialog) {
    return control<QLabel>(dialog, PositionSourceDialog::kInUse).toolTip().toStdString();
}

QLineEdit& addressField(QDialog& dialog) {
    return control<QLineEdit>(dialog, PositionSourceDialog::kAddress);
}

// As a person selects: by the keys of the list that has the keyboard.
void choose(QDialog& dialog, const QString& kind) {
    auto& list = control<QComboBox>(dialog, PositionSourceDialog::kKind);
    list.setFocus();
    QTest::keyClick(&list, Qt::Key_Home);
    for (int most = list.count(); most > 0 && list.currentText() != kind; --most) {
        QTest::keyClick(&list, Qt::Key_Down);
    }
    EXPECT_EQ(list.currentText(), kind);
}

void type(QDialog& dialog, const QString& address) {
    QLineEdit& field = addressField(dialog);
    field.setFocus();
    field.selectAll();
    QTest::keyClick(&field, Qt::Key_Delete);
    QTest::keyClicks(&field, address);
}

void ok(QDialog& dialog) {
    QTest::keyClick(&dialog, Qt::Key_Return);
}

void tryIt(QDialog& dialog) {
    QTest::mouseClick(&control<QPushButton>(dialog, PositionSourceDialog::kTry), Qt::LeftButton);
}

class DlgPositionSourceTest : public test::GuiTest {
protected:
    DlgPositionSourceTest() {
        FakeSource::reset();
        PositionSourceSetting::choose(QString());
    }
    ~DlgPositionSourceTest() override { PositionSourceSetting::choose(QString()); }

    void use(const QString& address) {
        PositionSourceSetting::choose(address);
        PositionSourceSetting::apply(receiver);
    }
    int run(const DialogScript::Step& step) {
        DialogScript script;
        script.expect(kCaption, step);
        return PositionSourceDialog(receiver).run(nullptr);
    }
    void beat(int seconds) {
        for (int i = 0; i < 10 * seconds; ++i) {
            clock.advance(kFileTimePerSecond / 10);
            CHeartbeat::program().Beat();
        }
    }

    TestClock clock;
    ManualTimers timers;
    PositionReceiver receiver{timers, FakeSource::make};
};

TEST_F(DlgPositionSourceTest, TheSettingsMenuOffersItBehindTheUnits) {
    const PositionSourceSettingsType settingsType(receiver);
    std::vector<std::string> captions;
    const CAppPaged::GlobalSettingsType* offered = nullptr;
    for (const auto* type : CAppPaged::GlobalSettingsType::all()) {
        captions.push_back(type->caption().toStdString());
        offered = type->caption() == kCaption ? type : offered;
    }
    ASSERT_NE(offered, nullptr);
    EXPECT_THAT(
        captions, testing::ElementsAre("Units", "GPS Vector", "GPS Source", "Servers", "Detail")
    );
    DialogScript script;
    script.expect(kCaption);
    offered->open(nullptr);
}

struct Source {
    const char* address;
    const char* kind;
    const char* typed;
};
const Source kSources[] = {
    {"", "None", ""},
    {"serial:/dev/ttyUSB0@9600", "Serial device", "/dev/ttyUSB0@9600"},
    {"tcp:[::1]:10110", "TCP server", "[::1]:10110"},
    {"udp:10110", "UDP port", "10110"},
    {"gpsd:", "gpsd", ""},
    {"gpsd:boat:2948", "gpsd", "boat:2948"},
    {"file:/home/me/trip.nmea?rate=10", "Recorded file", "/home/me/trip.nmea?rate=10"},
};

TEST_F(DlgPositionSourceTest, ShowsWhatIsInUse) {
    for (const Source& source : kSources) {
        use(QString::fromLatin1(source.address));
        run([&source](QDialog& dialog) {
            const auto& kinds = control<QComboBox>(dialog, PositionSourceDialog::kKind);
            EXPECT_EQ(kinds.count(), 6);
            EXPECT_EQ(kinds.currentText().toStdString(), source.kind);
            EXPECT_EQ(addressField(dialog).text().toStdString(), source.typed);
            EXPECT_EQ(addressField(dialog).isEnabled(), source.address[0] != 0);
            EXPECT_FALSE(control<QLabel>(dialog, PositionSourceDialog::kExample).text().isEmpty());
            EXPECT_THAT(inUse(dialog), HasSubstr(source.address));
        });
        EXPECT_EQ(PositionSourceSetting::text().toStdString(), source.address) << "cancelled";
    }
}

TEST_F(DlgPositionSourceTest, OkPutsEachKindInUseAtOnce) {
    for (const Source& source : kSources) {
        use(QStringLiteral("udp:1"));
        const auto enter = [&source](QDialog& dialog) {
            choose(dialog, source.kind);
            if (source.address[0] != 0) {
                type(dialog, QStringLiteral(" %1 ").arg(QLatin1String(source.typed)));
            }
            ok(dialog);
        };
        EXPECT_EQ(run(enter), Dialog::kOk);
        EXPECT_EQ(PositionSourceSetting::text().toStdString(), source.address);
        const auto address = PositionSourceAddress::parse(QString::fromLatin1(source.address));
        EXPECT_EQ(receiver.address(), address ? std::optional(*address) : std::nullopt);
    }
}

TEST_F(DlgPositionSourceTest, ATildeIsTheHomeFolder) {
    run([](QDialog& dialog) {
        choose(dialog, "Recorded file");
        type(dialog, "~/trip.nmea");
        ok(dialog);
    });
    EXPECT_EQ(PositionSourceSetting::text(), "file:" + QDir::homePath() + "/trip.nmea");
}

TEST_F(DlgPositionSourceTest, AMistakeIsSaidAndTheDialogStays) {
    const struct {
        const char* kind;
        QString typed;
        const char* message;
    } rows[] = {
        {"Serial device", "", "The device is missing.\n\nFor example /dev/ttyUSB0"},
        {"Serial device", "/dev/ttyUSB0@4801", "\"4801\" is not a speed of serial devices"},
        {"Serial device", "ttyUSB0", "The path does not start with / or ~/.\n\nFor example"},
        {"TCP server", "boat", "The port is missing.\n\nHOST:PORT, for example"},
        {"TCP server", "boat:70000", "The port \"70000\" is not a number from 1 to 65535."},
        {"UDP port", "", "The port \"\" is not a number from 1 to 65535."},
        {"UDP port", QString(5000, u'9'), "999...\" is not a number"},
        {"gpsd", "::1", "more than one colon (an IPv6 address stands in brackets)."},
        {"Recorded file", "", "The file is missing."},
        {"Recorded file", "trip.nmea", "The path does not start with / or ~/."},
        {"Recorded file", "/trip.nmea?rate=x", "The rate \"x\" is not a number from 0 to 1000."},
    };
    for (const auto& row : rows) {
        for (const bool isTrial : {false, true}) {
            DialogScript script;
            script.expect(kCaption, [&](QDialog& dialog) {
                choose(dialog, row.kind);
                addressField(dialog).clear();
                addressField(dialog).insert(row.typed); // as a clipboard does
                isTrial ? tryIt(dialog) : ok(dialog);
                EXPECT_TRUE(dialog.isVisible());
                EXPECT_EQ(dialog.focusWidget(), &addressField(dialog));
            });
            script.expect(kMessage, [&](QDialog& message) {
                const QString text = dynamic_cast<QMessageBox&>(message).text();
                EXPECT_THAT(text.toStdString(), HasSubstr(row.message));
                EXPECT_LT(text.size(), 300);
            });
            EXPECT_EQ(PositionSourceDialog(receiver).run(nullptr), Dialog::kCancel);
        }
    }
    EXPECT_EQ(PositionSourceSetting::text(), QString());
    EXPECT_EQ(FakeSource::opens, 0);
}

TEST_F(DlgPositionSourceTest, EachKindKeepsWhatWasTyped) {
    use(QStringLiteral("udp:10110"));
    run([](QDialog& dialog) {
        choose(dialog, "TCP server");
        EXPECT_EQ(addressField(dialog).text(), QString());
        type(dialog, "boat:1");
        choose(dialog, "None");
        EXPECT_FALSE(addressField(dialog).isEnabled());
        EXPECT_FALSE(control<QPushButton>(dialog, PositionSourceDialog::kTry).isEnabled());
        choose(dialog, "UDP port");
        EXPECT_EQ(addressField(dialog).text(), QStringLiteral("10110"));
        choose(dialog, "TCP server");
        EXPECT_EQ(addressField(dialog).text(), QStringLiteral("boat:1"));
    });
}

TEST_F(DlgPositionSourceTest, LookingDisturbsNothing) {
    use(QStringLiteral("udp:10110"));
    EXPECT_EQ(run(ok), Dialog::kOk);
    run([](QDialog& dialog) {
        choose(dialog, "TCP server");
        type(dialog, "boat:1");
    });
    EXPECT_EQ(FakeSource::opens, 1);
    EXPECT_EQ(PositionSourceSetting::text(), QStringLiteral("udp:10110"));
}

TEST_F(DlgPositionSourceTest, ASourceForThisRunStaysOneUnlessAnotherIsEntered) {
    use(QStringLiteral("udp:10110"));
    PositionSourceSetting::useForThisRun(QStringLiteral("file:log.nmea"));
    PositionSourceSetting::apply(receiver);
    const auto tryAndTake = [](QDialog& dialog) {
        EXPECT_EQ(inUse(dialog), "For this run: file:log.nmea");
        tryIt(dialog);
        ok(dialog);
    };
    EXPECT_EQ(run(tryAndTake), Dialog::kOk);
    EXPECT_TRUE(PositionSourceSetting::isForThisRun());
    EXPECT_EQ(PositionSourceSetting::text(), QStringLiteral("file:log.nmea"));

    run([](QDialog& dialog) {
        choose(dialog, "gpsd");
        ok(dialog);
    });
    EXPECT_FALSE(PositionSourceSetting::isForThisRun());
    EXPECT_EQ(PositionSourceSetting::text(), QStringLiteral("gpsd:"));
}

TEST_F(DlgPositionSourceTest, SettingsThatMakeNoSenseAreSaid) {
    use(QStringLiteral("udp:x"));
    run([](QDialog& dialog) {
        EXPECT_EQ(addressField(dialog).text(), QStringLiteral("x"));
        EXPECT_EQ(arrivals(dialog), "The port \"x\" is not a number from 1 to 65535.");
    });
    use(QStringLiteral("nonsense"));
    EXPECT_EQ(
        run([](QDialog& dialog) {
            EXPECT_THAT(arrivals(dialog), StartsWith("It does not start with serial:, tcp:,"));
            ok(dialog);
        }),
        Dialog::kOk
    );
    EXPECT_EQ(PositionSourceSetting::text(), QString());
}

TEST_F(DlgPositionSourceTest, ATrialEndsWithTheDialog) {
    use(QStringLiteral("udp:10110"));
    run([this](QDialog& dialog) {
        choose(dialog, "gpsd");
        tryIt(dialog);
        EXPECT_EQ(receiver.address()->kind, PositionSourceAddress::Kind::gpsd);
        EXPECT_EQ(inUse(dialog), "On trial: gpsd:");
        EXPECT_EQ(PositionSourceSetting::text(), QStringLiteral("udp:10110"));
    });
    EXPECT_EQ(receiver.address()->kind, PositionSourceAddress::Kind::udp);
    EXPECT_EQ(FakeSource::opens, 3);
}

TEST_F(DlgPositionSourceTest, ATrialThatIsTakenGoesOn) {
    run([](QDialog& dialog) {
        choose(dialog, "gpsd");
        tryIt(dialog);
        FakeSource::send(kSentence);
        ok(dialog);
    });
    EXPECT_EQ(PositionSourceSetting::text(), QStringLiteral("gpsd:"));
    EXPECT_EQ(FakeSource::opens, 1);
    EXPECT_EQ(receiver.counters().taken, 1U);
}

TEST_F(DlgPositionSourceTest, ATrialStartsTheCountsAnew) {
    use(QStringLiteral("udp:10110"));
    FakeSource::send(kSentence);
    run([this](QDialog& dialog) {
        FakeSource::send(kSentence);
        beat(3);
        EXPECT_THAT(arrivals(dialog), HasSubstr(", fix\n41°30.000'N, 105°15.000'W"));
        choose(dialog, "gpsd");
        tryIt(dialog);
        EXPECT_EQ(arrivals(dialog), "Open; read 0 bytes");
        beat(3);
        EXPECT_EQ(arrivals(dialog), "No sentences, no fix\nOpen; read 0 bytes");
    });
}

// What a person sees who looks on while a real server starts, sends, stops and comes back.
TEST_F(DlgPositionSourceTest, TheLinesLiveWithARealServer) {
    EventLoop loop;
    QtTimers realTimers;
    PositionReceiver real(realTimers);
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress(QStringLiteral("127.0.0.1"))));
    std::unique_ptr<QTcpSocket> peer;
    const auto accept = [&] {
        ASSERT_TRUE(loop.until([&server] { return server.hasPendingConnections(); }));
        peer.reset(server.nextPendingConnection());
    };
    const auto send = [&](int times) {
        const std::uint64_t before = real.counters().taken;
        for (int i = 0; i < times; ++i) {
            peer->write(kSentence);
        }
        ASSERT_TRUE(loop.until([&] { return real.counters().taken == before + times; }));
    };
    DialogScript script;
    script.expect(kCaption, [&](QDialog& dialog) {
        beat(2);
        EXPECT_EQ(arrivals(dialog), "No position source");
        choose(dialog, "TCP server");
        type(dialog, QStringLiteral("127.0.0.1:%1").arg(server.serverPort()));
        tryIt(dialog);
        accept();
        beat(2);
        send(4);
        beat(1);
        EXPECT_THAT(
            arrivals(dialog),
            AllOf(HasSubstr(" sentences per second, fix\n41°30"), HasSubstr(": 4 taken"))
        );
        peer->write("rubbish $GPRMC,no sum*00\r\n");
        ASSERT_TRUE(loop.until([&] { return real.counters().wrongChecksum == 1; }));
        beat(1);
        EXPECT_THAT(arrivals(dialog), HasSubstr("4 taken, 1 with a wrong checksum"));

        peer->disconnectFromHost();
        ASSERT_TRUE(loop.until([&real] { return real.state() == State::waiting; }));
        beat(10);
        EXPECT_THAT(
            arrivals(dialog),
            AllOf(StartsWith("No sentences, no fix\n127.0.0.1:"), HasSubstr("after 1 s"))
        );
        accept(); // the receiver comes again by itself
        send(1);
        beat(1);
        EXPECT_THAT(arrivals(dialog), AllOf(HasSubstr(", fix\n"), Not(HasSubstr("127.0.0.1"))));
        ok(dialog);
    });
    EXPECT_EQ(PositionSourceDialog(real).run(nullptr), Dialog::kOk);
    EXPECT_EQ(real.state(), State::open);
    EXPECT_EQ(
        PositionSourceSetting::text(), QStringLiteral("tcp:127.0.0.1:%1").arg(server.serverPort())
    );
    send(1);
}

} // namespace
} // namespace raincast
