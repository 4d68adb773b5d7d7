// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <cstdint>
#include <optional>
#include <tl/expected.hpp>

namespace raincast {

/// Settings of the installation: typed values under key paths, in two branches, each a JSON file
/// (docs/formats/registry.md). The machine branch holds what the installation sets for everybody,
/// the user branch what this user chose. The reader of a value decides which branch wins.
///
/// Key paths are joined by '/', such as "Software/Quorvane/Raincast_1/CGlobals"; case
/// counts in them and in the names of values. A value that is missing, of another type, or not of
/// its type's form counts as missing. Keys and values of others are kept by every save.
///
/// A file that is not a JSON object is set aside as "<file>.bad" and counts as empty; a message on
/// standard error says so once. No operation here asks or waits.
class RegistryStore {
public:
    enum class Branch { machine, user };

    /// A file larger than this is as good as damaged.
    static constexpr qint64 kMaxSize = 16 * 1024 * 1024;

    /// Reads both files; a missing one is empty.
    RegistryStore(const QString& machineFile, const QString& userFile);

    /// "Quorvane/registry.json" in $XDG_CONFIG_HOME (user) and in the folders of $XDG_CONFIG_DIRS
    /// (machine): the first that exists in their order, or else the one of the first folder.
    [[nodiscard]] static RegistryStore inStandardFolders();

    [[nodiscard]] const QString& path(Branch branch) const { return file(branch).path; }

    [[nodiscard]] std::optional<std::uint32_t>
    dword(Branch branch, const QString& key, const QString& name) const;
    [[nodiscard]] std::optional<QByteArray>
    binary(Branch branch, const QString& key, const QString& name) const;
    /// The text up to the first U+0000, if there is one.
    [[nodiscard]] std::optional<QString>
    string(Branch branch, const QString& key, const QString& name) const;

    /// A string below the classes root: the key "Software/Classes/<key>" of the user branch, then
    /// of the machine branch.
    [[nodiscard]] std::optional<QString>
    classesString(const QString& key, const QString& name) const;

    // Changes are seen by the readers above at once; they reach the file with save().
    void setDword(Branch branch, const QString& key, const QString& name, std::uint32_t value);
    void setBinary(Branch branch, const QString& key, const QString& name, const QByteArray& value);
    void setString(Branch branch, const QString& key, const QString& name, const QString& value);
    /// Creates a key without values, unless it exists.
    void addKey(Branch branch, const QString& key);

    /// Reads the branch's file again, puts the changes made since the last save into it and
    /// replaces it as a whole, creating its folder; does not touch a file that has them already.
    /// A failure leaves the old file as it was, and the changes waiting; the reason has no full
    /// stop: "Permission denied".
    [[nodiscard]] tl::expected<void, QString> save(Branch branch);

    /// Moves the changes that wait for the machine branch to the user branch, for when the
    /// machine's file cannot be written.
    void moveMachineChangesToUser();

    /// Saves both branches. It fails when the user's cannot be written; that the machine's cannot
    /// is no failure, what was meant for it is then the user's. May be called in another thread,
    /// while nothing else uses the store.
    [[nodiscard]] tl::expected<void, QString> saveBoth();

private:
    struct File {
        QString path;
        QJsonObject keys;    ///< as last read, with the changes
        QJsonObject changes; ///< keys and values that wait for save()
        bool complained = false;
    };

    [[nodiscard]] const File& file(Branch branch) const;
    [[nodiscard]] File& file(Branch branch);
    [[nodiscard]] QJsonValue
    value(Branch branch, const QString& key, const QString& name, const char* type) const;
    void change(Branch branch, const QString& key, const QJsonObject& values);
    [[nodiscard]] static tl::expected<QJsonObject, QString> read(File& file);
    [[nodiscard]] static tl::expected<QJsonObject, QString>
    setAside(File& file, const QString& why);

    File m_machine;
    File m_user;
};

} // namespace raincast
