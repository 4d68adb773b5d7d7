// SPDX-License-Identifier: MIT
#pragma once

#include "sharp/sharp_source.h"

#include <QString>

#include <map>
#include <set>

namespace raincast {

/// What is known of the folders of sharp pictures ("/ridge/x2/") of the present servers.
class SharpServers {
public:
    /// A picture of this folder was seen, on the server or in the cache.
    void noteSome(const QString& folder) { m_some.insert(folder); }
    [[nodiscard]] bool hasSome(const QString& folder) const { return m_some.contains(folder); }

    /// The server lacks a picture of this folder. Returns whether it can be taken to have none at
    /// all. Layers speak for the whole folder, since every site has them; a frame may just be too
    /// old.
    [[nodiscard]] bool lacksAll(const QString& folder, SharpSource::Use use);

private:
    struct Lacks {
        int layers = 0;
        int others = 0;
    };

    std::set<QString> m_some;
    std::map<QString, Lacks> m_lacks;
};

} // namespace raincast
