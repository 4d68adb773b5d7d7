// SPDX-License-Identifier: MIT
// Sharp pictures from a server, behind a byte that says how sharp: what is kept packed comes back
// as it was.
#include "sharp/sharp_picture.h"

#include "image/image_file.h"
#include "input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    Input input(data, size);
    const int detail = input.byte() % 2 == 0 ? 2 : 4;
    const qint64 most = qint64{kRadarImageWidth} * detail * kRadarImageHeight * detail;
    const QImage image = decodeImage(input.rest(), most);
    require(qint64{image.width()} * image.height() <= most);
    if (image.isNull()) {
        return 0;
    }
    for (const bool packed : {false, true}) {
        const SharpPicture picture(image, detail, packed);
        const DetailedBitmap again = picture.unpacked();
        require(picture && again && again.detail == detail && *again == image);
    }
    return 0;
}
