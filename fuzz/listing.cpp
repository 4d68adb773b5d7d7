// SPDX-License-Identifier: MIT
// Directory listings of any bytes: however they are cut into pieces the same strings are found, and
// no more of them than there are quotes for.
#include "net/quoted_string_scanner.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

std::set<QString> stringsIn(QByteArrayView bytes, qsizetype pieceSize) {
    std::set<QString> strings;
    raincast::QuotedStringScanner scanner(strings);
    for (qsizetype at = 0; at < bytes.size(); at += pieceSize) {
        scanner.scan(bytes.sliced(at, std::min(pieceSize, bytes.size() - at)));
    }
    return strings;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const QByteArrayView bytes(data + 1, static_cast<qsizetype>(size - 1));
    const auto whole = stringsIn(bytes, bytes.size() + 1);
    const auto quotes = std::count(bytes.begin(), bytes.end(), '"');
    if (static_cast<std::ptrdiff_t>(whole.size()) > quotes / 2 ||
        stringsIn(bytes, data[0] % 64 + 1) != whole) {
        std::abort();
    }
    return 0;
}
