// SPDX-License-Identifier: MIT
// The index of pictures that decoded: whatever it says, a file that is none is told from one.
#include "fetch/known_pictures.h"

#include "input.h"

#include <QFile>
#include <QTemporaryDir>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    static const QTemporaryDir folder;
    const QString index = folder.filePath(QStringLiteral("index"));
    QFile file(index);
    const QByteArray bytes = Input(data, size).rest();
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    file.close();

    KnownPictures known(index);
    require(!known.isKnown(index) && !known.load(index)); // it is no picture itself
    known.save();
    return 0;
}
