// SPDX-License-Identifier: MIT
#include "net/http_settings.h"

namespace raincast {

HttpLimits& httpLimits() {
    static HttpLimits limits;
    return limits;
}

} // namespace raincast
