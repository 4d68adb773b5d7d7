// SPDX-License-Identifier: MIT
#include "picture.h"

#include "core/whole_file.h"
#include "golden_test.h"
#include "support/files.h"

#include <QBuffer>
#include <QLibraryInfo>
#include <QPainter>
#include <QVersionNumber>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>

namespace raincast::test {

namespace {

const QString kKept = QStringLiteral(RAINCAST_GOLDEN_PICTURES);
const QString kSeen = QStringLiteral(RAINCAST_GOLDEN_SEEN);

constexpr int kSameShade = 8;
// Of a picture's pixels: fewer than a letter of a small dialog has.
constexpr double kDifferingShare = 0.0005;

using Shades = std::array<int, 3>;

QImage readable(const QImage& picture) {
    return picture.convertToFormat(QImage::Format_RGB32);
}

// Quick access to the pixels of a readable picture.
class Pixels {
public:
    explicit Pixels(const QImage& picture) : m_picture(picture) {}

    [[nodiscard]] QRgb at(int x, int y) const {
        return reinterpret_cast<const QRgb*>(m_picture.constScanLine(y))[x];
    }

    /// Whether a shade lies within what a pixel and those around it span.
    [[nodiscard]] bool reach(QRgb wanted, int x, int y) const {
        Shades least{255, 255, 255};
        Shades most{0, 0, 0};
        const QRect around = QRect(x - 1, y - 1, 3, 3) & m_picture.rect();
        for (int row = around.top(); row <= around.bottom(); ++row) {
            for (int column = around.left(); column <= around.right(); ++column) {
                const Shades shades = shadesOf(at(column, row));
                for (std::size_t i = 0; i < shades.size(); ++i) {
                    least[i] = std::min(least[i], shades[i]);
                    most[i] = std::max(most[i], shades[i]);
                }
            }
        }
        return within(shadesOf(wanted), least, most);
    }

private:
    static Shades shadesOf(QRgb pixel) { return {qRed(pixel), qGreen(pixel), qBlue(pixel)}; }
    static bool within(const Shades& wanted, const Shades& least, const Shades& most) {
        for (std::size_t i = 0; i < wanted.size(); ++i) {
            if (wanted[i] < least[i] - kSameShade || wanted[i] > most[i] + kSameShade) {
                return false;
            }
        }
        return true;
    }

    const QImage& m_picture;
};

template<typename Visit>
void visitDifferences(const QImage& one, const QImage& other, Visit visit) {
    const Pixels ones(one);
    const Pixels others(other);
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QRgb first = ones.at(x, y);
            const QRgb second = others.at(x, y);
            if (first != second && (!others.reach(first, x, y) || !ones.reach(second, x, y))) {
                visit(x, y);
            }
        }
    }
}

// Shades that nobody tells apart become one: a palette has room for them, and most pictures are
// equal to their golden one.
QImage withFewShades(const QImage& picture) {
    QImage result = readable(picture);
    for (int y = 0; y < result.height(); ++y) {
        auto* const line = reinterpret_cast<QRgb*>(result.scanLine(y));
        for (int x = 0; x < result.width(); ++x) {
            const QRgb pixel = line[x] & 0xF8F8F8;
            line[x] = 0xFF000000 | pixel | (pixel >> 5 & 0x070707);
        }
    }
    return result;
}

bool isSame(const QImage& seen, const QImage& kept) {
    return seen.size() == kept.size() &&
           differingPixels(seen, kept) <= kDifferingShare * seen.width() * seen.height();
}

// The seen picture, pale, with the differences in red.
QImage differences(const QImage& seen, const QImage& kept) {
    QImage picture = seen;
    QPainter(&picture).fillRect(picture.rect(), QColor(255, 255, 255, 200));
    if (seen.size() == kept.size()) {
        visitDifferences(seen, kept, [&](int x, int y) {
            picture.setPixel(x, y, qRgb(255, 0, 0));
        });
    }
    return picture;
}

// Others may be writing the same file just now.
void save(const QByteArray& bytes, const QString& path) {
    EXPECT_TRUE(QDir().mkpath(QFileInfo(path).path()));
    EXPECT_TRUE(replaceFile(path, bytes, Lasting::no)) << qPrintable(path);
}

// With a palette where that says it all.
void save(const QImage& picture, const QString& path) {
    QImage kept = picture.convertToFormat(QImage::Format_Indexed8, Qt::ThresholdDither);
    if (readable(kept) != picture) {
        kept = picture;
    }
    kept.setDevicePixelRatio(1);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    EXPECT_TRUE(buffer.open(QIODevice::WriteOnly) && kept.save(&buffer, "PNG", 0));
    save(bytes, path);
}

QByteArray drawnBy() {
    const QVersionNumber version = QLibraryInfo::version();
    return QByteArray::number(version.majorVersion()) + '.' +
           QByteArray::number(version.minorVersion()) + '\n';
}

struct Places {
    explicit Places(const QString& folder, const QString& name)
        : picture(folder + u'/' + goldenRun() + u'/' + name + QStringLiteral(".png")),
          description(folder + u'/' + goldenRun() + u'/' + name + QStringLiteral(".txt")) {}

    QString picture;
    QString description;
};

const QString kVersionFile = kKept + QStringLiteral("/drawn_by_qt");

void keep(const Places& kept, const QImage& picture, const QByteArray& description) {
    // What is the same for a person stays as it is.
    if (!isSame(picture, readable(QImage(kept.picture)))) {
        save(picture, kept.picture);
    }
    save(description, kept.description);
    save(drawnBy(), kVersionFile);
}

void compare(
    const Places& kept, const Places& seen, const QImage& picture, const QByteArray& description
) {
    const QByteArray keptDescription = readFile(kept.description);
    const QImage keptPicture = readable(QImage(kept.picture));
    const bool same = isSame(picture, keptPicture);
    if (same && description == keptDescription) {
        return;
    }
    const QString difference = QString(seen.picture).replace(".png", ".difference.png");
    save(picture, seen.picture);
    save(description, seen.description);
    save(differences(picture, keptPicture), difference);
    EXPECT_EQ(description.toStdString(), keptDescription.toStdString())
        << "The controls have changed; see " << qPrintable(seen.description);
    EXPECT_TRUE(same) << "The picture has changed; see " << qPrintable(seen.picture)
                      << "\nand, with the differences in red, " << qPrintable(difference);
    ADD_FAILURE() << "If it is meant to look like that: RAINCAST_RENEW_GOLDEN=1 ctest -R ^golden";
}

} // namespace

int differingPixels(const QImage& one, const QImage& other) {
    int count = 0;
    visitDifferences(readable(one), readable(other), [&count](int, int) { ++count; });
    return count;
}

void expectGolden(const QString& name, const QImage& picture, const QStringList& description) {
    const Places kept(kKept, name);
    const QImage seen = withFewShades(picture);
    const QByteArray text = description.join(u'\n').toUtf8() + '\n';
    if (std::getenv("RAINCAST_RENEW_GOLDEN") != nullptr) {
        keep(kept, seen, text);
        return;
    }
    if (readFile(kVersionFile) != drawnBy()) {
        GTEST_SKIP() << "The golden pictures were drawn by Qt "
                     << readFile(kVersionFile).trimmed().constData()
                     << ", which draws some things differently.";
    }
    compare(kept, Places(kSeen, name), seen, text);
}

} // namespace raincast::test
