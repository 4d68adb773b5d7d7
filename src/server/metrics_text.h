// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <concepts>
#include <initializer_list>
#include <utility>

namespace raincast {

/// Numbers in Prometheus' text form: families of samples, which labels tell apart.
class MetricsText {
public:
    using Label = std::pair<const char*, QByteArray>; ///< its name and its value, of any bytes
    using Labels = std::initializer_list<Label>;

    /// Begins a family of a type: "counter", "gauge" or "summary". The samples that follow are its.
    void begin(const QByteArray& name, const char* type, const char* help);

    /// One number of the family that was begun last. `suffix` is "_sum" or "_count" in a summary.
    template<typename Number>
    requires std::integral<Number> || std::floating_point<Number>
    void add(Number value, Labels labels = {}, const char* suffix = "") {
        addText(textOf(value), labels, suffix);
    }

    /// A family of one number.
    template<typename Number>
    void one(const QByteArray& name, const char* type, const char* help, Number value) {
        begin(name, type, help);
        add(value);
    }

    [[nodiscard]] const QByteArray& text() const { return m_text; }

private:
    template<typename Number>
    static QByteArray textOf(Number value) {
        if constexpr (std::floating_point<Number>) {
            return QByteArray::number(value, 'g', 15);
        } else {
            return QByteArray::number(value);
        }
    }
    void addText(const QByteArray& value, Labels labels, const char* suffix);

    QByteArray m_name;
    QByteArray m_text;
};

} // namespace raincast
