// SPDX-License-Identifier: MIT
#pragma once

#include "window/dialog.h"

#include <QString>

namespace raincast {

/// Lets the user edit a name.
class CDlgRename : public Dialog {
public:
    static constexpr int kTemplate = 115;

    /// With an empty caption the dialog reads "Rename".
    explicit CDlgRename(QString name, QString caption = {});

    /// The name: as edited once the dialog ended with kOk, else as given.
    [[nodiscard]] const QString& name() const { return m_name; }

    bool onInitialise() override;
    void onOk() override;

private:
    QString m_name;
    QString m_caption;
};

} // namespace raincast
