// SPDX-License-Identifier: MIT
#include "stations/site_change_line.h"

#include "core/text.h"
#include "page/app_paged.h"
#include "radar/catalogue/sites.h"

#include <QTimer>

#include <utility>

namespace raincast {

namespace {

QString nameOf(const QString& id) {
    const RadarSite* const site = findRadarSite(id);
    return site != nullptr ? QStringLiteral("%1, %2").arg(id, site->nameText()) : id;
}

} // namespace

SiteChangeLine::~SiteChangeLine() {
    delete m_row;
}

void SiteChangeLine::show(
    CAppPaged* application, const QString& siteBefore, const QString& siteNow,
    std::function<void()> back
) {
    delete m_row;
    if (application == nullptr) {
        return;
    }
    m_row = application->addRow(BottomRows::Stay::brief, [this, back = std::move(back)] {
        const auto goBack = back; // hiding ends what holds it
        hide();
        goBack();
    });
    if (!m_row) {
        return;
    }
    m_row->setText(Text::tr("The view has moved to %1.").arg(nameOf(siteNow)));
    m_row->setAction(Text::tr("&Back to %1").arg(siteBefore));
    m_row->show();
    QTimer::singleShot(kShownMilliseconds, m_row, [this] { hide(); });
}

void SiteChangeLine::hide() {
    if (ActionRow* const row = std::exchange(m_row, nullptr)) {
        row->hide();
        row->deleteLater();
    }
}

} // namespace raincast
