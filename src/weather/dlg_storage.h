// SPDX-License-Identifier: MIT
#pragma once

#include "radar/storage.h"
#include "window/combo_list.h"
#include "window/dialog.h"

#include <QStringList>

#include <functional>

namespace raincast {

/// "Radar Image Storage": moves the image cache and cleans it up. OK does all of that before the
/// dialog closes; a failure shows a message and leaves the dialog open.
class CDlgStorage : public Dialog {
public:
    /// Called before the work begins (true) and after it has ended (false).
    using Waiting = std::function<void(bool waiting)>;

    /// `request` names the cache in use, the view's centre and the function to call with the
    /// progress, at most ten times a second; the user's choices go into a copy of it.
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
