// SPDX-License-Identifier: MIT
#pragma once

#include "navigator_sim/route.h"

#include <QLocalServer>
#include <QString>

#include <cstdint>
#include <functional>
#include <map>

class QLocalSocket;

namespace navigator_sim {

/// A navigator that only pretends: it owns the window, answers position requests, and moves along a
/// route, one second at each of them. Written after docs/formats/navigator.md alone, without any
/// code of the viewer's, so that the two prove the description.
class Navigator {
public:
    /// What it says, one line each: "request N" when one comes; "told ..." with the nine numbers of
    /// a position that it was given, or "told nothing" for a file that is too short; "close".
    using Say = std::function<void(const QString& line)>;

    /// `file`: the path of the shared file.
    Navigator(Route route, QString file, Say say);

    /// Makes the window: the socket in `folder`. False when that fails.
    [[nodiscard]] bool open(const QString& folder);

    /// Does what a line says, false when it makes no sense:
    /// "answer REQUEST STATUS": that request gets that status from now on, and nothing is done;
    /// status 0 is the usual. "short BYTES": the file is written only so far. "hang": no request is
    /// answered any more. "die": the next request ends the process, unanswered.
    [[nodiscard]] bool command(const QString& line);

private:
    void take(QLocalSocket& client);
    void handle(QLocalSocket& client, std::uint32_t message, std::uint32_t request);
    [[nodiscard]] std::uint32_t answer(std::uint32_t request);
    [[nodiscard]] std::uint32_t writePosition();
    void readPosition();

    Route m_route;
    QString m_file;
    Say m_say;
    QLocalServer m_server;
    std::map<std::uint32_t, std::uint32_t> m_answers;
    int m_fileSize;
    bool m_hangs = false;
    bool m_dies = false;
};

} // namespace navigator_sim
