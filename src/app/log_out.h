// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <functional>

namespace raincast {

/// The desktop's request to save at once, because the session ends. The log-out may be called off;
/// then the only sign is that the user goes on working.
class LogOut : public QObject {
public:
    /// `save` is called when the desktop asks. There must be an application object, which outlives
    /// this one.
    explicit LogOut(std::function<void()> save);

    /// True from the request on, until a key, a mouse button or a finger is pressed.
    [[nodiscard]] bool underWay() const { return m_underWay; }

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<void()> m_save;
    bool m_underWay = false;
};

} // namespace raincast
