// SPDX-License-Identifier: MIT
#pragma once

#include "core/text.h"

#include <QSize>
#include <QString>

#include <optional>
#include <vector>

class QByteArray;
class QWidget;

namespace raincast {

/// What a dialog's control is made of.
enum class ControlKind { label, pushButton, checkBox, edit, listBox, comboBox, picture };

/// A place in a dialog, in dialog units: a quarter of the average character's width across, an
/// eighth of the font's height down. An extent of 0 stands for the control's natural size.
struct DialogPlace {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

/// One control of a dialog. A label or check box of at least 16 units of height wraps its text.
struct DialogControl {
    int id = 0;
    ControlKind kind = ControlKind::label;
    QString text; ///< marked; of a list or combo box the name that readers of the screen give it
    DialogPlace place;
};

/// A dialog as data. The controls' order is the order of the Tab key. In the usual font 125 units
/// of width fit a screen of 240 pixels; 14 units are the usual height of what can be pressed.
struct DialogTemplate {
    int id = 0;      ///< never 0
    QString caption; ///< marked
    QSize size;      ///< of the client area, in dialog units
    std::vector<DialogControl> controls;
    /// For a dialog that gains from being larger or smaller, and then lays itself out in
    /// Window::onSize: the least client area, in dialog units. Empty: the dialog keeps its size.
    QSize leastSize;

    [[nodiscard]] bool resizable() const { return !leastSize.isEmpty(); }
};

/// Publishes a template for as long as it lives; to be a static object beside the dialog's code.
/// Identifiers below 5000 only. Two templates of one identifier are a fatal error.
class DialogTemplateRecord {
public:
    explicit DialogTemplateRecord(DialogTemplate content);
    ~DialogTemplateRecord();
    DialogTemplateRecord(const DialogTemplateRecord&) = delete;
    DialogTemplateRecord& operator=(const DialogTemplateRecord&) = delete;

private:
    friend std::optional<DialogTemplate> findDialogTemplate(int id);
    friend std::vector<int> publishedDialogTemplates();

    DialogTemplate m_content;
    DialogTemplateRecord* m_next;
    static DialogTemplateRecord* s_first;
};

/// The template of an identifier: a published one below 5000, a file "dialogs/NUMBER" of the
/// resource module from there on (the caller has made sure of the module, see
/// requireResourceModule). Empty without such a template, and if the file is damaged.
[[nodiscard]] std::optional<DialogTemplate> findDialogTemplate(int id);

/// The identifiers of all published templates, in no order.
[[nodiscard]] std::vector<int> publishedDialogTemplates();

/// Reads a template from the resource module's form, JSON:
/// `{"caption": "About", "size": [120, 60], "leastSize": [80, 40],
///   "controls": [{"id": 1, "kind": "pushButton", "text": "OK", "place": [7, 40, 50, 14]}]}`.
/// "leastSize" may be missing, a control's text too. None for anything else.
[[nodiscard]] std::optional<DialogTemplate> parseDialogTemplate(const QByteArray& json, int id);

/// Whether the holder of a resource is there. If the resource module should hold it and is
/// missing, a message box asks the user to install the software again, at every call.
[[nodiscard]] bool requireResourceModule(QWidget* parent, int identifier);

} // namespace raincast
