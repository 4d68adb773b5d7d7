// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace raincast {

class CSerializable;

/// The page file on disk during one run of the program: read once at the start, written at the end,
/// with the state that was loaded kept beside it as "<name>.bak" so that neither a power cut nor a
/// full disk during a save costs anybody their pages.
///
/// The rule of the .bak file: before the first save after a load, the bytes that were loaded become
/// the .bak file, replaced as a whole and on disk before the page file is touched. A load that did
/// not read its file whole (something was cut short, dropped or not understood) leaves an existing
/// .bak file alone: it is the better of the two. A file that was missing leaves it alone as well;
/// if one has come by the time of the first save (its disk was mounted late, say), nobody has read
/// it, and that becomes the .bak file.
class PageFile {
public:
    /// A file larger than this is no page file of ours; what stands before that size is read.
    static constexpr qint64 kMaxSize = 64 * 1024 * 1024;

    explicit PageFile(QString path);

    /// Reads the file into an object that has no type identifier of its own in the file: the
    /// application and its page list. The result of its Read, false when there is no file or it
    /// cannot be read. On false, too, the object may hold what could be read.
    bool load(CSerializable& application);

    /// True when the last load read the file whole.
    [[nodiscard]] bool whole() const { return m_whole; }

    /// Writes the object over the file, from scratch and in place: a write that fails leaves the
    /// file as far as it got. False then, and also when nothing was written and the old file stays
    /// as it was: the file cannot be opened, the .bak file that is due cannot be made, or there is
    /// a file that load() could not read.
    [[nodiscard]] bool save(const CSerializable& application);

    [[nodiscard]] const QString& path() const { return m_path; }
    [[nodiscard]] QString backupPath() const;

private:
    [[nodiscard]] bool readBytes();
    [[nodiscard]] bool keepLoaded();
    [[nodiscard]] bool keepUnread();

    QString m_path;
    QByteArray m_loaded;       ///< what load() found, until it is kept
    bool m_keepDue = false;    ///< m_loaded is to be kept before the next save
    bool m_absent = false;     ///< load() found no file, and none was written since
    bool m_unreadable = false; ///< there is a file, but not one that could be read
    bool m_whole = false;
};

} // namespace raincast
