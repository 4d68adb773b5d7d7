// SPDX-License-Identifier: MIT
#pragma once

namespace raincast {

/// Whether pictures of more pixels are shown where the screen has room. The user's choice is kept
/// in the settings record "CDetail" as "automatic"; it is on at first.
class DetailSetting {
public:
    [[nodiscard]] static bool automatic();
    static void setAutomatic(bool automatic);

private:
    class Persistant;
};

} // namespace raincast
