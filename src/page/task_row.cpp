// SPDX-License-Identifier: MIT
#include "page/task_row.h"

#include "page/app_paged.h"
#include "page/item.h"

#include <utility>

namespace raincast {

TaskRow::TaskRow(CPageDisplay::CItem& item, std::function<void()> pressed)
    : m_item(item), m_pressed(std::move(pressed)) {}

TaskRow::~TaskRow() {
    delete m_row;
}

void TaskRow::say(const QString& text, const QString& action) {
    CAppPaged* const application =
        m_item.page() != nullptr ? m_item.page()->application() : nullptr;
    if (!m_row && application != nullptr) {
        m_row = application->addRow(BottomRows::Stay::lasting, [this] {
            m_row->hide();
            m_row->deleteLater();
            m_row = nullptr;
            m_pressed();
        });
    }
    if (m_row) {
        m_row->setText(text);
        m_row->setAction(action);
        m_row->show();
    }
}

void TaskRow::goOn(const QString& text) {
    if (m_row) {
        m_row->setText(text);
    }
}

} // namespace raincast
