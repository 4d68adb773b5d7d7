// SPDX-License-Identifier: MIT
// Works the viewer that has loaded it: presses keys, drags, adds marks, opens dialogs and accepts
// them, moves the image cache from one card to another. What it does follows from RANDOM_USER_SEED.
// With RANDOM_USER_TASK it does one thing only: "marks" adds marks, "move" moves the image cache,
// with all that is in it.
// Each mark that it has added is a line of the file RANDOM_USER_LOG: when that was, in milliseconds
// of the system's monotonic clock, and the mark's name.
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QFile>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPushButton>
#include <QTimer>

#include <chrono>
#include <cstdlib>
#include <iterator>
#include <random>

namespace {

// A person, whom the event loop wakes up now and then.
class RandomUser : public QObject {
public:
    explicit RandomUser(unsigned seed) : QObject(qApp), m_random(seed) {
        QFile::remove(logName());
        wakeLater();
    }

private:
    // One timer for each time: a dialog's loop runs inside of what opened it.
    void wakeLater() {
        QTimer::singleShot(below(20), this, [this] {
            wakeLater();
            act();
        });
    }
    int below(int count) { return static_cast<int>(m_random() % static_cast<unsigned>(count)); }
    static QString taskName() { return qEnvironmentVariable("RANDOM_USER_TASK"); }
    static QString logName() { return qEnvironmentVariable("RANDOM_USER_LOG"); }

    void act() {
        if (auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
            answer(*dialog);
            return;
        }
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (auto* const main = qobject_cast<QMainWindow*>(window); main && main->isVisible()) {
                work(*main);
                return;
            }
        }
    }

    void work(QMainWindow& window) {
        static constexpr const char* kEntries[] = {"Storage",    "Layers",   "Follow Position",
                                                   "Animation",  "Pages...", "Layout mode",
                                                   "Add item..."};
        static constexpr Qt::Key kKeys[] = {
            Qt::Key_Left, Qt::Key_Right, Qt::Key_Plus, Qt::Key_Minus};
        if (const QString task = taskName(); !task.isEmpty()) {
            choose(
                *window.menuBar(), task == QStringLiteral("move") ? QStringLiteral("Storage")
                                                                  : QStringLiteral("Add Mark...")
            );
            return;
        }
        switch (below(4)) {
        case 0:
            choose(*window.menuBar(), kEntries[below(std::size(kEntries))]);
            break;
        case 1:
            choose(*window.menuBar(), QStringLiteral("Add Mark..."));
            break;
        case 2:
            drag(*window.centralWidget());
            break;
        default:
            press(window, kKeys[below(std::size(kKeys))]);
            break;
        }
    }

    static void press(QWidget& widget, Qt::Key key, const QString& text = {}) {
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, Qt::NoModifier, text);
            QCoreApplication::sendEvent(&widget, &event);
        }
    }

    void drag(QWidget& client) {
        const QPointF from(below(200), below(200));
        const QPointF to(below(200), below(200));
        QWidget* const page = client.childAt(from.toPoint());
        if (page == nullptr) {
            return;
        }
        const auto send = [&](QEvent::Type type, QPointF place, Qt::MouseButton button) {
            const auto held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
            QMouseEvent event(
                type, place, client.mapTo(client.window(), place), client.mapToGlobal(place),
                button, held, Qt::NoModifier
            );
            QCoreApplication::sendEvent(page, &event);
        };
        send(QEvent::MouseButtonPress, from, Qt::LeftButton);
        send(QEvent::MouseMove, to, Qt::NoButton);
        send(QEvent::MouseButtonRelease, to, Qt::LeftButton);
    }

    static bool choose(QWidget& menu, const QString& text) {
        for (QAction* entry : menu.actions()) {
            if (QMenu* const deeper = entry->menu<QMenu*>()) {
                if (choose(*deeper, text)) {
                    return true;
                }
            } else if (entry->text().remove(u'&') == text) {
                entry->trigger();
                return true;
            }
        }
        return false;
    }

    void answer(QDialog& dialog) {
        const QString title = dialog.windowTitle();
        if (title == QStringLiteral("Add Mark")) {
            addMark(dialog);
        } else if (title == QStringLiteral("Radar Image Storage")) {
            auto& places = *dialog.findChild<QComboBox*>();
            places.setCurrentIndex(places.count() - 1 - places.currentIndex());
            if (taskName() == QStringLiteral("move")) {
                dialog.findChild<QCheckBox*>()->setChecked(false); // cleans up
            }
            press(dialog, Qt::Key_Return);
        } else {
            press(dialog, below(2) == 0 ? Qt::Key_Return : Qt::Key_Escape);
        }
    }

    void addMark(QDialog& dialog) {
        const QString name = QStringLiteral("%1-%2").arg(getpid()).arg(++m_marks);
        dialog.findChild<QLineEdit*>()->setText(name);
        press(dialog, Qt::Key_Return);
        using std::chrono::steady_clock;
        const auto now = std::chrono::duration_cast<std::chrono::milliseconds>(
            steady_clock::now().time_since_epoch()
        );
        QFile log(logName());
        if (log.open(QIODevice::Append | QIODevice::Unbuffered)) {
            log.write(
                QByteArray::number(static_cast<qint64>(now.count())) + ' ' + name.toLatin1() + '\n'
            );
        }
    }

    std::mt19937 m_random;
    int m_marks = 0;
};

void start() {
    new RandomUser(static_cast<unsigned>(qEnvironmentVariableIntValue("RANDOM_USER_SEED")));
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(start)
