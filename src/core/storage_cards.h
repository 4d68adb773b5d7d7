// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QStringList>

namespace raincast {

/// The environment variable that names a folder whose sub-folders stand in for storage cards.
inline constexpr const char* kCardRootVariable = "RAINCAST_CARD_ROOT";

/// The root folders of the storage cards that are mounted now, in the order they were mounted.
/// With RAINCAST_CARD_ROOT set (tests, trials) these are all folders in that one, by name.
/// Touches no volume: a mount whose server is gone does not block.
[[nodiscard]] QStringList ListStorageCards();

/// The storage cards in a mount table of the form of /proc/self/mountinfo: what is mounted from a
/// local device, for writing, below /media, /run/media or /mnt, and not hidden by a later mount.
/// Lines that are not of that form are skipped, and names that are not UTF-8.
[[nodiscard]] QStringList storageCardsIn(const QByteArray& mountTable);

} // namespace raincast
