// SPDX-License-Identifier: MIT
#include "persist/page_file.h"
#include "sample_bytes.h"
#include "support/full_disk.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <random>

namespace raincast {
namespace {

using State = PageFile::State;

class PageFileTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(m_folder.isValid()); }

    QString path(const char* name = "pages.cfg") const {
        return m_folder.filePath(QString::fromUtf8(name));
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
    /// The names of what is in the folder.
    std::string names() const {
        return QDir(m_folder.path())
            .entryList(QDir::Files | QDir::Hidden | QDir::System)
            .join(u' ')
            .toStdString();
    }
    PageFile fileAt(const char* name = "pages.cfg") const { return fileOf(path(name)); }
    static PageFile fileOf(const QString& path) { return {path, examinePages<SampleApplication>}; }
    /// Looks at the file; what it holds is in the application.
    State load(PageFile& file) { return file.look(m_application); }
    static State look(PageFile& file) {
        SampleApplication nobody;
        return file.look(nobody);
    }

    QTemporaryDir m_folder;
    SampleApplication m_application;
};

const QByteArray kGood = toByteArray(sampleFile());
const QByteArray kOther = toByteArray(join(number(1), kSecondPage));
const QByteArray kNone = toByteArray(number(0));
const QByteArray kThree = toByteArray(join(number(3), kSecondPage, kSecondPage, kSecondPage));
const QByteArray kCut = kGood.left(100);

TEST_F(PageFileTest, LoadsAndSaves) {
    put("pages.cfg", kGood);
    PageFile file = fileAt();
    EXPECT_EQ(load(file), State::whole);
    EXPECT_FALSE(file.untouchable());
    EXPECT_EQ(m_application.pages.size(), 2U);
    put("pages.cfg", "something else");
    EXPECT_TRUE(file.save(m_application));
    EXPECT_EQ(get("pages.cfg"), kGood);
}

TEST_F(PageFileTest, WhatWasFoundCanBeLoadedOnceMore) {
    put("pages.cfg", kGood);
    PageFile file = fileAt();
    EXPECT_EQ(load(file), State::whole);
    SampleApplication again;
    EXPECT_TRUE(file.load(again));
    EXPECT_EQ(again.pages.size(), 2U);
    EXPECT_EQ(m_application.pages.size(), 2U);
    EXPECT_EQ(names(), "pages.cfg");
}

TEST_F(PageFileTest, AMissingFileHasNoPagesAndIsCreatedBySaving) {
    PageFile file = fileAt();
    EXPECT_EQ(look(file), State::absent);
    EXPECT_FALSE(file.load(m_application));
    EXPECT_TRUE(m_application.pages.empty());
    EXPECT_TRUE(file.save(m_application));
    EXPECT_EQ(get("pages.cfg"), kNone);
    EXPECT_EQ(names(), "pages.cfg");
}

/// Finds everything in order, bytes or none.
class Undemanding : public CSerializable {
public:
    bool Read(CSerialReader& /*reader*/) override { return true; }
    bool Write(CSerialWriter& /*writer*/) const override { return true; }
    std::uint32_t GetTypeId() const override { return 0; }
};

TEST_F(PageFileTest, NothingIsLoadedOfAFileThatIsMissingOrCannotBeRead) {
    Undemanding application;
    for (const char* const name : {"none.cfg", "."}) {
        PageFile file = fileAt(name);
        EXPECT_NE(file.look(application), State::whole) << name;
        EXPECT_FALSE(file.load(application)) << name;
    }
}

TEST_F(PageFileTest, AFileOfNoBytesHasNoPagesAndIsNotKept) {
    put("pages.cfg", {});
    PageFile file = fileAt();
    EXPECT_EQ(look(file), State::partly);
    EXPECT_FALSE(file.offer());
    EXPECT_FALSE(file.load(m_application));
    EXPECT_TRUE(m_application.pages.empty());
    EXPECT_TRUE(file.save(m_application));
    EXPECT_EQ(names(), "pages.cfg");
}

TEST_F(PageFileTest, AMissingFolderIsNotCreated) {
    PageFile file = fileAt("none/pages.cfg");
    EXPECT_EQ(load(file), State::absent);
    const auto saved = file.save(m_application);
    ASSERT_FALSE(saved);
    EXPECT_EQ(saved.error(), "No such file or directory");
    EXPECT_FALSE(has("none"));
}

TEST_F(PageFileTest, APathOfAnyLettersIsOne) {
    ASSERT_TRUE(QDir(m_folder.path()).mkpath("Z\u00FCrich \u6771\u4EAC 100%1"));
    const char* const name = "Z\u00FCrich \u6771\u4EAC 100%1/pages \u2602.cfg";
    PageFile file = fileAt(name);
    EXPECT_EQ(load(file), State::absent);
    fillSample(m_application);
    EXPECT_TRUE(file.save(m_application));
    EXPECT_EQ(get(name), kGood);
    SampleApplication again;
    PageFile second = fileAt(name);
    EXPECT_EQ(look(second), State::whole);
    EXPECT_TRUE(second.load(again));
    EXPECT_TRUE(second.save(again));
    EXPECT_EQ(QFile::exists(path(name) + ".bak"), true);
}

TEST_F(PageFileTest, ALinkStaysOne) {
    ASSERT_TRUE(QDir(m_folder.path()).mkdir("kept"));
    ASSERT_EQ(symlink("kept/mine.cfg", qPrintable(path())), 0);
    PageFile file = fileAt();
    EXPECT_EQ(load(file), State::absent); // it leads nowhere yet
    EXPECT_TRUE(file.save(m_application));
    EXPECT_TRUE(QFileInfo(path()).isSymLink());
    EXPECT_EQ(get("kept/mine.cfg"), kNone);
}

TEST_F(PageFileTest, LoadingAloneKeepsNothing) {
    put("pages.cfg", kGood);
    PageFile file = fileAt();
    EXPECT_EQ(load(file), State::whole);
    EXPECT_EQ(names(), "pages.cfg");
}

TEST_F(PageFileTest, WhatWasLoadedIsKeptBeforeTheFirstSave) {
    put("pages.cfg", kGood);
    put("pages.cfg.bak", kOther);
    PageFile file = fileAt();
    EXPECT_EQ(load(file), State::whole);
    EXPECT_EQ(get("pages.cfg.bak"), kOther);
    m_application.pages.erase(m_application.pages.begin());
    EXPECT_TRUE(file.save(m_application));
    EXPECT_EQ(get("pages.cfg.bak"), kGood);
    EXPECT_EQ(get("pages.cfg"), kOther);
    // A second save of the run leaves it alone.
    m_application.pages.clear();
    EXPECT_TRUE(file.save(m_application));
    EXPECT_EQ(get("pages.cfg.bak"), kGood);
    EXPECT_EQ(names(), "pages.cfg pages.cfg.bak");
}

TEST_F(PageFileTest, ALaterLoadOfTheSameRunStartsTheRuleAnew) {
    put("pages.cfg", kOther);
    PageFile file = fileAt();
    load(file);
    ASSERT_TRUE(file.save(m_application));
    put("pages.cfg", kGood);
    load(file);
    ASSERT_TRUE(file.save(m_application));
    EXPECT_EQ(get("pages.cfg.bak"), kGood);
}

// What cannot be read.

TEST_F(PageFileTest, WhatIsNoFileIsNeitherReadNorWritten) {
    ASSERT_EQ(mkfifo(qPrintable(path()), 0600), 0);
    PageFile pipe = fileAt();
    EXPECT_EQ(load(pipe), State::unreadable);
    EXPECT_EQ(pipe.reason(), "Not a regular file");
    EXPECT_FALSE(pipe.save(m_application));
    EXPECT_FALSE(fileAt().save(m_application));
    struct stat status {};
    ASSERT_EQ(stat(qPrintable(path()), &status), 0);
    EXPECT_TRUE(S_ISFIFO(status.st_mode));

    PageFile folder = fileOf(m_folder.path());
    EXPECT_EQ(load(folder), State::unreadable);
    EXPECT_EQ(folder.reason(), "Is a directory");
    EXPECT_FALSE(folder.save(m_application));
    EXPECT_EQ(names(), "pages.cfg");
}

TEST_F(PageFileTest, ADiskThatFailsMakesItUnreadable) {
    // The system's own file, of which no byte at its start can be read.
    ASSERT_EQ(symlink("/proc/self/mem", qPrintable(path())), 0);
    PageFile file = fileAt();
    EXPECT_EQ(load(file), State::unreadable);
    EXPECT_EQ(file.reason(), "Input/output error");
    EXPECT_TRUE(file.untouchable());
    const auto saved = file.save(m_application);
    ASSERT_FALSE(saved);
    EXPECT_EQ(saved.error(), "It is left as it is");
    EXPECT_EQ(QFile::symLinkTarget(path()), "/proc/self/mem");
    EXPECT_EQ(names(), "pages.cfg");
}

TEST_F(PageFileTest, AFileTooLargeIsUnreadable) {
    put("pages.cfg", kGood);
    put("pages.cfg.bak", kOther);
    ASSERT_TRUE(QFile::resize(path(), PageBytes::kMostBytes + 1));
    PageFile file = fileAt();
    EXPECT_EQ(load(file), State::unreadable);
    EXPECT_EQ(file.reason(), "Larger than 64 MiB");
    EXPECT_FALSE(file.offer());
    EXPECT_TRUE(m_application.pages.empty());
    EXPECT_FALSE(file.save(m_application));
    EXPECT_EQ(QFileInfo(path()).size(), PageBytes::kMostBytes + 1);
    EXPECT_EQ(get("pages.cfg.bak"), kOther);
}

TEST_F(PageFileTest, AFileOfTheLargestSizeIsRead) {
    EXPECT_EQ(PageBytes::kMostBytes, 67'108'864); // 64 MiB
    put("pages.cfg", kGood);
    ASSERT_TRUE(QFile::resize(path(), PageBytes::kMostBytes));
    PageFile file = fileAt();
    EXPECT_EQ(load(file), State::partly); // what stands behind the pages is none
    EXPECT_EQ(m_application.pages.size(), 2U);
}

/// Somebody without special rights, for as long as this lives; root may read everything.
class Nobody {
public:
    Nobody() : m_before(geteuid()), m_good(m_before != 0 || seteuid(65534) == 0) {}
    ~Nobody() { EXPECT_EQ(seteuid(m_before), 0); }
    Nobody(const Nobody&) = delete;
    Nobody& operator=(const Nobody&) = delete;
    bool good() const { return m_good; }

private:
    uid_t m_before;
    bool m_good;
};

TEST_F(PageFileTest, AFileThatMayNotBeReadIsNotWrittenOver) {
    put("pages.cfg", kGood);
    // Everybody could write it, and find it, but not read it.
    ASSERT_EQ(chmod(qPrintable(path()), 0222), 0);
    ASSERT_EQ(chmod(qPrintable(m_folder.path()), 0777), 0);
    {
        const Nobody nobody;
        if (!nobody.good()) {
            GTEST_SKIP() << "root cannot step down here";
        }
        PageFile file = fileAt();
        EXPECT_EQ(load(file), State::unreadable);
        EXPECT_EQ(file.reason(), "Permission denied");
        EXPECT_FALSE(file.save(m_application));
    }
    ASSERT_EQ(chmod(qPrintable(path()), 0600), 0);
    EXPECT_EQ(get("pages.cfg"), kGood);
    EXPECT_EQ(names(), "pages.cfg");
}

TEST_F(PageFileTest, AFolderThatMayNotBeWrittenSaysWhy) {
    put("pages.cfg", kGood);
    ASSERT_EQ(chmod(qPrintable(path()), 0666), 0);
    ASSERT_EQ(chmod(qPrintable(m_folder.path()), 0555), 0);
    {
        const Nobody nobody;
        if (!nobody.good()) {
            GTEST_SKIP() << "root cannot step down here";
        }
        PageFile file = fileAt();
        EXPECT_EQ(load(file), State::whole);
        const auto saved = file.save(m_application);
        ASSERT_FALSE(saved);
        EXPECT_EQ(saved.error(), "Its backup cannot be written: Permission denied");
    }
    ASSERT_EQ(chmod(qPrintable(m_folder.path()), 0700), 0);
    EXPECT_EQ(get("pages.cfg"), kGood);
}

// What was read in part.

TEST_F(PageFileTest, CutAtAnyByteItOffersItsBackup) {
    put("pages.cfg.bak", kGood);
    for (qsizetype size = 0; size < kGood.size(); ++size) {
        put("pages.cfg", kGood.left(size));
        PageFile file = fileAt();
        ASSERT_EQ(look(file), State::partly) << size;
        ASSERT_TRUE(file.offer()) << size;
        EXPECT_EQ(file.offer()->pages, 2U);
        // Until the answer nothing changes, whatever is loaded.
        SampleApplication part;
        file.load(part);
        EXPECT_LE(part.pages.size(), 2U);
        EXPECT_TRUE(file.untouchable());
        ASSERT_FALSE(file.save(part)) << size;
        ASSERT_EQ(get("pages.cfg"), kGood.left(size));
        ASSERT_EQ(get("pages.cfg.bak"), kGood);

        file.answerOffer(true);
        EXPECT_FALSE(file.untouchable());
        SampleApplication whole;
        EXPECT_TRUE(file.load(whole));
        EXPECT_EQ(whole.pages.size(), 2U);
        ASSERT_TRUE(file.save(whole)) << size;
        ASSERT_EQ(get("pages.cfg"), kGood);
        ASSERT_EQ(get("pages.cfg.bak"), kGood);
        EXPECT_EQ(file.backup().decidedAgainst(), "");
    }
}

TEST_F(PageFileTest, TheOfferTellsWhenTheBackupWasMade) {
    put("pages.cfg", kCut);
    put("pages.cfg.bak", kThree);
    const QDateTime made(QDate(2019, 5, 19), QTime(6, 0, 7));
    {
        QFile backup(path("pages.cfg.bak"));
        ASSERT_TRUE(backup.open(QIODevice::ReadWrite));
        ASSERT_TRUE(backup.setFileTime(made, QFileDevice::FileModificationTime));
    }
    PageFile file = fileAt();
    EXPECT_EQ(look(file), State::partly);
    ASSERT_TRUE(file.offer());
    EXPECT_EQ(file.offer()->date, made);
    EXPECT_EQ(file.offer()->pages, 3U);
}

TEST_F(PageFileTest, EveryKindOfDamageOffersTheBackup) {
    const QByteArray damaged[] = {
        kCut, QByteArray(4096, '\0'), {}, kGood + QByteArray(1, '\0'), QByteArray("\1\0\0", 3)};
    put("pages.cfg.bak", kGood);
    for (const QByteArray& bytes : damaged) {
        put("pages.cfg", bytes);
        PageFile file = fileAt();
        EXPECT_EQ(look(file), State::partly);
        EXPECT_TRUE(file.offer());
    }
}

TEST_F(PageFileTest, ABackupThatIsNoBetterIsNotOffered) {
    put("pages.cfg", kCut);
    for (const QByteArray& backup : {kCut, kNone, QByteArray(), QByteArray(4096, '\0')}) {
        put("pages.cfg.bak", backup);
        PageFile file = fileAt();
        EXPECT_EQ(look(file), State::partly);
        EXPECT_FALSE(file.offer());
        EXPECT_FALSE(file.untouchable());
    }
    ASSERT_TRUE(QFile::remove(path("pages.cfg.bak")));
    ASSERT_TRUE(QDir(m_folder.path()).mkdir("pages.cfg.bak"));
    PageFile file = fileAt();
    EXPECT_EQ(look(file), State::partly);
    EXPECT_FALSE(file.offer());
    EXPECT_TRUE(file.save(m_application));
}

TEST_F(PageFileTest, ADamagedBackupIsOfferedForWhatItHasWhole) {
    put("pages.cfg", {});
    put("pages.cfg.bak", kThree.left(kThree.size() - 1));
    PageFile file = fileAt();
    EXPECT_EQ(look(file), State::partly);
    ASSERT_TRUE(file.offer());
    EXPECT_EQ(file.offer()->pages, 2U);
}

TEST_F(PageFileTest, DeclinedItStaysForThisRunAndGivesWayToTheNext) {
    put("pages.cfg", kThree.left(4 + 27 + 9));
    put("pages.cfg.bak", kGood);
    QString declined;
    {
        PageFile file = fileAt();
        EXPECT_EQ(look(file), State::partly);
        file.answerOffer(false);
        EXPECT_TRUE(file.load(m_application));
        m_application.pages.resize(1); // the first was whole, of the second there was a part
        EXPECT_TRUE(file.save(m_application));
        EXPECT_EQ(get("pages.cfg"), kOther);
        EXPECT_EQ(get("pages.cfg.bak"), kGood);
        declined = file.backup().decidedAgainst();
        EXPECT_NE(declined, "");
    }
    {
        PageFile file = fileAt();
        file.backup().setDecidedAgainst(declined);
        EXPECT_EQ(load(file), State::whole);
        EXPECT_FALSE(file.offer());
        m_application.pages.resize(1);
        EXPECT_TRUE(file.save(m_application));
    }
    EXPECT_EQ(get("pages.cfg.bak"), kOther);
}

TEST_F(PageFileTest, ADamagedFileIsKeptWhereNothingElseIs) {
    for (const QByteArray& worthless : {QByteArray(), kNone}) {
        put("pages.cfg", kThree.left(40));
        QFile::remove(path("pages.cfg.bak"));
        if (!worthless.isEmpty()) {
            put("pages.cfg.bak", worthless);
        }
        PageFile file = fileAt();
        EXPECT_EQ(load(file), State::partly);
        EXPECT_TRUE(file.save(m_application));
        EXPECT_EQ(get("pages.cfg.bak"), kThree.left(40));
    }
}

// The better of two.

TEST_F(PageFileTest, FewerWholePagesDoNotReplaceMore) {
    const struct {
        QByteArray loaded;
        QByteArray backup;
        bool replaced;
    } rows[] = {
        {kOther, kGood, false},   {kGood, kThree, false}, {kOther, kThree, false},
        {kNone, kOther, false},   {kGood, kOther, true},  {kThree, kGood, true},
        {kOther, kNone, true},    {kGood, kCut, true},    {kOther, "rubbish", true},
        {kNone, "rubbish", true}, {kOther, {}, true},
    };
    for (const auto& [loaded, backup, replaced] : rows) {
        put("pages.cfg", loaded);
        put("pages.cfg.bak", backup);
        SampleApplication application;
        PageFile file = fileAt();
        EXPECT_EQ(look(file), State::whole);
        EXPECT_TRUE(file.load(application));
        EXPECT_TRUE(file.save(application));
        EXPECT_EQ(get("pages.cfg"), loaded);
        EXPECT_EQ(get("pages.cfg.bak"), replaced ? loaded : backup)
            << loaded.size() << " over " << backup.size();
    }
}

TEST_F(PageFileTest, AsManyPagesReplaceTheOlderOnes) {
    const QByteArray other = toByteArray(join(number(2), kSecondPage, kSecondPage));
    put("pages.cfg", kGood);
    put("pages.cfg.bak", other);
    PageFile file = fileAt();
    load(file);
    EXPECT_TRUE(file.save(m_application));
    EXPECT_EQ(get("pages.cfg.bak"), kGood);
}

TEST_F(PageFileTest, PagesThatTheUserDeletedAreKeptForOneRun) {
    put("pages.cfg", kGood);
    QString decided;
    for (const QByteArray& backup : {kGood, kOther}) {
        SampleApplication application;
        PageFile file = fileAt();
        file.backup().setDecidedAgainst(decided);
        look(file);
        file.load(application);
        application.pages.erase(application.pages.begin(), application.pages.end() - 1);
        EXPECT_TRUE(file.save(application));
        EXPECT_EQ(get("pages.cfg"), kOther);
        EXPECT_EQ(get("pages.cfg.bak"), backup);
        decided = file.backup().decidedAgainst();
    }
}

TEST_F(PageFileTest, ADecisionIsAboutOneBackupAlone) {
    put("pages.cfg", kGood);
    PageFile first = fileAt();
    load(first);
    m_application.pages.pop_back();
    EXPECT_TRUE(first.save(m_application));
    const QString decided = first.backup().decidedAgainst();
    EXPECT_NE(decided, "");
    // Another one is there by the next run.
    put("pages.cfg.bak", kThree);
    SampleApplication again;
    PageFile second = fileAt();
    second.backup().setDecidedAgainst(decided);
    look(second);
    second.load(again);
    EXPECT_TRUE(second.save(again));
    EXPECT_EQ(get("pages.cfg.bak"), kThree);
}

TEST_F(PageFileTest, ADecisionDoesNotOutliveTheFileItWasTakenFor) {
    put("pages.cfg", kGood);
    PageFile first = fileAt();
    load(first);
    m_application.pages.pop_back();
    EXPECT_TRUE(first.save(m_application));
    ASSERT_TRUE(QFile::remove(path()));
    PageFile second = fileAt();
    second.backup().setDecidedAgainst(first.backup().decidedAgainst());
    EXPECT_EQ(look(second), State::absent);
    EXPECT_EQ(second.backup().decidedAgainst(), "");
}

TEST_F(PageFileTest, ABackupThatCannotBeReadIsLeftAlone) {
    put("pages.cfg", kGood);
    ASSERT_EQ(symlink("/proc/self/mem", qPrintable(path("pages.cfg.bak"))), 0);
    PageFile file = fileAt();
    load(file);
    m_application.pages.clear();
    EXPECT_TRUE(file.save(m_application));
    EXPECT_EQ(get("pages.cfg"), kNone);
    EXPECT_EQ(QFile::symLinkTarget(path("pages.cfg.bak")), "/proc/self/mem");
}

// A file that comes late.

TEST_F(PageFileTest, AFileThatWentMissingDoesNotReplaceWhatIsKept) {
    put("pages.cfg.bak", kGood);
    PageFile file = fileAt();
    EXPECT_EQ(load(file), State::absent);
    EXPECT_TRUE(file.save(m_application));
    EXPECT_EQ(get("pages.cfg.bak"), kGood);
}

TEST_F(PageFileTest, AFileThatCameAfterTheLookIsKeptBeforeTheFirstSave) {
    put("pages.cfg.bak", kOther);
    PageFile file = fileAt();
    EXPECT_EQ(load(file), State::absent);
    put("pages.cfg", kGood);
    EXPECT_TRUE(file.save(m_application));
    EXPECT_EQ(get("pages.cfg"), kNone);
    EXPECT_EQ(get("pages.cfg.bak"), kGood);
    EXPECT_EQ(file.backup().decidedAgainst(), "") << "the user has never seen those pages";
    // What stands there now was written by this run.
    EXPECT_TRUE(file.save(m_application));
    EXPECT_EQ(get("pages.cfg.bak"), kGood);
}

TEST_F(PageFileTest, AFileThatCameAfterTheLookIsNotWrittenOverUnlessItIsKept) {
    PageFile file = fileAt();
    EXPECT_EQ(load(file), State::absent);
    put("pages.cfg", kGood);
    {
        const FullDisk disk(50);
        EXPECT_FALSE(file.save(m_application));
    }
    EXPECT_EQ(get("pages.cfg"), kGood);
    EXPECT_EQ(names(), "pages.cfg");
    put("pages.cfg.bak", kThree);
    const auto saved = file.save(m_application);
    ASSERT_FALSE(saved);
    EXPECT_EQ(saved.error(), "Another page file has come there meanwhile");
    EXPECT_EQ(get("pages.cfg"), kGood);
    EXPECT_EQ(get("pages.cfg.bak"), kThree);
    ASSERT_TRUE(QFile::remove(path("pages.cfg.bak")));
    ASSERT_TRUE(QFile::resize(path(), PageBytes::kMostBytes + 1));
    EXPECT_FALSE(file.save(m_application));
    EXPECT_EQ(QFileInfo(path()).size(), PageBytes::kMostBytes + 1);
    put("pages.cfg", kGood);
    EXPECT_TRUE(file.save(m_application));
    EXPECT_EQ(get("pages.cfg.bak"), kGood);
}

// Saves that fail.

TEST_F(PageFileTest, AFullDiskLeavesTheOldFilesAndSaysWhy) {
    put("pages.cfg", kGood);
    put("pages.cfg.bak", kGood);
    for (const rlim_t room : {0, 1, 3, 4, 30, 245, 266}) {
        SampleApplication application;
        PageFile file = fileAt();
        look(file);
        ASSERT_TRUE(file.load(application));
        application.pages[1]->name = QStringLiteral("C");
        {
            const FullDisk disk(room);
            const auto saved = file.save(application);
            ASSERT_FALSE(saved) << room;
            EXPECT_EQ(saved.error(), "File too large");
        }
        EXPECT_EQ(get("pages.cfg"), kGood);
        EXPECT_EQ(get("pages.cfg.bak"), kGood);
        EXPECT_EQ(names(), "pages.cfg pages.cfg.bak");
        // With room again the same run saves.
        application.pages[1]->name = QStringLiteral("B");
        EXPECT_TRUE(file.save(application));
    }
}

TEST_F(PageFileTest, WithoutTheKeptFileNothingIsSaved) {
    put("pages.cfg", kGood);
    put("pages.cfg.bak", kOther);
    PageFile file = fileAt();
    load(file);
    m_application.pages.clear();
    {
        const FullDisk disk(50);
        const auto saved = file.save(m_application);
        ASSERT_FALSE(saved);
        EXPECT_EQ(saved.error(), "Its backup cannot be written: File too large");
    }
    EXPECT_EQ(get("pages.cfg"), kGood);
    EXPECT_EQ(get("pages.cfg.bak"), kOther);
    // With room again, the same run keeps and saves.
    EXPECT_TRUE(file.save(m_application));
    EXPECT_EQ(get("pages.cfg"), kNone);
    EXPECT_EQ(get("pages.cfg.bak"), kGood);
}

/// A page that cannot be written.
class StubbornPage : public SamplePage {
public:
    [[nodiscard]] bool Write(CSerialWriter& /*writer*/) const override { return false; }
};

TEST_F(PageFileTest, APageThatCannotBeWrittenLeavesTheOldFile) {
    put("pages.cfg", kGood);
    PageFile file = fileAt();
    load(file);
    m_application.pages.push_back(std::make_unique<StubbornPage>());
    const auto saved = file.save(m_application);
    ASSERT_FALSE(saved);
    EXPECT_EQ(saved.error(), "A page cannot be written");
    EXPECT_EQ(get("pages.cfg"), kGood);
    EXPECT_EQ(names(), "pages.cfg");
}

TEST_F(PageFileTest, WhatTheNextStartCouldNotReadIsNotSaved) {
    put("pages.cfg", kGood);
    PageFile file = fileAt();
    load(file);
    m_application.pages[0]->name = QString(PageBytes::kMostBytes / 2, u'x');
    const auto saved = file.save(m_application);
    ASSERT_FALSE(saved);
    EXPECT_EQ(saved.error(), "Larger than 64 MiB");
    EXPECT_EQ(get("pages.cfg"), kGood);
}

TEST_F(PageFileTest, AKillAtAnyMomentOfASaveLeavesTheOldFileOrTheNewOne) {
    put("pages.cfg", kGood);
    std::mt19937 random(20070323);
    int kills = 0;
    for (int round = 0; round < 60; ++round) {
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        const pid_t child = fork();
        if (child == 0) {
            // Run after run, each of which renames a page; before each save it says so.
            for (;;) {
                SampleApplication application;
                PageFile file = fileAt();
                look(file);
                file.load(application);
                auto& name = application.pages.at(1)->name;
                name = name == u"B" ? QStringLiteral("C") : QStringLiteral("B");
                if (write(ends[1], "s", 1) != 1 || !file.save(application)) {
                    _exit(1);
                }
            }
        }
        ASSERT_GT(child, 0);
        char said = 0;
        ASSERT_EQ(read(ends[0], &said, 1), 1);
        // A little later each time: some system calls of this process.
        for (unsigned i = random() % 100'000; i > 0; --i) {
            getppid();
        }
        kill(child, SIGKILL);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        kills += WIFSIGNALED(status) ? 1 : 0;
        close(ends[0]);
        close(ends[1]);

        const QByteArray left = get("pages.cfg");
        ASSERT_EQ(left.size(), kGood.size()) << round;
        ASSERT_EQ(examinePages<SampleApplication>(left).wholePages, 2U) << round;
        if (has("pages.cfg.bak")) {
            ASSERT_EQ(examinePages<SampleApplication>(get("pages.cfg.bak")).wholePages, 2U);
        }
    }
    EXPECT_EQ(kills, 60);
    // What the killed ones left behind goes with the next saves.
    PageFile file = fileAt();
    load(file);
    EXPECT_TRUE(file.save(m_application));
    m_application.pages[0]->name = QStringLiteral("Else");
    EXPECT_TRUE(file.save(m_application));
    EXPECT_EQ(names(), "pages.cfg pages.cfg.bak");
}

} // namespace
} // namespace raincast
