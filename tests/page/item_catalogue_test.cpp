// SPDX-License-Identifier: MIT
#include "page/image.h"
#include "page/item_catalogue.h"
#include "support/dialog_script.h"
#include "support/qt_app.h"

#include <QListWidget>

#include <gtest/gtest.h>

namespace raincast {
namespace {

using test::DialogScript;

const QString kCaption = QStringLiteral("Select Display Item");
const QString kTexture = QStringLiteral("Decoration:Texture");
constexpr std::uint32_t kUnknown = 987;

class ItemCatalogueTest : public test::GuiTest {
protected:
    static QListWidget& list(QDialog& dialog) { return *dialog.findChild<QListWidget*>(); }

    // Takes the row of a name.
    static void choose(QDialog& dialog, const QString& name) {
        list(dialog).setCurrentItem(list(dialog).findItems(name, Qt::MatchExactly).value(0));
        QTest::keyClick(&dialog, Qt::Key_Return);
    }

    DialogScript script;
};

TEST_F(ItemCatalogueTest, ReadsByRankWhateverTheOrderOfRegistration) {
    const ItemCatalogueEntry last(QStringLiteral("Test:Last"), kUnknown, 2000);
    const ItemCatalogueEntry first(QStringLiteral("Test:First"), kUnknown, -2000);
    script.expect(kCaption, [](QDialog& dialog) {
        QStringList names;
        for (int row = 0; row < list(dialog).count(); ++row) {
            names << list(dialog).item(row)->text();
        }
        EXPECT_EQ(names.first(), QStringLiteral("Test:First"));
        EXPECT_EQ(names.last(), QStringLiteral("Test:Last"));
        EXPECT_TRUE(names.contains(kTexture));
    });
    EXPECT_EQ(selectDisplayItem(nullptr), nullptr);
}

TEST_F(ItemCatalogueTest, CreatesTheChosenItemOnNoPage) {
    script.expect(kCaption, [](QDialog& dialog) { choose(dialog, kTexture); });
    const auto item = selectDisplayItem(nullptr);
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->GetTypeId(), 28U);
    EXPECT_EQ(item->placement(), ItemPlacement());
    EXPECT_EQ(item->page(), nullptr);
}

TEST_F(ItemCatalogueTest, CancellingCreatesNone) {
    script.expect(kCaption);
    EXPECT_EQ(selectDisplayItem(nullptr), nullptr);
}

TEST_F(ItemCatalogueTest, WithoutASelectedRowThereIsNone) {
    script.expect(kCaption, [](QDialog& dialog) {
        list(dialog).clearSelection();
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    EXPECT_EQ(selectDisplayItem(nullptr), nullptr);
}

TEST_F(ItemCatalogueTest, AKindThatNothingCreatesGivesNone) {
    const ItemCatalogueEntry strange(QStringLiteral("Test:Strange"), kUnknown, 1000);
    script.expect(kCaption, [](QDialog& dialog) {
        choose(dialog, QStringLiteral("Test:Strange"));
    });
    EXPECT_EQ(selectDisplayItem(nullptr), nullptr);
}

TEST_F(ItemCatalogueTest, AKindThatIsNoItemGivesNone) {
    const ItemCatalogueEntry page(QStringLiteral("Test:Page"), kTypePageDisplay, 1000);
    script.expect(kCaption, [](QDialog& dialog) { choose(dialog, QStringLiteral("Test:Page")); });
    EXPECT_EQ(selectDisplayItem(nullptr), nullptr);
}

} // namespace
} // namespace raincast
