// SPDX-License-Identifier: MIT
#pragma once

#include "window/modal.h"

#include <QDialog>

namespace raincast::test {

/// Stands in for somebody who cancels whatever opens: the station dialog that a first start shows.
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
