// SPDX-License-Identifier: MIT
// How much longer loading a page file of 1,000 pages with 10 items each takes than fread of the
// same bytes in one call, and saving it than replacing a file by them. "slim" items hold their
// 40-byte block only, "full" ones what a weather item keeps: its settings and the paths and times
// of six frames. Beside it fread of one field after the other, each into a string of its own,
// trusting every length: what loading costs without a bound, an object or a registry.
#include "../tests/persist/sample_objects.h"
#include "core/whole_file.h"
#include "persist/page_file.h"
#include "support/figure.h"

#include <QFile>
#include <QTemporaryDir>

#include <malloc.h>

#include <cstdio>
#include <cstdlib>

namespace {

using namespace raincast;

constexpr int kPages = 1000;
constexpr int kItems = 10;
constexpr int kFrames = 6;
constexpr int kPairs = 30;
constexpr int kGrowingPairs = 9;
constexpr int kGrowing[] = {10, 100, 1'000, 3'000};
constexpr double kAim = 5;
constexpr double kAimOfSlim = 8;

std::unique_ptr<SampleItem> makeItem(bool full) {
    if (!full) {
        return std::make_unique<SampleItem>();
    }
    auto item = std::make_unique<SampleDetails>();
    item->title = QStringLiteral("MUX");
    item->folder = QStringLiteral("/home/somebody/.local/share/Quorvane/Raincast_1");
    for (int frame = 0; frame < kFrames; ++frame) {
        item->names.push_back(
            item->folder + QStringLiteral("/Radar/MUX/MUX_20190519_0446_N0R.gif")
        );
        item->names.push_back(QStringLiteral("05/18/2019 21:46"));
    }
    return item;
}

/// The file in a folder of its own, written once.
struct Fixture {
    Fixture(bool full, int count) {
        for (int i = 0; i < count; ++i) {
            auto page = std::make_unique<SamplePage>();
            page->name = QStringLiteral("Weather");
            for (int j = 0; j < kItems; ++j) {
                page->items.push_back(makeItem(full));
            }
            application.pages.push_back(std::move(page));
        }
        if (!PageFile(path, examinePages<SampleApplication>).save(application)) {
            std::abort();
        }
        size = static_cast<std::size_t>(QFile(path).size());
    }
    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("pages.cfg"));
    SampleApplication application;
    std::size_t size = 0;
};

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

void plainRead(const Fixture& file) {
    const auto bytes = std::make_unique_for_overwrite<std::uint8_t[]>(file.size);
    std::FILE* stream = std::fopen(qPrintable(file.path), "rb");
    require(std::fread(bytes.get(), 1, file.size, stream) == file.size);
    std::fclose(stream);
}

void plainWrite(const Fixture& file, const QByteArray& bytes) {
    require(replaceFile(file.path + QStringLiteral(".plain"), bytes, Lasting::yes).has_value());
}

std::uint32_t readNumber(std::FILE* stream) {
    std::uint32_t value = 0;
    require(std::fread(&value, 1, sizeof(value), stream) == sizeof(value));
    return value;
}

void readFields(std::FILE* stream, std::vector<QByteArray>& fields) {
    for (std::uint32_t left = readNumber(stream); left > 0; --left) {
        const std::size_t size = readNumber(stream);
        QByteArray field(static_cast<qsizetype>(size), Qt::Uninitialized);
        require(std::fread(field.data(), 1, size, stream) == size);
        fields.push_back(std::move(field));
    }
}

void fieldsRead(const Fixture& file, bool full, std::vector<QByteArray>& fields) {
    std::FILE* stream = std::fopen(qPrintable(file.path), "rb");
    for (std::uint32_t pages = readNumber(stream); pages > 0; --pages) {
        readNumber(stream);
        readNumber(stream);
        readFields(stream, fields);
        for (std::uint32_t items = readNumber(stream); items > 0; --items) {
            readNumber(stream);
            readNumber(stream);
            readFields(stream, fields);
            if (full) {
                readFields(stream, fields);
            }
        }
    }
    std::fclose(stream);
}

void load(const Fixture& file, SampleApplication& application) {
    PageFile pages(file.path, examinePages<SampleApplication>);
    require(pages.look(application) == PageFile::State::whole);
}

/// Taking the pages down again is not loading.
struct Loaded {
    SampleApplication application;
    std::vector<QByteArray> fields;

    void takeDown() {
        application.pages.clear();
        fields.clear();
    }
};

Ratio loadBesideOneRead(const Fixture& file, int pairs) {
    Loaded loaded;
    return processorRatioOf(
        pairs, [&] { load(file, loaded.application); }, [&] { plainRead(file); },
        [&] { loaded.takeDown(); }
    );
}

void measure(bool full, double aim) {
    const Fixture file(full, kPages);
    const QByteArray bytes(static_cast<qsizetype>(file.size), '\0');
    const std::string items = full ? ", full items" : ", slim items";
    print(Figure::of(loadBesideOneRead(file, kPairs), "Page file, load" + items, "one read")
              .withAim(AimOf::ratio, aim));
    Loaded loaded;
    const Ratio fields = processorRatioOf(
        kPairs, [&] { load(file, loaded.application); },
        [&] { fieldsRead(file, full, loaded.fields); }, [&] { loaded.takeDown(); }
    );
    print(Figure::of(fields, "Page file, load" + items, "a read of each field")
              .withAim(AimOf::ratio, kAim));
    PageFile pages(file.path + QStringLiteral(".saved"), examinePages<SampleApplication>);
    const Ratio saves = ratioOf(
        kPairs, [&] { require(pages.save(file.application).has_value()); },
        [&] { plainWrite(file, bytes); }
    );
    print(Figure::of(saves, "Page file, save" + items, "a whole file of the same bytes")
              .withAim(AimOf::ratio, kAim));
}

void draw() {
    for (const int pages : kGrowing) {
        const Ratio ratio = loadBesideOneRead(Fixture(false, pages), kGrowingPairs);
        print(CurvePoint{
            "Page file, load", "pages of ten items", double(pages), "ms", ratio.firstMilliseconds,
            "one read", ratio.secondMilliseconds});
    }
}

} // namespace

// Memory is kept between the rounds: what each takes from the system anew is the system's time.
int main() {
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    measure(true, kAim);
    measure(false, kAimOfSlim);
    draw();
    return 0;
}
