// SPDX-License-Identifier: MIT
#include "map/view_bytes.h"

#include "persist/little_endian.h"

namespace raincast {

ViewBytes viewToBytes(const ViewTransform& view) {
    ViewBytes bytes{};
    storeLittleEndian<std::int32_t>(view.zoom(), bytes.data());
    storeLittleEndian<std::int32_t>(view.origin().column, bytes.data() + 4);
    storeLittleEndian<std::int32_t>(view.origin().row, bytes.data() + 8);
    return bytes;
}

ViewTransform viewFromBytes(const ViewBytes& bytes) {
    return {
        loadLittleEndian<std::int32_t>(bytes.data()),
        {loadLittleEndian<std::int32_t>(bytes.data() + 4),
         loadLittleEndian<std::int32_t>(bytes.data() + 8)}};
}

} // namespace raincast
