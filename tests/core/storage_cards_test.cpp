// SPDX-License-Identifier: MIT
#include "core/storage_cards.h"
#include "support/files.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace raincast {
namespace {

std::string cardsIn(const QByteArray& table) {
    return storageCardsIn(table).join(u'|').toStdString();
}

TEST(StorageCardsTest, TellsCardsFromWhatElseIsMounted) {
    struct Row {
        const char* why;
        QByteArray line;
        std::string cards;
    };
    const Row rows[] = {
        {"a card, as desktops mount it",
         "36 35 179:1 / /media/mia/SD rw,nosuid shared:1 - vfat /dev/mmcblk0p1 rw,fmask=0022",
         "/media/mia/SD"},
        {"a stick elsewhere", "36 35 8:17 / /run/media/mia/USB rw - ext4 /dev/sdb1 rw",
         "/run/media/mia/USB"},
        {"mounted by hand", "36 35 8:17 / /mnt/card rw - ext4 /dev/sdb1 rw", "/mnt/card"},
        {"by a file system in user space",
         "36 35 0:55 / /media/mia/NTFS rw - fuseblk /dev/sdb1 rw,user_id=0", "/media/mia/NTFS"},
        {"many optional fields",
         "36 35 8:17 / /mnt/card rw shared:1 master:2 propagate_from:3 - ext4 /dev/sdb1 rw",
         "/mnt/card"},
        {"part of a volume", "36 35 0:44 /@sub /mnt/card rw - btrfs /dev/sdb1 rw", "/mnt/card"},
        {"spaces, tabs, line ends, backslashes",
         R"(36 35 8:17 / /media/A\040B\011C\012D\134E\043F rw - vfat /dev/sdb1 rw)",
         "/media/A B\tC\nD\\E#F"},
        {"what only looks like an escape", R"(36 35 8:17 / /media/A\04 rw - vfat /dev/sdb1 rw)",
         "/media/A\\04"},
        {"no text", "36 35 8:17 / /media/A\xFF rw - vfat /dev/sdb1 rw", ""},
        {"8 is no octal digit", R"(36 35 8:17 / /media/A\048B rw - vfat /dev/sdb1 rw)",
         "/media/A\\048B"},
        {"the system's own disk", "27 1 254:0 / / rw - ext4 /dev/vda rw", ""},
        {"a disk elsewhere", "36 35 8:17 / /home rw - ext4 /dev/sdb1 rw", ""},
        {"the place itself", "36 35 8:17 / /mnt rw - ext4 /dev/sdb1 rw", ""},
        {"a place with a longer name", "36 35 8:17 / /mnt2/card rw - ext4 /dev/sdb1 rw", ""},
        {"a network share", "36 35 0:50 / /mnt/nas rw - nfs4 nas:/export rw", ""},
        {"another network share", "36 35 0:50 / /media/nas rw - cifs //nas/share rw", ""},
        {"one in user space", "36 35 0:51 / /mnt/far rw - fuse.sshfs mia@far:/ rw", ""},
        {"not mounted yet", "36 35 0:52 / /media/auto rw - autofs systemd-1 rw", ""},
        {"in memory", "36 35 0:53 / /mnt/ram rw - tmpfs tmpfs rw", ""},
        {"mounted for reading", "36 35 8:17 / /mnt/card ro,nosuid - ext4 /dev/sdb1 rw", ""},
        {"made for reading", "36 35 11:0 / /media/cdrom rw - iso9660 /dev/sr0 ro", ""},
        {"rodata is not ro", "36 35 8:17 / /mnt/card rw,rodata - ext4 /dev/sdb1 rw", "/mnt/card"},
        {"nothing", "", ""},
        {"a line cut short", "36 35 8:17 / /mnt/card rw - ext4", ""},
        {"no hyphen", "36 35 8:17 / /mnt/card rw shared:1 ext4 /dev/sdb1 rw", ""},
        {"a hyphen too early", "36 35 - / /mnt/card rw", ""},
        {"no text", QByteArray("\xFF\0\x01\x02 - - - -", 12), ""},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(cardsIn(row.line), row.cards) << row.why;
        EXPECT_EQ(cardsIn(row.line + '\n'), row.cards) << row.why;
    }
}

TEST(StorageCardsTest, ListsThemInTheOrderOfMounting) {
    EXPECT_EQ(
        cardsIn("27 1 254:0 / / rw - ext4 /dev/vda rw\n"
                "36 27 8:33 / /mnt/b rw - vfat /dev/sdc1 rw\n"
                "37 27 8:17 / /media/a rw - vfat /dev/sdb1 rw\n"),
        "/mnt/b|/media/a"
    );
}

TEST(StorageCardsTest, WhatALaterMountHidesIsNotListed) {
    const QByteArray card = "36 27 8:17 / /media/mia/SD rw - vfat /dev/sdb1 rw\n";
    EXPECT_EQ(cardsIn(card + "37 36 0:50 / /media/mia/SD rw - nfs4 nas:/ rw\n"), "");
    EXPECT_EQ(cardsIn(card + "37 27 0:50 / /media rw - nfs4 nas:/ rw\n"), "");
    EXPECT_EQ(cardsIn(card + "37 27 0:50 / / rw - nfs4 nas:/ rw\n"), "");
    EXPECT_EQ(
        cardsIn(card + "37 36 8:33 / /media/mia/SD rw - vfat /dev/sdc1 rw\n"), "/media/mia/SD"
    );
    EXPECT_EQ(cardsIn(card + "37 27 0:50 / /media/mia/S rw - nfs4 nas:/ rw\n"), "/media/mia/SD");
}

TEST(StorageCardsTest, EveryFolderOfTheTestRootIsACard) {
    QTemporaryDir root;
    ASSERT_TRUE(root.isValid());
    ASSERT_TRUE(QDir(root.path()).mkdir("Card B"));
    ASSERT_TRUE(QDir(root.path()).mkdir("Card A"));
    writeFile(root.filePath("file"));
    qputenv(kCardRootVariable, QFile::encodeName(root.path()));
    EXPECT_EQ(ListStorageCards(), (QStringList{root.filePath("Card A"), root.filePath("Card B")}));
    qputenv(kCardRootVariable, QFile::encodeName(root.filePath("missing")));
    EXPECT_EQ(ListStorageCards(), QStringList());
    qunsetenv(kCardRootVariable);
}

TEST(StorageCardsTest, WithoutATestRootTheSystemIsAsked) {
    qunsetenv(kCardRootVariable);
    QFile table("/proc/self/mountinfo");
    ASSERT_TRUE(table.open(QIODevice::ReadOnly));
    EXPECT_EQ(ListStorageCards(), storageCardsIn(table.readAll()));
}

} // namespace
} // namespace raincast
