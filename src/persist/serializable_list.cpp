// SPDX-License-Identifier: MIT
#include "persist/serializable_list.h"

#include "persist/serial_reader.h"
#include "persist/serial_writer.h"

namespace raincast {

const SerializableType<CSerializableList> CSerializableList::cType{kTypeSerializableList};

bool CSerializableList::Read(CSerialReader& reader) {
    return reader.readObjects<CSerializable>(
        CountKind::signedCount,
        [this](std::unique_ptr<CSerializable> object) { push_back(object.release()); }
    );
}

bool CSerializableList::Write(CSerialWriter& writer) const {
    return writer.writeObjects(*this);
}

void CSerializableList::deleteElements() {
    while (!empty()) {
        std::unique_ptr<CSerializable> element(front());
        pop_front();
        destroyObject(std::move(element));
    }
}

void destroyObject(std::unique_ptr<CSerializable> object) {
    if (auto* list = dynamic_cast<CSerializableList*>(object.get())) {
        list->deleteElements();
    }
}

} // namespace raincast
