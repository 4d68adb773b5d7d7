// SPDX-License-Identifier: MIT
// How much longer loading a radar frame takes than giflib alone needs to decode it. The file is one
// of the size and kind that radar servers publish, made here.
#include "image/image_file.h"
#include "support/figure.h"
#include "support/gif_maker.h"

#include <QFile>
#include <QTemporaryDir>

#include <gif_lib.h>

#include <cstdio>
#include <cstdlib>

namespace {

using namespace raincast;

/// Rain in cells of a few pixels, as compressible as published frames (22 KB).
int echo(int column, int row) {
    const int cell = (column / 5 * 31 + row / 4 * 17) % 97;
    return cell < 12 ? cell + 1 : 0;
}

QByteArray frame() {
    QList<QRgb> colours;
    for (int i = 0; i < 256; ++i) {
        colours.append(qRgb(i, 255 - i, i / 2));
    }
    return makeGif({.screen = {600, 550}, .colours = colours, .transparent = 0, .pixel = echo});
}

void decodeBare(const QByteArray& path) {
    GifFileType* gif = DGifOpenFileName(path.constData(), nullptr);
    if (gif == nullptr || DGifSlurp(gif) != GIF_OK) {
        std::abort();
    }
    DGifCloseFile(gif, nullptr);
}

} // namespace

int main() {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("frame.gif"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        return 1;
    }
    file.write(frame());
    file.close();
    std::printf("A frame of 600 x 550 in %lld bytes\n", static_cast<long long>(file.size()));

    const QByteArray name = QFile::encodeName(path);
    const Ratio ratio = processorRatioOf(
        50,
        [&] {
            if (!LoadImageFile(path)) {
                std::abort();
            }
        },
        [&] { decodeBare(name); }
    );
    print(Figure::of(ratio, "Loading a frame", "giflib's bare decode").withAim(AimOf::ratio, 1.2));
    return 0;
}
