// SPDX-License-Identifier: MIT
// Tables of mounts, in which whoever names a card has written: what is found lies where cards are,
// and none twice.
#include "core/storage_cards.h"
#include "input.h"

#include <QSet>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    const QStringList cards = storageCardsIn(Input(data, size).rest());
    for (const QString& card : cards) {
        require(
            card.startsWith(u"/media/") || card.startsWith(u"/run/media/") ||
            card.startsWith(u"/mnt/")
        );
    }
    require(QSet<QString>(cards.begin(), cards.end()).size() == cards.size());
    return 0;
}
