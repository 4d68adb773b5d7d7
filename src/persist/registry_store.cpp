// SPDX-License-Identifier: MIT
#include "persist/registry_store.h"

#include "core/folders.h"
#include "core/whole_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QStandardPaths>
#include <QStringList>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <limits>

namespace raincast {

namespace {

constexpr const char* kDword = "dword";
constexpr const char* kBinary = "binary";
constexpr const char* kString = "string";

const QString kType = QStringLiteral("type");
const QString kValue = QStringLiteral("value");
const QString kFile = QStringLiteral("Quorvane/registry.json");
const QString kClassesRoot = QStringLiteral("Software/Classes/");

bool isHex(const QString& text) {
    const auto isDigit = [](QChar c) {
        return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
    };
    return text.size() % 2 == 0 && std::all_of(text.begin(), text.end(), isDigit);
}

QJsonObject named(const QString& name, const char* type, const QJsonValue& value) {
    return {{name, QJsonObject{{kType, QLatin1String(type)}, {kValue, value}}}};
}

// Puts keys and their values over those of `keys`; all others stay.
void merge(QJsonObject& keys, const QJsonObject& changes) {
    for (auto key = changes.begin(); key != changes.end(); ++key) {
        QJsonObject values = keys.value(key.key()).toObject();
        const QJsonObject changed = key.value().toObject();
        for (auto value = changed.begin(); value != changed.end(); ++value) {
            values.insert(value.key(), value.value());
        }
        keys.insert(key.key(), values);
    }
}

} // namespace

RegistryStore::RegistryStore(const QString& machineFile, const QString& userFile) {
    m_machine.path = machineFile;
    m_user.path = userFile;
    for (File* file : {&m_machine, &m_user}) {
        file->keys = read(*file).value_or(QJsonObject());
    }
}

RegistryStore RegistryStore::inStandardFolders() {
    // The user's folder comes first, then those for everybody.
    QStringList files = QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation);
    for (QString& file : files) {
        file = QDir(file).filePath(kFile);
    }
    const QString user = files.takeFirst();
    const auto there = std::find_if(files.begin(), files.end(), [](const QString& file) {
        return QFileInfo::exists(file);
    });
    return {there != files.end() ? *there : files.value(0), user};
}

const RegistryStore::File& RegistryStore::file(Branch branch) const {
    return branch == Branch::machine ? m_machine : m_user;
}

RegistryStore::File& RegistryStore::file(Branch branch) {
    return branch == Branch::machine ? m_machine : m_user;
}

QJsonValue RegistryStore::value(
    Branch branch, const QString& key, const QString& name, const char* type
) const {
    const QJsonObject entry = file(branch).keys.value(key).toObject().value(name).toObject();
    return entry.value(kType) == QLatin1String(type) ? entry.value(kValue) : QJsonValue();
}

