// SPDX-License-Identifier: MIT
#include "app/dlg_about.h"

#include "app/drawn_icon.h"
#include "core/resource_module.h"
#include "window/dialog_template.h"

#include <QFont>
#include <QImageReader>
#include <QLabel>

namespace raincast {

namespace {

const DialogTemplateRecord aboutTemplate{
    {CDlgAbout::kTemplate,
     Text::marked("About Raincast"),
     {125, 110},
     {
         {CDlgAbout::kPicture, ControlKind::picture, {}, {4, 4, 34, 38}},
         {CDlgAbout::kProduct, ControlKind::label, QStringLiteral("Raincast"), {41, 10, 82, 10}},
         {CDlgAbout::kVersion,
          ControlKind::label,
          QStringLiteral("Version " RAINCAST_VERSION ", Build 756"), // until versionText() is set
          {41, 26, 82, 10}},
         {CDlgAbout::kCredits,
          ControlKind::label,
          Text::marked("NOAA/NWS NEXRAD via Unidata (AWS Open Data)"),
          {4, 46, 117, 24}},
         {CDlgAbout::kLicence,
          ControlKind::label,
          Text::marked("Free software, MIT licence. Maps: GSHHG (LGPL), ETOPO5 (NOAA), U.S. "
                       "Census Bureau, GeoNames (CC BY 4.0)"),
          {4, 72, 117, 36}},
     },
     {}}};

QString versionText() {
    return Text::tr("Version %1, Build %2").arg(QStringLiteral(RAINCAST_VERSION)).arg(756);
}

/// The resource module's picture at an extent in device pixels; null without the module.
QImage pictureFromModule(int extent) {
    QImageReader reader(
        ResourceModule::path(QStringLiteral("pictures"), CDlgAbout::kPictureResource)
    );
    return reader.read().scaled(extent, extent, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

} // namespace

void CDlgAbout::show(QWidget* parent) {
    // The user has read what is missing; the box does without it.
    static_cast<void>(requireResourceModule(parent, kPictureResource));
    CDlgAbout dialog;
    dialog.run(parent);
}

bool CDlgAbout::onInitialise() {
    setText(kVersion, versionText());
    if (auto* const product = control<QLabel>(kProduct)) {
        QFont font = product->font();
        font.setBold(true);
        product->setFont(font);
    }
    if (auto* const picture = control<QLabel>(kPicture)) {
        const int extent = qMin(picture->width(), picture->height());
        const double ratio = picture->devicePixelRatioF();
        QPixmap pixmap = QPixmap::fromImage(pictureFromModule(qRound(extent * ratio)));
        if (pixmap.isNull()) {
            pixmap = programIcon().pixmap(QSize(extent, extent), ratio);
        } else {
            pixmap.setDevicePixelRatio(ratio);
        }
        picture->setPixmap(pixmap);
        picture->setAlignment(Qt::AlignCenter);
    }
    return Dialog::onInitialise();
}

} // namespace raincast
