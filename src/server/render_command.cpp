// SPDX-License-Identifier: MIT
#include "server/render_command.h"

#include "server/frame_painter.h"
#include "server/level3_decoder.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <ostream>

namespace raincast {

namespace {

// Products have at most some hundred thousand bytes.
constexpr qint64 kLargestFile = qint64{16} * 1024 * 1024;

std::string worldFileName(const QString& picture) {
    const QFileInfo info(picture);
    const QString suffix = info.suffix();
    return picture.chopped(suffix.isEmpty() ? 0 : suffix.size() + 1).toStdString() + ".gfw";
}

bool write(const std::string& name, const std::string& bytes, std::ostream& err) {
    QSaveFile file(QString::fromStdString(name));
    const auto size = static_cast<qint64>(bytes.size());
    if (file.open(QIODevice::WriteOnly) && file.write(bytes.data(), size) == size &&
        file.commit()) {
        return true;
    }
    err << name << ": cannot be written: " << file.errorString().toStdString() << ".\n";
    return false;
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
    const std::string& file, const std::string& outFile, std::ostream& out, std::ostream& err
) {
    QFile input(QString::fromStdString(file));
    if (!input.open(QIODevice::ReadOnly)) {
        err << file << ": cannot be read: " << input.errorString().toStdString() << ".\n";
        return 1;
    }
    const QByteArray bytes = input.read(kLargestFile);
    const Level3Result result =
        decodeLevel3({bytes.constData(), static_cast<std::size_t>(bytes.size())});
    if (!result.scan) {
        err << file << ": " << result.error << ".\n";
        return 1;
    }
    const PolarScan& scan = *result.scan;
    const std::string world = frameGeometry(scan, rangeOf(scan.product)).worldFile();
    if (!write(outFile, renderFrame(scan, scan.product), err) ||
        !write(worldFileName(QString::fromStdString(outFile)), world, err)) {
        return 1;
    }
    out << summary(scan) << "\n";
    return 0;
}

} // namespace raincast
