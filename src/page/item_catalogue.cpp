// SPDX-License-Identifier: MIT
#include "page/item_catalogue.h"

#include "core/text.h"
#include "page/item.h"
#include "persist/serializable_list.h"
#include "window/dlg_item_type_select.h"

#include <utility>

namespace raincast {

ItemCatalogueEntry::ItemCatalogueEntry(QString name, std::uint32_t typeId, int rank)
    : RankedRecord(rank), m_name(std::move(name)), m_typeId(typeId) {}

QString ItemCatalogueEntry::nameOf(std::uint32_t typeId) {
    for (const ItemCatalogueEntry* entry : all()) {
        if (entry->typeId() == typeId) {
            return Text::of(entry->name()).section(u':', -1);
        }
    }
    return {};
}

std::unique_ptr<CPageDisplay::CItem> selectDisplayItem(QWidget* parent) {
    CDlgItemTypeSelect dialog(Text::tr("Select Display Item"));
    for (const ItemCatalogueEntry* entry : ItemCatalogueEntry::all()) {
        dialog.add(Text::of(entry->name()), entry->typeId());
    }
    if (dialog.run(parent) != Dialog::kOk || !dialog.selected()) {
        return nullptr;
    }
    auto object = CSerializable::Type::create(dialog.selectedDatum().toUInt());
    if (auto* const item = dynamic_cast<CPageDisplay::CItem*>(object.get())) {
        static_cast<void>(object.release());
        return std::unique_ptr<CPageDisplay::CItem>(item);
    }
    destroyObject(std::move(object));
    return nullptr;
}

} // namespace raincast
