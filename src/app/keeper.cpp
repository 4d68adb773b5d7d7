// SPDX-License-Identifier: MIT
#include "app/keeper.h"

#include "app/raincast_app.h"
#include "app/viewer_log.h"
#include "core/folders.h"
#include "core/text.h"
#include "core/user_change.h"
#include "persist/persistant_data.h"
#include "persist/registry_store.h"
#include "window/message_box.h"
#include "window/modal.h"

#include <QFileInfo>
#include <QStandardPaths>

#include <utility>

namespace raincast {

namespace {

/// Makes the folder of the usual page file, which belongs to the program. The start made it, unless
/// that failed; it may be gone since.
tl::expected<void, QString> makeUsualFolder(const QString& pageFile) {
    const QString folder = QFileInfo(pageFile).path();
    return folder == QFileInfo(Keeper::usualPageFile()).path() ? makeFolder(folder)
                                                               : tl::expected<void, QString>();
}

QString dateAndTime(const QDateTime& time) {
    const QDateTime local = time.toLocalTime();
    const QDate day = local.date();
    const QTime clock = local.time();
    const CalendarTime at{
        .year = day.year(),
        .month = day.month(),
        .day = day.day(),
        .hour = clock.hour(),
        .minute = clock.minute()};
    return Text::date(at) + u' ' + Text::clock(at, Text::Hours::twoDigits);
}

QString pagesIn(std::size_t count) {
    return Text::counted("%n pages", "%n page", static_cast<qint64>(count));
}

} // namespace

QString Keeper::usualPageFile() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/Quorvane/Raincast_1/pages.cfg");
}

Keeper::Keeper(CRaincastApp& application, CGlobals::Persistant& settings, const QString& pageFile)
    : m_application(application), m_settings(settings),
      m_file(pageFile, examinePages<CRaincastApp>) {
    m_file.backup().setDecidedAgainst(m_settings.declinedBackup);
}

void Keeper::loadPages(QWidget* window) {
    std::optional<CRaincastApp> found(std::in_place);
    if (m_file.look(*found) == PageFile::State::unreadable) {
        sayUnreadable(window);
    } else if (m_file.offer()) {
        found.reset(); // its items would wake up, and update themselves, while the box is open
        askForBackup(window);
    }
    if (Modal::endRequested()) {
        return; // in the box: nothing was loaded, and nothing may replace the file
    }
    if (found) {
        m_application.takeFrom(*found);
    } else {
        m_file.load(m_application);
    }
    m_loaded = true;
}

void Keeper::sayUnreadable(QWidget* window) {
    const QString text =
        Text::tr("The pages in %1 cannot be read: %2. They are left as they are; nothing of "
                 "this run will be saved.")
            .arg(m_file.path(), m_file.reason());
    messageBox(window, text, CGlobals::title(), MessageIcon::exclamation);
    if (!Modal::asks()) {
        complain(text);
    }
}

void Keeper::askForBackup(QWidget* window) {
    const PageBackup::Offer& offer = *m_file.offer();
    const QString text = Text::tr("Some pages could not be read. Use the backup of %1 (%2)?")
                             .arg(dateAndTime(offer.date), pagesIn(offer.pages));
    const Answer answer = askQuestion(window, text, CGlobals::title(), Question::yesNo);
    if (answer != Answer::none || Modal::asks()) {
        m_file.answerOffer(answer == Answer::first);
        return;
    }
    complain(Text::tr("Some pages in %1 could not be read. It is left as it is, and so is "
                      "its backup of %2.")
                 .arg(m_file.path(), pagesIn(offer.pages)));
}

bool Keeper::keepsSettings() const {
    return m_file.state() != PageFile::State::unreadable && !m_givenUp;
}

void Keeper::Save::write() {
    if (pages) {
        pages->write();
    }
    if (settings != nullptr) {
        settingsResult = settings->saveBoth();
    }
}

