// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace raincast {

/// What the radar item that is shown first begins with. The application owns it and gives it to
/// that item.
struct FirstShow {
    /// A site and a product of 0 to 6; without a product the item keeps its own.
    struct Choice {
        QString siteId;
        std::optional<int> product;
    };

    /// Shown as if the user chose it in the item's dialogs.
    std::optional<Choice> choice;
    /// A site to show, animated, if there is no choice and the item has no site yet. Without one
    /// such an item asks for a site.
    std::optional<QString> welcomeSite;
    /// Whether the choice, too, is animated.
    bool animate = false;
};

} // namespace raincast
