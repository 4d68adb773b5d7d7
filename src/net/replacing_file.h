// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>
#include <QString>

namespace raincast {

/// Writes a file under a temporary name in its own folder ("NAME.part", or "NAME.PID.part" while
/// another program writes the same file) and gives it its name when it is committed, replacing what
/// was there. A program that is killed meanwhile leaves the old file or none, never half a new one;
/// what it left as NAME.part is written over by the next attempt. Two programs that write the same
/// file at once do not disturb each other where the file system knows locks.
///
/// It is no journal: nothing waits for the disk, so after a power cut the file may be lost, as any
/// cached file may.
class ReplacingFile {
public:
    ReplacingFile() = default;
    /// Discards a file that was not committed.
    ~ReplacingFile() { discard(); }
    ReplacingFile(const ReplacingFile&) = delete;
    ReplacingFile& operator=(const ReplacingFile&) = delete;

    /// Creates the temporary file for `path`; false when the folder cannot be written.
    [[nodiscard]] bool open(const QString& path);

    /// Appends; false when not everything could be written (a full disk).
    [[nodiscard]] bool write(QByteArrayView bytes);

    /// Puts the file under its name; false when that fails (a folder has that name) or the disk
    /// reports late that it is full. The temporary file is gone either way.
    [[nodiscard]] bool commit();

private:
    [[nodiscard]] bool claim(const QByteArray& name);
    void discard();

    QByteArray m_path;
    QByteArray m_temporary;
    int m_descriptor = -1;
};

} // namespace raincast
