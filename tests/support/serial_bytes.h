// SPDX-License-Identifier: MIT
#pragma once

#include "persist/serial_reader.h"
#include "persist/serial_writer.h"

#include <QBuffer>
#include <QByteArray>

#include <gtest/gtest.h>

#include <memory>
#include <span>

namespace raincast::test {

/// What `write(CSerialWriter&)` writes; it says whether it could.
template<typename Write>
QByteArray bytesFrom(Write write) {
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    CSerialWriter writer(file);
    EXPECT_TRUE(write(writer));
    EXPECT_TRUE(writer.finish());
    return file.data();
}

/// An object's body as it writes it.
inline QByteArray written(const CSerializable& object) {
    return bytesFrom([&object](CSerialWriter& writer) { return object.Write(writer); });
}

/// An object's block: its identifier, its length and its body.
inline QByteArray writtenBlock(const CSerializable& object) {
    return bytesFrom([&object](CSerialWriter& writer) { return writer.writeObject(object); });
}

inline std::span<const std::uint8_t> bytesOf(const QByteArray& bytes) {
    return {
        reinterpret_cast<const std::uint8_t*>(bytes.constData()),
        static_cast<std::size_t>(bytes.size())};
}

/// Has an object read a body; what it says to it.
inline bool read(CSerializable& object, const QByteArray& bytes) {
    CSerialReader reader(bytesOf(bytes));
    return object.Read(reader);
}

/// The object of a block; null if no class has its identifier.
inline std::unique_ptr<CSerializable> readBlock(const QByteArray& bytes) {
    CSerialReader reader(bytesOf(bytes));
    std::unique_ptr<CSerializable> object;
    EXPECT_TRUE(reader.readObject(object));
    return object;
}

} // namespace raincast::test
