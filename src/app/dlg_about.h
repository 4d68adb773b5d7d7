// SPDX-License-Identifier: MIT
#pragma once

#include "window/dialog.h"

namespace raincast {

/// The "About Raincast" box: the program's picture, name, version and licence, and where its data
/// come from.
class CDlgAbout : public Dialog {
public:
    static constexpr int kTemplate = 103;
    static constexpr int kPicture = 1013;
    static constexpr int kVersion = 1014;
    static constexpr int kCredits = 1016;
    static constexpr int kProduct = 1015;
    static constexpr int kLicence = 1017;
    /// The picture, in the resource module.
    static constexpr int kPictureResource = 5001;

    CDlgAbout() : Dialog(kTemplate) {}

    /// Shows the box. If the resource module is missing, says so first and shows the program's icon
    /// instead of the picture.
    static void show(QWidget* parent);

    bool onInitialise() override;
};

} // namespace raincast
