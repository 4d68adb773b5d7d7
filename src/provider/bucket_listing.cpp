// SPDX-License-Identifier: MIT
#include "provider/bucket_listing.h"

#include <QDateTime>
#include <QXmlStreamReader>

namespace raincast {

namespace {

// A page has a thousand at most.
constexpr std::size_t kMostEntries = 5000;

BucketListing::Entry readEntry(QXmlStreamReader& xml) {
    BucketListing::Entry entry;
    while (xml.readNextStartElement()) {
        const auto name = xml.name().toString();
        if (name == u"Key") {
            entry.key = xml.readElementText(QXmlStreamReader::SkipChildElements).toStdString();
        } else if (name == u"ETag") {
            entry.etag =
                bareEtag(xml.readElementText(QXmlStreamReader::SkipChildElements).toUtf8());
        } else if (name == u"Size") {
            bool isNumber = false;
            const auto text = xml.readElementText(QXmlStreamReader::SkipChildElements);
            const qint64 bytes = text.toLongLong(&isNumber);
            entry.bytes = isNumber && bytes >= 0 ? bytes : -1;
        } else if (name == u"LastModified") {
            const auto time = QDateTime::fromString(
                xml.readElementText(QXmlStreamReader::SkipChildElements), Qt::ISODateWithMs
            );
            entry.modified = time.isValid() && time.toSecsSinceEpoch() >= 0
                                 ? kUnixEpoch + time.toSecsSinceEpoch() * kFileTimePerSecond
                                 : 0;
        } else {
            xml.skipCurrentElement();
        }
    }
    return entry;
}

} // namespace

QByteArray bareEtag(QByteArray etag) {
    if (etag.startsWith("W/")) {
        etag.remove(0, 2);
    }
    return etag.replace('"', QByteArray());
}

tl::expected<BucketListing, QString> readBucketListing(const QByteArray& bytes) {
    QXmlStreamReader xml(bytes);
    if (!xml.readNextStartElement() || xml.name() != u"ListBucketResult") {
        const QString error = bucketError(bytes);
        return tl::unexpected(
            error.isEmpty() ? QStringLiteral("the answer is no list of objects")
                            : QStringLiteral("the answer says ") + error
        );
    }
    BucketListing listing;
    bool isTruncated = false;
    while (xml.readNextStartElement()) {
        const auto name = xml.name().toString();
        if (name == u"Contents" && listing.entries.size() < kMostEntries) {
            listing.entries.push_back(readEntry(xml));
        } else if (name == u"IsTruncated") {
            isTruncated = xml.readElementText(QXmlStreamReader::SkipChildElements) == u"true";
        } else if (name == u"NextContinuationToken") {
            listing.nextToken = xml.readElementText(QXmlStreamReader::SkipChildElements).toUtf8();
        } else {
            xml.skipCurrentElement();
        }
    }
    if (xml.hasError()) {
        return tl::unexpected(
            QStringLiteral("the list of objects is not whole: ") + xml.errorString()
        );
    }
    if (!isTruncated) {
        listing.nextToken.clear();
    }
    return listing;
}

QString bucketError(const QByteArray& bytes) {
    QXmlStreamReader xml(bytes);
    if (!xml.readNextStartElement() || xml.name() != u"Error") {
        return {};
    }
    while (xml.readNextStartElement()) {
        if (xml.name() == u"Code") {
            return xml.readElementText(QXmlStreamReader::SkipChildElements).left(60);
        }
        xml.skipCurrentElement();
    }
    return {};
}

} // namespace raincast
