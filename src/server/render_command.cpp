// SPDX-License-Identifier: MIT
#include "server/render_command.h"

#include "core/whole_file.h"
#include "nexrad/frame_painter.h"
#include "nexrad/level3_decoder.h"

#include <QFileInfo>

#include <algorithm>
#include <array>
#include <ostream>
#include <span>

namespace raincast {

namespace {

// Products have some hundred thousand bytes at most.
constexpr qint64 kLargestFile = qint64{16} * 1024 * 1024;

QString worldFileName(const QString& picture) {
    const QFileInfo info(picture);
    const QString suffix = info.suffix();
    return picture.chopped(suffix.isEmpty() ? 0 : suffix.size() + 1) + QStringLiteral(".gfw");
}

struct Output {
    QString name;
    QByteArray bytes;
    WholeFile file{Lasting::yes};
};

/// Writes files that belong together: names them only when there is room for all.
bool writeAll(std::span<Output> outputs, std::ostream& err) {
    const auto prepare = [](Output& output) {
        return output.file.open(output.name) && output.file.write(output.bytes);
    };
    const auto commit = [&err](Output& output) {
        const auto done = output.file.commit();
        if (!done) {
            err << output.name.toStdString()
                << ": cannot be written: " << done.error().toStdString() << ".\n";
        }
        return done.has_value();
    };
    const auto failed = std::find_if_not(outputs.begin(), outputs.end(), prepare);
    return failed == outputs.end() ? std::all_of(outputs.begin(), outputs.end(), commit)
                                   : commit(*failed);
}

/// TLX N0R 2013-05-20 20:16 UTC, code 19
std::string summary(const PolarScan& scan) {
    const CalendarTime t = toCalendar(scan.time);
    const std::string site = scan.site.empty() ? "---" : scan.site;
    const QString time =
        QString::asprintf("%04d-%02d-%02d %02d:%02d UTC", t.year, t.month, t.day, t.hour, t.minute);
    std::string line = site + " " + std::string(codeOf(scan.product)) + " " + time.toStdString() +
                       ", code " + std::to_string(scan.code);
    if (scan.rows == 0) {
        line += ", without a picture: " + scan.note;
    }
    return line;
}

} // namespace

int renderCommand(
    const std::string& file, const std::string& outFile, int detail, std::ostream& out,
    std::ostream& err
) {
    const auto bytes = readWhole(QString::fromStdString(file), kLargestFile);
    if (!bytes) {
        err << file << ": cannot be read: " << bytes.error().reason.toStdString() << ".\n";
        return 1;
    }
    const Level3Result result = decodeLevel3(*bytes);
    if (!result) {
        err << file << ": " << result.error().toStdString() << ".\n";
        return 1;
    }
    const PolarScan& scan = *result;
    const QString name = QString::fromStdString(outFile);
    const ImageGeometry image = frameGeometry(scan, rangeOf(scan.product), detail);
    const auto picture = renderFrame(scan, scan.product, image);
    if (!picture) {
        err << file << ": no memory for its picture.\n";
        return 1;
    }
    std::array outputs{
        Output{name, *picture},
        Output{worldFileName(name), QByteArray::fromStdString(image.worldFile())}};
    if (!writeAll(outputs, err)) {
        return 1;
    }
    out << summary(scan) << "\n";
    return 0;
}

} // namespace raincast