Keeper::Save Keeper::begin() {
    Save save;
    if (keepsPages()) {
        auto pages = makeUsualFolder(m_file.path()).and_then([this] {
            return m_file.prepare(m_application);
        });
        if (!pages) {
            save.unwritable = pages.error();
        } else if (pages->bytes != m_lastPages) {
            save.pages = std::move(*pages);
        }
    }
    if (m_loaded && keepsSettings()) {
        if (!m_store) {
            m_store = RegistryStore::inStandardFolders();
        }
        PersistantData::putAll(*m_store, CGlobals::application());
        save.settings = &*m_store;
    }
    return save;
}

QStringList Keeper::finish(const Save& save) {
    QStringList problems;
    const auto notePages = [&problems](const QString& reason) {
        problems += Text::tr("The pages and marks cannot be saved: %1.").arg(reason);
    };
    if (save.unwritable) {
        notePages(*save.unwritable);
    }
    if (save.pages) {
        if (const auto saved = m_file.finish(*save.pages)) {
            m_lastPages = save.pages->bytes;
        } else {
            notePages(saved.error());
        }
        noteDeclinedBackup();
    }
    if (!save.settingsResult) {
        problems += Text::tr("The settings cannot be saved: %1.").arg(save.settingsResult.error());
    }
    return problems;
}

// The decision is one of the user's, who deleted pages, and belongs to the settings.
void Keeper::noteDeclinedBackup() {
    const QString before =
        std::exchange(m_settings.declinedBackup, m_file.backup().decidedAgainst());
    if (m_settings.declinedBackup != before) {
        UserChange::announce();
    }
}

std::optional<QString> Keeper::writePages() {
    const auto saved =
        makeUsualFolder(m_file.path()).and_then([this] { return m_file.save(m_application); });
    noteDeclinedBackup();
    if (saved) {
        return std::nullopt;
    }
    return Text::tr("The pages and marks cannot be saved in %1: %2.")
        .arg(m_file.path(), saved.error());
}

std::optional<QString> Keeper::writeSettings() {
    RegistryStore store = RegistryStore::inStandardFolders();
    const auto saved = PersistantData::saveAll(store, CGlobals::application());
    if (saved) {
        return std::nullopt;
    }
    return Text::tr("The settings cannot be saved in %1: %2.")
        .arg(store.path(RegistryStore::Branch::user), saved.error());
}

QStringList Keeper::problemsOf(std::initializer_list<Write> writes) {
    QStringList problems;
    for (const Write write : writes) {
        if (const auto problem = (this->*write)()) {
            problems.append(*problem);
        }
    }
    return problems;
}

void Keeper::savePages(Audience audience, QWidget* window) {
    if (!keepsPages()) {
        return; // the user has read so at the start
    }
    QStringList problems = problemsOf({&Keeper::writePages});
    if (!problems.isEmpty() && audience == Audience::user) {
        // One box for both: one fault often keeps both files from being written.
        problems += problemsOf({&Keeper::writeSettings});
    }
    insist(problems, {&Keeper::writePages, &Keeper::writeSettings}, audience, window);
}

void Keeper::saveSettings(Audience audience) {
    if (keepsSettings()) {
        insist(problemsOf({&Keeper::writeSettings}), {&Keeper::writeSettings}, audience, nullptr);
    }
}

// Tries again for as long as the user wants to.
void Keeper::insist(
    QStringList problems, std::initializer_list<Write> writes, Audience audience, QWidget* window
) {
    while (!problems.isEmpty()) {
        const QString text = problems.join(QStringLiteral("\n\n"));
        const Answer answer =
            audience == Audience::user
                ? askQuestion(
                      window,
                      text + u'\n' + u'\n' +
                          Text::tr("Discard loses what this run changed in them."),
                      CGlobals::title(), Question::retryDiscard
                  )
                : Answer::none;
        if (answer != Answer::first) {
            m_givenUp = answer == Answer::second;
            if (!m_givenUp) {
                complain(text + u' ' + Text::tr("What this run changed in them is lost."));
            }
            return;
        }
        problems = problemsOf(writes);
    }
}

void Keeper::complain(const QString& text) {
    const QString line = text.simplified();
    if (!m_complaints.contains(line)) { // a log-out saves, and the end that follows saves again
        m_complaints.append(line);
        qCCritical(viewerLog, "%s", qUtf8Printable(line));
    }
}

} // namespace raincast
