// SPDX-License-Identifier: MIT
// Settings files of any bytes: whatever they hold can be asked for, and a value that is saved over
// them is there afterwards. Damaged files are complained of on standard error; -close_fd_mask=2
// keeps that quiet.
#include "persist/registry_store.h"

#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

using namespace raincast;
using Branch = RegistryStore::Branch;

constexpr std::uint32_t kNumber = 0xFFFFFFFF;
// A save waits for the disk, while the fuzzer has many more files to try.
constexpr std::size_t kSavedOneIn = 16;
const QString kKey = QStringLiteral("Software/Quorvane/Raincast_1");
const QString kName = QStringLiteral("number");

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

void askForEverything(const RegistryStore& store, const QJsonObject& keys) {
    for (auto key = keys.begin(); key != keys.end(); ++key) {
        for (const QString& name : key.value().toObject().keys()) {
            static_cast<void>(store.dword(Branch::user, key.key(), name));
            static_cast<void>(store.binary(Branch::user, key.key(), name));
            static_cast<void>(store.string(Branch::user, key.key(), name));
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const QTemporaryDir folder(QStringLiteral("/dev/shm/registry-XXXXXX"));
    const QString machine = folder.filePath(QStringLiteral("none.json"));
    const QString path = folder.filePath(QStringLiteral("registry.json"));
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    file.close();

    RegistryStore store(machine, path);
    askForEverything(store, QJsonDocument::fromJson(bytes).object());
    if (size % kSavedOneIn != 0) {
        return 0;
    }
    store.setDword(Branch::user, kKey, kName, kNumber);
    require(store.save(Branch::user).has_value());
    require(RegistryStore(machine, path).dword(Branch::user, kKey, kName) == kNumber);
    return 0;
}
