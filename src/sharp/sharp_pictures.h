// SPDX-License-Identifier: MIT
#pragma once

#include "basemap/basemaps.h"
#include "sharp/sharp_layers.h"
#include "sharp/sharp_queue.h"

#include <functional>
#include <map>
#include <memory>

namespace raincast {

/// The sharp pictures of a radar item: those of the frame on the screen, of its warnings and map
/// layers, and of the other frames of its loop, in that order. They come in the background after
/// the described ones, from the cache or a server. Each takes the place of a described one as a
/// whole; what is not there is drawn in the described size.
class SharpPictures {
public:
    /// What is wanted at present.
    struct Wish {
        int detail = 1;        ///< 1: nothing
        int lettersDetail = 1; ///< of the layer of cities
        bool inView = true;    ///< a part of the image is in view
        bool mayFetch = true;  ///< nothing else is being loaded
    };

    /// `changed` is called, from the event loop, when a picture came; otherwise, with false, when
    /// follow() is to be called.
    using Changed = std::function<void(bool came)>;
    explicit SharpPictures(Changed changed);

    /// Does what the wish needs next. To be called when the item was drawn, and from time to time;
    /// it costs next to nothing when nothing has changed.
    void follow(const RadarScene& scene, const Wish& wish);

    /// Ends all that runs, and forgets all pictures.
    void release();

    /// Prepares for drawing a state at a detail. With another one than before all begins anew;
    /// coarser pictures stay until finer ones come.
    void use(int detail, const RadarState& state);
    /// The detail in use.
    [[nodiscard]] int wanted() const { return m_detail; }

    /// The network is known to be there.
    void tryAgain();

    /// The finest that can be drawn.
    [[nodiscard]] int detail() const;

    /// What is to be drawn in a described picture's place; that one where there is none.
    [[nodiscard]] DetailedBitmap frame(const RadarFrame& described);
    /// A number that tells what frame() gives from all others, where that is unpacked anew each
    /// time; 0 elsewhere.
    [[nodiscard]] qint64 keyOf(const RadarFrame& described) const;
    [[nodiscard]] DetailedBitmap warnings(const Bitmap& described) const;
    [[nodiscard]] DetailedBitmap ground(const Bitmap& described) const;
    [[nodiscard]] DetailedBitmap overlay(const Bitmap& described) const;

    /// Whether something of what is on the screen may still come soon.
    [[nodiscard]] bool coming() const { return m_coming; }
    /// The same of any frame of the loop.
    [[nodiscard]] bool loopComing() const { return m_coming || m_loopComing; }

private:
    using Pointer = std::shared_ptr<SharpRecord>;

    void useDetail(int detail);
    void endQueue();
    void takeFrames(const RadarState& state);
    void takeWarnings(const RadarState& state);
    [[nodiscard]] SharpRecords onScreen(const RadarState& state) const;
    [[nodiscard]] SharpRecords loop(const RadarState& state) const;

    Changed m_changed;
    int m_detail = 1;
    SharpServers m_known;
    RadarServers m_knownOf;
    std::unique_ptr<SharpQueue> m_queue; ///< while something is wanted
    std::map<QString, Pointer> m_frames; ///< by the described files
    Pointer m_warnings;
    Bitmap m_describedWarnings; ///< that m_warnings are of
    SharpLayers m_layers;
    bool m_coming = false;
    bool m_loopComing = false;
    qint64 m_unpackedKey = 0; ///< of the described frame
    DetailedBitmap m_unpacked;
};

} // namespace raincast
