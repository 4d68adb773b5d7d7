// SPDX-License-Identifier: MIT
#pragma once

#include <QCommandLineParser>
#include <QString>
#include <QStringList>

#include <iosfwd>
#include <tl/expected.hpp>

namespace raincast {

/// What a program prints instead of doing its work: its help, its version, or what is wrong with
/// the command line.
struct CommandLineAnswer {
    QString text; ///< whole lines
    bool isUsageError = false;
};

/// The exit status of a usage error, the same for every program.
inline constexpr int kUsageErrorStatus = 2;

/// Prints a usage error on `err`, any other answer on `out`. Returns the exit status: 0 or
/// kUsageErrorStatus.
[[nodiscard]] int
printAnswer(const CommandLineAnswer& answer, std::ostream& out, std::ostream& err);

/// The frame of a program's command line: --help (-h), --version (-v) and usage errors look the
/// same in all programs. A usage error is a sentence after the program's name:
///
///     raincast-fetch: Unknown option 'x'.
///     Try raincast-fetch --help.
class CommandLine {
public:
    /// `program` is the name in the version and in usage errors.
    CommandLine(QString program, const QString& description);

    /// Qt's parser, for options, positional arguments and their values.
    [[nodiscard]] QCommandLineParser& parser() { return m_parser; }
    [[nodiscard]] const QCommandLineParser& parser() const { return m_parser; }

    /// A text that stands below the options in the help.
    void setHelpFooter(const QString& footer) { m_footer = footer; }

    /// Parses a command line, the program's name first; an answer if that is all to do. Needs no
    /// application object.
    [[nodiscard]] tl::expected<void, CommandLineAnswer> parse(const QStringList& arguments);

    /// "--cache takes a value." for the first of these options that was given without one. A
    /// script's variable that is not set must not pass for a choice.
    [[nodiscard]] tl::expected<void, QString> requireValues(const QList<QCommandLineOption>& options
    ) const;

    /// A usage error; `sentence` ends with a full stop.
    [[nodiscard]] CommandLineAnswer usageError(const QString& sentence) const;

private:
    [[nodiscard]] QString helpText(const QString& path) const;

    QString m_program;
    QString m_footer;
    QCommandLineParser m_parser;
    QCommandLineOption m_help;
    QCommandLineOption m_version;
};

} // namespace raincast
