// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace raincast {

/// What must hold whatever the input is: if it does not, the fuzzer has found something.
inline void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

/// The bytes that the fuzzer made up, taken from their front.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size)
        : m_rest(data, static_cast<qsizetype>(size)) {}

    [[nodiscard]] bool atEnd() const { return m_rest.isEmpty(); }

    /// The next byte; 0 at the end.
    int byte() { return atEnd() ? 0 : static_cast<unsigned char>(bytes(1)[0]); }

    /// As many as there are, at most.
    QByteArray bytes(qsizetype count) {
        const QByteArrayView taken = m_rest.first(std::min(count, m_rest.size()));
        m_rest = m_rest.sliced(taken.size());
        return taken.toByteArray();
    }

    /// Bytes behind their number, which is one byte.
    QByteArray piece() { return bytes(byte()); }

    /// Up to the next line feed, which goes, too.
    QByteArray line() {
        const qsizetype end = m_rest.indexOf('\n');
        QByteArray taken = bytes(end < 0 ? m_rest.size() : end);
        bytes(1);
        return taken;
    }

    /// All lines that are left, as texts.
    QStringList lines() { return QString::fromUtf8(rest()).split(u'\n'); }

    /// The same as a program gets them, none of which has a NUL.
    QStringList arguments() { return QString::fromUtf8(rest().replace('\0', "")).split(u'\n'); }

    QByteArray rest() { return bytes(m_rest.size()); }

private:
    QByteArrayView m_rest;
};

} // namespace raincast
