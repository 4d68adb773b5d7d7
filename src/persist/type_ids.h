// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace raincast {

/// The numbers that stand in front of objects in the page file, one per creatable class.
///
/// These values are in users' files: never change one, never give one to another class. When a
/// class goes, its line stays, marked as retired. Numbers missing below were given out once; a new
/// class takes the next one after the highest.
enum TypeId : std::uint32_t {
    kTypeSerializableList = 0, ///< CSerializableList
    kTypePageDisplay = 10,     ///< CPageDisplay, and CPageDefaultWeather, which comes back as one
    kTypeOverlayMark = 20,     ///< COverlayMark
    kTypeMarkManager = 21,     ///< CMarkManager
    kTypeImage = 28,           ///< CPageDisplay::CImage
    kTypeItemWeather = 30,     ///< CItemWeather
    kTypeNone = 0xFFFFFFFF,    ///< classes without a number of their own: written, never created
};

} // namespace raincast
