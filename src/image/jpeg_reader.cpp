// SPDX-License-Identifier: MIT
#include "image/jpeg_reader.h"

#include "image/jpeg_check.h"

#include <jpeglib.h>

#include <csetjmp>
#include <cstddef>
#include <cstdio>

namespace raincast {

namespace {

// The order of bytes of a pixel 0xffRRGGBB.
constexpr J_COLOR_SPACE kRgbPixels = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? JCS_EXT_BGRA : JCS_EXT_ARGB;
constexpr int kInks = 4;

/// libjpeg's decoder of one file. A fault in the file makes it jump out of whatever it does: what
/// is on the stack of the steps below needs no destruction.
class JpegDecoder {
public:
    JpegDecoder() {
        m_info.err = jpeg_std_error(&m_errors.handler);
        m_errors.handler.error_exit = [](j_common_ptr info) {
            std::longjmp(reinterpret_cast<Errors*>(info->err)->wayOut, 1);
        };
        m_errors.handler.output_message = [](j_common_ptr) {};
    }
    ~JpegDecoder() { jpeg_destroy_decompress(&m_info); }
    JpegDecoder(const JpegDecoder&) = delete;
    JpegDecoder& operator=(const JpegDecoder&) = delete;

    /// Reads as far as the size of the picture; false on failure.
    [[nodiscard]] bool open(QByteArrayView bytes) {
        return attempt([this, bytes] {
            jpeg_create_decompress(&m_info);
            jpeg_mem_src(
                &m_info, reinterpret_cast<const uchar*>(bytes.data()),
                static_cast<unsigned long>(bytes.size())
            );
            jpeg_read_header(&m_info, TRUE);
            return true;
        });
    }
    [[nodiscard]] QSize size() const {
        return {static_cast<int>(m_info.image_width), static_cast<int>(m_info.image_height)};
    }
    /// Reads all rows into a picture of that size; false on failure.
    [[nodiscard]] bool readInto(PlainPicture& picture) {
        return attempt([this, &picture] {
            const bool read = hasInks() ? readInks(picture) : readColours(picture);
            return read && jpeg_finish_decompress(&m_info) == TRUE;
        });
    }

private:
    struct Errors {
        jpeg_error_mgr handler{}; // libjpeg has its address
        std::jmp_buf wayOut{};
    };

    template<typename Step>
    [[nodiscard]] bool attempt(const Step& step) {
        return setjmp(m_errors.wayOut) == 0 && step();
    }
    [[nodiscard]] bool hasInks() const { return m_info.out_color_space == JCS_CMYK; }
    [[nodiscard]] bool readColours(PlainPicture& picture) {
        if (m_info.out_color_space != JCS_RGB && m_info.out_color_space != JCS_GRAYSCALE) {
            return false;
        }
        m_info.out_color_space = kRgbPixels;
        jpeg_start_decompress(&m_info);
        while (m_info.output_scanline < m_info.output_height) {
            JSAMPROW row = picture.row(static_cast<int>(m_info.output_scanline));
            jpeg_read_scanlines(&m_info, &row, 1);
        }
        return true;
    }
    // A pixel has as many bytes in both: cyan, magenta, yellow and black, each the lighter the
    // greater.
    [[nodiscard]] bool readInks(PlainPicture& picture) {
        jpeg_start_decompress(&m_info);
        while (m_info.output_scanline < m_info.output_height) {
            JSAMPROW row = picture.row(static_cast<int>(m_info.output_scanline));
            jpeg_read_scanlines(&m_info, &row, 1);
            auto* const pixels = reinterpret_cast<quint32*>(row);
            for (JDIMENSION column = 0; column < m_info.output_width; ++column) {
                const uchar* const inks = row + std::size_t{column} * kInks;
                const auto light = [inks](int ink) {
                    return quint32{inks[ink]} * inks[kInks - 1] / 255;
                };
                pixels[column] = 0xFF00'0000U | light(0) << 16 | light(1) << 8 | light(2);
            }
        }
        return true;
    }

    Errors m_errors;
    jpeg_decompress_struct m_info{};
};

} // namespace

PlainPicture readJpeg(QByteArrayView bytes, qint64 mostPixels) {
    JpegDecoder decoder;
    if (!isSoundJpeg(bytes) || !decoder.open(bytes)) {
        return {};
    }
    const QSize size = decoder.size();
    if (size.isEmpty() || qint64{size.width()} * size.height() > mostPixels) {
        return {};
    }
    PlainPicture picture(size, PlainPicture::Pixels::rgb);
    return !picture.isNull() && decoder.readInto(picture) ? std::move(picture) : PlainPicture();
}

} // namespace raincast
