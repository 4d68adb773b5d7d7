// SPDX-License-Identifier: MIT
#include "tree/listing_page.h"

namespace raincast {

QByteArray listingPage(std::string_view path, const std::vector<std::string>& names) {
    // Paths and names come from the tree's own tables: nothing in them needs escaping.
    const std::string title = "Index of " + std::string(path);
    std::string page = "<!DOCTYPE html>\n<html><head><title>" + title +
                       "</title></head>\n<body><h1>" + title +
                       "</h1><hr><pre><a href=\"../\">../</a>\n";
    for (const std::string& name : names) {
        page += "<a href=\"" + name + "\">" + name + "</a>\n";
    }
    page += "</pre><hr></body></html>\n";
    return QByteArray::fromStdString(page);
}

} // namespace raincast
