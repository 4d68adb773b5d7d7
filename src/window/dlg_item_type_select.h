// SPDX-License-Identifier: MIT
#pragma once

#include "window/dialog.h"

#include <QString>
#include <QVariant>

#include <optional>
#include <vector>

namespace raincast {

/// A list to choose one row of. "OK" or a double-click takes the selected row; typing jumps to a
/// row whose label, or the part of it behind a colon, begins with the typed text.
///
///     CDlgItemTypeSelect dialog(QStringLiteral("Select Page Type"));
///     dialog.add(QStringLiteral("Weather"), 10);
///     if (dialog.run(parent) == Dialog::kOk && dialog.selected()) ...
class CDlgItemTypeSelect : public Dialog {
public:
    static constexpr int kTemplate = 109;

    /// With an empty caption the dialog reads "Select".
    explicit CDlgItemTypeSelect(QString caption = {});

    /// Adds a row, before run(). `remark` stands at the right edge of the row in a second column.
    /// Of several rows that are to be selected at first the last one is; without any it is the
    /// first row.
    void
    add(const QString& label, const QVariant& datum = {}, bool select = false,
        const QString& remark = {});

    /// The row that was taken, none before an "OK" or if no row was selected then.
    [[nodiscard]] std::optional<int> selected() const { return m_selected; }
    /// Its datum; invalid without one.
    [[nodiscard]] QVariant selectedDatum() const;

    bool onInitialise() override;
    void onOk() override;
    void onSize(int width, int height) override;
    void onDialogCommand(int id, QWidget* control, int notification) override;

private:
    struct Row {
        QString label;
        QVariant datum;
        QString remark;
    };

    QString m_caption;
    std::vector<Row> m_rows;
    std::optional<int> m_preselected;
    std::optional<int> m_selected;
};

} // namespace raincast
