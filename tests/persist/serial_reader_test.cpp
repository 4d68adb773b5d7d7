// SPDX-License-Identifier: MIT
#include "persist/serial_reader.h"
#include "sample_bytes.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

struct Loaded {
    SampleApplication application;
    bool read = false;
    bool whole = false;
    std::size_t wholeObjects = 0;

    [[nodiscard]] std::vector<QString> names() const {
        std::vector<QString> all;
        for (const auto& page : application.pages) {
            all.push_back(page->name);
        }
        return all;
    }
};

Loaded load(const Bytes& bytes) {
    Loaded loaded;
    CSerialReader reader(bytes);
    loaded.read = loaded.application.Read(reader);
    loaded.whole = reader.whole();
    loaded.wholeObjects = reader.wholeObjects();
    return loaded;
}

Bytes block(std::uint32_t typeId, const Bytes& body) {
    return join(number(typeId), number(static_cast<std::uint32_t>(body.size())), body);
}

using Names = std::vector<QString>;
const Names kBoth = {QStringLiteral("Weather"), QStringLiteral("B")};
const Names kWeather = {QStringLiteral("Weather")};
const Names kSecond = {QStringLiteral("B")};

TEST(SerialReaderTest, ReadsTheFormat) {
    const Loaded loaded = load(sampleFile());
    ASSERT_TRUE(loaded.read);
    EXPECT_TRUE(loaded.whole);
    EXPECT_EQ(loaded.wholeObjects, 2U);
    ASSERT_EQ(loaded.names(), kBoth);

    const SamplePage& weather = *loaded.application.pages[0];
    EXPECT_TRUE(weather.enabled);
    ASSERT_EQ(weather.items.size(), 2U);
    const std::array<std::int32_t, 10> placement{0, -2, 240, 268, -1, -1, 0, 1, 2, 2};
    EXPECT_EQ(weather.items[0]->placement, placement);
    const auto* details = dynamic_cast<const SampleDetails*>(weather.items[1].get());
    ASSERT_NE(details, nullptr);
    EXPECT_EQ(details->placement, SampleItem().placement);
    EXPECT_EQ(details->title, QStringLiteral("\u00DC\u20AC"));
    EXPECT_TRUE(details->flag);
    EXPECT_EQ(details->shape, SampleDetails::Shape::square);
    EXPECT_EQ(details->zoom, -2);
    EXPECT_EQ(details->scale, 2.5F);
    EXPECT_EQ(details->latitude, 37.0);
    EXPECT_EQ(details->time, 1234567890123456789);
    EXPECT_EQ(details->names, (Names{QStringLiteral("a"), QString()}));
    EXPECT_EQ(details->folder, QStringLiteral("/"));

    EXPECT_FALSE(loaded.application.pages[1]->enabled);
    EXPECT_TRUE(loaded.application.pages[1]->items.empty());
}

TEST(SerialReaderTest, AnEmptyFileHasNoPages) {
    const Loaded loaded = load({});
    EXPECT_FALSE(loaded.read);
    EXPECT_FALSE(loaded.whole);
    EXPECT_TRUE(loaded.application.pages.empty());
}

TEST(SerialReaderTest, AFileWithNoPagesIsWhole) {
    const Loaded loaded = load(number(0));
    EXPECT_TRUE(loaded.read);
    EXPECT_TRUE(loaded.whole);
}

struct Damage {
    const char* what;
    Bytes file;
    Names pages;
    std::size_t wholePages;
};

