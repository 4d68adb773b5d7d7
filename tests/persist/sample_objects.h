// SPDX-License-Identifier: MIT
// Classes that use every primitive of the page file's stream, for the tests, the measurements and
// the fuzz target of the room that knows no pages yet. Their identifiers are in no user's file.
#pragma once

#include "persist/record_reader.h"
#include "persist/record_writer.h"
#include "persist/serial_reader.h"
#include "persist/serial_writer.h"
#include "persist/serializable_list.h"

#include <QByteArray>
#include <QString>

#include <array>
#include <cstdint>
#include <iterator>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace raincast {

inline constexpr std::uint32_t kSamplePage = 1010;
inline constexpr std::uint32_t kSampleItem = 1028;
inline constexpr std::uint32_t kSampleDetails = 1030;
inline constexpr std::uint32_t kSampleRejected = 1099;

template<typename T>
using Owned = std::vector<std::unique_ptr<T>>;

/// An item: one record with one 40-byte block of ten numbers.
class SampleItem : public CSerializable {
public:
    bool Read(CSerialReader& reader) override {
        CRecordReader record(reader);
        auto block = placementBytes();
        record.bytes(block);
        for (std::size_t i = 0; i < placement.size(); ++i) {
            placement[i] = loadLittleEndian<std::int32_t>(&block[i * 4]);
        }
        record.end();
        return true;
    }
    bool Write(CSerialWriter& writer) const override {
        CRecordWriter record(writer);
        record.bytes(placementBytes());
        return record.end();
    }
    std::uint32_t GetTypeId() const override { return kSampleItem; }

    std::array<std::int32_t, 10> placement{0, 0, 75, 50, -1, -1, 0, 0, 0, 0};

private:
    std::array<std::uint8_t, 40> placementBytes() const {
        std::array<std::uint8_t, 40> block{};
        for (std::size_t i = 0; i < placement.size(); ++i) {
            storeLittleEndian(placement[i], &block[i * 4]);
        }
        return block;
    }
};

/// An item with a record of its own: every kind of value, and a number of strings that the file
/// gives.
class SampleDetails : public SampleItem {
public:
    enum class Shape : std::int32_t { round, square };

    bool Read(CSerialReader& reader) override {
        if (!SampleItem::Read(reader)) {
            return false;
        }
        CRecordReader record(reader);
        record.string(title);
        record.value(flag);
        record.valueWithin(shape, Shape::round, Shape::square);
        record.valueWithin(zoom, -2, 4);
        record.valueWithin(scale, 0.0F, 100.0F);
        record.valueWithin(latitude, -90.0, 90.0);
        record.value(time);
        std::uint32_t count = 0;
        record.value(count);
        for (; count > 0 && record.more(); --count) {
            QString name;
            record.string(name);
            names.push_back(std::move(name));
        }
        record.string(folder);
        record.end();
        return true;
    }
    bool Write(CSerialWriter& writer) const override {
        if (!SampleItem::Write(writer)) {
            return false;
        }
        CRecordWriter record(writer);
        record.string(title);
        record.value(flag);
        record.value(shape);
        record.value(zoom);
        record.value(scale);
        record.value(latitude);
        record.value(time);
        record.value(static_cast<std::uint32_t>(names.size()));
        for (const QString& name : names) {
            record.string(name);
        }
        record.string(folder);
        return record.end();
    }
    std::uint32_t GetTypeId() const override { return kSampleDetails; }

    QString title;
    bool flag = false;
    Shape shape = Shape::round;
    std::int32_t zoom = 0;
    float scale = 1.0F;
    double latitude = 0.0;
    std::int64_t time = 0;
    std::vector<QString> names;
    QString folder;
};

/// A page: its record, then a list of items with a signed count.
class SamplePage : public CSerializable {
public:
    bool Read(CSerialReader& reader) override {
        CRecordReader record(reader);
        record.string(name);
        record.value(enabled);
        record.end();
        return reader.readObjects<SampleItem>(
            CountKind::signedCount,
            [this](std::unique_ptr<SampleItem> item) { items.push_back(std::move(item)); }
        );
    }
    bool Write(CSerialWriter& writer) const override {
        CRecordWriter record(writer);
        record.string(name);
        record.value(enabled);
        return record.end() && writer.writeObjects(items);
    }
    std::uint32_t GetTypeId() const override { return kSamplePage; }

    QString name;
    bool enabled = true;
    Owned<SampleItem> items;
};

/// A class whose body is never to its liking, and which reads on beyond it.
class SampleRejected : public CSerializable {
public:
    SampleRejected() { ++alive; }
    ~SampleRejected() override { --alive; }
    SampleRejected(const SampleRejected&) = delete;
    SampleRejected& operator=(const SampleRejected&) = delete;

    bool Read(CSerialReader& reader) override {
        std::uint8_t byte = 0;
        while (reader.readValue(byte)) {
        }
        return false;
    }
    bool Write(CSerialWriter& writer) const override {
        writer.writeValue<std::uint32_t>(1);
        return false;
    }
    std::uint32_t GetTypeId() const override { return kSampleRejected; }

    static inline int alive = 0;
};

/// What stands at the top of a file: the list of pages, with an unsigned count.
class SampleApplication : public CSerializable {
public:
    bool Read(CSerialReader& reader) override {
        return reader.readObjects<SamplePage>(
            CountKind::unsignedCount,
            [this](std::unique_ptr<SamplePage> page) { pages.push_back(std::move(page)); }
        );
    }
    bool Write(CSerialWriter& writer) const override { return writer.writeObjects(pages); }

    Owned<SamplePage> pages;
};

inline const SerializableType<SamplePage> kSamplePageType{kSamplePage};
inline const SerializableType<SampleItem> kSampleItemType{kSampleItem};
inline const SerializableType<SampleDetails> kSampleDetailsType{kSampleDetails};
inline const SerializableType<SampleRejected> kSampleRejectedType{kSampleRejected};

inline std::span<const std::uint8_t> bytesOf(const QByteArray& array) {
    return {
        reinterpret_cast<const std::uint8_t*>(array.constData()),
        static_cast<std::size_t>(array.size())};
}

template<typename Bytes>
QByteArray toByteArray(const Bytes& bytes) {
    return {
        reinterpret_cast<const char*>(std::data(bytes)), static_cast<qsizetype>(std::size(bytes))};
}

} // namespace raincast
