// SPDX-License-Identifier: MIT
#include "persist/page_file.h"
#include "sample_bytes.h"
#include "support/full_disk.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace raincast {
namespace {

class PageFileTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(m_folder.isValid()); }

    QString path(const char* name = "pages.cfg") const {
        return m_folder.filePath(QString::fromLatin1(name));
    }
    void put(const char* name, const QByteArray& bytes) const {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }
    /// The bytes of a file; null when it is missing.
    QByteArray get(const char* name) const {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() + QByteArray("") : QByteArray();
    }
    bool has(const char* name) const { return QFileInfo::exists(path(name)); }

    QTemporaryDir m_folder;
    SampleApplication m_application;
};

const QByteArray kGood = toByteArray(sampleFile());
const QByteArray kOther = toByteArray(join(number(1), kSecondPage));
const QByteArray kCut = kGood.left(100);

TEST_F(PageFileTest, LoadsAndSaves) {
    put("pages.cfg", kGood);
    PageFile file(path());
    EXPECT_TRUE(file.load(m_application));
    EXPECT_TRUE(file.whole());
    EXPECT_EQ(m_application.pages.size(), 2U);
    put("pages.cfg", "something else");
    EXPECT_TRUE(file.save(m_application));
    EXPECT_EQ(get("pages.cfg"), kGood);
}

TEST_F(PageFileTest, AMissingFileHasNoPagesAndIsCreatedBySaving) {
    PageFile file(path());
    EXPECT_FALSE(file.load(m_application));
    EXPECT_FALSE(file.whole());
    EXPECT_TRUE(m_application.pages.empty());
    EXPECT_TRUE(file.save(m_application));
    EXPECT_EQ(get("pages.cfg"), QByteArray(4, '\0'));
    EXPECT_FALSE(has("pages.cfg.bak"));
}

TEST_F(PageFileTest, AFileOfNoBytesHasNoPagesAndIsNotKept) {
    put("pages.cfg", {});
    PageFile file(path());
    EXPECT_FALSE(file.load(m_application));
    EXPECT_FALSE(file.whole());
    EXPECT_TRUE(m_application.pages.empty());
    EXPECT_TRUE(file.save(m_application));
    EXPECT_FALSE(has("pages.cfg.bak"));
}

TEST_F(PageFileTest, AMissingFolderIsNotCreated) {
    PageFile file(path("none/pages.cfg"));
    EXPECT_FALSE(file.load(m_application));
    EXPECT_FALSE(file.save(m_application));
    EXPECT_FALSE(has("none"));
}

TEST_F(PageFileTest, LoadingAloneKeepsNothing) {
    put("pages.cfg", kGood);
    EXPECT_TRUE(PageFile(path()).load(m_application));
    EXPECT_FALSE(has("pages.cfg.bak"));
}

TEST_F(PageFileTest, WhatWasLoadedIsKeptBeforeTheFirstSave) {
    put("pages.cfg", kGood);
    put("pages.cfg.bak", "the run before");
    PageFile file(path());
    EXPECT_TRUE(file.load(m_application));
    EXPECT_EQ(get("pages.cfg.bak"), "the run before");
    m_application.pages.erase(m_application.pages.begin());
    EXPECT_TRUE(file.save(m_application));
    EXPECT_EQ(get("pages.cfg.bak"), kGood);
    EXPECT_EQ(get("pages.cfg"), kOther);
    // A second save of the run leaves it alone.
    m_application.pages.clear();
    EXPECT_TRUE(file.save(m_application));
    EXPECT_EQ(get("pages.cfg.bak"), kGood);
}

