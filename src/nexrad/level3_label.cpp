// SPDX-License-Identifier: MIT
#include "nexrad/level3_label.h"

#include "nexrad/level3_cursor.h"
#include "nexrad/level3_description.h"
#include "nexrad/level3_wrapping.h"

namespace raincast {

namespace {

constexpr std::size_t kLengthOffset = 8;

/// The message's length by its header.
std::size_t lengthOf(QByteArrayView message) {
    Level3Cursor cursor(message);
    cursor.skip("the message header", kLengthOffset);
    return cursor.u32("the message's length");
}

} // namespace

tl::expected<Level3Label, QString> readLevel3Label(QByteArrayView bytes) {
    const auto message = unwrapLevel3(bytes);
    if (!message) {
        return tl::unexpected(message.error());
    }
    Level3Cursor cursor(message->bytes, message->offset);
    const Level3Description description = readLevel3Description(cursor);
    if (!cursor.ok()) {
        return tl::unexpected(cursor.result().error());
    }
    const auto there = static_cast<std::size_t>(message->bytes.size());
    if (const std::size_t length = lengthOf(message->bytes); length > there) {
        return tl::unexpected(
            QStringLiteral("the message has %1 of its %2 bytes").arg(there).arg(length)
        );
    }
    const std::string& id = message->awipsId;
    return Level3Label{
        id.size() > 3 ? id.substr(id.size() - 3) : std::string(), description.code,
        description.volumeTime, description.elevationDegrees};
}

} // namespace raincast
