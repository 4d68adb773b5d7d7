// SPDX-License-Identifier: MIT
#pragma once

class QByteArray;
class QString;

namespace raincast {

/// Replaces a file as a whole, or creates it: a power cut or a full disk at any moment leaves
/// either the old file or the new one, and once this returned true the new bytes are on the disk.
/// The folder must exist. False leaves the old file as it was.
[[nodiscard]] bool replaceFile(const QString& path, const QByteArray& bytes);

} // namespace raincast
