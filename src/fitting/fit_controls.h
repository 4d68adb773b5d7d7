// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

class QWidget;

namespace raincast {

/// Makes what stands in controls fit their widths, for controls that were placed in rows that are
/// too narrow for them: a label takes from the field beside it, texts are broken into lines, what
/// is a single word gets narrow letters. Rows grow, and what is below them moves down. Returns how
/// much higher all of it is now, in pixels.
[[nodiscard]] int fitControls(const std::vector<QWidget*>& controls);

} // namespace raincast
