// SPDX-License-Identifier: MIT
#pragma once

#include <QDir>
#include <QFile>
#include <QProcessEnvironment>
#include <QString>
#include <QTemporaryDir>

#include <map>

namespace raincast::test {

/// Folders of its own for everything that the program finds by the environment: settings, data,
/// sockets. Those of this process while it lives.
class TemporaryHome {
public:
    TemporaryHome() {
        for (const auto& [name, folder] : variables()) {
            m_before[name] = qgetenv(name);
            qputenv(name, QFile::encodeName(path(folder)));
        }
        QDir(m_folder.path()).mkdir("run");
        // As the desktop makes it; Qt complains of one that others may read.
        QFile::setPermissions(path("run"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    ~TemporaryHome() {
        for (const auto& [name, value] : m_before) {
            value.isNull() ? qunsetenv(name) : qputenv(name, value);
        }
    }
    TemporaryHome(const TemporaryHome&) = delete;
    TemporaryHome& operator=(const TemporaryHome&) = delete;

    [[nodiscard]] QString path(const QString& name) const { return m_folder.filePath(name); }
    [[nodiscard]] QString root() const { return m_folder.path(); }
    [[nodiscard]] QString userRegistry() const { return path("config/Quorvane/registry.json"); }
    [[nodiscard]] QString programFolder() const { return path("data/Quorvane/Raincast_1"); }
    [[nodiscard]] QString pageFile() const { return programFolder() + "/pages.cfg"; }

    /// The environment for a program that is to live here.
    [[nodiscard]] QProcessEnvironment environment() const {
        auto environment = QProcessEnvironment::systemEnvironment();
        for (const auto& [name, folder] : variables()) {
            environment.insert(name, path(folder));
        }
        environment.insert("HOME", root()); // pictures are saved there
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        return environment;
    }

private:
    static std::map<const char*, const char*> variables() {
        return {
            {"XDG_CONFIG_HOME", "config"},   {"XDG_CONFIG_DIRS", "etc"},
            {"XDG_DATA_HOME", "data"},       {"XDG_RUNTIME_DIR", "run"},
            {"RAINCAST_CARD_ROOT", "cards"},
        };
    }

    QTemporaryDir m_folder;
    std::map<const char*, QByteArray> m_before;
};

} // namespace raincast::test
