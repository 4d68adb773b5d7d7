// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <memory>
#include <string>

namespace raincast {

/// The bytes of an answer with what HTTP wants to know of them, which is worked out at the first
/// question and kept. Copies share all of it. May be used from several threads at once.
class TreeBody {
public:
    TreeBody(QByteArray bytes = {}); // NOLINT(google-explicit-constructor): it is these bytes

    [[nodiscard]] const QByteArray& bytes() const;

    /// Tells these bytes from all others, with its quotes: "\"9a0364b9e99bb480dd25\"".
    [[nodiscard]] const std::string& tag() const;

    /// The bytes in gzip's form; empty where that saves nothing worth the while.
    [[nodiscard]] const QByteArray& gzipped() const;

private:
    struct Shared;
    std::shared_ptr<Shared> m_shared;
};

} // namespace raincast
