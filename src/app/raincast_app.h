// SPDX-License-Identifier: MIT
#pragma once

#include "map/mark_manager.h"
#include "page/page_display.h"
#include "pictures/item_pictures.h"
#include "weather/first_show.h"

#include <QString>

#include <memory>
#include <utility>

namespace raincast {

class CItemWeather;
class Downloads;
class WarningWatch;

/// The application: a paged one that starts with a weather page. It owns the user's marks, keeps
/// them in its page file and gives them to its map views. Default pages leave the marks alone.
class CRaincastApp : public CAppPaged {
public:
    CRaincastApp() = default;
    ~CRaincastApp() override;

    [[nodiscard]] CMarkManager& marks() { return m_marks; }
    [[nodiscard]] const CMarkManager& marks() const { return m_marks; }

    /// Keeps this for the radar item that is shown next, whichever page it is on.
    void setFirstShow(FirstShow first) { m_firstShow = std::move(first); }

    Page& append(std::unique_ptr<Page> page) override;

    /// Give these to every radar item; borrowed, and used until the last page has gone.
    void useDownloads(Downloads& downloads) { m_downloads = &downloads; }
    void useWarnings(WarningWatch& watch) { m_warnings = &watch; }

    /// Whether an item of the current page is being loaded.
    [[nodiscard]] bool loading() const;
    /// The same, but for frames of loops whose first ones are shown already.
    [[nodiscard]] bool pictureComing() const;
    /// Whether more pixels of what is on the screen may come soon.
    [[nodiscard]] bool sharpComing() const;
    /// The same of any frame of their loops.
    [[nodiscard]] bool sharpLoopComing() const;
    /// Writes the loop of the current page's first radar item into a file; `done` is called once.
    void writeLoop(const QString& path, ItemPictures::Done done);
    /// Where a server lists the frames that the current page shows; empty for none.
    [[nodiscard]] QString listing() const;
    /// A text that says what is wrong on the current page; empty while nothing is.
    [[nodiscard]] QString problem() const;
    /// What the current page shows, for the window's title; may be empty.
    [[nodiscard]] QString caption() const;

    /// Replaces the pages and the user's marks by those of another one, which shows none.
    void takeFrom(CRaincastApp& other);

    /// Replaces the pages and the user's marks by those of the file.
    [[nodiscard]] bool Read(CSerialReader& reader) override;
    /// The pages, and behind them the marks if there are any.
    [[nodiscard]] bool Write(CSerialWriter& writer) const override;

protected:
    void createDefaultPages() override;

private:
    void prepare(CPageDisplay::CItem& item);
    void giveTools(CPageDisplay::CItem& item) const;
    [[nodiscard]] bool anyRadar(bool (CItemWeather::*is)() const) const;

    CMarkManager m_marks;
    Downloads* m_downloads = nullptr;
    WarningWatch* m_warnings = nullptr;
    FirstShow m_firstShow;
};

} // namespace raincast
