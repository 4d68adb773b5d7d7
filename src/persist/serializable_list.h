// SPDX-License-Identifier: MIT
#pragma once

#include "persist/serializable.h"

#include <list>

namespace raincast {

/// A list of objects that is itself an object of the page file: a count, then each element as an
/// object block.
///
/// The list does not own its elements. The code that fills it, by Read too, deletes them before
/// the list goes (deleteElements). A list that reading drops, because its place holds
/// objects of another kind, is emptied by the reader first.
class CSerializableList : public std::list<CSerializable*>, public CSerializable {
public:
    static const SerializableType<CSerializableList> cType;

    /// Appends the elements that could be read; false only when the count cannot be read.
    [[nodiscard]] bool Read(CSerialReader& reader) override;
    [[nodiscard]] bool Write(CSerialWriter& writer) const override;
    [[nodiscard]] std::uint32_t GetTypeId() const override { return kTypeSerializableList; }

    /// Deletes every element, those of lists among them first, and empties the list.
    void deleteElements();
};

/// Destroys an object that is not used; a list together with its elements.
void destroyObject(std::unique_ptr<CSerializable> object);

} // namespace raincast
