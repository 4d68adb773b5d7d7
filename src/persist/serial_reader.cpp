// SPDX-License-Identifier: MIT
#include "persist/serial_reader.h"

#include "persist/serializable_list.h"

#include <QString>

#include <algorithm>

namespace raincast {

bool CSerialReader::readBytes(std::span<std::uint8_t> out) {
    if (out.size() > remaining()) {
        return fail();
    }
    std::copy_n(m_bytes.data() + m_position, out.size(), out.data());
    m_position += out.size();
    return true;
}

bool CSerialReader::readString(QString& string) {
    std::uint32_t length = 0;
    if (!readValue(length)) {
        return false;
    }
    const std::size_t there = std::min<std::size_t>(length, remaining());
    const auto units = static_cast<qsizetype>(there / 2);
    string = QString(units, Qt::Uninitialized);
    // QChar is one UTF-16 unit; on a little-endian machine this is a plain copy.
    qFromLittleEndian<char16_t>(m_bytes.data() + m_position, units, string.data());
    m_position += there;
    m_skipped = m_skipped || there % 2 != 0;
    return there == length || fail();
}

bool CSerialReader::skip(std::uint32_t count) {
    m_skipped = m_skipped || count > 0;
    if (count > remaining()) {
        return fail();
    }
    m_position += count;
    return true;
}

bool CSerialReader::readCount(CountKind kind, std::uint32_t& count) {
    if (!readValue(count)) {
        return false;
    }
    if (kind == CountKind::signedCount && static_cast<std::int32_t>(count) < 0) {
        m_damaged = true;
        count = 0;
    }
    return true;
}

bool CSerialReader::readObject(std::unique_ptr<CSerializable>& object) {
    std::uint32_t typeId = 0;
    std::uint32_t length = 0;
    if (!readValue(typeId) || !readValue(length)) {
        object.reset();
        return false;
    }
    const bool skippedBefore = std::exchange(m_skipped, false);
    const bool damagedBefore = std::exchange(m_damaged, length > remaining());

    const std::size_t enclosingEnd = m_end;
    m_end = m_position + std::min<std::size_t>(length, remaining());
    ++m_depth;
    object = readBody(typeId);
    --m_depth;
    m_skipped = m_skipped || !atEnd();
    m_position = m_end;
    m_end = enclosingEnd;
    m_objectWhole = !m_skipped && !m_damaged;
    m_skipped = m_skipped || skippedBefore;
    m_damaged = m_damaged || damagedBefore;
    return true;
}

void CSerialReader::readRest() {
    std::unique_ptr<CSerializable> object;
    while (!atEnd() && readObject(object)) {
        if (object != nullptr) {
            drop(std::move(object));
        }
    }
}

std::unique_ptr<CSerializable> CSerialReader::readBody(std::uint32_t typeId) {
    if (m_resident != nullptr && m_resident->GetTypeId() == typeId) {
        readResident();
        return nullptr;
    }
    auto object = m_depth <= kMaxDepth ? CSerializable::Type::create(typeId) : nullptr;
    if (object == nullptr || !object->Read(*this)) {
        drop(std::move(object));
        return nullptr;
    }
    return object;
}

// Its own body may hold a block of its identifier, which is not to be read into it once more.
void CSerialReader::readResident() {
    CSerializable* const resident = std::exchange(m_resident, nullptr);
    const bool whole = resident->Read(*this);
    m_resident = resident;
    m_damaged = m_damaged || !whole;
}

bool CSerialReader::fail() {
    m_damaged = true;
    m_position = m_end;
    return false;
}

void CSerialReader::drop(std::unique_ptr<CSerializable> object) {
    m_damaged = true;
    destroyObject(std::move(object));
}

} // namespace raincast
