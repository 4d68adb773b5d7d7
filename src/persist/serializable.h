// SPDX-License-Identifier: MIT
#pragma once

#include "persist/type_ids.h"

#include <cstdint>
#include <memory>

namespace raincast {

class CSerialReader;
class CSerialWriter;

/// Base of everything that is kept in the page file. An object writes its own body and reads it
/// back; the type identifier and the length in front of the body are the reader's and the writer's
/// business (CSerialReader::readObject, CSerialWriter::writeObject).
class CSerializable {
public:
    class Type;

    virtual ~CSerializable() = default;

    /// Reads the body, at whose start the reader stands. True on success; on false the caller
    /// destroys the object. A class keeps its defaults for missing fields and for numbers outside
    /// of the range that it can use: do not trust the file. It need not consume the whole body, and
    /// cannot read beyond its end.
    [[nodiscard]] virtual bool Read(CSerialReader& reader) = 0;

    /// Writes the body. True on success.
    [[nodiscard]] virtual bool Write(CSerialWriter& writer) const = 0;

    /// The number that stands in front of the body. A class that does not override this is
    /// written, but never created again on loading.
    [[nodiscard]] virtual std::uint32_t GetTypeId() const { return kTypeNone; }

protected:
    CSerializable() = default;
    CSerializable(const CSerializable&) = default;
    CSerializable& operator=(const CSerializable&) = default;
};

/// The record of one creatable class: its identifier and a factory. Constructing one registers it
/// for the life of the program, so each is a static object. Of two records with one identifier the
/// one constructed last answers; a debug build says so on standard error.
class CSerializable::Type {
public:
    explicit Type(std::uint32_t typeId);
    Type(const Type&) = delete;
    Type& operator=(const Type&) = delete;

    /// A new object of the class in its default state, or null.
    [[nodiscard]] virtual std::unique_ptr<CSerializable> Create() const = 0;

    [[nodiscard]] std::uint32_t typeId() const { return m_typeId; }

    /// The record that answers for an identifier, or null.
    [[nodiscard]] static const Type* find(std::uint32_t typeId);

    /// A new object by identifier; null when no record carries it.
    [[nodiscard]] static std::unique_ptr<CSerializable> create(std::uint32_t typeId);

protected:
    virtual ~Type() = default;

private:
    static inline const Type* s_head = nullptr;

    const std::uint32_t m_typeId;
    const Type* const m_next;
};

/// The record of a class that is created by its default constructor:
///     static const SerializableType<CImage> cType{kTypeImage};
template<typename T>
class SerializableType final : public CSerializable::Type {
public:
    using Type::Type;
    [[nodiscard]] std::unique_ptr<CSerializable> Create() const override {
        return std::make_unique<T>();
    }
};

} // namespace raincast
