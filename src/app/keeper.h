// SPDX-License-Identifier: MIT
#pragma once

#include "persist/page_file.h"

#include <QString>
#include <QStringList>

#include <initializer_list>
#include <optional>

class QWidget;

namespace raincast {

class CRaincastApp;

/// Keeps pages, marks and settings from run to run: loads and saves them, says what goes wrong, and
/// asks what only the user can decide. What is said stands in a box over the window; where there
/// is nobody to read it, on standard error.
class Keeper {
public:
    /// Where the page file is until somebody says otherwise. Makes nothing.
    [[nodiscard]] static QString usualPageFile();

    /// The settings are loaded. The application is borrowed.
    Keeper(CRaincastApp& application, const QString& pageFile);

    /// Loads the pages, if there are any to load; before that it says so if the file cannot be
    /// read, and asks whether to use its backup if it was read in part. The window may be null.
    void loadPages(QWidget* window);

    /// Who is there when something cannot be saved.
    enum class Audience {
        user,  ///< may try again as often as he wants to, or give up
        nobody ///< standard error alone; nothing is waited for
    };

    /// Saves the pages, unless the file is to be left as it is. Where the user is told that they
    /// cannot be saved, he is told in the same box if the settings cannot be saved either.
    void savePages(Audience audience, QWidget* window);
    /// Saves the settings, unless nothing of this run is saved or the user has given up. There need
    /// be no window any more.
    void saveSettings(Audience audience);

    /// Whether something was said on standard error: nobody has read it.
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
    PageFile m_file;
    QStringList m_complaints; ///< on standard error
    bool m_loaded = false;
    bool m_givenUp = false;
};

} // namespace raincast
