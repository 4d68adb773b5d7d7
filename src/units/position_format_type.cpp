// SPDX-License-Identifier: MIT
#include "units/position_format_type.h"

#include <utility>

namespace raincast {

CUnits::PositionFormatType::PositionFormatType(QString name, int rank)
    : RankedRecord(rank), m_name(std::move(name)) {}

const CUnits::PositionFormatType& CUnits::PositionFormatType::named(const QString& name) {
    for (const PositionFormatType* format : all()) {
        if (format->name() == name) {
            return *format;
        }
    }
    return usual();
}

} // namespace raincast
