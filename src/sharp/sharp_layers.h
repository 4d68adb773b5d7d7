// SPDX-License-Identifier: MIT
#pragma once

#include "basemap/basemaps.h"
#include "core/background.h"
#include "sharp/sharp_queue.h"

#include <functional>
#include <memory>

namespace raincast {

/// The sharp map layers of a radar item: ground and overlay, each put together of all its layers
/// when no more of them can come, those of which there is no sharp one from the described one. They
/// are exchanged as a whole.
class SharpLayers {
public:
    /// `changed` is called when there is another picture.
    explicit SharpLayers(std::function<void()> changed);

    /// Does what is needed next; returns whether something may still come soon. `lettersDetail` is
    /// that of the cities.
    bool follow(const RadarScene& scene, int detail, int lettersDetail, SharpQueue& queue);

    void release();
    /// The queue has ended: what was begun begins anew, and what is there stays until then.
    void beginAnew();

    /// The finest that there is.
    [[nodiscard]] int detail() const;
    /// The described picture while there is no sharp one of it.
    [[nodiscard]] DetailedBitmap ground(const Bitmap& described) const;
    [[nodiscard]] DetailedBitmap overlay(const Bitmap& described) const;

private:
    /// What is drawn over each other into one picture.
    struct Group {
        /// Tells when all begins anew.
        struct Key {
            qint64 described = 0;
            QString folder{}; ///< of the cached files
            int detail = 0;
            int lettersDetail = 0;

            friend bool operator==(const Key&, const Key&) = default;
        };
        Key key;
        SharpRecords records; ///< in the order of drawing
        bool isComposing = false;
        bool isComposed = false; ///< the records' pictures are in `picture`, and gone
        DetailedBitmap picture;
        std::unique_ptr<Background> background; ///< while it is put together
    };

    bool follow(Group& group, SharpQueue& queue);
    void compose(Group& group);
    void begin(Group& group, const RadarScene& scene, bool onTopo);

    std::function<void()> m_changed;
    Group m_ground;
    Group m_overlay;
};

} // namespace raincast
