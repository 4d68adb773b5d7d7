// SPDX-License-Identifier: MIT
#include "golden_test.h"

#include "controls.h"
#include "core/text.h"
#include "layout_rules.h"
#include "picture.h"
#include "window/screen_metrics.h"
#include "window/screen_style.h"

#include <QApplication>
#include <QFontInfo>
#include <QLocale>
#include <QPixmap>
#include <QStyle>
#include <QTranslator>
#include <QWidget>

namespace raincast::test {

namespace {

// The dots of a handheld's screen of 240 by 320 are this small.
constexpr double kHandheldDotsPerMillimetre = 4.4;

void useTouchScreen() {
    ScreenMetrics screen = ScreenMetrics::current();
    screen.touch = true;
    screen.dotsPerMillimetre = kHandheldDotsPerMillimetre;
    ScreenMetrics::use(screen);
}

// The words of another language, where the run is in one.
void useWords() {
    const QString file = qEnvironmentVariable("RAINCAST_GOLDEN_WORDS");
    if (file.isEmpty()) {
        return;
    }
    static QTranslator words;
    static const QLocale spanish(QStringLiteral("es_ES"));
    EXPECT_TRUE(words.load(file)) << qPrintable(file);
    const QLocale* const users = goldenRun() == u"spanish" ? &spanish : nullptr;
    Text::use({&words, users, users});
}

bool hasPictures() {
    return qEnvironmentVariableIsEmpty("RAINCAST_GOLDEN_WORDS");
}

bool prepare() {
    useWords();
    QApplication::setCursorFlashTime(0);
    if (goldenRun() == u"touch") {
        useTouchScreen();
    }
    useScreenStyle();
    QApplication::setPalette(QApplication::style()->standardPalette());
    return true;
}

} // namespace

QString goldenRun() {
    return qEnvironmentVariable("RAINCAST_GOLDEN_RUN", QStringLiteral("x1"));
}

QString said(const char* source) {
    return Text::of(source).section(u'\t', 0, 0).remove(u'&');
}

GoldenTest::GoldenTest() {
    [[maybe_unused]] static const bool prepared = prepare();
    EXPECT_EQ(QFontInfo(QApplication::font()).family().toStdString(), "DejaVu Sans")
        << "The package fonts-dejavu-core is missing.";
}

void GoldenTest::look(const QString& name, QWidget& window) {
    settle();
    EXPECT_EQ(complaintsAbout(window).join(u'\n').toStdString(), "") << qPrintable(name);
    if (hasPictures()) {
        expectGolden(name, window.grab().toImage(), describe(window));
        return;
    }
    if (goldenRun() == u"pseudo") {
        EXPECT_EQ(englishIn(window).join(u'\n').toStdString(), "") << qPrintable(name);
    }
    if (const QString folder = qEnvironmentVariable("RAINCAST_GOLDEN_LOOK"); !folder.isEmpty()) {
        EXPECT_TRUE(window.grab().save(folder + u'/' + name + QStringLiteral(".png")));
    }
}

} // namespace raincast::test
