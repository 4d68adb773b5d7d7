// SPDX-License-Identifier: MIT
#pragma once

#include "app/receiver_watch.h"
#include "core/heartbeat.h"
#include "window/combo_list.h"
#include "window/dialog.h"

#include <map>
#include <optional>

namespace raincast {

class PositionReceiver;

/// "GPS Source": where positions come from. Ending it with OK makes that the user's choice, in use
/// at once; a source that is in use for this run only stays that if nothing else is entered.
///
/// A few lines say what arrives as long as the dialog is open. They are about the source in use
/// until "Try" has the receiver read what is entered instead; whatever ends the dialog but OK puts
/// the source that was in use back.
class PositionSourceDialog : public Dialog, private CHeartbeat::Counter {
public:
    static constexpr int kTemplate = 141;
    static constexpr int kKind = 1150;
    static constexpr int kAddressLabel = 1151;
    static constexpr int kAddress = 1152;
    static constexpr int kExample = 1153;
    static constexpr int kInUse = 1154;
    static constexpr int kTry = 1155;
    static constexpr int kArrivals = 1156;

    /// The receiver is borrowed.
    explicit PositionSourceDialog(PositionReceiver& receiver);
    ~PositionSourceDialog() override;

    bool onInitialise() override;
    /// An address that makes no sense keeps the dialog open, with a message.
    void onOk() override;
    void onDialogCommand(int id, QWidget* control, int notification) override;

private:
    void Tick() override;
    void Resync() override { Tick(); }

    void selectKind(int kind);
    /// The address as the settings have it.
    [[nodiscard]] QString entered() const;
    /// Whether it is one, or a message has said what is wrong with it.
    bool check();
    void tryIt();
    [[nodiscard]] QString inUse() const;
    void showArrivals();

    PositionReceiver& m_receiver;
    ReceiverWatch m_watch;
    ComboList m_kinds;
    int m_kind = 0;
    std::map<int, QString> m_typed; ///< for the kinds that are not selected
    std::optional<QString> m_tried;
};

} // namespace raincast
