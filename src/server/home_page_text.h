// SPDX-License-Identifier: MIT
#pragma once

namespace raincast {

/// The page for people, with names for the parts that are known only at run time: @NOTE@, @STATES@
/// (the data of an SVG path), @DOTS@ (SVG), @LIST@ (list items), @SITES@ (a JSON object: id to
/// name), @DETAIL@ (2 where there are sharp pictures, else 1).
extern const char* const kHomePageText;

} // namespace raincast
