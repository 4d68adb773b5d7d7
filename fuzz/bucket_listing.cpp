// SPDX-License-Identifier: MIT
// The answers of a bucket: whatever the bytes, reading ends with a list or a reason.
#include "provider/bucket_listing.h"

#include "provider/live_object.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto listing = readBucketListing(bytes);
    if (!listing) {
        if (listing.error().isEmpty()) {
            std::abort();
        }
        return 0;
    }
    for (const BucketListing::Entry& entry : listing->entries) {
        const auto object = readKey(entry.key);
        if (entry.bytes < -1 || (object && keyOf(object->name, object->time) != entry.key)) {
            std::abort();
        }
    }
    return 0;
}
