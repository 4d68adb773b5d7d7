// SPDX-License-Identifier: MIT
#pragma once

#include "window/modal.h"

#include <QDialog>

namespace raincast::test {

/// Stands in for a user who cancels every dialog, such as the station dialog of a first start.
class CancelDialogs {
public:
    CancelDialogs() {
        Modal::setHook([](QDialog& dialog) { dialog.reject(); });
    }
    ~CancelDialogs() { Modal::setHook(nullptr); }
    CancelDialogs(const CancelDialogs&) = delete;
    CancelDialogs& operator=(const CancelDialogs&) = delete;
};

} // namespace raincast::test
