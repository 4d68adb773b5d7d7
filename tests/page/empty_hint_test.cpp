// SPDX-License-Identifier: MIT
#include "page/empty_hint.h"
#include "page/sample_pages.h"

#include <QApplication>
#include <QLabel>
#include <QPointer>

#include <gtest/gtest.h>

namespace raincast {
namespace {

class EmptyHintTest : public test::PagedTest {
protected:
    QString hint() {
        const auto* label = client().findChild<QLabel*>();
        return label != nullptr && label->isVisible() ? label->text() : QString();
    }
};

TEST_F(EmptyHintTest, ItSaysHowToAddAPageOrToShowOne) {
    app.clear();
    EXPECT_TRUE(hint().contains(QStringLiteral("add one"))) << qPrintable(hint());
    EXPECT_TRUE(hint().contains(QStringLiteral("\"Pages...\""))) << qPrintable(hint());
    addPages({u"A"});
    app.select(0);
    EXPECT_EQ(hint(), QString());
    app.select(std::nullopt);
    EXPECT_TRUE(hint().contains(QStringLiteral("Page Down"))) << qPrintable(hint());
    EXPECT_FALSE(hint().contains(QStringLiteral("Pages..."))) << qPrintable(hint());
    app.remove(0);
    EXPECT_TRUE(hint().contains(QStringLiteral("add one"))) << qPrintable(hint());
}

TEST_F(EmptyHintTest, ItFillsTheClientAreaAndFollowsItsSize) {
    app.clear();
    const auto& label = *client().findChild<QLabel*>();
    EXPECT_EQ(label.geometry(), client().rect());
    window.resize(240, 200);
    test::settle();
    EXPECT_EQ(label.geometry(), client().rect());
    // All of the text has room.
    EXPECT_LE(label.heightForWidth(label.width()), label.height());
    const QImage picture = client().grab().toImage();
    const QRgb base = client().palette().color(QPalette::Base).rgb();
    EXPECT_EQ(picture.pixel(0, 0), base);
    int inked = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            inked += picture.pixel(x, y) != base ? 1 : 0;
        }
    }
    EXPECT_GT(inked, 0);
}

TEST_F(EmptyHintTest, AClientAreaThatIsGoneIsLeftAlone) {
    auto area = std::make_unique<QWidget>();
    EmptyHint emptyHint(*area);
    const QPointer<QLabel> label = area->findChild<QLabel*>();
    ASSERT_NE(label, nullptr);
    area.reset();
    EXPECT_EQ(label, nullptr);
    const auto others = QApplication::allWidgets().size();
    emptyHint.show(QStringLiteral("text"));
    emptyHint.fit();
    EXPECT_EQ(QApplication::allWidgets().size(), others) << "no label of its own on the desktop";
}

} // namespace
} // namespace raincast
