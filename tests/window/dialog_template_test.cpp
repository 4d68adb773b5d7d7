// SPDX-License-Identifier: MIT
#include "support/qt_app.h"
#include "window/dialog_template.h"

#include <QByteArray>

#include <gtest/gtest.h>

namespace raincast {
namespace {

const char kGood[] = R"({"caption": "GPS Vector", "size": [120, 60], "leastSize": [80, 40],
    "controls": [{"id": 1, "kind": "pushButton", "text": "OK", "place": [7, 40, 50, 14]},
                 {"id": 0, "kind": "picture", "place": [0, 0, 0, 0]}]})";

TEST(DialogTemplateTest, TheModulesFormIsRead) {
    const auto read = parseDialogTemplate(kGood, 5001);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->id, 5001);
    EXPECT_EQ(read->caption, QStringLiteral("GPS Vector"));
    EXPECT_EQ(read->size, QSize(120, 60));
    EXPECT_EQ(read->leastSize, QSize(80, 40));
    EXPECT_TRUE(read->resizable());
    ASSERT_EQ(read->controls.size(), 2U);
    EXPECT_EQ(read->controls[0].id, 1);
    EXPECT_EQ(read->controls[0].kind, ControlKind::pushButton);
    EXPECT_EQ(read->controls[0].text, QStringLiteral("OK"));
    EXPECT_EQ(read->controls[0].place.y, 40);
    EXPECT_EQ(read->controls[1].kind, ControlKind::picture);
}

TEST(DialogTemplateTest, WhatIsDamagedIsNoTemplate) {
    const QByteArray good(kGood);
    EXPECT_FALSE(parseDialogTemplate("", 5001));
    EXPECT_FALSE(parseDialogTemplate("[]", 5001));
    EXPECT_FALSE(parseDialogTemplate(good.left(good.size() / 2), 5001));
    const std::pair<const char*, const char*> changes[] = {
        {"[120, 60]", "[120]"},        {"[120, 60]", "[120, -1]"},
        {"[120, 60]", "[1, 2001]"},    {"[120, 60]", "\"wide\""},
        {"[80, 40]", "[80, 40, 1]"},   {"\"id\": 1", "\"id\": -1"},
        {"pushButton", "pressButton"}, {"[7, 40, 50, 14]", "[7, 40, 50, 1e9]"},
        {"[7, 40, 50, 14]", "[7, 40]"}};
    for (const auto& [from, to] : changes) {
        QByteArray damaged = good;
        damaged.replace(from, to);
        ASSERT_NE(damaged, good);
        EXPECT_FALSE(parseDialogTemplate(damaged, 5001)) << to;
    }
}

TEST(DialogTemplateTest, TooManyControlsAreNoTemplate) {
    QByteArray controls;
    for (int i = 0; i < 201; ++i) {
        controls += R"(,{"id": 3, "kind": "edit", "place": [0, 0, 0, 0]})";
    }
    const QByteArray json = R"({"size": [10, 10], "controls": [)" + controls.mid(1) + "]}";
    EXPECT_FALSE(parseDialogTemplate(json, 5001));
}

TEST(DialogTemplateTest, APublishedTemplateIsFoundWhileItsRecordLives) {
    EXPECT_FALSE(findDialogTemplate(4911));
    {
        const DialogTemplateRecord one{{4911, QStringLiteral("One"), {10, 10}, {}, {}}};
        const DialogTemplateRecord two{{4912, QStringLiteral("Two"), {10, 10}, {}, {}}};
        ASSERT_TRUE(findDialogTemplate(4911));
        EXPECT_EQ(findDialogTemplate(4911)->caption, QStringLiteral("One"));
        EXPECT_EQ(findDialogTemplate(4912)->caption, QStringLiteral("Two"));
    }
    EXPECT_FALSE(findDialogTemplate(4911));
    EXPECT_FALSE(findDialogTemplate(5911));
}

TEST(DialogTemplateTest, TwoDialogsOfOneNumberAreFatal) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    const DialogTemplateRecord one{{4911, {}, {10, 10}, {}, {}}};
    EXPECT_DEATH(
        DialogTemplateRecord({4911, {}, {10, 10}, {}, {}}), "Two dialogs have the number 4911"
    );
}

} // namespace
} // namespace raincast
