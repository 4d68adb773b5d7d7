// SPDX-License-Identifier: MIT
#include "sample_viewer.h"

#include "app/window_place.h"
#include "page/image.h"
#include "page/item.h"
#include "support/qt_app.h"
#include "weather/item_weather.h"
#include "window/events.h"

#include <QMainWindow>
#include <QTest>

namespace raincast::test {

namespace {

const QString kResources = QStringLiteral(RAINCAST_PROGRAM).section(u'/', 0, -2);

std::unique_ptr<CPageDisplay> page(const QString& name, bool enabled) {
    auto page = std::make_unique<CPageDisplay>();
    page->setName(name);
    page->setEnabled(enabled);
    return page;
}

} // namespace

SampleViewer::SampleViewer()
    : m_resources(kResources),
      m_window(
          {[] {}, [this] { m_application.clear(); }, [this] { return m_application.caption(); }}
      ) {
    ResourceModule::use(&m_resources);
    WindowPlace::settings.geometry.clear();
    WindowPlace::restore(frame(), {});
    show(frame());
    m_application.attach(frame(), *m_window.client(), m_window.commands(), *m_window.pageMenu());
    addPages();
    finish();
    beat();
    settle();
}

void SampleViewer::finish() {
    EXPECT_TRUE(QTest::qWaitFor([this] { return !m_application.loading(); }, 60'000));
}

void SampleViewer::beat() {
    m_window.onTimer(MainWindow::kHeartbeatTimer);
}

SampleViewer::~SampleViewer() {
    m_window.destroy();
    ResourceModule::use(nullptr);
}

void SampleViewer::addPages() {
    m_application.setFirstShow({FirstShow::Choice{QStringLiteral("MUX"), 0}, std::nullopt});
    m_application.restoreDefaultPages();
    m_application.append(test::page(QStringLiteral("Chart table"), true));
    m_application.append(test::page(QStringLiteral("Tides & moon"), false));
    auto texture =
        std::make_unique<CPageDisplay::CImage>(kResources + QStringLiteral("/texture.jpg"));
    page().addItem(std::move(texture)).setRectangle({10, 90, 85, 140});
}

CPageDisplay& SampleViewer::page() {
    return dynamic_cast<CPageDisplay&>(*m_application.pages().front());
}

void SampleViewer::command(int id) {
    sendCommand(frame(), id, nullptr);
}

} // namespace raincast::test
