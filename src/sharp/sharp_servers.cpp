// SPDX-License-Identifier: MIT
#include "sharp/sharp_servers.h"

namespace raincast {

namespace {

// So many frames in a row are too many to be old ones.
constexpr int kMostOthers = 4;

} // namespace

bool SharpServers::lacksAll(const QString& folder, SharpSource::Use use) {
    Lacks& lacks = m_lacks[folder];
    ++(use == SharpSource::Use::layer ? lacks.layers : lacks.others);
    const bool isSpokenFor = lacks.layers > 0 && lacks.layers + lacks.others > 1;
    return !hasSome(folder) && (isSpokenFor || lacks.others >= kMostOthers);
}

} // namespace raincast
