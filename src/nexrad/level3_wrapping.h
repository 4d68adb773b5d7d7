// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <string>
#include <tl/expected.hpp>

namespace raincast {

/// A Level III message without its wrapping.
struct Level3Message {
    std::string awipsId;    ///< "N0RTLX"; empty where no heading says
    QByteArray bytes;       ///< from the message header on
    std::size_t offset = 0; ///< of the message in the file
    bool unpacked = false;  ///< the message lay in zlib frames; `offset` counts unpacked bytes
};

/// Takes off, where they are there: SOH with its sequence number, the WMO heading, the AWIPS
/// identifier, and zlib frames (in which both headings stand once more). ETX after the message
/// stays: a message gives the lengths of its parts.
///
/// The frames of one file may hold 8 MiB in all. One sentence when the wrapping is damaged.
[[nodiscard]] tl::expected<Level3Message, QString> unwrapLevel3(QByteArrayView file);

} // namespace raincast
