// SPDX-License-Identifier: MIT
#include "persist/serial_writer.h"
#include "sample_bytes.h"

#include <QBuffer>

#include <gtest/gtest.h>

#include <algorithm>

namespace raincast {
namespace {

/// Takes a number of bytes, then no more: a disk that is full.
class FullDevice : public QIODevice {
public:
    explicit FullDevice(qint64 room) : m_room(room) { open(WriteOnly | Unbuffered); }
    QByteArray taken;
    int calls = 0;

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char* data, qint64 size) override {
        ++calls;
        const qint64 fits = std::min(size, m_room - taken.size());
        taken.append(data, fits);
        return fits > 0 ? fits : -1;
    }

private:
    qint64 m_room;
};

TEST(SerialWriterTest, WritesTheFormatByteForByte) {
    SampleApplication application;
    fillSample(application);
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    CSerialWriter writer(file);
    EXPECT_TRUE(application.Write(writer));
    EXPECT_TRUE(writer.finish());
    EXPECT_EQ(file.data(), toByteArray(sampleFile()));
    EXPECT_EQ(writer.listedObjects(), 2U); // pages; their items do not count
}

TEST(SerialWriterTest, WritesAnEmptyListAsItsCount) {
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    CSerialWriter writer(file);
    EXPECT_TRUE(SampleApplication().Write(writer));
    EXPECT_TRUE(writer.finish());
    EXPECT_EQ(file.data(), QByteArray(4, '\0'));
}

TEST(SerialWriterTest, WritesRawValuesAndStringsOutsideOfRecords) {
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    CSerialWriter writer(file);
    EXPECT_TRUE(writer.writeValue<std::uint16_t>(0x1234));
    EXPECT_TRUE(writer.writeValue(true));
    EXPECT_TRUE(writer.writeString(u"\U0001F327"));
    EXPECT_TRUE(writer.finish());
    const Bytes expected = {0x34, 0x12, 0x01, 0x04, 0x00, 0x00, 0x00, 0x3C, 0xD8, 0x27, 0xDF};
    EXPECT_EQ(file.data(), toByteArray(expected));
}

TEST(SerialWriterTest, AnObjectWithoutAnIdentifierIsWrittenAsMinusOne) {
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    CSerialWriter writer(file);
    EXPECT_TRUE(writer.writeObject(SampleApplication()));
    EXPECT_TRUE(writer.finish());
    const Bytes expected = {0xFF, 0xFF, 0xFF, 0xFF, 0x04, 0, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(file.data(), toByteArray(expected));
}

TEST(SerialWriterTest, TheFirstElementThatFailsEndsItsList) {
    Owned<CSerializable> objects;
    objects.push_back(std::make_unique<SampleRejected>());
    objects.push_back(std::make_unique<SampleItem>());
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    CSerialWriter writer(file);
    EXPECT_FALSE(writer.writeObjects(objects));
    EXPECT_TRUE(writer.finish());
    // What the failing object wrote stays, with its length; the element behind it is not there.
    const Bytes expected = join(number(2), number(kSampleRejected), number(4), number(1));
    EXPECT_EQ(file.data(), toByteArray(expected));
}

TEST(SerialWriterTest, AFullDeviceIsLeftAsFarAsItGot) {
    const Bytes whole = sampleFile();
    for (std::size_t room = 0; room < whole.size(); ++room) {
        SampleApplication application;
        fillSample(application);
        FullDevice device(static_cast<qint64>(room));
        CSerialWriter writer(device);
        const bool written = application.Write(writer);
        EXPECT_FALSE(writer.finish() && written) << room;
        EXPECT_EQ(device.taken, toByteArray(whole).left(static_cast<qsizetype>(room)));
    }
}

TEST(SerialWriterTest, AFailingWriteStopsTheSave) {
    SampleApplication application;
    for (int i = 0; i < 3000; ++i) {
        fillSample(application);
    }
    FullDevice device(100'000);
    CSerialWriter writer(device);
    EXPECT_FALSE(application.Write(writer));
    EXPECT_TRUE(writer.failed());
    EXPECT_FALSE(writer.finish());
    EXPECT_EQ(device.taken.size(), 100'000);
    EXPECT_EQ(device.calls, 2);
    EXPECT_FALSE(writer.writeValue(1));
    EXPECT_FALSE(writer.writeString(u"a"));
    EXPECT_FALSE(writer.writeObject(SampleItem()));
}

TEST(SerialWriterTest, BytesGoToTheDeviceOnceSixtyFourKibibytesAreThere) {
    constexpr qsizetype kSome = 65'536;
    FullDevice device(1'000'000);
    CSerialWriter writer(device);
    EXPECT_TRUE(writer.writeBytes(Bytes(kSome - 1, 1)));
    EXPECT_EQ(device.taken.size(), 0);
    EXPECT_TRUE(writer.writeValue(std::uint8_t{2}));
    EXPECT_EQ(device.taken.size(), kSome);
    // Not while a count or a length is still to be filled in before them.
    CRecordWriter record(writer);
    EXPECT_TRUE(record.bytes(Bytes(kSome, 3)));
    EXPECT_EQ(device.taken.size(), kSome);
    EXPECT_TRUE(record.end());
    EXPECT_TRUE(writer.finish());
    EXPECT_EQ(device.taken.size(), kSome + 4 + 4 + kSome);
    EXPECT_EQ(device.calls, 2);
}

TEST(SerialWriterTest, ATextWhoseLengthHasNoRoomIsRefused) {
    FullDevice device(1'000'000);
    CSerialWriter writer(device);
    const char16_t first = u'x'; // nobody looks at the rest
    EXPECT_FALSE(writer.writeString(QStringView(&first, qsizetype{1} << 31)));
    EXPECT_TRUE(writer.failed());
    EXPECT_FALSE(writer.finish());
    EXPECT_EQ(device.taken.size(), 0);
}

TEST(SerialWriterTest, ARecordLeftWithoutItsEndIsClosed) {
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    CSerialWriter writer(file);
    { CRecordWriter(writer).value(true); }
    EXPECT_TRUE(writer.finish());
    EXPECT_EQ(file.data(), toByteArray(join(number(1), number(1), Bytes{1})));
}

} // namespace
} // namespace raincast
