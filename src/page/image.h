// SPDX-License-Identifier: MIT
#pragma once

#include "page/item.h"

#include <QImage>
#include <QString>

namespace raincast {

/// A decoration: a texture that repeats over the item's rectangle. The picture is the file
/// "texture.jpg" in the program's folder, loaded at the first drawing and kept; while it cannot be
/// loaded the item is blank, and every drawing tries again.
class CPageDisplay::CImage : public CPageDisplay::CItem {
public:
    static const SerializableType<CImage> cType;

    CImage();
    /// With a picture of another file.
    explicit CImage(QString fileName);

    [[nodiscard]] std::uint32_t GetTypeId() const override { return kTypeImage; }
    void draw(QPainter& painter) override;

private:
    [[nodiscard]] bool load();

    QString m_fileName;
    QImage m_image;
};

} // namespace raincast