TEST_F(PageFileTest, ADamagedFileDoesNotReplaceWhatIsKept) {
    const QByteArray damaged[] = {
        kCut, QByteArray(4096, '\0'), {}, kGood + QByteArray(1, '\0'), QByteArray("\1\0\0", 3)};
    for (const QByteArray& bytes : damaged) {
        put("pages.cfg", bytes);
        put("pages.cfg.bak", kGood);
        SampleApplication application;
        PageFile file(path());
        file.load(application);
        EXPECT_FALSE(file.whole());
        EXPECT_TRUE(file.save(application));
        EXPECT_EQ(get("pages.cfg.bak"), kGood);
    }
}

TEST_F(PageFileTest, ADamagedFileIsKeptWhereNothingElseIs) {
    put("pages.cfg", kCut);
    PageFile file(path());
    EXPECT_TRUE(file.load(m_application));
    EXPECT_TRUE(file.save(m_application));
    EXPECT_EQ(get("pages.cfg.bak"), kCut);
}

TEST_F(PageFileTest, AFileThatWentMissingDoesNotReplaceWhatIsKept) {
    put("pages.cfg.bak", kGood);
    PageFile file(path());
    EXPECT_FALSE(file.load(m_application));
    EXPECT_TRUE(file.save(m_application));
    EXPECT_EQ(get("pages.cfg.bak"), kGood);
}

TEST_F(PageFileTest, AFileThatCameAfterTheLoadIsKeptBeforeTheFirstSave) {
    put("pages.cfg.bak", kOther);
    PageFile file(path());
    EXPECT_FALSE(file.load(m_application));
    put("pages.cfg", kGood);
    EXPECT_TRUE(file.save(m_application));
    EXPECT_EQ(get("pages.cfg"), QByteArray(4, '\0'));
    EXPECT_EQ(get("pages.cfg.bak"), kGood);
    // What stands there now was written by this run.
    EXPECT_TRUE(file.save(m_application));
    EXPECT_EQ(get("pages.cfg.bak"), kGood);
}

TEST_F(PageFileTest, AFileThatCameAfterTheLoadIsNotWrittenOverUnlessItIsKept) {
    PageFile file(path());
    EXPECT_FALSE(file.load(m_application));
    put("pages.cfg", kGood);
    {
        const FullDisk disk(50);
        EXPECT_FALSE(file.save(m_application));
    }
    EXPECT_EQ(get("pages.cfg"), kGood);
    EXPECT_FALSE(has("pages.cfg.bak"));
    ASSERT_TRUE(QFile::resize(path(), PageFile::kMaxSize + 1));
    EXPECT_FALSE(file.save(m_application));
    EXPECT_EQ(QFileInfo(path()).size(), PageFile::kMaxSize + 1);
    put("pages.cfg", kGood);
    EXPECT_TRUE(file.save(m_application));
    EXPECT_EQ(get("pages.cfg.bak"), kGood);
}

TEST_F(PageFileTest, ASaveThatIsCutOffIsNotTakenForAnotherFile) {
    put("pages.cfg", kOther);
    SampleApplication pages;
    ASSERT_TRUE(PageFile(path()).load(pages));
    ASSERT_TRUE(QFile::remove(path()));
    PageFile file(path());
    EXPECT_FALSE(file.load(m_application));
    {
        const FullDisk disk(10);
        EXPECT_FALSE(file.save(pages));
    }
    EXPECT_EQ(get("pages.cfg").size(), 10);
    EXPECT_TRUE(file.save(pages));
    EXPECT_FALSE(has("pages.cfg.bak"));
}

TEST_F(PageFileTest, PagesSurviveAPowerCutDuringASaveAndTheRunsAfterIt) {
    put("pages.cfg", kGood);
    for (const rlim_t cutAt : {0, 3, 4, 30, 245, 270}) {
        {
            SampleApplication application;
            PageFile file(path());
            ASSERT_TRUE(file.load(application));
            ASSERT_TRUE(file.save(application));
            // The first save made the .bak file; this one is cut, and the run ends.
            const FullDisk disk(cutAt);
            EXPECT_FALSE(file.save(application));
        }
        EXPECT_EQ(get("pages.cfg"), kGood.left(static_cast<qsizetype>(cutAt)));
        EXPECT_EQ(get("pages.cfg.bak"), kGood);
        // The next run loads what is there and saves it: the pages still are in the .bak file.
        SampleApplication rest;
        PageFile file(path());
        file.load(rest);
        EXPECT_FALSE(file.whole());
        EXPECT_TRUE(file.save(rest));
        EXPECT_EQ(get("pages.cfg.bak"), kGood);
        // The user puts them back.
        ASSERT_TRUE(QFile::remove(path()));
        ASSERT_TRUE(QFile::copy(path("pages.cfg.bak"), path()));
    }
}

