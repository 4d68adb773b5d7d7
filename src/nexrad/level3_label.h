// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"

#include <QByteArrayView>
#include <QString>

#include <string>
#include <tl/expected.hpp>

namespace raincast {

/// What a Level III product says that it is.
struct Level3Label {
    std::string site; ///< three letters; empty where no heading says
    int code = 0;     ///< of the product
    FileTime volumeTime = 0;
    double elevationDegrees = 0; ///< as it stands there; some codes mean nothing by it
};

/// Reads a product's label and finds out whether the message is all there by the length that its
/// header tells, without decoding the picture. One sentence when something is wrong.
[[nodiscard]] tl::expected<Level3Label, QString> readLevel3Label(QByteArrayView bytes);

} // namespace raincast
