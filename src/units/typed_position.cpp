// SPDX-License-Identifier: MIT
#include "units/typed_position.h"

#include <QList>
#include <QRegularExpression>
#include <QString>

namespace raincast {

namespace {

// The difference between a latitude and a longitude.
struct Axis {
    double most;       ///< degrees
    char16_t positive; ///< letter of the hemisphere
    char16_t negative;
};

constexpr Axis kLatitude{90, u'N', u'S'};
constexpr Axis kLongitude{360, u'E', u'W'};
constexpr double kMostSixtieths = 60;
constexpr qsizetype kLongestText = 200;

// One of the two as it was typed.
struct Half {
    double degrees = 0;
    int numbers = 0; ///< of which it is made
};

// Letter, sign, degrees, minutes, seconds, letter. A dash between two numbers separates them only
// where no space makes a minus of it.
const QRegularExpression& halfPattern() {
    static const QRegularExpression pattern(
        QStringLiteral("^([NSEW])?\\s*([-+])?\\s*(NUMBER)"
                       "(?:(?:\\s*[°ºD:]\\s*|\\s+|-)(NUMBER)"
                       "(?:(?:\\s*['′’M:]\\s*|\\s+|-)(NUMBER)\\s*(?:[\"″”]|''|′′|’’)?"
                       "|\\s*['′’M])?"
                       "|\\s*[°ºD])?"
                       "\\s*([NSEW])?$")
            .replace(QStringLiteral("NUMBER"), QStringLiteral("[0-9]+(?:\\.[0-9]*)?|\\.[0-9]+")),
        QRegularExpression::CaseInsensitiveOption
    );
    return pattern;
}

enum Capture { kLetterBefore = 1, kSign, kDegrees, kMinutes, kSeconds, kLetterBehind };

// Degrees, minutes and seconds: all but the last are whole, all but the first at most 60, which a
// rounded position may show.
std::optional<Half> valueOf(const QRegularExpressionMatch& match) {
    Half half;
    double unit = 1;
    bool whole = true;
    for (const Capture part : {kDegrees, kMinutes, kSeconds}) {
        const QString text = match.captured(part);
        if (text.isEmpty()) {
            break;
        }
        const double number = text.toDouble();
        if (!whole || (part != kDegrees && number > kMostSixtieths)) {
            return std::nullopt;
        }
        whole = !text.contains(u'.');
        half.degrees += number / unit;
        unit *= 60;
        ++half.numbers;
    }
    return half;
}

std::optional<Half> readHalf(QStringView text, const Axis& axis) {
    const auto match = halfPattern().match(text.trimmed().toString());
    const QString letters =
        (match.captured(kLetterBefore) + match.captured(kLetterBehind)).toUpper();
    const QString sign = match.captured(kSign);
    const bool isNegative = letters == QString(axis.negative) || sign == u"-";
    const bool isOfAxis =
        letters.isEmpty() || letters == QString(axis.positive) || letters == QString(axis.negative);
    // A letter beside a sign is ambiguous.
    const bool isClear = letters.isEmpty() || sign.isEmpty();
    auto half = match.hasMatch() && isOfAxis && isClear ? valueOf(match) : std::nullopt;
    if (!half || half->degrees > axis.most) {
        return std::nullopt;
    }
    half->degrees = isNegative ? -half->degrees : half->degrees;
    return half;
}

struct Halves {
    Half latitude;
    Half longitude;

    [[nodiscard]] bool even() const { return latitude.numbers == longitude.numbers; }
    [[nodiscard]] GeoPosition position() const { return {latitude.degrees, longitude.degrees}; }
};

std::optional<Halves> halvesOf(QStringView latitude, QStringView longitude) {
    const auto north = readHalf(latitude, kLatitude);
    const auto east = readHalf(longitude, kLongitude);
    return north && east ? std::optional(Halves{*north, *east}) : std::nullopt;
}

bool maybeDivides(QChar before, QChar behind) {
    static const QString afterLatitude = QStringLiteral("NSns");
    static const QString beforeLongitude = QStringLiteral("EWew");
    return behind.isSpace() || afterLatitude.contains(before) || beforeLongitude.contains(behind);
}

// Without a comma: where both make sense. Of several such places it is the one in the middle.
std::optional<Halves> partedHalves(QStringView text) {
    std::optional<Halves> found;
    bool several = false;
    for (qsizetype at = 1; at < text.size(); ++at) {
        const auto halves = maybeDivides(text[at - 1], text[at])
                                ? halvesOf(text.first(at), text.sliced(at))
                                : std::nullopt;
        if (!halves) {
            continue;
        }
        if (halves->even()) {
            return halves;
        }
        several = several || (found && found->latitude.numbers != halves->latitude.numbers);
        found = halves;
    }
    return several ? std::nullopt : found;
}

} // namespace

std::optional<GeoPosition> typedPosition(QStringView text) {
    static const QRegularExpression printedMinus(QStringLiteral("[\u2212\u2013]"));
    const QString line = text.toString().simplified().replace(printedMinus, QStringLiteral("-"));
    if (line.size() > kLongestText) {
        return std::nullopt;
    }
    const QList<QStringView> parts = QStringView(line).split(u',');
    const auto halves = parts.size() == 1   ? partedHalves(line)
                        : parts.size() == 2 ? halvesOf(parts[0], parts[1])
                                            : std::nullopt;
    return halves ? std::optional(halves->position()) : std::nullopt;
}

} // namespace raincast
