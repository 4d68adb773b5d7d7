// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

class QApplication;
class QWidget;

namespace raincast::test {

/// The application object of a test program, made on first need: Fusion style, DejaVu Sans, so
/// that widgets look the same on every machine. Never destroyed.
QApplication& qtApp();

/// Shows a window and waits until it is on the (offscreen) screen.
void show(QWidget& window);

/// Handles all that is pending, deferred deletions included.
void settle();

/// The base of tests that need widgets. After each of them, whatever it left to be deleted is.
class GuiTest : public testing::Test {
protected:
    GuiTest();
    ~GuiTest() override;
};

} // namespace raincast::test
