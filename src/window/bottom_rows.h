// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QWidget>

#include <functional>
#include <vector>

class QVBoxLayout;

namespace raincast {

/// Rows of text and buttons that lie over the bottom of a client area, as wide as it and as high as
/// those that are shown need; nothing is there while none is. Whatever else is put into the area
/// later lies under them, and may end above those that stay for long.
class BottomRows : public QWidget {
public:
    /// Becomes a child of the client area.
    explicit BottomRows(QWidget& client);

    /// Nothing that the user needs should lie under a row that lasts.
    enum class Stay { brief, lasting };
    /// Adds a row below the others. It becomes a child of this one, and is seen when it is shown.
    void add(QWidget& row, Stay stay = Stay::brief);

    /// The height of the lasting rows that are shown.
    [[nodiscard]] int lastingHeight() const { return m_lastingHeight; }
    /// Has `changed` called when that is another one.
    void onLastingHeight(std::function<void()> changed) { m_changed = std::move(changed); }

    bool event(QEvent* event) override;
    bool eventFilter(QObject* client, QEvent* event) override;

private:
    void fit();
    void noteLasting();

    QVBoxLayout* m_rows;
    std::vector<QPointer<QWidget>> m_lasting;
    int m_lastingHeight = 0;
    std::function<void()> m_changed;
};

} // namespace raincast