// None of these files is whole; each loads the pages named, and has so many that are whole.
std::vector<Damage> damages() {
    const Bytes unknown = block(99, {1, 2, 3});
    const Bytes textOfGigabytes = join(number(2), number(0xFFFFFFFE), Bytes{'X', 0});
    return {
        {"unknown identifier between two pages",
         join(number(3), kWeatherPage, unknown, kSecondPage), kBoth, 2},
        {"identifier of no class", join(number(3), kWeatherPage, block(kTypeNone, {}), kSecondPage),
         kBoth, 2},
        {"an object that is no page", join(number(2), block(kSampleItem, {}), kSecondPage), kSecond,
         1},
        {"a rejected body", join(number(2), block(kSampleRejected, Bytes(50, 7)), kSecondPage),
         kSecond, 1},
        {"a list where a page should be, with an element",
         join(number(2), block(0, join(number(1), kSecondPage)), kSecondPage), kSecond, 1},
        {"a page without a body", join(number(2), block(kSamplePage, {}), kSecondPage), kSecond, 1},
        {"bytes behind the page's last item",
         join(number(2), block(kSamplePage, join(number(0), number(0), number(0))), kSecondPage),
         {QString(), QStringLiteral("B")},
         1},
        {"more pages counted than there are", join(number(3), kWeatherPage, kSecondPage), kBoth, 2},
        {"four thousand million pages", join(number(0xFFFFFFFF), kWeatherPage, kSecondPage), kBoth,
         2},
        {"fewer pages counted than there are", join(number(1), kWeatherPage, kSecondPage), kWeather,
         1},
        {"zeros behind the count, as a power cut leaves them", Bytes(4096, 0), {}, 0},
        {"zeros behind a page", join(number(2), kWeatherPage, Bytes(4096, 0)), kWeather, 1},
        {"a page longer than the file",
         join(number(2), number(kSamplePage), number(0xFFFFFFFF), number(0), number(0)),
         {QString()},
         0},
        {"a negative page length",
         join(number(2), number(kSamplePage), number(0x80000000), number(0), number(0)),
         {QString()},
         0},
        {"half a header", join(number(2), kSecondPage, Bytes{0xF2, 0x03, 0, 0, 1}), kSecond, 1},
        {"a negative number of items",
         join(number(2), block(kSamplePage, join(number(0), number(0xFFFFFFFF))), kSecondPage),
         {QString(), QStringLiteral("B")},
         1},
        {"four thousand million fields",
         join(
             number(2), block(kSamplePage, join(number(0xFFFFFFFF), number(0), number(0))),
             kSecondPage
         ),
         kSecond, 1},
        {"text of gigabytes", join(number(2), block(kSamplePage, textOfGigabytes), kSecondPage),
         kSecond, 1},
    };
}

TEST(SerialReaderTest, KeepsWhatCanBeReadOfADamagedFile) {
    for (const Damage& damage : damages()) {
        const Loaded loaded = load(damage.file);
        EXPECT_TRUE(loaded.read) << damage.what;
        EXPECT_FALSE(loaded.whole) << damage.what;
        EXPECT_EQ(loaded.names(), damage.pages) << damage.what;
        EXPECT_EQ(loaded.wholeObjects, damage.wholePages) << damage.what;
    }
    EXPECT_EQ(SampleRejected::alive, 0);
}

TEST(SerialReaderTest, AFileCutAtAnyByteKeepsThePagesBeforeTheCut) {
    const Bytes whole = sampleFile();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const Loaded loaded = load({whole.begin(), whole.begin() + static_cast<long>(size)});
        EXPECT_FALSE(loaded.whole) << size;
        EXPECT_EQ(loaded.read, size >= 4) << size;
        EXPECT_EQ(loaded.wholeObjects, size >= 4 + kWeatherPage.size() ? 1U : 0U) << size;
        if (size >= 4 + kWeatherPage.size()) {
            ASSERT_FALSE(loaded.application.pages.empty()) << size;
            EXPECT_EQ(loaded.names()[0], QStringLiteral("Weather")) << size;
            EXPECT_EQ(loaded.application.pages[0]->items.size(), 2U) << size;
        }
    }
}

TEST(SerialReaderTest, AnItemCutInTheMiddleKeepsItsDefaultsForTheRest) {
    // Cut behind the second item's identifier, length, record and title.
    Bytes file = join(number(1), kWeatherPage);
    file.erase(file.end() - (137 - (48 + 4 + 8)), file.end());
    const Loaded loaded = load(file);
    ASSERT_EQ(loaded.names(), kWeather);
    ASSERT_EQ(loaded.application.pages[0]->items.size(), 2U);
    const auto* details =
        dynamic_cast<const SampleDetails*>(loaded.application.pages[0]->items[1].get());
    ASSERT_NE(details, nullptr);
    EXPECT_EQ(details->title, QStringLiteral("\u00DC\u20AC"));
    EXPECT_FALSE(details->flag);
    EXPECT_EQ(details->scale, 1.0F);
    EXPECT_TRUE(details->names.empty());
}

TEST(SerialReaderTest, NumbersOutOfRangeKeepTheDefault) {
    // Shape 7, zoom 5, scale not a number, latitude 90.5, a count of names that is not there.
    const Bytes record = join(
        number(8), number(0), number(1), Bytes{9}, number(4), number(7), number(4), number(5),
        number(4), number(0x7FC00000), number(8), number(0), number(0x4056A000), number(0),
        number(4), number(0x7FFFFFFF)
    );
    const Bytes item = block(kSampleDetails, join(number(0), record));
    CSerialReader reader(item);
    std::unique_ptr<CSerializable> object;
    ASSERT_TRUE(reader.readObject(object));
    EXPECT_TRUE(reader.whole());
    const auto& details = dynamic_cast<const SampleDetails&>(*object);
    EXPECT_TRUE(details.flag); // any byte but 0
    EXPECT_EQ(details.shape, SampleDetails::Shape::round);
    EXPECT_EQ(details.zoom, 0);
    EXPECT_EQ(details.scale, 1.0F);
    EXPECT_EQ(details.latitude, 0.0);
    EXPECT_TRUE(details.names.empty());
}