std::optional<std::uint32_t>
RegistryStore::dword(Branch branch, const QString& key, const QString& name) const {
    const QJsonValue found = value(branch, key, name, kDword);
    // toInteger gives its default for a fraction and for a number beyond 64 bits.
    const qint64 number = found.toInteger(-1);
    if (number < 0 || number > std::numeric_limits<std::uint32_t>::max()) {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(number);
}

std::optional<QByteArray>
RegistryStore::binary(Branch branch, const QString& key, const QString& name) const {
    const QJsonValue found = value(branch, key, name, kBinary);
    const QString hex = found.toString();
    if (!found.isString() || !isHex(hex)) {
        return std::nullopt;
    }
    return QByteArray::fromHex(hex.toLatin1());
}

std::optional<QString>
RegistryStore::string(Branch branch, const QString& key, const QString& name) const {
    const QJsonValue found = value(branch, key, name, kString);
    if (!found.isString()) {
        return std::nullopt;
    }
    const QString text = found.toString();
    const qsizetype end = text.indexOf(QChar(u'\0'));
    return end < 0 ? text : text.left(end);
}

std::optional<QString> RegistryStore::classesString(const QString& key, const QString& name) const {
    const auto ofUser = string(Branch::user, kClassesRoot + key, name);
    return ofUser ? ofUser : string(Branch::machine, kClassesRoot + key, name);
}

void RegistryStore::setDword(
    Branch branch, const QString& key, const QString& name, std::uint32_t value
) {
    change(branch, key, named(name, kDword, static_cast<qint64>(value)));
}

void RegistryStore::setBinary(
    Branch branch, const QString& key, const QString& name, const QByteArray& value
) {
    change(branch, key, named(name, kBinary, QString::fromLatin1(value.toHex())));
}

void RegistryStore::setString(
    Branch branch, const QString& key, const QString& name, const QString& value
) {
    change(branch, key, named(name, kString, value));
}

void RegistryStore::addKey(Branch branch, const QString& key) {
    change(branch, key, {});
}

void RegistryStore::change(Branch branch, const QString& key, const QJsonObject& values) {
    merge(file(branch).keys, {{key, values}});
    merge(file(branch).changes, {{key, values}});
}

tl::expected<void, QString> RegistryStore::save(Branch branch) {
    File& target = file(branch);
    const auto stored = read(target);
    if (!stored) {
        return tl::make_unexpected(stored.error());
    }
    QJsonObject keys = *stored;
    merge(keys, target.changes);
    if (keys != *stored) {
        const auto written = makeFolder(QFileInfo(target.path).path()).and_then([&] {
            return replaceFile(target.path, QJsonDocument(keys).toJson(), Lasting::yes);
        });
        if (!written) {
            return written;
        }
    }
    target.keys = keys;
    target.changes = {};
    return {};
}

tl::expected<void, QString> RegistryStore::saveBoth() {
    if (!save(Branch::machine)) {
        moveMachineChangesToUser();
    }
    return save(Branch::user);
}

void RegistryStore::moveMachineChangesToUser() {
    merge(m_user.keys, m_machine.changes);
    merge(m_user.changes, m_machine.changes);
    m_machine.changes = {};
}

// The keys of a file, none when it is missing or was set aside. It fails when there is a file that
// neither can be read nor be moved out of the way, and that must not be written over.
tl::expected<QJsonObject, QString> RegistryStore::read(File& file) {
    using Kind = ReadFailure::Kind;
    const auto bytes = readWhole(file.path, kMaxSize);
    if (!bytes && bytes.error().kind == Kind::absent) {
        return QJsonObject();
    }
    if (!bytes && bytes.error().kind == Kind::unreadable) {
        return tl::make_unexpected(bytes.error().reason);
    }
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(bytes.value_or(QByteArray()), &error);
    if (document.isObject()) {
        return document.object();
    }
    const QString why =
        !bytes || error.error == QJsonParseError::NoError
            ? QStringLiteral("no JSON object of a sensible size")
            : QStringLiteral("%1 at byte %2").arg(error.errorString()).arg(error.offset);
    return setAside(file, why);
}

// The file counts as empty once it is out of the way.
tl::expected<QJsonObject, QString> RegistryStore::setAside(File& file, const QString& why) {
    const QString bad = file.path + QStringLiteral(".bad");
    const bool moved = std::rename(QFile::encodeName(file.path), QFile::encodeName(bad)) == 0;
    const QString failure = qt_error_string(errno);
    if (!file.complained) {
        file.complained = true;
        std::fprintf(
            stderr, "The settings in %s cannot be read (%s); defaults are used.%s%s%s\n",
            qPrintable(file.path), qPrintable(why), moved ? " The file is kept as " : "",
            moved ? qPrintable(bad) : "", moved ? "." : ""
        );
    }
    if (!moved) {
        return tl::make_unexpected(failure);
    }
    return QJsonObject();
}

} // namespace raincast
