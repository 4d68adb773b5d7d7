// SPDX-License-Identifier: MIT
#pragma once

#include "app/globals.h"
#include "persist/page_file.h"
#include "persist/registry_store.h"

#include <QString>
#include <QStringList>

#include <initializer_list>
#include <optional>

class QWidget;

namespace raincast {

class CRaincastApp;

/// Keeps pages, marks and settings from run to run: loads and saves them, says what goes wrong, and
/// asks what only the user can decide. Messages stand in a box over the window or, where nobody is
/// there to read it, on standard error.
class Keeper {
public:
    /// Where the page file is unless the settings or an option name another place. Makes nothing.
    [[nodiscard]] static QString usualPageFile();

    /// The settings are loaded. Application and settings are borrowed.
    Keeper(CRaincastApp& application, CGlobals::Persistant& settings, const QString& pageFile);

    /// Loads the pages, if there are any. Before that it says so if the file cannot be read, and
    /// asks whether to use the backup if the file was read in part. The window may be null.
    void loadPages(QWidget* window);

    /// Who is there when something cannot be saved.
    enum class Audience {
        user,  ///< may try again as often as they want to, or give up
        nobody ///< only standard error; there is no wait
    };

    /// Saves the pages, unless the file must stay as it is. If they cannot be saved, the user reads
    /// in the same box whether the settings cannot be saved either.
    void savePages(Audience audience, QWidget* window);
    /// A save on its way to the disk: begin() makes it, write() carries it out, in any thread, and
    /// finish() takes it back. Nothing else may be saved between the first and the last.
    struct Save {
        std::optional<PageSave> pages;     ///< unless they stay as they are
        RegistryStore* settings = nullptr; ///< null: they stay as they are
        tl::expected<void, QString> settingsResult;
        std::optional<QString> unwritable; ///< why there is nothing to write of the pages

        void write();
    };
    /// What there is to save at present. Empty while the pages are not loaded, and if nothing of
    /// this run is saved.
    [[nodiscard]] Save begin();
    /// What could not be saved, a sentence each.
    QStringList finish(const Save& save);
    /// Whether the pages are loaded: until then there is nothing to save.
    [[nodiscard]] bool loaded() const { return m_loaded; }

    /// Saves the settings, unless nothing of this run is saved or the user has given up. Needs no
    /// window.
    void saveSettings(Audience audience);

    /// Whether a message went to standard error, where nobody has read it.
    [[nodiscard]] bool complained() const { return !m_complaints.isEmpty(); }

private:
    using Write = std::optional<QString> (Keeper::*)();

    void sayUnreadable(QWidget* window);
    void askForBackup(QWidget* window);
    [[nodiscard]] std::optional<QString> writePages();
    [[nodiscard]] std::optional<QString> writeSettings();
    [[nodiscard]] QStringList problemsOf(std::initializer_list<Write> writes);
    void insist(
        QStringList problems, std::initializer_list<Write> writes, Audience audience,
        QWidget* window
    );
    void noteDeclinedBackup();
    void complain(const QString& text);

    [[nodiscard]] bool keepsPages() const { return m_loaded && !m_file.untouchable(); }
    [[nodiscard]] bool keepsSettings() const;

    CRaincastApp& m_application;
    CGlobals::Persistant& m_settings;
    PageFile m_file;
    QByteArray m_lastPages;               ///< that are in the file, as far as this knows
    std::optional<RegistryStore> m_store; ///< of saves in steps
    QStringList m_complaints;             ///< on standard error
    bool m_loaded = false;
    bool m_givenUp = false;
};

} // namespace raincast
