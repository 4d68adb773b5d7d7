// SPDX-License-Identifier: MIT
#pragma once

#include "provider/live_object.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <tl/expected.hpp>

namespace raincast {

/// The time of the volume in a provider's object: the bytes are a whole product, of this site, and
/// not of the future. One sentence when they are not.
[[nodiscard]] tl::expected<FileTime, QString>
checkProduct(const QByteArray& bytes, const std::string& site);

/// The reason why bytes are not the object that was asked for: checkProduct(), and the time of its
/// key within a minute.
[[nodiscard]] std::optional<QString> whyNot(const LiveObject& object, const QByteArray& bytes);

} // namespace raincast
