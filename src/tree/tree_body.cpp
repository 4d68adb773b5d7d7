// SPDX-License-Identifier: MIT
#include "tree/tree_body.h"

#include <QCryptographicHash>

#include <zlib.h>

#include <mutex>

namespace raincast {

namespace {

// Fewer bytes fill a packet of the network no better when they are packed.
constexpr qsizetype kLeastBytes = 512;

// 15 is zlib's largest window; 16 asks for gzip's form around it.
constexpr int kGzipWindow = 15 + 16;
constexpr int kUsualMemory = 8;

std::string tagOf(const QByteArray& bytes) {
    const QByteArray hash = QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex();
    return '"' + hash.left(20).toStdString() + '"';
}

/// Empty where it would not be shorter.
QByteArray gzip(const QByteArray& bytes) {
    z_stream stream{};
    if (deflateInit2(
            &stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, kGzipWindow, kUsualMemory,
            Z_DEFAULT_STRATEGY
        ) != Z_OK) {
        return {};
    }
    QByteArray packed(bytes.size(), Qt::Uninitialized);
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.constData()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    const bool isDone = deflate(&stream, Z_FINISH) == Z_STREAM_END;
    packed.resize(isDone ? static_cast<qsizetype>(stream.total_out) : 0);
    deflateEnd(&stream);
    return packed;
}

} // namespace

struct TreeBody::Shared {
    QByteArray bytes;
    std::once_flag tagged;
    std::string tag;
    std::once_flag packed;
    QByteArray gzipped;
};

TreeBody::TreeBody(QByteArray bytes) : m_shared(std::make_shared<Shared>()) {
    m_shared->bytes = std::move(bytes);
}

const QByteArray& TreeBody::bytes() const {
    return m_shared->bytes;
}

const std::string& TreeBody::tag() const {
    std::call_once(m_shared->tagged, [this] { m_shared->tag = tagOf(m_shared->bytes); });
    return m_shared->tag;
}

const QByteArray& TreeBody::gzipped() const {
    std::call_once(m_shared->packed, [this] {
        if (m_shared->bytes.size() >= kLeastBytes) {
            m_shared->gzipped = gzip(m_shared->bytes);
        }
    });
    return m_shared->gzipped;
}

} // namespace raincast
