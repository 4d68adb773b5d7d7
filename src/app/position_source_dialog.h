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

/// "GPS Source": where positions come from. OK makes the entered source the user's choice and puts
/// it into use at once. A source for this run only stays one unless another is entered.
///
/// While the dialog is open a few lines say what arrives from the source in use. "Try" has the
/// receiver read the entered source instead. Any end but OK puts the earlier source back.
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

    /// Borrows the receiver.
    explicit PositionSourceDialog(PositionReceiver& receiver);
    ~PositionSourceDialog() override;

    bool onInitialise() override;
    /// A text that is not an address keeps the dialog open, with a message.
    void onOk() override;
    void onDialogCommand(int id, QWidget* control, int notification) override;

private:
    void Tick() override;
    void Resync() override { Tick(); }

    void selectKind(int kind);
    /// The address in the settings' form.
    [[nodiscard]] QString entered() const;
    /// Whether the entered text is an address. If not, a message says what is wrong with it.
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
