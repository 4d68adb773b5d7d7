// SPDX-License-Identifier: MIT
#pragma once

#include "app/globals.h"
#include "persist/page_file.h"

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
    void complain(const QString& text);

    CRaincastApp& m_application;
    CGlobals::Persistant& m_settings;
    PageFile m_file;
    QStringList m_complaints; ///< on standard error
    bool m_loaded = false;
    bool m_givenUp = false;
};

} // namespace raincast
