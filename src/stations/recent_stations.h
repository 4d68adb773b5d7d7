// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

namespace raincast {

/// The sites that the user has chosen, the latest first, at most five. They are kept in the
/// settings record "CStations" as "recent".
class RecentStations {
public:
    static constexpr int kMost = 5;

    [[nodiscard]] static QStringList ids();
    static void note(const QString& id);
    static void forget();

private:
    class Persistant;
};

} // namespace raincast