/// Reads its first byte, or all it can get and then some.
class Greedy : public CSerializable {
public:
    bool Read(CSerialReader& reader) override {
        greedy = reader.readValue(first) && first == 2;
        std::uint32_t value = 0;
        std::unique_ptr<CSerializable> object;
        QString text;
        while (greedy && reader.readValue(value)) {
        }
        failed = !reader.readObject(object) && !reader.readString(text) && !reader.skip(1);
        return true;
    }
    bool Write(CSerialWriter&) const override { return true; }
    std::uint8_t first = 0;
    bool greedy = false;
    bool failed = false;
};
constexpr std::uint32_t kGreedy = 1040;
const SerializableType<Greedy> kGreedyType{kGreedy};

TEST(SerialReaderTest, ReadingResumesAtAnObjectsEndWhateverItsClassRead) {
    for (const std::uint8_t first : {1, 2}) {
        const Bytes file = join(block(kGreedy, {first, 0, 0, 0, 0, 0, 0}), kSecondPage);
        CSerialReader reader(file);
        std::unique_ptr<CSerializable> object;
        ASSERT_TRUE(reader.readObject(object));
        EXPECT_TRUE(dynamic_cast<const Greedy&>(*object).failed);
        EXPECT_EQ(reader.position(), 15U);
        ASSERT_TRUE(reader.readObject(object));
        EXPECT_EQ(dynamic_cast<const SamplePage&>(*object).name, QStringLiteral("B"));
    }
}

TEST(SerialReaderTest, AnObjectLongerThanTheOneAroundItEndsWithIt) {
    // An item that claims the page behind it as well.
    const Bytes item = join(number(kSampleItem), number(1000), number(0));
    const Bytes page = block(kSamplePage, join(number(0), number(1), item));
    const Loaded loaded = load(join(number(2), page, kSecondPage));
    EXPECT_FALSE(loaded.whole);
    EXPECT_EQ(loaded.names(), (Names{QString(), QStringLiteral("B")}));
    EXPECT_EQ(loaded.application.pages[0]->items.size(), 1U);
}

/// An object that is there already, and takes one byte of each of its blocks.
class Resident : public CSerializable {
public:
    bool Read(CSerialReader& reader) override {
        std::uint8_t byte = 0;
        const bool read = reader.readValue(byte);
        bytes.push_back(byte);
        std::unique_ptr<CSerializable> inner;
        while (!reader.atEnd() && reader.readObject(inner)) {
        }
        return read && byte != 0;
    }
    bool Write(CSerialWriter&) const override { return true; }
    std::uint32_t GetTypeId() const override { return kSampleItem; }
    Bytes bytes;
};

TEST(SerialReaderTest, ABlockIsReadIntoAnObjectThatIsThereAlready) {
    const Bytes file = join(
        number(2), kSecondPage, block(kSampleItem, {1}), block(kSampleItem, {2}),
        block(kSampleItem, {3, 9})
    );
    Resident resident;
    SampleApplication application;
    CSerialReader reader(file);
    reader.readInto(&resident);
    EXPECT_TRUE(application.Read(reader));
    EXPECT_EQ(application.pages.size(), 1U);
    EXPECT_EQ(resident.bytes, (Bytes{1})) << "also where a page was expected";
    EXPECT_TRUE(!reader.atEnd() && !reader.skippedData());
    reader.readRest();
    EXPECT_EQ(resident.bytes, (Bytes{1, 2, 3}));
    EXPECT_TRUE(reader.atEnd());
    EXPECT_FALSE(reader.whole()) << "a byte was left over";
}

TEST(SerialReaderTest, WhatIsReadIntoAnObjectCountsAsUnderstood) {
    const Bytes file = join(number(1), kSecondPage, block(kSampleItem, {1}));
    for (const bool there : {true, false}) {
        Resident resident;
        SampleApplication application;
        CSerialReader reader(file);
        reader.readInto(there ? &resident : nullptr);
        EXPECT_TRUE(application.Read(reader));
        reader.readRest();
        EXPECT_EQ(reader.whole(), there);
        EXPECT_EQ(resident.bytes.size(), there ? 1U : 0U);
    }
}

