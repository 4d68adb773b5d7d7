// SPDX-License-Identifier: MIT
#include "core/command_line.h"

#include "core/text.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <memory>
#include <ostream>
#include <utility>

namespace raincast {

int printAnswer(const CommandLineAnswer& answer, std::ostream& out, std::ostream& err) {
    (answer.isUsageError ? err : out) << answer.text.toStdString();
    return answer.isUsageError ? kUsageErrorStatus : 0;
}

namespace {

/// What Qt says of a mistake, with the option behind the words.
constexpr const char* kMistakes[] = {
    Text::marked("Unknown option '%1'."), Text::marked("Missing value after '%1'."),
    Text::marked("Unexpected value after '%1'.")};

/// Qt's own words are English here: its translations come with the application object.
QString translated(const QString& error) {
    // Some versions of Qt end the sentence, some do not.
    const QString sentence = error.endsWith(u'.') ? error : error + u'.';
    for (const char* const mistake : kMistakes) {
        const QString words = QString::fromLatin1(mistake).section(u'%', 0, 0);
        if (sentence.startsWith(words) && sentence.endsWith(u"'.")) {
            return Text::of(mistake).arg(sentence.sliced(words.size()).chopped(2));
        }
    }
    return sentence;
}

/// The headings of Qt's help.
constexpr const char* kHeadings[] = {
    Text::marked("Usage:"), Text::marked("Options:"), Text::marked("Arguments:")};

QString withHeadings(QString help) {
    for (const char* const heading : kHeadings) {
        const QRegularExpression line(
            u'^' + QString::fromLatin1(heading), QRegularExpression::MultilineOption
        );
        help.replace(line, Text::of(heading));
    }
    return help.replace(QStringLiteral(" [options]"), u' ' + Text::tr("[options]"));
}

} // namespace

CommandLine::CommandLine(QString program, const QString& description)
    : m_program(std::move(program)),
      m_help({QStringLiteral("h"), QStringLiteral("help")}, Text::tr("Show this help.")),
      m_version({QStringLiteral("v"), QStringLiteral("version")}, Text::tr("Show the version.")) {
    m_parser.setApplicationDescription(description);
}

tl::expected<void, CommandLineAnswer> CommandLine::parse(const QStringList& arguments) {
    m_parser.addOptions({m_help, m_version}); // last: the help lists options as they were added
    if (!m_parser.parse(arguments)) {
        return tl::unexpected(usageError(translated(m_parser.errorText())));
    }
    if (m_parser.isSet(m_help)) {
        return tl::unexpected(CommandLineAnswer{helpText(arguments.value(0))});
    }
    if (m_parser.isSet(m_version)) {
        return tl::unexpected(CommandLineAnswer{
            m_program + QStringLiteral(" " RAINCAST_VERSION "\n")});
    }
    return {};
}

tl::expected<void, QString> CommandLine::requireValues(const QList<QCommandLineOption>& options
) const {
    for (const QCommandLineOption& option : options) {
        const QString name = option.names().constFirst();
        if (!option.valueName().isEmpty() && m_parser.isSet(name) &&
            m_parser.value(name).isEmpty()) {
            return tl::unexpected(Text::tr("--%1 takes a value.").arg(name));
        }
    }
    return {};
}

CommandLineAnswer CommandLine::usageError(const QString& sentence) const {
    return {Text::tr("%1: %2\nTry %1 --help.\n").arg(m_program, sentence), true};
}

QString CommandLine::helpText(const QString& path) const {
    // Only an application object knows the name that the help begins with.
    QByteArray name = path.toLocal8Bit();
    int count = 1;
    char* arguments[] = {name.data(), nullptr};
    std::unique_ptr<QCoreApplication> application;
    if (QCoreApplication::instance() == nullptr) {
        application = std::make_unique<QCoreApplication>(count, arguments);
    }
    return withHeadings(m_parser.helpText()) + m_footer;
}

} // namespace raincast
