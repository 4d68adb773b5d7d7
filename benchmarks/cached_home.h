// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// Folders of its own for the viewer, in which a page with all map layers and a radar picture, or
/// an animation, has been shown and saved: everything is cached. Echoes are of pure green, yellow
/// and red. Ends the program when that fails.
class CachedHome {
public:
    static constexpr int kMostFrames = 25;

    /// With one frame, or an animation of 2 to 25. `more` are further arguments of the viewer that
    /// fills it.
    explicit CachedHome(int frames = kMostFrames, const QStringList& more = {});

    /// Programs that are started from now on show themselves there, and not offscreen.
    void use(const QProcessEnvironment& environment) { m_environment = environment; }
    [[nodiscard]] const QProcessEnvironment& environment() const { return m_environment; }

    /// Arguments of a viewer that shows the page, and whose servers do not answer.
    [[nodiscard]] QStringList viewer() const;

    /// Starts a program in it.
    void start(QProcess& process, const char* program, const QStringList& arguments) const;
    /// Runs one to its end, which has to be a good one.
    void run(const char* program, const QStringList& arguments) const;

    /// Gives the page that many marks, with names, all over the radar picture; instead of those
    /// that it has.
    void setMarks(int count);
    /// Adds a frame to the cache that is newer than the page's, as raincast-fetch would.
    void addNewerFrame() const;
    /// Has the map follow the position.
    void follow();

    /// Puts a sharp picture of twice as many pixels each way beside each cached one; and takes them
    /// away again.
    void addSharp() const;
    void removeSharp() const;

    [[nodiscard]] QString picture() const { return m_folder.filePath("picture.png"); }
    [[nodiscard]] QString pageFile() const { return m_folder.filePath("pages.cfg"); }

private:
    void animate(int frames) const;
    [[nodiscard]] QString siteFolder() const;
    [[nodiscard]] QByteArray pages() const;
    void setPages(const QByteArray& bytes) const;

    QTemporaryDir m_folder;
    QProcessEnvironment m_environment;
    QByteArray m_withoutMarks; ///< the page file before setMarks()
};
