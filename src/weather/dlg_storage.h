// SPDX-License-Identifier: MIT
#pragma once

#include "core/background.h"
#include "core/errand.h"
#include "core/mailbox.h"
#include "weather/storage.h"
#include "window/combo_list.h"
#include "window/dialog.h"

#include <QStringList>

#include <functional>
#include <optional>

namespace raincast {

/// "Radar Image Storage": moves the image cache and cleans it up. OK has that done in the
/// background and then closes the dialog; until then it cannot be cancelled. A failure shows a
/// message and leaves the dialog open. A line says how much would be deleted and how much space is
/// free, as the user chooses.
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
    void onCancel() override;

    /// Whether the dialog was closed from outside, at the program's end, while files still move.
    [[nodiscard]] bool working() const { return m_work.underWay(); }
    /// Waits until they have moved, or are back.
    void finish() { m_work.wait(); }

    /// The cache root in use; after OK the one that was chosen.
    [[nodiscard]] const QString& cacheFolder() const { return m_request.cacheFolder; }

private:
    void enableBoxes();
    void count();
    void showProgress(int done, int wanted);
    void ended();
    [[nodiscard]] StorageRequest chosen() const;

    StorageRequest m_request;
    Waiting m_waiting;
    QStringList m_cards;
    ComboList m_places;
    QString m_label;                      ///< that gave its place to the progress
    std::optional<Background> m_counting; ///< its end drops the result
    Mailbox m_progress;
    StorageResult m_result; ///< of the work
    Errand m_work;          // last: it uses the rest until it ends
};

} // namespace raincast
