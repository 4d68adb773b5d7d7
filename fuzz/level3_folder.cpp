// SPDX-License-Identifier: MIT
// Folders of Level III products that somebody else fills, and the store of frames, which anybody
// may have been at: a name a line, with a letter before it. What is listed is there, and nothing
// outside of the folders is touched.
#include "tree/level3_folder.h"

#include "core/clock.h"
#include "scratch_folder.h"
#include "tree/folder_watch.h"
#include "tree/whole_picture.h"

#include <limits>

namespace raincast {
namespace {

constexpr char kWhole[] = "GIF89a\x58\x02\x26\x02\0\0\0;";

class Counter {
public:
    explicit Counter(int& lines) : m_lines(lines) {}
    void operator()(const QString& line) const {
        require(!line.isEmpty());
        ++m_lines;
    }

private:
    int& m_lines;
};

void fill(const ScratchFolder& products, const ScratchFolder& store, const QStringList& lines) {
    products.clear();
    store.clear();
    for (const QString& line : lines) {
        const QString name = line.mid(1);
        if (line.startsWith(u'p')) {
            products.put(name, "SDUS54 KOUN 202016\r\r\nN0RTLX\r\r\n");
        } else if (line.startsWith(u's')) {
            store.put(name, QByteArray(kWhole, sizeof kWhole - 1));
        } else if (line.startsWith(u'd')) {
            store.put(name, "damaged");
        }
    }
}

/// Looks at what changes, as the server does while it runs.
void change(const ScratchFolder& products, FolderWatch& watch, Level3Folder& folder) {
    products.put(QStringLiteral("later"), "damaged");
    const FolderWatch::Changes changes = watch.take();
    for (const QStringList& paths : {changes.whole, changes.begun, changes.folders}) {
        for (const QString& path : paths) {
            require(path.startsWith(folder.folder()));
        }
    }
    require(folder.lookAt(changes.whole + changes.folders) == 0);
    folder.expect(changes.begun);
    require(folder.lookAgain() == 0);
}

void check(const Level3Folder& folder, const QStringList& lines) {
    constexpr FileTime kNever = std::numeric_limits<FileTime>::max();
    for (const QString& line : lines) {
        const auto item = findTreeItem("/ridge/RadarImg/" + line.mid(1).toStdString());
        if (!item || item->kind != TreeItem::Kind::frame) {
            continue;
        }
        FileTime last = 0;
        for (const FileTime time : folder.frameTimes(item->site, item->product, kNever)) {
            require(time > last);
            last = time;
            const auto picture = folder.frame(item->site, item->product, time);
            require(!picture || isWholePicture(*picture));
        }
    }
}

} // namespace
} // namespace raincast

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    static const ScratchFolder products;
    static const ScratchFolder store;
    static const ManualClock clock(fromCalendar({2026, 11, 21, 17, 52}));
    Clock::use(&clock);
    Input input(data, size);
    const int hours = input.byte() % 49;
    const QStringList names = input.lines();
    fill(products, store, names);
    int lines = 0;
    Level3Folder folder(products.path(), store.path(), hours, ServerLog(Counter(lines)));
    check(folder, names);
    FolderWatch watch;
    require(folder.rescan({}, [&watch](const QString& entered) { watch.add(entered); }) == 0);
    check(folder, names);
    change(products, watch, folder);
    check(folder, names);
    require(products.isBesideThere() && store.isBesideThere());
    return 0;
}
