// SPDX-License-Identifier: MIT
#pragma once

#include "net/file_kind.h"
#include "net/http_settings.h"

#include <QByteArray>

#include <memory>

namespace raincast {

class ByteAllowance;

/// What a download is to bring.
struct DownloadOrder {
    enum class Body {
        /// A file: a body of its kind, of at most fileBytes and of what the allowance has left. A
        /// status of 300 and above means that there is none.
        file,
        /// A listing: any status and any body, of which the first listingBytes are taken.
        listing,
    };

    QByteArray url;
    Body body = Body::file;
    FileKind kind = kAnyFile;                           ///< of a file
    std::shared_ptr<ByteAllowance> allowance = nullptr; ///< of a file; null: as much as it likes
    QByteArray knownTag = {};                           ///< of the bytes that are there already
    HttpLimits limits = httpLimits();

    /// Whether another's response would do for this one as well.
    [[nodiscard]] bool sameAs(const DownloadOrder& other) const {
        return url == other.url && body == other.body && kind.isOne == other.kind.isOne &&
               kind.mustBeWhole == other.kind.mustBeWhole && knownTag == other.knownTag;
    }
};

} // namespace raincast
