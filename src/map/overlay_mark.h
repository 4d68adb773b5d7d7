// SPDX-License-Identifier: MIT
#pragma once

#include "map/mark_data.h"
#include "map/overlay_object.h"
#include "persist/serializable.h"

#include <QPoint>

#include <optional>
#include <utility>

namespace raincast {

/// A mark on the map: a pin, with its name beside it unless the view is zoomed out. One that a file
/// has beyond the earth is kept as it is and drawn nowhere.
class COverlayMark : public MarkData, public COverlayObject, public CSerializable {
public:
    static const SerializableType<COverlayMark> cType;

    /// The pixel of the pin's picture that lies on the spot.
    static constexpr QPoint kHotSpot{7, 25};

    COverlayMark() = default;
    COverlayMark(const GeoPosition& position, const QString& name);
    explicit COverlayMark(MarkData data) : MarkData(std::move(data)) {}

    /// Takes a typed name, cut after 1000 UTF-16 units.
    void setName(const QString& text);

    /// Whether it is on the earth: 90 degrees of latitude at most, 360 of longitude.
    [[nodiscard]] bool isPlaced() const;

    void Layout(std::vector<ImagePixel>& outline, const GeoReference& geoReference) const override;
    void Draw(QPainter& painter, const ViewTransform& view, const std::vector<PagePoint>& outline)
        override;
    /// Its name, unless the view is zoomed out.
    [[nodiscard]] std::optional<MapLabel>
    label(const ViewTransform& view, const std::vector<PagePoint>& outline) const override;

    /// One record: name, latitude, longitude. Whatever these are, Write gives back the same bytes.
    /// False for a mark that lacks one of them; it is left as it was then.
    [[nodiscard]] bool Read(CSerialReader& reader) override;
    /// The same, empty for a mark that lacks one of them.
    [[nodiscard]] static std::optional<MarkData> dataFrom(CSerialReader& reader);
    [[nodiscard]] bool Write(CSerialWriter& writer) const override;
    [[nodiscard]] std::uint32_t GetTypeId() const override { return kTypeOverlayMark; }
};

} // namespace raincast
