// SPDX-License-Identifier: MIT
#include "core/folders.h"

#include "core/tree_move.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <filesystem>
#include <system_error>
#include <vector>

namespace raincast {

namespace {

namespace fs = std::filesystem;

// Through the system's own bytes: a card can hold names that are not valid in any encoding.
fs::path toPath(const QString& path) {
    return {QFile::encodeName(path).toStdString()};
}

QString toText(const fs::path& path) {
    return QFile::decodeName(QByteArray::fromStdString(path.native()));
}

QRegularExpression expressionFor(const QString& pattern) {
    QString expression =
        QRegularExpression::escape(pattern == u"*.*" ? QStringLiteral("*") : pattern);
    expression.replace(QStringLiteral("\\*"), QStringLiteral(".*"));
    expression.replace(QStringLiteral("\\?"), QStringLiteral("."));
    return QRegularExpression(
        QRegularExpression::anchoredPattern(expression),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption
    );
}

bool isDeletable(const fs::directory_entry& entry) {
    std::error_code error;
    return entry.symlink_status(error).type() != fs::file_type::directory && !error;
}

} // namespace

tl::expected<void, QString> makeFolder(const QString& path) {
    std::error_code error;
    fs::create_directories(toPath(path), error);
    if (error) {
        return tl::make_unexpected(QString::fromStdString(error.message()));
    }
    return {};
}

bool EnsureFolder(const QString& path) {
    if (path.size() < 2) {
        return QFileInfo(path).isDir();
    }
    return makeFolder(path).has_value();
}

bool matchesFilePattern(const QString& name, const QString& pattern) {
    return expressionFor(pattern).match(name).hasMatch();
}

void DeleteMatchingExcept(
    const QString& folder, const QString& pattern, const std::set<QString>& keepNames
) {
    const fs::path path = toPath(folder);
    std::error_code error;
    if (fs::symlink_status(path, error).type() != fs::file_type::directory) {
        return;
    }
    const QRegularExpression expression = expressionFor(pattern);
    // Deleting while listing could make the system skip entries.
    std::vector<fs::path> doomed;
    for (fs::directory_iterator it(path, error), end; !error && it != end; it.increment(error)) {
        const QString name = toText(it->path().filename());
        if (expression.match(name).hasMatch() && keepNames.count(name) == 0 && isDeletable(*it)) {
            doomed.push_back(it->path());
        }
    }
    for (const fs::path& file : doomed) {
        fs::remove(file, error);
    }
}

bool MoveTree(const QString& source, const QString& destination, const MoveProgress& progress) {
    return TreeMove(progress).run(toPath(source), toPath(destination));
}

bool moveTreeOrBringBack(
    const QString& source, const QString& destination, const MoveProgress& progress
) {
    TreeMove move(progress);
    if (move.run(toPath(source), toPath(destination))) {
        return true;
    }
    move.undo();
    return false;
}

} // namespace raincast
