// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QStringList>

#include <vector>

namespace raincast {

/// An argument list in the form that an application object wants. It must outlive that object and
/// stay at its address.
class QtArguments {
public:
    explicit QtArguments(const QStringList& arguments) {
        for (const QString& argument : arguments) {
            m_texts.push_back(argument.toLocal8Bit());
        }
        for (QByteArray& text : m_texts) {
            m_pointers.push_back(text.data());
        }
        m_count = static_cast<int>(m_pointers.size());
        m_pointers.push_back(nullptr);
    }
    QtArguments(const QtArguments&) = delete;
    QtArguments& operator=(const QtArguments&) = delete;

    [[nodiscard]] int& count() { return m_count; }
    [[nodiscard]] char** pointers() { return m_pointers.data(); }

private:
    std::vector<QByteArray> m_texts;
    std::vector<char*> m_pointers;
    int m_count = 0;
};

} // namespace raincast
