// SPDX-License-Identifier: MIT
#pragma once

namespace raincast {

/// The distance within which weather was taken along last; at first 250 km. It is kept in the
/// settings record "CAlong" as "metres".
class AlongSetting {
public:
    [[nodiscard]] static double metres();
    static void setMetres(double metres);

private:
    class Persistant;
};

} // namespace raincast
