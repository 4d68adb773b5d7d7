// SPDX-License-Identifier: MIT
#include "server/metrics_text.h"

namespace raincast {

namespace {

QByteArray escaped(QByteArray value) {
    return value.replace('\\', "\\\\").replace('"', "\\\"").replace('\n', "\\n");
}

} // namespace

void MetricsText::begin(const QByteArray& name, const char* type, const char* help) {
    m_name = name;
    m_text += "# HELP " + name + ' ' + help + "\n# TYPE " + name + ' ' + type + '\n';
}

void MetricsText::addText(const QByteArray& value, Labels labels, const char* suffix) {
    m_text += m_name + suffix;
    const char* separator = "{";
    for (const auto& [name, text] : labels) {
        m_text += separator + QByteArray(name) + "=\"" + escaped(text) + '"';
        separator = ",";
    }
    m_text += (labels.size() > 0 ? "} " : " ") + value + '\n';
}

} // namespace raincast