TEST(SerialReaderTest, AnObjectThatRejectsABlockKeepsWhatItRead) {
    const Bytes file = join(block(kSampleItem, {0}), block(kSampleItem, {7}));
    Resident resident;
    CSerialReader reader(file);
    reader.readInto(&resident);
    reader.readRest();
    EXPECT_EQ(resident.bytes, (Bytes{0, 7}));
    EXPECT_FALSE(reader.whole());
}

TEST(SerialReaderTest, AnObjectIsNotReadIntoWithinItself) {
    const Bytes file = block(kSampleItem, join(Bytes{1}, block(kSampleItem, {2})));
    Resident resident;
    CSerialReader reader(file);
    reader.readInto(&resident);
    reader.readRest();
    EXPECT_EQ(resident.bytes, (Bytes{1}));
}

TEST(SerialReaderTest, OfTheRestEverythingElseIsDropped) {
    const Bytes file = join(kSecondPage, block(99, {1, 2}), block(kSampleRejected, {}), Bytes{1});
    CSerialReader reader(file);
    reader.readRest();
    EXPECT_TRUE(reader.atEnd());
    EXPECT_FALSE(reader.whole());
    EXPECT_EQ(SampleRejected::alive, 0);
}

TEST(SerialReaderTest, AFileIsNotWholeWhenAnObjectIsDroppedFromItsRest) {
    const Bytes file = kSecondPage;
    CSerialReader reader(file);
    reader.readRest();
    EXPECT_TRUE(reader.atEnd());
    EXPECT_FALSE(reader.whole());
}

/// Lists in lists, `depth` of them, the innermost empty.
Bytes nestedLists(int depth) {
    Bytes file = block(0, number(0));
    for (int i = 1; i < depth; ++i) {
        file = block(0, join(number(1), file));
    }
    return file;
}

int depthOf(const CSerializable* object) {
    const auto* list = dynamic_cast<const CSerializableList*>(object);
    if (list == nullptr) {
        return 0;
    }
    return list->empty() ? 1 : 1 + depthOf(list->front());
}

TEST(SerialReaderTest, ObjectsNestUpToTheLimit) {
    constexpr int kLimit = 64; // a program of today may have written so many
    for (const int depth : {1, kLimit, kLimit + 1, 5000}) {
        const Bytes file = nestedLists(depth);
        CSerialReader reader(file);
        std::unique_ptr<CSerializable> object;
        ASSERT_TRUE(reader.readObject(object));
        EXPECT_EQ(depthOf(object.get()), std::min(depth, kLimit));
        EXPECT_EQ(reader.whole(), depth <= kLimit);
        destroyObject(std::move(object));
    }
}

TEST(SerialReaderTest, ReadsRawValuesAndStringsOutsideOfRecords) {
    const Bytes bytes = {0x34, 0x12, 0x02, 0x05, 0, 0, 0, 0x3C, 0xD8, 0x27, 0xDF, 0x7F, 0x01};
    CSerialReader reader(bytes);
    std::uint16_t word = 0;
    bool flag = false;
    QString text = QStringLiteral("old");
    EXPECT_TRUE(reader.readValue(word));
    EXPECT_EQ(word, 0x1234);
    EXPECT_TRUE(reader.readValue(flag));
    EXPECT_TRUE(flag);
    EXPECT_TRUE(reader.readString(text)); // an odd length
    EXPECT_EQ(text, QStringLiteral("\U0001F327"));
    EXPECT_TRUE(reader.skippedData()); // its last byte
    EXPECT_FALSE(reader.atEnd());
    EXPECT_FALSE(reader.readValue(word));
    EXPECT_EQ(word, 0x1234);
    EXPECT_TRUE(reader.atEnd());
    EXPECT_FALSE(reader.whole());
}

TEST(SerialReaderTest, AStringThatIsCutHoldsTheUnitsThatAreThere) {
    const Bytes bytes = join(number(0xFFFFFFFF), Bytes{'a', 0, 'b', 0, 'c'});
    CSerialReader reader(bytes);
    QString text = QStringLiteral("old");
    EXPECT_FALSE(reader.readString(text));
    EXPECT_EQ(text, QStringLiteral("ab"));

    text = QStringLiteral("old");
    EXPECT_FALSE(reader.readString(text));
    EXPECT_EQ(text, QStringLiteral("old"));
}

TEST(SerialReaderTest, SkippedBytesAreNoted) {
    const Bytes bytes(4, 0);
    CSerialReader reader(bytes);
    EXPECT_TRUE(reader.skip(0));
    EXPECT_FALSE(reader.skippedData());
    EXPECT_TRUE(reader.skip(1));
    EXPECT_TRUE(reader.skippedData());
    EXPECT_FALSE(reader.whole());
    EXPECT_TRUE(reader.skip(3));
    EXPECT_FALSE(reader.skip(1));
}

} // namespace
} // namespace raincast
