// SPDX-License-Identifier: MIT
#pragma once

#include "position/data_gps_position.h"

namespace raincast {

/// The user's position as one feed knows it: the values that it has learnt so far, and those that
/// it published last. What shows a position derives from this and goes by the latter alone, so that
/// all it shows is of one moment.
class PublishedPosition : public CDataGPSPosition {
public:
    PublishedPosition() = default;
    virtual ~PublishedPosition() = default;
    PublishedPosition(const PublishedPosition&) = delete;
    PublishedPosition& operator=(const PublishedPosition&) = delete;

    /// Makes the present values known to every Listener<CDataGPSPosition>. Feeds call it after
    /// setting the values.
    virtual void publish();

    /// Marks the last published position as lost without calling listeners: for a feed whose
    /// position is no longer the user's, since another feed publishes now.
    virtual void drawAsLost();

    /// The position that was published last, and is drawn.
    [[nodiscard]] const CDataGPSPosition& published() const { return m_published; }

private:
    CDataGPSPosition m_published;
};

} // namespace raincast
