// SPDX-License-Identifier: MIT
#include "window/dialog_template.h"

#include "core/resource_module.h"
#include "window/message_box.h"

#include <QByteArray>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <array>
#include <utility>

namespace raincast {

namespace {

// No dialog is larger, and none has more controls: what a damaged file claims is bounded by them.
constexpr int kMostUnits = 2000;
constexpr int kMostControls = 200;

struct KindName {
    ControlKind kind;
    const char16_t* name;
};

constexpr std::array<KindName, 7> kKindNames{{
    {ControlKind::label, u"label"},
    {ControlKind::pushButton, u"pushButton"},
    {ControlKind::checkBox, u"checkBox"},
    {ControlKind::edit, u"edit"},
    {ControlKind::listBox, u"listBox"},
    {ControlKind::comboBox, u"comboBox"},
    {ControlKind::picture, u"picture"},
}};

// The `count` numbers of an array, each from 0 to kMostUnits; none for anything else.
std::optional<std::vector<int>> units(const QJsonValue& value, int count) {
    std::vector<int> numbers;
    for (const QJsonValue& number : value.toArray()) {
        numbers.push_back(number.toInt(-1));
        if (numbers.back() < 0 || numbers.back() > kMostUnits) {
            return std::nullopt;
        }
    }
    if (static_cast<int>(numbers.size()) != count) {
        return std::nullopt;
    }
    return numbers;
}

std::optional<DialogControl> control(const QJsonObject& object) {
    DialogControl result;
    const auto place = units(object[u"place"], 4);
    const QString kind = object[u"kind"].toString();
    result.id = object[u"id"].toInt(-1);
    result.text = object[u"text"].toString();
    for (const KindName& row : kKindNames) {
        if (place && result.id >= 0 && kind == QStringView(row.name)) {
            result.kind = row.kind;
            result.place = {(*place)[0], (*place)[1], (*place)[2], (*place)[3]};
            return result;
        }
    }
    return std::nullopt;
}

} // namespace

DialogTemplateRecord* DialogTemplateRecord::s_first = nullptr;

DialogTemplateRecord::DialogTemplateRecord(DialogTemplate content)
    : m_content(std::move(content)), m_next(s_first) {
    if (findDialogTemplate(m_content.id)) {
        qFatal("Two dialogs have the number %d", m_content.id);
    }
    s_first = this;
}

DialogTemplateRecord::~DialogTemplateRecord() {
    for (DialogTemplateRecord** link = &s_first; *link != nullptr; link = &(*link)->m_next) {
        if (*link == this) {
            *link = m_next;
            return;
        }
    }
}

std::optional<DialogTemplate> findDialogTemplate(int id) {
    for (auto* record = DialogTemplateRecord::s_first; record; record = record->m_next) {
        if (record->m_content.id == id) {
            return record->m_content;
        }
    }
    if (id < ResourceModule::kFirstIdentifier) {
        return std::nullopt;
    }
    QFile file(ResourceModule::path(QStringLiteral("dialogs"), id));
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    return parseDialogTemplate(file.readAll(), id);
}

std::vector<int> publishedDialogTemplates() {
    std::vector<int> ids;
    for (auto* record = DialogTemplateRecord::s_first; record; record = record->m_next) {
        ids.push_back(record->m_content.id);
    }
    return ids;
}

std::optional<DialogTemplate> parseDialogTemplate(const QByteArray& json, int id) {
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    const auto size = units(object[u"size"], 2);
    const auto leastSize = units(object[u"leastSize"], 2);
    const QJsonArray controls = object[u"controls"].toArray();
    const bool badLeastSize = object.contains(u"leastSize") && !leastSize;
    if (!size || badLeastSize || controls.size() > kMostControls) {
        return std::nullopt;
    }
    DialogTemplate result;
    result.id = id;
    result.caption = object[u"caption"].toString();
    result.size = {(*size)[0], (*size)[1]};
    if (leastSize) {
        result.leastSize = {(*leastSize)[0], (*leastSize)[1]};
    }
    for (const QJsonValue& value : controls) {
        auto parsed = control(value.toObject());
        if (!parsed) {
            return std::nullopt;
        }
        result.controls.push_back(std::move(*parsed));
    }
    return result;
}

bool requireResourceModule(QWidget* parent, int identifier) {
    if (ResourceModule::current().provides(identifier)) {
        return true;
    }
    messageBox(
        parent, Text::tr("Failed to load Res.dll\nPlease re-install the software"),
        Text::tr("Error")
    );
    return false;
}

} // namespace raincast
