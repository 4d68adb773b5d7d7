// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"
#include "radar/catalogue/product.h"

#include <QByteArray>

#include <optional>
#include <string_view>
#include <vector>

namespace raincast {

/// Where the tree's pictures come from. Sites are named by their three letters. All pictures are
/// GIFs of 600 × 550 pixels whose ground is transparent white, given as the file's bytes. The same
/// question gets the same bytes. Several threads may ask at once.
class FrameSource {
public:
    virtual ~FrameSource() = default;

    /// The times of the frames there are, oldest first, whole minutes, none after `upTo`. Empty for
    /// an unknown site.
    [[nodiscard]] virtual std::vector<FileTime>
    frameTimes(std::string_view site, Product product, FileTime upTo) const = 0;

    /// The frame of one of those times; nothing when there is none.
    [[nodiscard]] virtual std::optional<QByteArray>
    frame(std::string_view site, Product product, FileTime time) const = 0;

    /// The outlines of the warnings that hold at a time, or a picture without any. Nothing for
    /// an unknown site.
    [[nodiscard]] virtual std::optional<QByteArray>
    warnings(std::string_view site, Range range, FileTime time) const = 0;
};

} // namespace raincast
