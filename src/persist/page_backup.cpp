// SPDX-License-Identifier: MIT
#include "persist/page_backup.h"

#include "core/whole_file.h"

#include <QCryptographicHash>
#include <QFileInfo>

#include <utility>

namespace raincast {

namespace {

QString fingerprintOf(const QByteArray& bytes) {
    const QByteArray hash = QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
    return QString::fromLatin1(hash.toHex());
}

} // namespace

PageBackup::PageBackup(QString path, ExaminePages examine)
    : m_path(std::move(path)), m_examine(std::move(examine)) {}

std::optional<PageBackup::Offer> PageBackup::offerFor(const PageBytes& damaged) {
    m_offered = {};
    auto bytes = readWhole(m_path, PageBytes::kMostBytes);
    if (!bytes || *bytes == damaged.bytes) {
        return std::nullopt;
    }
    PageBytes kept = m_examine(std::move(*bytes));
    if (kept.wholePages == 0) {
        return std::nullopt;
    }
    m_offered = std::move(kept);
    return Offer{QFileInfo(m_path).lastModified(), m_offered.wholePages};
}

PageBytes PageBackup::take() {
    return std::exchange(m_offered, {});
}

void PageBackup::decline() {
    m_decidedAgainst = fingerprintOf(take().bytes);
}

PageBackup::Verdict PageBackup::judge(const PageBytes& pages) const {
    const auto old = readWhole(m_path, PageBytes::kMostBytes);
    if (!old) {
        return old.error().kind == ReadFailure::Kind::absent ? Verdict::givesWay : Verdict::stays;
    }
    if (*old == pages.bytes) {
        return Verdict::holdsThem;
    }
    return isBetter(pages, m_examine(*old)) ? Verdict::givesWay : Verdict::stays;
}

void PageBackup::holds(const PageBytes& loaded) {
    m_held = loaded;
}

bool PageBackup::isBetter(const PageBytes& pages, const PageBytes& old) const {
    if (old.wholePages == 0) {
        return pages.whole || pages.wholePages > 0;
    }
    if (!pages.whole || pages.wholePages == 0) {
        return false;
    }
    return pages.wholePages >= old.wholePages || fingerprintOf(old.bytes) == m_decidedAgainst;
}

void PageBackup::pagesLeft(std::size_t count) {
    if (m_held && count < m_held->wholePages) {
        m_decidedAgainst = fingerprintOf(m_held->bytes);
    }
}

} // namespace raincast
