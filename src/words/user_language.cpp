// SPDX-License-Identifier: MIT
#include "words/user_language.h"

#include "core/text.h"

#include <QCoreApplication>
#include <QFile>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

#include <optional>

namespace raincast {

namespace {

QString fromEnvironment(const char* name) {
    return qEnvironmentVariable(name);
}

/// What decides a category of the locale: "es_ES.UTF-8"; empty where nothing does.
QString localeName(const char* category) {
    for (const char* name : {"LC_ALL", category, "LANG"}) {
        if (const QString value = fromEnvironment(name); !value.isEmpty()) {
            return value;
        }
    }
    return {};
}

/// "es_ES" of "es_ES.UTF-8" and "es_ES@euro".
QString withoutCoding(const QString& name) {
    return name.section(u'.', 0, 0).section(u'@', 0, 0);
}

bool isC(const QString& name) {
    const QString plain = withoutCoding(name);
    return plain.isEmpty() || plain == u"C" || plain == u"POSIX";
}

/// The locale of a category; none for the C locale.
std::optional<QLocale> localeOf(const char* category) {
    const QString name = localeName(category);
    return isC(name) ? std::nullopt : std::optional(QLocale(withoutCoding(name)));
}

QString wordsOf(const QString& language) {
    return QStringLiteral(":/raincast/words/") + language;
}

bool isEnglish(const QString& language) {
    return language.section(u'_', 0, 0) == u"en";
}

/// The one to show; empty for English.
QString shownLanguage() {
    for (const QString& language : userLanguages()) {
        if (isEnglish(language)) {
            break;
        }
        if (!language.contains(u'/') && QFile::exists(wordsOf(language))) {
            return language;
        }
    }
    return {};
}

} // namespace

// As gettext() has it, whose users set these: LANGUAGE is a list, and counts for nothing in a
// locale that is C by name.
QStringList userLanguages() {
    const QString messages = localeName("LC_MESSAGES");
    if (messages == u"C" || messages == u"POSIX") {
        return {};
    }
    const QString list = fromEnvironment("LANGUAGE");
    QStringList languages;
    for (const QString& name : (list.isEmpty() ? messages : list).split(u':', Qt::SkipEmptyParts)) {
        const QString language = withoutCoding(name);
        if (isC(language)) {
            continue;
        }
        languages += language;
        languages += language.section(u'_', 0, 0);
    }
    languages.removeAll(QString()); // of "_ES"
    languages.removeDuplicates();
    return languages;
}

void useUserLanguage() {
    // Never destroyed: texts are wanted until the process ends.
    static auto* const words = new QTranslator;
    static auto* const numbers = new QLocale;
    static auto* const times = new QLocale;
    Text::Reader reader;
    if (const QString language = shownLanguage(); !language.isEmpty()) {
        reader.words = words->load(wordsOf(language)) ? words : nullptr;
    }
    if (const auto locale = localeOf("LC_NUMERIC")) {
        *numbers = *locale;
        reader.numbers = numbers;
    }
    if (const auto locale = localeOf("LC_TIME")) {
        *times = *locale;
        reader.times = times;
    }
    Text::use(reader);
}

void useUserLanguageInQt() {
    const QString language = shownLanguage();
    auto* const application = QCoreApplication::instance();
    if (language.isEmpty() || application == nullptr) {
        return;
    }
    auto* const translator = new QTranslator(application);
    const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    if (translator->load(QStringLiteral("qtbase_") + language, folder)) {
        QCoreApplication::installTranslator(translator);
    }
}

} // namespace raincast
