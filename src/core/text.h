// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringView>

class QLocale;
class QTranslator;

namespace raincast {

struct CalendarTime;

/// The words that a person reads, in the person's language, and how that person writes numbers and
/// times. The sources have the words in English, as literals:
///
///     label.setText(Text::tr("&Distance:"));
///     label.setText(Text::counted("%n files", "%n file", count));
///
/// A table that is made before the language is known marks them, and who shows them translates:
///
///     menuEntry(kMarks, Text::marked("&Marks..."))
///     entry.setText(Text::of(row.text));
///
/// scripts/translate collects both. What goes into files, over the network or into the log of
/// raincast-server and raincast-fetch is none of these. Without use() all words are English, and
/// numbers and times are those of the C locale. Any thread may ask.
class Text {
public:
    /// `meaning` tells apart two uses of a word that other languages have two words for.
    [[nodiscard]] static QString tr(const char* english, const char* meaning = nullptr);
    /// With the number in the place of "%n"; `one` is the English text for the number 1.
    [[nodiscard]] static QString counted(const char* several, const char* one, qint64 number);
    /// The same text, for a table.
    static constexpr const char* marked(const char* english) { return english; }
    static constexpr const char16_t* marked(const char16_t* english) { return english; }
    /// A text of a table; one that nobody has marked stays as it is.
    [[nodiscard]] static QString of(const char* english) { return tr(english); }
    [[nodiscard]] static QString of(QStringView english);

    /// "1,234,567": grouped as the person does it.
    [[nodiscard]] static QString number(qint64 number);
    /// As QString::number(), with the person's decimal point.
    [[nodiscard]] static QString number(double number, char format, int precision);
    /// What a person typed; in the person's form or with a point.
    [[nodiscard]] static double typedNumber(const QString& text, bool* good);
    /// "31 MB".
    [[nodiscard]] static QString dataSize(qint64 bytes);
    /// "2019-05-19".
    [[nodiscard]] static QString date(const CalendarTime& time);
    /// How the C locale writes the hours: "8:05" and "22:44"; "08:05"; "10:44" in the evening, too.
    enum class Hours { plain, twoDigits, upTo12 };
    [[nodiscard]] static QString clock(const CalendarTime& time, Hours hours = Hours::plain);

    /// How a person reads.
    struct Reader {
        const QTranslator* words = nullptr; ///< null: English; to outlive the last text
        const QLocale* numbers = nullptr;   ///< null: the C locale's; to outlive the last text, too
        const QLocale* times = nullptr;     ///< the same
    };
    /// To be called before there is more than one thread.
    static void use(const Reader& reader);
};

} // namespace raincast
