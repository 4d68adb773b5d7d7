// SPDX-License-Identifier: MIT
#pragma once

#include "persist/serial_reader.h"

#include <QByteArray>

#include <cstddef>
#include <functional>
#include <span>
#include <utility>

namespace raincast {

/// The bytes of a page file, and what they hold.
struct PageBytes {
    /// A larger file is not a page file of ours and counts as one that cannot be read.
    static constexpr qint64 kMostBytes = 64 * 1024 * 1024;

    QByteArray bytes;
    std::size_t wholePages = 0;
    bool whole = false; ///< all of it was there and understood (CSerialReader::whole)

    [[nodiscard]] std::span<const std::uint8_t> span() const {
        return {
            reinterpret_cast<const std::uint8_t*>(bytes.constData()),
            static_cast<std::size_t>(bytes.size())};
    }
};

/// Reads bytes into an application, and finds out meanwhile what they hold.
[[nodiscard]] inline PageBytes readPages(QByteArray bytes, CSerializable& application) {
    PageBytes pages{std::move(bytes)};
    CSerialReader reader(pages.span());
    pages.whole = application.Read(reader) && reader.whole();
    pages.wholePages = reader.wholeObjects();
    return pages;
}

/// Finds out what bytes hold, without anybody seeing it.
using ExaminePages = std::function<PageBytes(QByteArray)>;

/// Examines by reading into an application of its own, which must show nothing and leave alone what
/// the program has.
template<typename Application>
[[nodiscard]] PageBytes examinePages(QByteArray bytes) {
    Application application;
    return readPages(std::move(bytes), application);
}

} // namespace raincast
