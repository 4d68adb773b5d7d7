// SPDX-License-Identifier: MIT
#include "persist/page_file.h"

#include "core/whole_file.h"
#include "persist/serial_writer.h"

#include <QBuffer>

#include <utility>

namespace raincast {

namespace {

using Kind = ReadFailure::Kind;
using Result = tl::expected<void, QString>;

QString tooLarge() {
    return QStringLiteral("Larger than %1 MiB").arg(PageBytes::kMostBytes / (1024 * 1024));
}

QString reasonOf(const ReadFailure& failure) {
    return failure.kind == Kind::tooLarge ? tooLarge() : failure.reason;
}

struct Written {
    QByteArray bytes;
    std::size_t pages;
};

tl::expected<Written, QString> writtenBy(const CSerializable& application) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    CSerialWriter writer(buffer);
    const bool written = application.Write(writer);
    if (!writer.finish() || !written) {
        return tl::make_unexpected(QStringLiteral("A page cannot be written"));
    }
    if (buffer.size() > PageBytes::kMostBytes) {
        return tl::make_unexpected(tooLarge());
    }
    return Written{buffer.data(), writer.listedObjects()};
}

Result noBackup(const QString& reason) {
    return tl::make_unexpected(QStringLiteral("Its backup cannot be written: ") + reason);
}

} // namespace

PageFile::PageFile(QString path, const ExaminePages& examine)
    : m_path(std::move(path)), m_examine(examine),
      m_backup(m_path + QStringLiteral(".bak"), examine) {}

PageFile::State PageFile::look() {
    auto bytes = readWhole(m_path, PageBytes::kMostBytes);
    if (!bytes) {
        const bool absent = bytes.error().kind == Kind::absent;
        m_state = absent ? State::absent : State::unreadable;
        m_reason = reasonOf(bytes.error());
        if (absent) {
            // The .bak file is all there is: no decision against it holds.
            m_backup.setDecidedAgainst({});
        }
        return m_state;
    }
    m_found = m_examine(std::move(*bytes));
    m_state = m_found.whole ? State::whole : State::partly;
    if (m_state == State::partly) {
        m_offer = m_backup.offerFor(m_found);
    }
    return m_state;
}

void PageFile::answerOffer(bool use) {
    m_offer.reset();
    if (use) {
        m_found = m_backup.take();
    } else {
        m_backup.decline();
    }
}

bool PageFile::load(CSerializable& application) {
    if (m_state == State::absent || m_state == State::unreadable) {
        return false;
    }
    CSerialReader reader(m_found.span());
    return application.Read(reader);
}

// The loaded file becomes the .bak file, once.
Result PageFile::keepFound() {
    if (!m_found.bytes.isEmpty()) {
        if (const auto kept = m_backup.keepLoaded(m_found); !kept) {
            return noBackup(kept.error());
        }
        m_found = {};
    }
    return {};
}

// Keeps a file that has come since look() found none.
Result PageFile::keepLatecomer() {
    if (m_state != State::absent || m_saved) {
        return {};
    }
    const auto bytes = readWhole(m_path, PageBytes::kMostBytes);
    if (!bytes && bytes.error().kind != Kind::absent) {
        return tl::make_unexpected(reasonOf(bytes.error()));
    }
    if (!bytes || bytes->isEmpty()) {
        return {};
    }
    const auto kept = m_backup.keep(m_examine(*bytes));
    if (!kept) {
        return noBackup(kept.error());
    }
    return *kept
               ? Result()
               : tl::make_unexpected(QStringLiteral("Another page file has come there meanwhile"));
}

Result PageFile::save(const CSerializable& application) {
    if (untouchable()) {
        return tl::make_unexpected(QStringLiteral("It is left as it is"));
    }
    const auto written = writtenBy(application);
    if (!written) {
        return tl::make_unexpected(written.error());
    }
    for (const auto keep : {&PageFile::keepFound, &PageFile::keepLatecomer}) {
        if (const auto kept = (this->*keep)(); !kept) {
            return kept;
        }
    }
    if (const auto saved = replaceFile(m_path, written->bytes, Lasting::yes); !saved) {
        return saved;
    }
    m_saved = true; // what stands there from now on is ours
    m_backup.pagesLeft(written->pages);
    return {};
}

} // namespace raincast
