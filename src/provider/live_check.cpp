// SPDX-License-Identifier: MIT
#include "provider/live_check.h"

#include "core/clock.h"
#include "nexrad/level3_kinds.h"
#include "nexrad/level3_label.h"

#include <cstdlib>

namespace raincast {

namespace {

// Clocks differ.
constexpr FileTime kMostAhead = 10 * kFileTimePerMinute;
constexpr FileTime kMostApart = kFileTimePerMinute;

} // namespace

tl::expected<FileTime, QString> checkProduct(const QByteArray& bytes, const std::string& site) {
    const auto label = readLevel3Label(bytes);
    if (!label) {
        return tl::unexpected(label.error());
    }
    if (findLevel3Kind(label->code) == nullptr) {
        return tl::unexpected(
            QStringLiteral("it is product %1, which cannot be shown").arg(label->code)
        );
    }
    if (!label->site.empty() && label->site != site) {
        return tl::unexpected(QStringLiteral("it is of %1").arg(QString::fromStdString(label->site))
        );
    }
    if (label->volumeTime > Clock::current().now() + kMostAhead) {
        return tl::unexpected(QStringLiteral("its time is in the future"));
    }
    return label->volumeTime;
}

std::optional<QString> whyNot(const LiveObject& object, const QByteArray& bytes) {
    const auto time = checkProduct(bytes, object.name.site);
    if (!time) {
        return time.error();
    }
    if (std::abs(*time - object.time) > kMostApart) {
        return QStringLiteral("its time is not that of its name");
    }
    return std::nullopt;
}

} // namespace raincast
