// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QProcess>
#include <QRgb>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <functional>

/// An X server without glass, for as long as this lives. What its screen shows is looked at from
/// outside: no program has to help.
class Screen {
public:
    Screen();
    ~Screen();
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    /// What it is called, as DISPLAY has it.
    [[nodiscard]] QString display() const { return m_display; }

    /// An environment in which programs show themselves here.
    [[nodiscard]] QProcessEnvironment environment(QProcessEnvironment base) const;

    using Seen = std::function<bool()>;
    /// Whether a program has painted: as many pixels are no longer those of the empty screen as a
    /// square window of that side has, by default a small one.
    [[nodiscard]] bool showsSomething(int side = 250) const;
    /// Whether echoes of the radar pictures of CachedHome are there.
    [[nodiscard]] bool showsEchoes() const;

    /// Waits until a program shows that, or until the screen is empty after it, and ends this
    /// program where it takes more than a minute.
    void waitUntil(const Seen& seen, const QString& program) const;
    void waitUntilEmpty(const QString& program) const;

    /// Starts a program and gives the milliseconds until that is seen; then kills it and waits for
    /// the empty screen.
    [[nodiscard]] double millisecondsUntil(
        const Seen& seen, const QProcessEnvironment& environment, const QString& program,
        const QStringList& arguments
    ) const;

private:
    void waitFor(const Seen& seen, const QString& otherwise) const;
    [[nodiscard]] int count(const std::function<bool(QRgb)>& wanted) const;

    QTemporaryDir m_folder;
    QProcess m_server;
    QString m_display;
    const uchar* m_pixels = nullptr;
    quint32 m_stride = 0;
    quint32 m_width = 0;
    quint32 m_height = 0;
};
