// SPDX-License-Identifier: MIT
// Runs the program in a language that is not English.
#include "support/files.h"
#include "support/qt_app.h"
#include "support/temporary_home.h"

#include <QImage>
#include <QProcess>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <utility>

namespace raincast {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr int kDeadline = 60'000; // milliseconds

class LanguageTest : public test::GuiTest {
protected:
    test::TemporaryHome home;
    QProcessEnvironment environment = home.environment();

    LanguageTest() {
        for (const char* name : {"LC_MESSAGES", "LC_NUMERIC", "LC_TIME"}) {
            environment.remove(name);
        }
        speakEnglish();
    }
    void speakEnglish() {
        environment.insert("LC_ALL", "C.UTF-8");
        environment.insert("LANGUAGE", "en");
    }
    // No locale need be installed for it.
    void speakSpanish() {
        environment.insert("LC_ALL", "es_ES.UTF-8");
        environment.insert("LANGUAGE", "es");
    }

    void start(QProcess& process, const QStringList& arguments) const {
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(home.root());
        const QStringList noProviders = {
            "--live-arguments", "--live-frames none --live-fallback none --live-warnings none"};
        process.start(QStringLiteral(RAINCAST_PROGRAM), noProviders + arguments);
        EXPECT_TRUE(process.waitForStarted(kDeadline));
    }
    /// What a run says, to either stream.
    std::string said(const QStringList& arguments) const {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        start(process, arguments);
        EXPECT_TRUE(process.waitForFinished(kDeadline));
        return process.readAll().toStdString();
    }
    /// The files of a first run that ends as soon as it has its pages: its pages and its settings.
    std::pair<QByteArray, QByteArray> filesOfARun() const {
        QProcess process;
        start(process, {});
        EXPECT_TRUE(
            QTest::qWaitFor([this] { return QDir(home.programFolder()).exists(); }, kDeadline)
        );
        kill(static_cast<pid_t>(process.processId()), SIGTERM);
        EXPECT_TRUE(process.waitForFinished(kDeadline));
        const std::pair files{readFile(home.pageFile()), readFile(home.userRegistry())};
        EXPECT_TRUE(QFile::remove(home.pageFile()));
        EXPECT_TRUE(QFile::remove(home.userRegistry()));
        QDir(home.programFolder()).removeRecursively();
        return files;
    }
    QImage picture() const {
        const QString file = home.path("look.png");
        said({"--screenshot", file, "--geometry", "240x320", "--radar-server", "127.0.0.1:1"});
        const QImage image(file);
        EXPECT_EQ(image.size(), QSize(240, 320));
        return image;
    }
};

TEST_F(LanguageTest, HelpAndMistakesAreToldInIt) {
    const std::string help = "Show this help.";
    EXPECT_THAT(said({"--help"}), HasSubstr(help));
    speakSpanish();
    EXPECT_THAT(said({"--help"}), AllOf(HasSubstr("Muestra esta ayuda."), Not(HasSubstr(help))));
    EXPECT_THAT(said({"--help"}), AllOf(HasSubstr("Uso: "), HasSubstr("[opciones]")));
    EXPECT_THAT(said({"--help"}), Not(HasSubstr("Options:")));
    EXPECT_THAT(
        said({"--nosuch"}), HasSubstr("raincast: Opción desconocida 'nosuch'.\nPruebe raincast")
    );
    EXPECT_THAT(said({"--site"}), HasSubstr("raincast: Falta un valor tras '--site'.\n"));
    EXPECT_THAT(said({"--site", "XXX"}), HasSubstr("raincast: No existe la estación XXX.\nPruebe"));
    environment.insert("LC_ALL", "C.UTF-8");
    EXPECT_THAT(said({"--help"}), HasSubstr("Muestra esta ayuda."));
    environment.insert("LC_ALL", "C");
    EXPECT_THAT(said({"--help"}), HasSubstr(help));
}

TEST_F(LanguageTest, ScriptsReadTheSameVersionInEveryLanguage) {
    const std::string version = said({"--version"});
    speakSpanish();
    EXPECT_EQ(said({"--version"}), version);
}

TEST_F(LanguageTest, TheWindowIsInIt) {
    const QImage english = picture();
    EXPECT_EQ(picture(), english);
    speakSpanish();
    const QImage spanish = picture();
    // The menu's title in the bar.
    const QRect title(0, 0, 60, 20);
    EXPECT_NE(spanish.copy(title), english.copy(title));
}

TEST_F(LanguageTest, FilesAreTheSameInEveryLanguage) {
    const auto [pages, settings] = filesOfARun();
    EXPECT_FALSE(pages.isEmpty());
    EXPECT_FALSE(settings.isEmpty());
    speakSpanish();
    const auto [spanishPages, spanishSettings] = filesOfARun();
    EXPECT_EQ(spanishPages, pages);
    EXPECT_EQ(spanishSettings, settings);
}

} // namespace
} // namespace raincast
