// SPDX-License-Identifier: MIT
#pragma once

#include "persist/page_bytes.h"

#include <QDateTime>
#include <QString>

#include <cstddef>
#include <optional>
#include <tl/expected.hpp>

namespace raincast {

/// The .bak file of a page file, and the rule by which it is replaced.
///
/// The better of two stays. Bytes that could not be read whole replace only a .bak file without any
/// whole page. Bytes with fewer whole pages than the .bak file replace it only if the user has
/// decided against it: by an answer, or by deleting pages in a run that had loaded what it holds. A
/// .bak file that cannot be read may be better than anything, and is left alone.
class PageBackup {
public:
    PageBackup(QString path, ExaminePages examine);

    /// The .bak file that can stand in for what was read in part.
    struct Offer {
        QDateTime date;        ///< when it was made
        std::size_t pages = 0; ///< that it has whole, at least one
    };
    /// Empty without a .bak file that has whole pages, and if it holds the same ones.
    [[nodiscard]] std::optional<Offer> offerFor(const PageBytes& damaged);

    // The user's answers to an offer. The first returns what was offered.
    [[nodiscard]] PageBytes take();
    void decline();

    /// What the rule says of bytes and the .bak file as it stands now.
    enum class Verdict {
        holdsThem, ///< the file has these very bytes
        givesWay,  ///< they may replace it
        stays      ///< it must stay
    };
    [[nodiscard]] Verdict judge(const PageBytes& pages) const;

    /// The .bak file has what was loaded: pages that the user saw.
    void holds(const PageBytes& loaded);

    /// So many pages were left in the page file. If they are fewer than those that were loaded, and
    /// that the .bak file holds, the user has decided against the missing ones.
    void pagesLeft(std::size_t count);

    /// The .bak file that the user decided against last, as a text that stands for its bytes; it
    /// must be remembered from run to run. Empty for none.
    [[nodiscard]] const QString& decidedAgainst() const { return m_decidedAgainst; }
    void setDecidedAgainst(const QString& text) { m_decidedAgainst = text; }

    [[nodiscard]] const QString& path() const { return m_path; }

private:
    [[nodiscard]] bool isBetter(const PageBytes& pages, const PageBytes& old) const;

    QString m_path;
    ExaminePages m_examine;
    PageBytes m_offered;
    std::optional<PageBytes> m_held; ///< what was loaded, if the file holds it
    QString m_decidedAgainst;
};

} // namespace raincast
