// SPDX-License-Identifier: MIT
#pragma once

#include "persist/registry_store.h"
#include "support/temporary_home.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>

namespace raincast {

/// The 64 bytes of a position in the shared file, spelled out.
struct PositionRecord {
    double latitude = 0;
    double longitude = 0;
    double course = 0;
    double speed = 0;
    double altitude = 0;
    std::uint32_t unixSeconds = 0;
    std::uint32_t valid = 0;
    double extra1 = 0;
    double extra2 = 0;

    [[nodiscard]] QByteArray bytes() const {
        QByteArray bytes;
        const auto append = [&bytes](auto number) {
            for (std::size_t i = 0; i < sizeof number; ++i) {
                bytes.append(static_cast<char>(number >> (8 * i) & 0xFF));
            }
        };
        for (const double number : {latitude, longitude, course, speed, altitude}) {
            append(std::bit_cast<std::uint64_t>(number));
        }
        append(unixSeconds);
        append(valid);
        append(std::bit_cast<std::uint64_t>(extra1));
        append(std::bit_cast<std::uint64_t>(extra2));
        return bytes;
    }
};

/// Folders of its own, and a registry that names one of them for the shared file.
class NavigatorHome : public test::TemporaryHome {
public:
    NavigatorHome() {
        QDir(root()).mkdir("temp");
        setFolder(path("temp"));
    }

    void setFolder(const QString& folder) const {
        RegistryStore store = RegistryStore::inStandardFolders();
        store.setString(
            RegistryStore::Branch::user, QStringLiteral("Software/Quorvane"),
            QStringLiteral("temp_folder"), folder
        );
        EXPECT_TRUE(store.save(RegistryStore::Branch::user));
    }
    void forgetFolder() const { QFile::remove(userRegistry()); }

    [[nodiscard]] QString sharedFile() const { return path("temp/QVAPI2.dat"); }
};

} // namespace raincast
