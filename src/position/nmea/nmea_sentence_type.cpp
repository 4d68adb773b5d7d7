// SPDX-License-Identifier: MIT
#include "position/nmea/nmea_sentence_type.h"

namespace raincast {

CNMEASentenceType::CNMEASentenceType(std::string_view name) : m_next(s_first), m_name(name) {
    s_first = this;
}

CNMEASentenceType::~CNMEASentenceType() {
    CNMEASentenceType** link = &s_first;
    while (*link != this) {
        link = &(*link)->m_next;
    }
    *link = m_next;
}

const CNMEASentenceType* CNMEASentenceType::find(std::string_view name) {
    const CNMEASentenceType* type = s_first;
    while (type != nullptr && type->m_name != name) {
        type = type->m_next;
    }
    return type;
}

} // namespace raincast
