// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace raincast {

class CNMEASentenceType;

/// One parsed sentence: the base of the records that are published.
class CNMEASentence {
public:
    virtual ~CNMEASentence() = default;

    /// Reads the record from the text of a sentence, which starts at its address field ("GPRMC")
    /// and ends at the `*` of its checksum or at its end. Always true: a field that is missing or
    /// makes no sense is 0, and only the receiver's own flags say whether the rest means anything.
    virtual bool Parse(std::string_view text) = 0;

    /// The kind that made the record.
    [[nodiscard]] const CNMEASentenceType& type() const { return *m_type; }

protected:
    explicit CNMEASentence(const CNMEASentenceType& type) : m_type(&type) {}
    CNMEASentence(const CNMEASentence&) = default;
    CNMEASentence& operator=(const CNMEASentence&) = default;

private:
    const CNMEASentenceType* m_type;
};

} // namespace raincast
