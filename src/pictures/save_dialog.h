// SPDX-License-Identifier: MIT
#pragma once

#include "window/dialog.h"

#include <QString>

namespace raincast {

/// "Save Picture", "Save Loop": asks for the name of a file, and before an old one is replaced. A
/// name without a folder is in the folder that was used last; without its ending it gets that.
class SaveDialog : public Dialog {
public:
    static constexpr int kTemplate = 160;

    /// `name` is offered, in the folder that was used last; its ending is the one of all names.
    SaveDialog(QString caption, const QString& name);

    bool onInitialise() override;
    void onOk() override;

    /// The absolute path that was chosen, in a folder that exists.
    [[nodiscard]] const QString& path() const { return m_path; }

private:
    [[nodiscard]] QString typedPath() const;

    QString m_caption;
    QString m_path;
    QString m_ending;
};

} // namespace raincast
