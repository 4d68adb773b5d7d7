// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace raincast {

/// A status from here on brings no file.
inline constexpr int kFirstFailingStatus = 300;
inline constexpr int kUnchangedStatus = 304;
inline constexpr int kAbsentStatus = 404;

/// How a request ended.
struct HttpResponse {
    int status = 0; ///< the HTTP status; 0 when no response came
    /// As much of it as came and was taken; empty for a file whose status says that it is none.
    QByteArray body;
    /// The body came to its end and, by what the response says, nothing is missing.
    bool whole = false;
    /// The server could not be reached: its name (or the proxy's) does not resolve, the connection
    /// was refused, or connecting took too long.
    bool connectingFailed = false;
    /// It waited too long, to connect or for its body.
    bool timedOut = false;
    /// What went wrong on the way, in words: "the server stalled".
    std::optional<QString> failure;
    /// What a radar image server says about its source of frames: the header "Raincast-Source";
    /// empty without one.
    QByteArray source;
    /// The tag of a body that may soon be another one: its "ETag" beside a "Cache-Control" of
    /// "no-cache", or of a "max-age" below an hour without "immutable". Empty for any other body.
    QByteArray tag;
    /// The bytes that are there already, whose tag was sent, are still the server's.
    bool unchanged = false;
    /// Why the body was not taken: "no GIF image".
    std::optional<QString> refusal;

    [[nodiscard]] bool answered() const { return status != 0; }
};

/// A response in words, for those who want to know of every request: its status ("200"), what went
/// wrong ("Could not resolve host: radar.example"), or both ("200, no GIF image").
[[nodiscard]] QString outcomeOf(const HttpResponse& response);

/// What was wrong with a response, in a sentence for the user: "radar.example does not answer.";
/// empty when nothing was.
[[nodiscard]] QString troubleOf(const HttpResponse& response, const QString& server);

} // namespace raincast
