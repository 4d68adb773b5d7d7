// SPDX-License-Identifier: MIT
#include "core/program_paths.h"

#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <unistd.h>

namespace raincast {
namespace {

TEST(ProgramPathsTest, TheProgramsFolderHoldsTheProgram) {
    EXPECT_TRUE(QFileInfo::exists(programFolder() + QStringLiteral("/core_tests")));
    EXPECT_FALSE(programFolder().endsWith(u'/'));
}

// The folder as a child process prints it that was started through a link from elsewhere.
TEST(ProgramPathsTest, LinksToTheProgramAreResolved) {
    if (qEnvironmentVariableIsSet("RAINCAST_PRINT_FOLDER")) {
        std::printf("folder=%s\n", qPrintable(programFolder()));
        return;
    }
    const QTemporaryDir elsewhere;
    const QString link = elsewhere.filePath(QStringLiteral("linked"));
    ASSERT_TRUE(QFile::link(programFolder() + QStringLiteral("/core_tests"), link));
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("RAINCAST_PRINT_FOLDER"), QStringLiteral("1"));
    child.setProcessEnvironment(environment);
    child.start(link, {QStringLiteral("--gtest_filter=ProgramPathsTest.LinksToTheProgram*")});
    ASSERT_TRUE(child.waitForFinished());
    const QString output = QString::fromLocal8Bit(child.readAllStandardOutput());
    EXPECT_TRUE(output.contains(QStringLiteral("folder=") + programFolder() + u'\n'))
        << qPrintable(output);
}

TEST(ProgramPathsTest, TheDirectoryPartEndsBeforeTheLastSlash) {
    struct Row {
        const char16_t* path;
        const char16_t* directory;
    };
    const Row rows[] = {
        {u"/home/user/pages.cfg", u"/home/user"},
        {u"maps/", u"maps"},
        {u"a\\b/c", u"a\\b"},
        {u"/pages.cfg", u""},
        {u"pages.cfg", u""},
        {u"", u""},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(directoryPart(QStringView(row.path).toString()), QStringView(row.directory));
    }
}

} // namespace
} // namespace raincast
