// SPDX-License-Identifier: MIT
#include "net/servers.h"

#include "core/number_in_range.h"
#include "core/text.h"

#include <QRegularExpression>

namespace raincast {

namespace {

constexpr int kLastPort = 65535;

/// Words for people, who may read of them when they do not answer.
[[maybe_unused]] constexpr const char* kOwnServers[] = {
    Text::marked("Raincast's live radar server"), Text::marked("Raincast's sample weather server")};

} // namespace

bool isServer(const QString& text) {
    // radar.example, radar.example.:80, 127.0.0.1:8155, [::1]
    static const QRegularExpression form(
        QStringLiteral("\\A(?:[A-Za-z0-9_][A-Za-z0-9._-]*|\\[[0-9A-Fa-f:.]+\\])(?::([0-9]+))?\\z")
    );
    const auto match = form.match(text);
    const QString port = match.captured(1);
    return match.hasMatch() && (port.isEmpty() || numberInRange(port, 1, kLastPort));
}

} // namespace raincast
