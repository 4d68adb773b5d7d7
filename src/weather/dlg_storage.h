// SPDX-License-Identifier: MIT
#pragma once

#include "radar/storage.h"
#include "window/combo_list.h"
#include "window/dialog.h"

#include <QStringList>

#include <functional>

namespace raincast {

/// "Radar Image Storage": where the image cache lies, and cleaning it. OK does it all before the
/// dialog closes; what goes wrong is told and leaves it open.
class CDlgStorage : public Dialog {
public:
    /// Told before the work begins (true) and after it ended (false).
    using Waiting = std::function<void(bool waiting)>;

    /// `request` says which cache is in use, where the view is and what hears of the progress, at
    /// most ten times a second; the user's choices are put into a copy of it.
    CDlgStorage(StorageRequest request, Waiting waiting);

    bool onInitialise() override;
    void onDialogCommand(int id, QWidget* control, int notification) override;
    void onOk() override;

    /// The cache root in use; after OK the one that was chosen.
    [[nodiscard]] const QString& cacheFolder() const { return m_request.cacheFolder; }

private:
    void enableBoxes();
    void showProgress(int done, int wanted);
    [[nodiscard]] StorageRequest chosen() const;

    StorageRequest m_request;
    Waiting m_waiting;
    QStringList m_cards;
    ComboList m_places;
};

} // namespace raincast
