// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QVBoxLayout;

namespace raincast {

/// Rows of text and buttons that lie over the bottom of a client area, as wide as it and as high as
/// those that are shown need; nothing is there while none is. Whatever else is put into the area
/// later lies under them.
class BottomRows : public QWidget {
public:
    /// Becomes a child of the client area.
    explicit BottomRows(QWidget& client);

    /// Adds a row below the others. It becomes a child of this one, and is seen when it is shown.
    void add(QWidget& row);

    bool event(QEvent* event) override;
    bool eventFilter(QObject* client, QEvent* event) override;

private:
    void fit();

    QVBoxLayout* m_rows;
};

} // namespace raincast
