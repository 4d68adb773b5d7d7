// SPDX-License-Identifier: MIT
#include "net/http_settings.h"

namespace raincast {

HttpLimits& httpLimits() {
    static HttpLimits limits;
    return limits;
}

HttpHooks& httpHooks() {
    static HttpHooks hooks;
    return hooks;
}

} // namespace raincast
