// SPDX-License-Identifier: MIT
#include "persist/page_save.h"

#include "core/text.h"
#include "core/whole_file.h"

namespace raincast {

void PageSave::write() {
    if (backup && !backup->written) {
        const auto kept = replaceFile(backup->path, backup->bytes, Lasting::yes);
        if (!kept) {
            result =
                tl::make_unexpected(Text::tr("Its backup cannot be written: %1").arg(kept.error()));
            return;
        }
        backup->written = true;
    }
    result = replaceFile(path, bytes, Lasting::yes);
}

} // namespace raincast
