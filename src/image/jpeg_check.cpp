// SPDX-License-Identifier: MIT
#include "image/jpeg_check.h"

#include <QtEndian>

namespace raincast {

namespace {

constexpr uchar kStartOfScan = 0xDA;
constexpr uchar kEndOfImage = 0xD9;

/// Whether a marker code stands alone; all others begin a segment with a length.
bool standsAlone(uchar code) {
    return code == 0x01 || (0xD0 <= code && code <= 0xD8);
}

/// Whether FF with this code is part of a scan's data: a stuffed FF, or a restart marker.
bool isScanData(uchar code) {
    return code == 0x00 || (0xD0 <= code && code <= 0xD7);
}

} // namespace

bool isSoundJpeg(QByteArrayView bytes) {
    const auto* data = reinterpret_cast<const uchar*>(bytes.data());
    const qsizetype size = bytes.size();
    bool inScan = false;
    int scans = 0;
    qsizetype at = 0;
    while (at + 1 < size) {
        const uchar code = data[at + 1];
        if (data[at] != 0xFF || (inScan && isScanData(code))) {
            if (!inScan) {
                return false; // only a marker may stand here
            }
            ++at;
        } else if (code == kEndOfImage) {
            return true;
        } else if (code == 0xFF) {
            ++at; // a fill byte before a marker
        } else if (standsAlone(code)) {
            at += 2;
        } else {
            inScan = code == kStartOfScan;
            scans += inScan ? 1 : 0;
            if (at + 4 > size || scans > kMostJpegScans) {
                return false;
            }
            at += 2 + qFromBigEndian<quint16>(data + at + 2);
        }
    }
    return false;
}

} // namespace raincast
