// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QTemporaryFile>

#include <memory>

namespace raincast {

/// What this program wishes of a folder that others may use at the same time: a number, of which
/// the greatest among the living counts. It stands in a file ".wish-XXXXXX" of the folder, which is
/// locked (flock) for as long as the object lives; what killed programs left is removed. Where the
/// folder cannot be written, or its file system knows no locks, others do not see the wish.
class FolderWish {
public:
    /// Makes the folder if it is not there.
    FolderWish(QString folder, int wish);

    /// The greatest wish of all, this one included.
    [[nodiscard]] int greatest() const;

private:
    [[nodiscard]] bool publish();

    QString m_folder;
    int m_wish;
    std::unique_ptr<QTemporaryFile> m_file; ///< removed with the object
};

} // namespace raincast