TEST_F(PageFileTest, WithoutTheKeptFileNothingIsSaved) {
    put("pages.cfg", kGood);
    put("pages.cfg.bak", kOther);
    PageFile file(path());
    ASSERT_TRUE(file.load(m_application));
    m_application.pages.clear();
    {
        const FullDisk disk(50);
        EXPECT_FALSE(file.save(m_application));
    }
    EXPECT_EQ(get("pages.cfg"), kGood);
    EXPECT_EQ(get("pages.cfg.bak"), kOther);
    // With room again, the same run keeps and saves.
    EXPECT_TRUE(file.save(m_application));
    EXPECT_EQ(get("pages.cfg"), QByteArray(4, '\0'));
    EXPECT_EQ(get("pages.cfg.bak"), kGood);
}

TEST_F(PageFileTest, ALaterLoadOfTheSameRunStartsTheRuleAnew) {
    put("pages.cfg", kGood);
    PageFile file(path());
    ASSERT_TRUE(file.load(m_application));
    ASSERT_TRUE(file.save(m_application));
    put("pages.cfg", kOther);
    SampleApplication again;
    ASSERT_TRUE(file.load(again));
    ASSERT_TRUE(file.save(again));
    EXPECT_EQ(get("pages.cfg.bak"), kOther);
}

TEST_F(PageFileTest, APipeOrAFolderIsNeitherReadNorWritten) {
    ASSERT_EQ(mkfifo(qPrintable(path()), 0600), 0);
    PageFile pipe(path());
    EXPECT_FALSE(pipe.load(m_application));
    EXPECT_FALSE(pipe.save(m_application));
    EXPECT_FALSE(PageFile(path()).save(m_application));

    PageFile folder(m_folder.path());
    EXPECT_FALSE(folder.load(m_application));
    EXPECT_FALSE(folder.save(m_application));
}

TEST_F(PageFileTest, AFileTooLargeIsReadToTheLimit) {
    put("pages.cfg", kGood);
    ASSERT_TRUE(QFile::resize(path(), PageFile::kMaxSize + 1));
    PageFile file(path());
    EXPECT_TRUE(file.load(m_application));
    EXPECT_FALSE(file.whole());
    EXPECT_EQ(m_application.pages.size(), 2U);
}

TEST_F(PageFileTest, AFileThatCannotBeReadIsNotWrittenOver) {
    put("pages.cfg", kGood);
    // Everybody could write it, and find it, but not read it.
    ASSERT_EQ(chmod(qPrintable(path()), 0222), 0);
    ASSERT_EQ(chmod(qPrintable(m_folder.path()), 0777), 0);
    // Root may read everything, so it steps down for a moment.
    const uid_t user = geteuid();
    const uid_t nobody = 65534;
    if (user == 0 && seteuid(nobody) != 0) {
        GTEST_SKIP() << "root cannot step down here";
    }
    PageFile file(path());
    EXPECT_FALSE(file.load(m_application));
    EXPECT_FALSE(file.save(m_application));
    EXPECT_EQ(seteuid(user), 0);
    ASSERT_EQ(chmod(qPrintable(path()), 0600), 0);
    EXPECT_EQ(get("pages.cfg"), kGood);
    EXPECT_FALSE(has("pages.cfg.bak"));
}

} // namespace
} // namespace raincast
