// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace raincast {

/// The folder that a picture or loop was saved in last; at first the user's for pictures. It is
/// kept in the settings record "CPictures" as "folder".
class PictureFolderSetting {
public:
    [[nodiscard]] static QString folder();
    static void setFolder(const QString& folder);

private:
    class Persistant;
};

} // namespace raincast
