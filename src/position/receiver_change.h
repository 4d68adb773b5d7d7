// SPDX-License-Identifier: MIT
#pragma once

namespace raincast {

/// Published when the program's receiver turns to another source, or to none: what was heard until
/// now says nothing about what will be.
struct ReceiverChange {};

} // namespace raincast
