// SPDX-License-Identifier: MIT
#pragma once

#include "persist/page_backup.h"
#include "persist/page_bytes.h"
#include "persist/page_save.h"

#include <QString>

#include <optional>
#include <tl/expected.hpp>

namespace raincast {

class CSerializable;

/// The page file on disk during one run of the program: looked at and loaded once at the start,
/// written as often as it has to be, with the state that was loaded kept beside it as "<name>.bak"
/// (persist/page_backup.h).
///
/// A save replaces the file as a whole: whatever happens meanwhile, the old file or the new one is
/// there. A file that could not be read is never written over. Neither is a file that was read in
/// part, while its .bak file could stand in for it, until the user has said which of the two to
/// use.
///
/// A file that was missing at the start and has come by the time of the first save (its disk was
/// mounted late, say) was not read by this program: it becomes the .bak file first, and is not
/// written over where the .bak file is the better one.
class PageFile {
public:
    enum class State {
        absent,     ///< nothing is there
        unreadable, ///< something is there that could not be read, or not to its end
        partly,     ///< it was empty, cut short, or held something that is not understood
        whole
    };

    PageFile(QString path, const ExaminePages& examine);

    /// Reads the file into an application that nobody sees, and says what there is to ask. To be
    /// called first, once. It holds what could be read; where nothing is asked that is what there
    /// is to load.
    State look(CSerializable& application);
    [[nodiscard]] State state() const { return m_state; }
    /// Why it is unreadable: "Permission denied".
    [[nodiscard]] const QString& reason() const { return m_reason; }

    /// The .bak file that the user is to be offered; empty if there is nothing to ask.
    [[nodiscard]] const std::optional<PageBackup::Offer>& offer() const { return m_offer; }
    /// The answer. With yes, the .bak file is what load() loads.
    void answerOffer(bool use);

    /// Reads what was found, or what the answer has put in its place, into an object that has no
    /// type identifier of its own in the file: the application and its page list. The result of
    /// its Read, false when there is nothing to read. On false, too, the object may hold what could
    /// be read.
    bool load(CSerializable& application);

    /// Whether the file is left as it is in this run: it could not be read, or the question was not
    /// answered.
    [[nodiscard]] bool untouchable() const {
        return m_state == State::unreadable || m_offer.has_value();
    }

    /// Replaces the file by the object. After a failure it is unchanged; the reason has no full
    /// stop: "No space left on device". Untouchable, it always fails.
    [[nodiscard]] tl::expected<void, QString> save(const CSerializable& application);

    /// The same in three steps, the second of which needs neither the object nor this and may be
    /// done in another thread: PageSave::write(). The first and the last know the disk's state, so
    /// that no other save may come between them.
    using Prepared = tl::expected<PageSave, QString>;
    [[nodiscard]] Prepared prepare(const CSerializable& application) const;
    [[nodiscard]] tl::expected<void, QString> finish(const PageSave& save);

    [[nodiscard]] const QString& path() const { return m_path; }
    [[nodiscard]] PageBackup& backup() { return m_backup; }

private:
    /// What is to be put into the .bak file, if anything.
    using ToBackUp = tl::expected<std::optional<PageSave::Backup>, QString>;
    [[nodiscard]] ToBackUp backupOfFound() const;
    [[nodiscard]] ToBackUp backupOfLatecomer() const;
    [[nodiscard]] std::optional<PageSave::Backup>
    backupOf(const PageBytes& pages, PageBackup::Verdict verdict) const;

    QString m_path;
    ExaminePages m_examine;
    PageBackup m_backup;
    State m_state = State::absent;
    QString m_reason;
    PageBytes m_found; ///< until it is kept
    std::optional<PageBackup::Offer> m_offer;
    bool m_saved = false;
};

} // namespace raincast
