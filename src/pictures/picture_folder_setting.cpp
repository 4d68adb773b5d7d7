// SPDX-License-Identifier: MIT
#include "pictures/picture_folder_setting.h"

#include "core/user_change.h"
#include "persist/persistant_data.h"

#include <QDir>
#include <QStandardPaths>

namespace raincast {

namespace {

QString chosen; ///< empty: none yet

} // namespace

class PictureFolderSetting::Persistant : public PersistantData {
public:
    Persistant() : PersistantData("CPictures") {}

private:
    void exchange(SettingsExchange& values) override { values.string("folder", chosen); }

    static Persistant s_record;
};

PictureFolderSetting::Persistant PictureFolderSetting::Persistant::s_record;

QString PictureFolderSetting::folder() {
    if (!chosen.isEmpty() && QDir(chosen).exists()) {
        return chosen;
    }
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    return QDir(pictures).exists() ? pictures : QDir::homePath();
}

void PictureFolderSetting::setFolder(const QString& folder) {
    if (folder != chosen) {
        chosen = folder;
        UserChange::announce();
    }
}

} // namespace raincast
