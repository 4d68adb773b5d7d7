// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>

namespace raincast {

/// Whether the header of a netCDF file of the classic forms (CDF-1, CDF-2, CDF-5) can be believed:
/// what it counts is there, and its variables lie within the file. The library believes all of them
/// and asks for memory, gigabytes of it, before it looks.
///
/// `bytes` are the file's first, its header at least; `fileBytes` is how many it has in all.
[[nodiscard]] bool isSoundNetcdfHeader(QByteArrayView bytes, qint64 fileBytes);

} // namespace raincast
