// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"

#include <QByteArray>
#include <QString>

#include <string>
#include <tl/expected.hpp>
#include <vector>

namespace raincast {

/// One page of a bucket's list of objects.
struct BucketListing {
    struct Entry {
        std::string key;
        QByteArray etag; ///< without quotes
        qint64 bytes = -1;
        FileTime modified = 0;
    };

    std::vector<Entry> entries;
    QByteArray nextToken; ///< asks for the next page; empty on the last one
};

/// Reads the answer to ListObjectsV2. One sentence for an answer that is not one, which may come
/// with any status.
[[nodiscard]] tl::expected<BucketListing, QString> readBucketListing(const QByteArray& xml);

/// What an error answer of a bucket says, "AccessDenied" for example; empty when it says nothing.
[[nodiscard]] QString bucketError(const QByteArray& xml);

/// An entity tag without its quotes and without "W/".
[[nodiscard]] QByteArray bareEtag(QByteArray etag);

} // namespace raincast
