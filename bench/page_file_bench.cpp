// SPDX-License-Identifier: MIT
// Loading and saving a page file of 1,000 pages with 10 items each. "slim" items hold their 40-byte
// block only, "full" ones what a weather item keeps: its settings and the paths and times of six
// frames. Beside it, of the same bytes: fread and fwrite in one call (plainRead, plainWrite), and
// fread of one field after the other, each into a string of its own, trusting every length
// (fieldsRead): what loading costs without a bound, an object or a registry.
#include "../tests/persist/sample_objects.h"
#include "persist/page_file.h"

#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstdio>
#include <cstdlib>

namespace {

using namespace raincast;

constexpr int kPages = 1000;
constexpr int kItems = 10;
constexpr int kFrames = 6;

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
    explicit Fixture(bool full) {
        for (int i = 0; i < kPages; ++i) {
            auto page = std::make_unique<SamplePage>();
            page->name = QStringLiteral("Weather");
            for (int j = 0; j < kItems; ++j) {
                page->items.push_back(makeItem(full));
            }
            application.pages.push_back(std::move(page));
        }
        if (!PageFile(path).save(application)) {
            std::abort();
        }
        size = static_cast<std::size_t>(QFile(path).size());
    }
    void count(benchmark::State& state) const {
        state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
    }

    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("pages.cfg"));
    SampleApplication application;
    std::size_t size = 0;
};

const Fixture& fixture(bool full) {
    static const Fixture slimFile(false);
    static const Fixture fullFile(true);
    return full ? fullFile : slimFile;
}

void plainRead(benchmark::State& state, bool full) {
    const Fixture& file = fixture(full);
    for (auto _ : state) {
        const auto bytes = std::make_unique_for_overwrite<std::uint8_t[]>(file.size);
        std::FILE* stream = std::fopen(qPrintable(file.path), "rb");
        benchmark::DoNotOptimize(std::fread(bytes.get(), 1, file.size, stream));
        std::fclose(stream);
    }
    file.count(state);
}

std::uint32_t readNumber(std::FILE* stream) {
    std::uint32_t value = 0;
    benchmark::DoNotOptimize(std::fread(&value, 1, sizeof(value), stream));
    return value;
}

void readFields(std::FILE* stream, std::vector<QByteArray>& fields) {
    for (std::uint32_t left = readNumber(stream); left > 0; --left) {
        QByteArray field(readNumber(stream), Qt::Uninitialized);
        benchmark::DoNotOptimize(std::fread(field.data(), 1, field.size(), stream));
        fields.push_back(std::move(field));
    }
}

void fieldsRead(benchmark::State& state, bool full) {
    const Fixture& file = fixture(full);
    for (auto _ : state) {
        std::vector<QByteArray> fields;
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
        state.PauseTiming();
        fields.clear();
        state.ResumeTiming();
    }
    file.count(state);
}

void load(benchmark::State& state, bool full) {
    const Fixture& file = fixture(full);
    for (auto _ : state) {
        SampleApplication application;
        PageFile pages(file.path);
        if (!pages.load(application) || !pages.whole()) {
            std::abort();
        }
        // Taking the pages down again is not loading.
        state.PauseTiming();
        application.pages.clear();
        state.ResumeTiming();
    }
    file.count(state);
}

void plainWrite(benchmark::State& state, bool full) {
    const Fixture& file = fixture(full);
    const std::vector<std::uint8_t> bytes(file.size);
    const QByteArray path = QFile::encodeName(file.path + QStringLiteral(".plain"));
    for (auto _ : state) {
        std::FILE* stream = std::fopen(path, "wb");
        benchmark::DoNotOptimize(std::fwrite(bytes.data(), 1, bytes.size(), stream));
        std::fclose(stream);
    }
    file.count(state);
}

void save(benchmark::State& state, bool full) {
    const Fixture& file = fixture(full);
    PageFile pages(file.path + QStringLiteral(".saved"));
    for (auto _ : state) {
        if (!pages.save(file.application)) {
            std::abort();
        }
    }
    file.count(state);
}

BENCHMARK_CAPTURE(plainRead, full, true);
BENCHMARK_CAPTURE(fieldsRead, full, true);
BENCHMARK_CAPTURE(load, full, true);
BENCHMARK_CAPTURE(plainWrite, full, true);
BENCHMARK_CAPTURE(save, full, true);
BENCHMARK_CAPTURE(plainRead, slim, false);
BENCHMARK_CAPTURE(fieldsRead, slim, false);
BENCHMARK_CAPTURE(load, slim, false);
BENCHMARK_CAPTURE(plainWrite, slim, false);
BENCHMARK_CAPTURE(save, slim, false);

} // namespace

// Memory is kept between the rounds: what each takes from the system anew is the system's time.
int main(int argc, char** argv) {
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
