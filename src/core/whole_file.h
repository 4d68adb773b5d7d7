// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_descriptor.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <tl/expected.hpp>

namespace raincast {

/// Whether a written file survives a power cut from that moment on.
enum class Lasting {
    yes, ///< waits for the disk, file and folder: for data that cannot be made again
    no,  ///< does not wait, which is much faster: for data that is fetched or made again
};

/// Writes a file piece by piece, and gives it its name only when it is whole: whatever happens
/// meanwhile (a full disk, a kill, a power cut), the name stands for the old file or for the new
/// one, never for a part of it.
///
/// The bytes go into "NAME.part" in the file's own folder. What a killed program left there is
/// written over by the next attempt. While another writer has that name, "NAME.PID-N.part" is
/// taken: writers of one file, in several programs or threads, do not disturb each other where the
/// file system knows locks, and the last one wins. A new file's access rights follow the user's
/// mask, a replaced one keeps its own. Follows a link and replaces its target. Replaces only a
/// regular file that may be written.
///
/// The first failure stays until the next open(): it may be asked for once, at the end.
class WholeFile {
public:
    /// Reasons are the system's words without a full stop: "No space left on device".
    using Result = tl::expected<void, QString>;

    static constexpr auto kTemporarySuffix = ".part";

    explicit WholeFile(Lasting lasting) : m_lasting(lasting) {}
    /// Discards a file that was not committed.
    ~WholeFile() { discard(); }
    WholeFile(const WholeFile&) = delete;
    WholeFile& operator=(const WholeFile&) = delete;

    /// Begins a file, in a folder that exists. One that was begun before is discarded.
    bool open(const QString& path);

    /// Appends. Once something failed it does nothing and is false.
    bool write(QByteArrayView bytes);

    /// Puts the file under its name, or says what failed, here or before. The temporary file is
    /// gone either way, and after a failure the old file is as it was. (A disk that breaks in the
    /// very last moment, after the name was given, is a failure as well.)
    [[nodiscard]] Result commit();

private:
    bool claim(const QByteArray& name);
    bool takeAfter(const QByteArray& path);
    bool finish();
    bool fail(int error);
    bool fail(const QString& reason);
    void discard();

    Lasting m_lasting;
    QByteArray m_path;
    QByteArray m_temporary;
    FileDescriptor m_file;
    QString m_failure = QStringLiteral("No file is open");
};

/// Writes a whole file at once. The folder must exist.
[[nodiscard]] WholeFile::Result
replaceFile(const QString& path, QByteArrayView bytes, Lasting lasting);

/// Removes what killed programs left in a folder: temporary files of WholeFile that nobody has
/// written to for an hour.
void removeAbandonedFiles(const QString& folder);

/// Why a file was not read.
struct ReadFailure {
    enum class Kind {
        absent,     ///< there is nothing of that name
        tooLarge,   ///< more bytes than asked for
        unreadable, ///< no file, no right to read it, or the disk failed
    };

    Kind kind;
    QString reason; ///< without a full stop: "Permission denied"
};

/// The bytes of a file that has at most `mostBytes` of them. It takes the memory that the file
/// needs, and never more than for `mostBytes`, whatever size the file tells and however it grows
/// meanwhile. Pipes, devices and folders are no files, and are neither waited for nor read.
[[nodiscard]] tl::expected<QByteArray, ReadFailure>
readWhole(const QString& path, qint64 mostBytes);

} // namespace raincast
