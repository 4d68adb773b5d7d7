// SPDX-License-Identifier: MIT
#include "persist/serializable.h"

#include <cstdio>

namespace raincast {

CSerializable::Type::Type(std::uint32_t typeId) : m_typeId(typeId), m_next(s_head) {
#ifndef NDEBUG
    if (find(typeId) != nullptr) {
        std::fprintf(
            stderr, "Two classes are registered with type identifier %lu; the later one answers.\n",
            static_cast<unsigned long>(typeId)
        );
    }
#endif
    s_head = this;
}

const CSerializable::Type* CSerializable::Type::find(std::uint32_t typeId) {
    for (const Type* type = s_head; type != nullptr; type = type->m_next) {
        if (type->m_typeId == typeId) {
            return type;
        }
    }
    return nullptr;
}

std::unique_ptr<CSerializable> CSerializable::Type::create(std::uint32_t typeId) {
    const Type* type = find(typeId);
    return type != nullptr ? type->Create() : nullptr;
}

} // namespace raincast
