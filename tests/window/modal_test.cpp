// SPDX-License-Identifier: MIT
#include "support/qt_app.h"
#include "window/modal.h"

#include <QDialog>
#include <QTimer>
#include <QWindow>

#include <gtest/gtest.h>

#include <functional>
#include <utility>

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

/// Does something at a kind of event of an object, before the object sees it.
class AtEvent : public QObject {
public:
    AtEvent(QObject& watched, QEvent::Type type, std::function<void()> step)
        : m_type(type), m_step(std::move(step)) {
        watched.installEventFilter(this);
    }
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == m_type) {
            m_step();
        }
        return false;
    }

private:
    QEvent::Type m_type;
    std::function<void()> m_step;
};

TEST_F(ModalTest, ItOpensWhenTheWindowBelowItHasAppeared) {
    QWidget window;
    window.show();
    ASSERT_FALSE(window.windowHandle()->isExposed());
    QDialog dialog(&window);
    int shown = 0;
    const AtEvent atShow(dialog, QEvent::Show, [&] {
        ++shown;
        EXPECT_TRUE(window.windowHandle()->isExposed());
    });
    Modal::setHook([](QDialog& open) { open.done(5); });
    EXPECT_EQ(Modal::run(dialog), 5);
    EXPECT_EQ(shown, 1);
}

TEST_F(ModalTest, ARequestToEndWhileItWaitsKeepsItFromOpening) {
    QWidget window;
    window.show();
    QDialog dialog(&window);
    const AtEvent atShow(dialog, QEvent::Show, [] { ADD_FAILURE() << "shown"; });
    const AtEvent atExposure(*window.windowHandle(), QEvent::Expose, [] {
        EXPECT_EQ(Modal::depth(), 1);
        Modal::requestEnd();
    });
    EXPECT_EQ(Modal::run(dialog), Modal::kCancelled);
    EXPECT_TRUE(Modal::endRequested());
    EXPECT_EQ(Modal::depth(), 0);
}

TEST_F(ModalTest, AWindowThatIsNotShownIsNotWaitedFor) {
    QWidget window;
    window.winId(); // there is one, hidden
    QDialog dialog(&window);
    int turns = 0;
    QTimer::singleShot(0, &window, [&turns] { ++turns; });
    const AtEvent atShow(dialog, QEvent::Show, [&turns] { EXPECT_EQ(turns, 0); });
    Modal::setHook([](QDialog& open) { open.done(5); });
    EXPECT_EQ(Modal::run(dialog), 5);
}

TEST_F(ModalTest, ADialogThatIsDeletedUnderWayCountsAsCancelled) {
    auto* dialog = new QDialog;
    Modal::setHook([](QDialog& open) { open.deleteLater(); });
    EXPECT_EQ(Modal::run(*dialog), Modal::kCancelled);
    EXPECT_EQ(Modal::depth(), 0);
}

} // namespace
} // namespace raincast
