// SPDX-License-Identifier: MIT
// The least that a program with a window can be, to measure the viewer's start against: an empty
// window of the viewer's first size that saves a picture of itself after its first paint and ends.
// With --idle instead of the picture's file it stays, and a timer fires every 100 ms.
#include <QApplication>
#include <QMainWindow>
#include <QPixmap>
#include <QTimer>

namespace {

class BareWindow : public QMainWindow {
public:
    explicit BareWindow(QString file) : m_file(std::move(file)) {}

protected:
    void paintEvent(QPaintEvent* event) override {
        QMainWindow::paintEvent(event);
        if (m_file == QStringLiteral("--idle")) {
            return;
        }
        QTimer::singleShot(0, this, [this] {
            QCoreApplication::exit(grab().save(m_file, "PNG") ? 0 : 1);
        });
    }

private:
    QString m_file;
};

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    const QString argument = QCoreApplication::arguments().value(1);
    QTimer timer;
    if (argument == QStringLiteral("--idle")) {
        QObject::connect(&timer, &QTimer::timeout, [] {});
        timer.start(100);
    }
    BareWindow window(argument);
    window.resize(640, 640);
    window.show();
    return QApplication::exec();
}
