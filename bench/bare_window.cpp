// SPDX-License-Identifier: MIT
// The least that a program with a window can be, to measure the viewer's start against: an empty
// window of the viewer's first size that saves a picture of itself after its first paint and ends.
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
    BareWindow window(QCoreApplication::arguments().value(1));
    window.resize(640, 640);
    window.show();
    return QApplication::exec();
}
