// SPDX-License-Identifier: MIT
#pragma once

#include "core/ranked_record.h"
#include "units/units.h"

namespace raincast {

/// A way to write positions. Each is a static object; all() has them in the order of the dialog.
class CUnits::PositionFormatType : public RankedRecord<CUnits::PositionFormatType> {
public:
    /// The position as text; empty for one that is not finite.
    [[nodiscard]] virtual QString format(const GeoPosition& position) const = 0;

    /// Reads a position that a person typed. False when the text is not a position: the part of
    /// `position` that could not be read is unchanged, and the rest may have changed.
    [[nodiscard]] virtual bool parse(QStringView text, GeoPosition& position) const = 0;

    /// The name that the dialog shows and the settings keep.
    [[nodiscard]] const QString& name() const { return m_name; }

    /// "Deg,Min", for those who have not chosen.
    [[nodiscard]] static const PositionFormatType& usual();
    /// The format of exactly that name; usual() without one.
    [[nodiscard]] static const PositionFormatType& named(const QString& name);

protected:
    PositionFormatType(QString name, int rank);
    ~PositionFormatType() override = default;

private:
    const QString m_name;
};

} // namespace raincast
