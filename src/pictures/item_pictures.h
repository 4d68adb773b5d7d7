// SPDX-License-Identifier: MIT
#pragma once

#include "map/item_map_view.h"
#include "page/task_row.h"
#include "pictures/loop_saving.h"
#include "radar/radar_state.h"
#include "window/menu_table.h"

#include <QImage>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace raincast {

/// The rows of an item's menu for pictures of it.
inline constexpr MenuRow kPictureRows[] = {
    menuEntry(kSavePicture, Text::marked("&Save Picture...")),
    menuEntry(kCopyPicture, Text::marked("&Copy Picture")),
    menuEntry(kSaveLoop, Text::marked("Save &Loop...")),
};

/// Pictures of a display item as it is painted on its page, of the same size in device pixels, in
/// files and on the clipboard; and its loop as an animated GIF, painted and written frame after
/// frame as the item looked when that began, with a line at the bottom of the window that says how
/// far it is and can cancel it.
class ItemPictures {
public:
    using Done = LoopSaving::Done;

    struct Source {
        CItemMapView& item;
        RadarState& state;
        /// The part of the page that the item's picture is to have.
        std::function<QRect()> area;
        /// A file name without its ending, such as "MUX_20190519_0554_N0R".
        std::function<QString()> name;
    };
    /// What is borrowed is so for its life.
    explicit ItemPictures(Source source);
    ~ItemPictures();
    ItemPictures(const ItemPictures&) = delete;
    ItemPictures& operator=(const ItemPictures&) = delete;

    /// Carries out a command of kPictureRows, as far as there is a picture; false for any other.
    bool command(int id);
    /// Greys the entries of kPictureRows in a menu.
    void prepareMenu(QMenu& menu) const;

    /// The item as it is painted now; null without a page that is shown.
    [[nodiscard]] QImage paint() const;
    /// Writes the loop, or the one picture that there is, into a file; `done` is called once.
    /// Another one that is being written is cancelled.
    void writeLoop(const QString& path, Done done);

private:
    [[nodiscard]] bool hasPicture() const;
    [[nodiscard]] bool hasLoop() const;
    void savePicture();
    void copyPicture();
    void saveLoop();
    struct Canvas;
    [[nodiscard]] Canvas canvas() const;
    [[nodiscard]] LoopSaving::Paint painter() const;
    void loopSaved(const QString& path, const WholeFile::Result& result);

    Source m_source;
    std::unique_ptr<LoopSaving> m_saving;
    TaskRow m_row;
};

} // namespace raincast
