// SPDX-License-Identifier: MIT
#include "support/qt_app.h"
#include "window/modal.h"

#include <QDialog>

#include <gtest/gtest.h>

namespace raincast {
namespace {

class ModalTest : public test::GuiTest {
protected:
    ~ModalTest() override {
        Modal::setHook(nullptr);
        Modal::neverAsk(false);
        Modal::forgetEnd();
    }
};

TEST_F(ModalTest, TheHookIsToldOnceTheDialogIsOnTheScreen) {
    QDialog dialog;
    Modal::setHook([&](QDialog& open) {
        EXPECT_EQ(&open, &dialog);
        EXPECT_TRUE(open.isVisible());
        EXPECT_EQ(Modal::depth(), 1);
        open.done(5);
    });
    EXPECT_EQ(Modal::run(dialog), 5);
    EXPECT_EQ(Modal::depth(), 0);
}

TEST_F(ModalTest, NothingIsShownWhileNobodyMayBeAsked) {
    QDialog dialog;
    Modal::setHook([](QDialog&) { FAIL() << "opened"; });
    Modal::neverAsk(true);
    EXPECT_FALSE(Modal::asks());
    EXPECT_EQ(Modal::run(dialog), Modal::kCancelled);
    EXPECT_FALSE(dialog.isVisible());
}

TEST_F(ModalTest, ARequestToEndIsRememberedWithoutAnyDialogOpen) {
    EXPECT_FALSE(Modal::endRequested());
    Modal::requestEnd();
    EXPECT_TRUE(Modal::endRequested());
    EXPECT_FALSE(Modal::asks());
    QDialog dialog;
    EXPECT_EQ(Modal::run(dialog), Modal::kCancelled);
    Modal::forgetEnd();
    EXPECT_TRUE(Modal::asks());
}

TEST_F(ModalTest, ADialogThatIsDeletedUnderWayCountsAsCancelled) {
    auto* dialog = new QDialog;
    Modal::setHook([](QDialog& open) { open.deleteLater(); });
    EXPECT_EQ(Modal::run(*dialog), Modal::kCancelled);
    EXPECT_EQ(Modal::depth(), 0);
}

} // namespace
} // namespace raincast
