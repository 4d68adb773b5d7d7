// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>

class QLabel;
class QString;
class QWidget;

namespace raincast {

/// The sentence in the middle of an empty client area that says how to go on.
class EmptyHint {
public:
    /// The client area is borrowed; it may be destroyed first.
    explicit EmptyHint(QWidget& client);
    ~EmptyHint();
    EmptyHint(const EmptyHint&) = delete;
    EmptyHint& operator=(const EmptyHint&) = delete;

    /// Shows a text on the whole of the area; an empty one gives it free.
    void show(const QString& text);
    /// The area has another size.
    void fit();

private:
    QPointer<QLabel> m_label;
};

} // namespace raincast
