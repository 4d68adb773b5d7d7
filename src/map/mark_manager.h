// SPDX-License-Identifier: MIT
#pragma once

#include "core/listener.h"
#include "geo/local_frame.h"
#include "map/navigation_data.h"
#include "map/overlay_mark.h"
#include "persist/serializable.h"
#include "position/data_gps_position.h"

#include <cstddef>
#include <list>
#include <optional>

namespace raincast {

/// The user's marks, and the way to one of them. The marks are overlays, which map views show; they
/// are kept in the page file, behind the pages.
///
/// One mark can be the target: every position with a fix then gives the way to it, which is
/// published through Listener<NavigationData>. The manager is made before any map view, so that it
/// hears of positions before those do: a map view that hears of one finds the way from there.
class CMarkManager : public CSerializable, private Listener<CDataGPSPosition> {
public:
    static const SerializableType<CMarkManager> cType;

    CMarkManager() = default;
    ~CMarkManager() override;
    CMarkManager(const CMarkManager&) = delete;
    CMarkManager& operator=(const CMarkManager&) = delete;

    /// In the order in which they came. A mark keeps its address until it is removed.
    [[nodiscard]] const std::list<COverlayMark>& marks() const { return m_marks; }

    /// Adds a mark at the end. A position that is not on the earth is put there: a latitude beyond
    /// a pole on the pole, not-a-number at 0.
    COverlayMark& add(const GeoPosition& position, const QString& name);
    /// A mark that is not of this manager changes nothing, here and below.
    void rename(const COverlayMark& mark, const QString& name);
    void remove(const COverlayMark& mark);

    /// A mark that is about to be removed, for putBack().
    struct Kept {
        MarkData data;
        std::size_t place = 0; ///< among the marks
        bool isTarget = false;
        std::optional<LocalOffset> start; ///< of the line to the target
    };
    [[nodiscard]] Kept keep(const COverlayMark& mark) const;
    /// Adds the mark again, where it was. It is the target again if it was and there is no other.
    void putBack(const Kept& kept);

    /// Removes all of them.
    void clear();

    /// Makes a mark the target: its position and name are copied. The line that the cross-track
    /// offset is measured from starts again where the next position is. A mark that is not placed
    /// changes nothing.
    void setTarget(const COverlayMark& mark);
    void clearTarget();
    [[nodiscard]] bool hasTarget() const { return m_target.latitude != 0; }
    [[nodiscard]] bool isTarget(const COverlayMark& mark) const { return m_targetMark == &mark; }
    /// The target; its latitude is 0 without one.
    [[nodiscard]] const MarkData& target() const { return m_target; }

    /// The target, and where the line to it starts, seen from it; empty as long as no position
    /// has come since it was chosen.
    struct Target {
        MarkData mark;
        std::optional<LocalOffset> start;
    };
    /// Empty without a target.
    [[nodiscard]] std::optional<Target> chosenTarget() const;
    /// Makes the mark of that name and place the target, as chosenTarget() had it. False, and
    /// nothing changes, without such a mark. A start that is too close to it or not on the earth is
    /// left out.
    bool restoreTarget(const Target& target);

    /// Where the user was at the last fix; empty before the first.
    [[nodiscard]] const std::optional<GeoPosition>& currentPosition() const { return m_position; }
    /// The way to the target from there; null without a target, and before the first fix that came
    /// after it was chosen.
    [[nodiscard]] const NavigationData* navigation() const;

    /// Replaces the marks by those of another one, whose target goes. Each keeps its address.
    void takeFrom(CMarkManager& other);

    /// Appends the marks that are in the file. False when one or more could not be read; all others
    /// are there nevertheless.
    [[nodiscard]] bool Read(CSerialReader& reader) override;
    [[nodiscard]] bool Write(CSerialWriter& writer) const override;
    [[nodiscard]] std::uint32_t GetTypeId() const override { return kTypeMarkManager; }

private:
    /// The line through the target that cross-track offsets are measured from: where the user was
    /// when it was drawn, seen from the target, and the unit normal.
    struct StartLine {
        std::optional<LocalOffset> reference;
        float normalNorth = 0; ///< less the north offset, over the distance
        float normalEast = 0;  ///< the east offset, over the distance
    };

    [[nodiscard]] static std::optional<StartLine> lineFrom(const LocalOffset& start);

    void onPublished(CDataGPSPosition& position) override;
    void takeTarget(const COverlayMark& mark, std::optional<LocalOffset> lineStart);
    void dropTarget();
    void navigate(float course);
    [[nodiscard]] float crossTrack(const LocalOffset& offset);
    void dropNavigation();

    std::list<COverlayMark> m_marks;
    MarkData m_target;
    const COverlayMark* m_targetMark = nullptr; ///< whose copy m_target is
    StartLine m_startLine;
    std::optional<GeoPosition> m_position;
    NavigationData m_navigation;
    bool m_navigating = false; ///< m_navigation holds
};

} // namespace raincast
