// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// Folders of its own for the viewer, in which a page with all map layers and an animation of 25
/// frames has been shown and saved: everything is cached. Ends the program when that fails.
class CachedHome {
public:
    /// `more` are further arguments of the viewer that fills it.
    explicit CachedHome(const QStringList& more = {});

    /// Starts a program in it, offscreen.
    void start(QProcess& process, const char* program, const QStringList& arguments) const;
    /// Runs one to its end, which has to be a good one.
    void run(const char* program, const QStringList& arguments) const;

    /// Puts a sharp picture of twice as many pixels each way beside each cached one; and takes them
    /// away again.
    void addSharp() const;
    void removeSharp() const;

    [[nodiscard]] QString picture() const { return m_folder.filePath("picture.png"); }
    [[nodiscard]] QString pageFile() const { return m_folder.filePath("pages.cfg"); }

private:
    void animate() const;
    [[nodiscard]] QString siteFolder() const;

    QTemporaryDir m_folder;
    QProcessEnvironment m_environment;
};
