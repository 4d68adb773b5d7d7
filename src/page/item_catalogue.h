// SPDX-License-Identifier: MIT
#pragma once

#include "core/ranked_record.h"
#include "page/page_display.h"

#include <QString>

#include <cstdint>
#include <memory>

class QWidget;

namespace raincast {

/// One kind of item that the user can add to a page; each is a static object beside its item's
/// code. all() is the catalogue in the order of lists. The item itself is created through its
/// serializable type.
class ItemCatalogueEntry : public RankedRecord<ItemCatalogueEntry> {
public:
    /// The ranks of the program's items.
    static constexpr int kRankTexture = 10;
    static constexpr int kRankWeather = 20;

    /// `name` is a category, a colon and the item's name.
    ItemCatalogueEntry(QString name, std::uint32_t typeId, int rank);

    [[nodiscard]] const QString& name() const { return m_name; }
    [[nodiscard]] std::uint32_t typeId() const { return m_typeId; }

    /// The name of the items of a serializable type, without their category; empty for a type that
    /// the user cannot add.
    [[nodiscard]] static QString nameOf(std::uint32_t typeId);

private:
    const QString m_name;
    const std::uint32_t m_typeId;
};

/// Lets the user choose from the catalogue over `parent` and creates an item of that kind, not yet
/// on any page. Null if the user chose none, or a kind that no serializable type creates.
[[nodiscard]] std::unique_ptr<CPageDisplay::CItem> selectDisplayItem(QWidget* parent);

} // namespace raincast
