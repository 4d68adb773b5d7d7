// SPDX-License-Identifier: MIT
#pragma once

#include "window/dialog_layout.h"
#include "window/window.h"

#include <QString>

#include <functional>
#include <optional>

namespace raincast {

class DialogWidget;
class Undo;

/// A modal dialog made from a template. The object usually lives on its caller's stack; its
/// widgets live only while run() does, and so do all the helpers' effects.
///
/// Commands (of buttons, lists, keys) reach onCommand() first, like any window's, and then
/// onDialogCommand(). Enter is command 1; Esc and closing are command 2.
class Dialog : public Window {
public:
    /// The commands that every dialog has, and the results of its run.
    static constexpr int kOk = 1;
    static constexpr int kCancel = 2;

    /// Flags for the shell. kDoneButton: without a control 1 the dialog gets an "OK" button of its
    /// own. The others keep their numbers from the handheld and do nothing here.
    static constexpr unsigned kDoneButton = 1;
    static constexpr unsigned kFullSize = 2;
    static constexpr unsigned kInputPanelDown = 8;
    static constexpr unsigned kEmptyMenu = 32;
    static constexpr unsigned kDefaultFlags =
        kDoneButton | kFullSize | kInputPanelDown | kEmptyMenu;

    /// `templateId`: the number of a DialogTemplate; with 0 there is no dialog to run.
    explicit Dialog(int templateId, unsigned flags = kDefaultFlags);

    /// The controls are there, at their template's places, and may be filled. Returns true to have
    /// the focus given to the first one that takes input.
    virtual bool onInitialise();
    /// Command 1: ends the dialog with 1.
    virtual void onOk();
    /// Any event of the dialog's widget but a command. Returns whether it is consumed; the default
    /// is false and leaves it to the widget.
    virtual bool onOtherMessage(QEvent& event);
    /// Commands 1 and 2 call onOk() and onCancel(); others do nothing.
    virtual void onDialogCommand(int id, QWidget* control, int notification);
    /// Command 2: ends the dialog with 2.
    virtual void onCancel();

    /// Shows the dialog over `parent` (may be null) and waits until it ends. Returns what it ended
    /// with: 2 at once without a template, and in a run without a person (see Modal).
    int run(QWidget* parent);

    /// Ends the dialog; run() returns `result`. In onInitialise() it keeps the dialog from being
    /// shown.
    void end(int result);

protected:
    /// Has the row that undoes the last deletion stand in the running dialog; `undone` is called
    /// after each step back. Null: there is none.
    void host(Undo* undo, std::function<void()> undone);

    /// A control of the running dialog, or null: control<QCheckBox>(1042).
    template<typename Widget = QWidget>
    [[nodiscard]] Widget* control(int id) const {
        return qobject_cast<Widget*>(findControl(id));
    }

    void setCaption(const QString& caption);

    /// Text of an edit field, button or label. Controls that are missing or have no text are left
    /// alone and read as empty.
    void setText(int controlId, const QString& text);
    [[nodiscard]] QString text(int controlId) const;

    /// The text of numbers through a format of std::printf, in the C locale; at most 255 bytes.
    void setNumber(int controlId, const char* format, ...) Q_ATTRIBUTE_FORMAT_PRINTF(3, 4);

    /// Ties a control to the dialog's edges with AnchorFlags, at the screen's margin. From
    /// onInitialise() or onSize().
    void anchor(int controlId, int flags);
    /// Places a control beside another one.
    void placeNextTo(
        int referenceId, int controlId, VerticalRelation vertical, HorizontalRelation horizontal,
        bool stretchVertically = false, bool stretchHorizontally = false
    );

private:
    friend class DialogWidget;

    bool dialogProcedure(QEvent& event);
    [[nodiscard]] QWidget* findControl(int id) const;

    int m_templateId;
    unsigned m_flags;
    QPointer<QWidget> m_client;
    std::optional<int> m_result;
};

} // namespace raincast
