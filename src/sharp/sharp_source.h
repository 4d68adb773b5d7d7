// SPDX-License-Identifier: MIT
#pragma once

#include "net/file_kind.h"

#include <QString>

namespace raincast {

/// What a sharp picture is of: a picture of the described size that the cache has.
struct SharpSource {
    enum class Server { radar, basemap };
    enum class Use {
        frame, ///< of a loop: has one byte a pixel, may be packed
        warnings,
        layer,
    };

    QString path; ///< on the server, of the described picture
    QString file; ///< in the cache, of the described picture
    FileKind kind;
    Server server = Server::radar;
    Use use = Use::frame;
};

} // namespace raincast
