// SPDX-License-Identifier: MIT
#include "persist/page_file.h"

#include "core/text.h"
#include "core/whole_file.h"
#include "persist/serial_writer.h"

#include <QBuffer>

#include <utility>

namespace raincast {

namespace {

using Kind = ReadFailure::Kind;
using Result = tl::expected<void, QString>;

QString tooLarge() {
    return Text::tr("Larger than %1 MiB").arg(PageBytes::kMostBytes / (1024 * 1024));
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
        return tl::make_unexpected(Text::tr("A page cannot be written"));
    }
    if (buffer.size() > PageBytes::kMostBytes) {
        return tl::make_unexpected(tooLarge());
    }
    return Written{buffer.data(), writer.listedObjects()};
}

} // namespace

PageFile::PageFile(QString path, const ExaminePages& examine)
    : m_path(std::move(path)), m_examine(examine),
      m_backup(m_path + QStringLiteral(".bak"), examine) {}

PageFile::State PageFile::look(CSerializable& application) {
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
    m_found = readPages(std::move(*bytes), application);
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

auto PageFile::prepare(const CSerializable& application) const -> Prepared {
    if (untouchable()) {
        return tl::make_unexpected(Text::tr("It is left as it is"));
    }
    auto written = writtenBy(application);
    if (!written) {
        return tl::make_unexpected(written.error());
    }
    PageSave save;
    save.path = m_path;
    save.bytes = std::move(written->bytes);
    save.pages = written->pages;
    const auto backup = m_found.bytes.isEmpty() ? backupOfLatecomer() : backupOfFound();
    if (!backup) {
        return tl::make_unexpected(backup.error());
    }
    save.backup = *backup;
    return save;
}

std::optional<PageSave::Backup>
PageFile::backupOf(const PageBytes& pages, PageBackup::Verdict verdict) const {
    const bool holdsThem = verdict == PageBackup::Verdict::holdsThem;
    return verdict == PageBackup::Verdict::stays
               ? std::nullopt
               : std::optional(PageSave::Backup{m_backup.path(), pages.bytes, holdsThem});
}

// The loaded file becomes the .bak file, once.
PageFile::ToBackUp PageFile::backupOfFound() const {
    return backupOf(m_found, m_backup.judge(m_found));
}

// Keeps a file that has come since look() found none.
PageFile::ToBackUp PageFile::backupOfLatecomer() const {
    if (m_state != State::absent || m_saved) {
        return std::nullopt;
    }
    auto bytes = readWhole(m_path, PageBytes::kMostBytes);
    if (!bytes && bytes.error().kind != Kind::absent) {
        return tl::make_unexpected(reasonOf(bytes.error()));
    }
    if (!bytes || bytes->isEmpty()) {
        return std::nullopt;
    }
    const PageBytes come = m_examine(std::move(*bytes));
    const auto verdict = m_backup.judge(come);
    if (verdict == PageBackup::Verdict::stays) {
        return tl::make_unexpected(Text::tr("Another page file has come there meanwhile"));
    }
    return backupOf(come, verdict);
}

Result PageFile::finish(const PageSave& save) {
    if (save.backup && save.backup->written && !m_found.bytes.isEmpty()) {
        m_backup.holds(m_found);
    }
    if (save.result || (save.backup && save.backup->written)) {
        m_found = {};
    }
    if (save.result) {
        m_saved = true; // what stands there from now on is ours
        m_backup.pagesLeft(save.pages);
    }
    return save.result;
}

Result PageFile::save(const CSerializable& application) {
    auto save = prepare(application);
    if (!save) {
        return tl::make_unexpected(save.error());
    }
    save->write();
    return finish(*save);
}

} // namespace raincast
