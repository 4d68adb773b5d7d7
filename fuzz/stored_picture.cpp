// SPDX-License-Identifier: MIT
// Pictures that an earlier run left in a store or a published folder: of one that is whole no
// beginning is.
#include "input.h"
#include "tree/whole_picture.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    const QByteArray bytes = Input(data, size).rest();
    if (isWholePicture(bytes)) {
        require(!isWholePicture(QByteArrayView(bytes).chopped(1)));
    }
    return 0;
}
