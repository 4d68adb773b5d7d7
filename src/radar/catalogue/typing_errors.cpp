// SPDX-License-Identifier: MIT
#include "radar/catalogue/typing_errors.h"

#include <QString>

#include <algorithm>
#include <numeric>

namespace raincast {

std::size_t typingErrors(QStringView typed, QStringView meant) {
    const QString from = typed.toString().toCaseFolded();
    const QString to = meant.toString().toCaseFolded();
    const auto columns = static_cast<std::size_t>(to.size()) + 1;
    // One row per letter of `from`: the errors between its first letters and those of `to`.
    std::vector<std::size_t> beforeLast(columns);
    std::vector<std::size_t> last(columns);
    std::vector<std::size_t> row(columns);
    std::iota(row.begin(), row.end(), 0U);
    for (qsizetype i = 0; i < from.size(); ++i) {
        beforeLast.swap(last);
        last.swap(row);
        row[0] = last[0] + 1;
        for (std::size_t j = 1; j < columns; ++j) {
            const auto at = static_cast<qsizetype>(j) - 1;
            const std::size_t wrong = from[i] == to[at] ? 0 : 1;
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + wrong});
            if (i > 0 && at > 0 && from[i] == to[at - 1] && from[i - 1] == to[at]) {
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
            }
        }
    }
    return row.back();
}

std::vector<std::size_t>
fewestTypingErrors(QStringView typed, const std::vector<QStringView>& candidates) {
    std::vector<std::size_t> best;
    std::size_t fewest = 0;
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        const std::size_t errors = typingErrors(typed, candidates[i]);
        if (best.empty() || errors < fewest) {
            best.clear();
            fewest = errors;
        }
        if (errors == fewest) {
            best.push_back(i);
        }
    }
    return best;
}

} // namespace raincast
