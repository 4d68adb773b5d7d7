// SPDX-License-Identifier: MIT
#include "core/text.h"

#include "core/file_time.h"

#include <QDate>
#include <QLocale>
#include <QTime>
#include <QTranslator>

namespace raincast {

namespace {

// What scripts/translate files them under.
constexpr char kContext[] = "Text";

constexpr qint64 kMillion = 1'000'000;

Text::Reader s_reader;

/// Empty without a translation.
QString translated(const char* english, const char* meaning, int number = -1) {
    return s_reader.words != nullptr ? s_reader.words->translate(kContext, english, meaning, number)
                                     : QString();
}

// The C locale groups no digits; people who read English do.
const QLocale& groupingLocale() {
    static const QLocale english(QLocale::English, QLocale::UnitedStates);
    return s_reader.numbers != nullptr ? *s_reader.numbers : english;
}

// A year of two digits might be a day.
QString shortDateFormat(const QLocale& locale) {
    QString format = locale.dateFormat(QLocale::ShortFormat);
    if (!format.contains(QStringLiteral("yyyy"))) {
        format.replace(QStringLiteral("yy"), QStringLiteral("yyyy"));
    }
    return format;
}

} // namespace

QString Text::tr(const char* english, const char* meaning) {
    const QString text = translated(english, meaning);
    return text.isEmpty() ? QString::fromUtf8(english) : text;
}

QString Text::counted(const char* several, const char* one, qint64 number) {
    // Languages look at the last digits, too.
    const auto form = static_cast<int>(number < kMillion ? number : kMillion + number % kMillion);
    QString text = translated(several, one, form);
    if (text.isEmpty()) {
        text = QString::fromUtf8(number == 1 ? one : several);
    }
    return text.replace(QStringLiteral("%n"), Text::number(number));
}

QString Text::of(QStringView english) {
    const QString text = translated(english.toUtf8().constData(), nullptr);
    return text.isEmpty() ? english.toString() : text;
}

QString Text::number(qint64 number) {
    return groupingLocale().toString(number);
}

QString Text::number(double number, char format, int precision) {
    return s_reader.numbers != nullptr ? s_reader.numbers->toString(number, format, precision)
                                       : QString::number(number, format, precision);
}

double Text::typedNumber(const QString& text, bool* good) {
    const double number = text.toDouble(good);
    return *good || s_reader.numbers == nullptr ? number : s_reader.numbers->toDouble(text, good);
}

QString Text::dataSize(qint64 bytes) {
    return groupingLocale().formattedDataSize(bytes, 0, QLocale::DataSizeSIFormat);
}

QString Text::date(const CalendarTime& time) {
    if (s_reader.times == nullptr) {
        return QString::asprintf("%04d-%02d-%02d", time.year, time.month, time.day);
    }
    const QDate date(time.year, time.month, time.day);
    return s_reader.times->toString(date, shortDateFormat(*s_reader.times));
}

QString Text::clock(const CalendarTime& time, Hours hours) {
    if (s_reader.times == nullptr) {
        const int hour = hours == Hours::upTo12 && time.hour > 12 ? time.hour - 12 : time.hour;
        return QString::asprintf(
            hours == Hours::twoDigits ? "%02d:%02d" : "%d:%02d", hour, time.minute
        );
    }
    return s_reader.times->toString(QTime(time.hour, time.minute), QLocale::ShortFormat);
}

void Text::use(const Reader& reader) {
    s_reader = reader;
}

} // namespace raincast
