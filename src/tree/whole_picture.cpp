// SPDX-License-Identifier: MIT
#include "tree/whole_picture.h"

#include "core/whole_file.h"
#include "image/jpeg_check.h"

namespace raincast {

namespace {

// Far more than any that is stored.
constexpr qint64 kMostBytes = qint64{16} * 1024 * 1024;

// GIF89a Specification, sections 18 to 27.
constexpr qsizetype kScreenBytes = 13;     // with the signature
constexpr qsizetype kScreenFlags = 10;     // where they stand
constexpr qsizetype kDescriptorBytes = 10; // of an image, with its separator
constexpr qsizetype kDescriptorFlags = 9;
constexpr char kImage = ',';
constexpr char kExtension = '!';
constexpr char kTrailer = ';';

/// Walks over the blocks of a GIF. Beyond the end everything is zero, which begins no block.
class GifWalk {
public:
    explicit GifWalk(QByteArrayView bytes) : m_bytes(bytes) {}

    [[nodiscard]] bool isWhole() {
        m_at = kScreenBytes + coloursBytes(at(kScreenFlags));
        for (;;) {
            switch (at(m_at)) {
            case kImage:
                m_at += kDescriptorBytes + coloursBytes(at(m_at + kDescriptorFlags));
                ++m_at; // the size of a code
                break;
            case kExtension:
                m_at += 2; // with its label
                break;
            default:
                return at(m_at) == kTrailer && m_at + 1 == m_bytes.size();
            }
            skipData();
        }
    }

private:
    [[nodiscard]] char at(qsizetype place) const {
        return place < m_bytes.size() ? m_bytes[place] : '\0';
    }

    static qsizetype coloursBytes(char flags) {
        constexpr unsigned kTable = 0x80;
        constexpr unsigned kSize = 0x07;
        const auto bits = static_cast<unsigned char>(flags);
        return (bits & kTable) != 0 ? 3 * (qsizetype{2} << (bits & kSize)) : 0;
    }

    /// Each piece has its length before it; one of no length is the last.
    void skipData() {
        while (const auto length = static_cast<unsigned char>(at(m_at))) {
            m_at += 1 + length;
        }
        ++m_at;
    }

    QByteArrayView m_bytes;
    qsizetype m_at = 0;
};

} // namespace

bool isWholePicture(QByteArrayView bytes) {
    if (bytes.startsWith("GIF8")) {
        return GifWalk(bytes).isWhole();
    }
    return bytes.startsWith("\xFF\xD8") && bytes.endsWith("\xFF\xD9") && isSoundJpeg(bytes);
}

std::optional<QByteArray> wholePictureIn(const QString& path) {
    const auto bytes = readWhole(path, kMostBytes);
    return bytes && isWholePicture(*bytes) ? std::optional(*bytes) : std::nullopt;
}

} // namespace raincast
