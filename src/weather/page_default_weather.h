// SPDX-License-Identifier: MIT
#pragma once

#include "page/page_display.h"

namespace raincast {

class CItemWeather;

/// The page that a first start shows: a display page that one radar item fills. It is saved as a
/// plain display page and comes back as one; the item then fills it by its anchors.
class CPageDefaultWeather : public CPageDisplay {
public:
    class Type;

    CPageDefaultWeather();
    /// With this radar item.
    explicit CPageDefaultWeather(std::unique_ptr<CItemWeather> weather);
    ~CPageDefaultWeather() override;

    /// Keeps the radar item as large as the page, unless the user deleted it.
    void size(int width, int height) override;

protected:
    void itemDeleted(const CItem& item) override;

private:
    CItemWeather* m_weather; ///< the page's; null once it was deleted
};

} // namespace raincast
