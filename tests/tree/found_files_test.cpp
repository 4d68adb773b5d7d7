// SPDX-License-Identifier: MIT
#include "support/files.h"
#include "tree/found_files.h"

#include <QStringList>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace raincast {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

QStringList namesOf(const FoundFiles& files, const QString& folder) {
    QStringList names;
    for (const FoundFile& file : files) {
        names += file.path.mid(folder.size() + 1);
    }
    names.sort();
    return names;
}

TEST(FoundFilesTest, FindsWhatIsNotHidden) {
    const QTemporaryDir temporary;
    const QString folder = temporary.path();
    for (const char* name : {"a", "b/c", "b/d/é", ".hidden", ".b/inner", "b/.part"}) {
        writeFile(folder + '/' + name, "bytes");
    }
    const std::filesystem::path root = folder.toStdString();
    std::filesystem::create_symlink(root / "a", root / "link");
    std::filesystem::create_symlink(root / "b", root / "linked folder");
    std::filesystem::create_symlink(root / "nothing", root / "broken");
    FoundFiles files;
    QStringList entered;
    findFiles(folder, files, [&](const QString& path) { entered += path; });
    EXPECT_THAT(namesOf(files, folder), ElementsAre("a", "b/c", "b/d/é", "link"));
    EXPECT_THAT(entered, ElementsAre(folder, folder + "/b", folder + "/b/d"));
    // The path itself may be a link.
    files.clear();
    findFiles(folder + "/linked folder", files);
    EXPECT_THAT(namesOf(files, folder + "/linked folder"), ElementsAre("c", "d/é"));
}

TEST(FoundFilesTest, AFileIsFoundByItself) {
    const QTemporaryDir temporary;
    const QString path = temporary.filePath("a");
    writeFile(path, "bytes");
    FoundFiles files;
    findFiles(path, files);
    findFiles(temporary.filePath("absent"), files);
    ASSERT_EQ(files.size(), 1U);
    EXPECT_EQ(files[0].path, path);
    EXPECT_EQ(files[0].state.bytes, 5);
    const auto changed = QFileInfo(path).lastModified().toMSecsSinceEpoch();
    EXPECT_EQ(files[0].state.changed, changed);
}

} // namespace
} // namespace raincast
