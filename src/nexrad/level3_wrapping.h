// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace raincast {

/// A Level III message freed of what it travelled in.
struct Level3Message {
    std::string awipsId;    ///< "N0RTLX"; empty where no heading says
    std::string bytes;      ///< from the message header on
    std::size_t offset = 0; ///< of the message in the file
    bool unpacked = false;  ///< the message lay in zlib frames; `offset` is within what they held
    std::string error; ///< one sentence, when the wrapping is damaged; then nothing else counts
};

/// Takes off, where they are there: SOH with its sequence number, the WMO heading, the AWIPS
/// identifier, and zlib frames (in which both headings stand once more). ETX after the message
/// stays: a message says itself how long its parts are.
///
/// The frames of one file may hold 8 MiB in all.
[[nodiscard]] Level3Message unwrapLevel3(std::string_view file);

} // namespace raincast
