// SPDX-License-Identifier: MIT
#pragma once

#include "window/dialog_controls.h"

#include <QDialog>

class QDialogButtonBox;
class QScrollArea;

namespace raincast {

class Dialog;
struct DialogTemplate;

/// The widget of a Dialog: the controls of a template on a client area that scrolls when the
/// screen is too small for it.
///
/// Dialog units start from the font and grow until no control's text is cut and every control has
/// the height that the style wants (a finger's, on a touch screen): places in a template therefore
/// never collide, whatever the font.
class DialogWidget : public QDialog {
public:
    /// `doneButton`: a dialog without a control 1 gets an "OK" button of that number, in a row of
    /// its own below the client area, where the template's push button 2 joins it.
    DialogWidget(Dialog& dialog, const DialogTemplate& content, bool doneButton, QWidget* parent);

    [[nodiscard]] QWidget& client() const { return *m_client; }
    [[nodiscard]] QWidget* control(int id) const;

    /// Adds a row below all others. Where there is no room for it the dialog is larger for as long
    /// as the row is shown.
    void addRow(QWidget& row);

    /// Gives the focus to the first control that takes input, else to button 1.
    void focusFirst();

    /// Cancelling in any of Qt's ways is command 2.
    void reject() override;

    bool eventFilter(QObject* row, QEvent* event) override;

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void addDoneButtons();
    [[nodiscard]] QSize room() const;
    [[nodiscard]] int scrollBarWidth() const;
    int fitWidth(DialogUnits& units, const DialogTemplate& content, const DialogControls& controls);
    [[nodiscard]] int buttonsHeight() const;
    void makeRoomFor(const QWidget& row);
    void become(const QSize& wanted);
    void takeSize(const QSize& clientSize, const QSize& leastSize);

    Dialog* m_dialog; // null once the dialog is over
    QScrollArea* m_scrollArea;
    QWidget* m_client;
    QDialogButtonBox* m_doneButtons = nullptr;
    QSize m_sizeWithoutRow; // while it is another one
};

} // namespace raincast
