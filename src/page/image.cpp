// SPDX-License-Identifier: MIT
#include "page/image.h"

#include "core/program_paths.h"
#include "core/text.h"
#include "image/image_file.h"
#include "page/item_catalogue.h"

#include <QPainter>

#include <utility>

namespace raincast {

const SerializableType<CPageDisplay::CImage> CPageDisplay::CImage::cType{kTypeImage};

namespace {

const ItemCatalogueEntry textureEntry{
    Text::marked("Decoration:Texture"), kTypeImage, ItemCatalogueEntry::kRankTexture};

} // namespace

CPageDisplay::CImage::CImage() : CImage(programFolder() + QStringLiteral("/texture.jpg")) {}

CPageDisplay::CImage::CImage(QString fileName) : m_fileName(std::move(fileName)) {}

bool CPageDisplay::CImage::load() {
    if (m_image.isNull()) {
        if (const Bitmap bitmap = LoadImageFile(m_fileName)) {
            m_image = bitmap->convertToFormat(QImage::Format_RGB32);
        }
    }
    return !m_image.isNull();
}

void CPageDisplay::CImage::draw(QPainter& painter) {
    if (!load()) {
        return;
    }
    const QRect place = rectangle().toRect();
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.setBrushOrigin(place.topLeft());
    painter.fillRect(place & painter.viewport(), QBrush(m_image));
}

} // namespace raincast
