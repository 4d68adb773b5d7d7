// SPDX-License-Identifier: MIT
#include "app/raincast_app.h"

#include "display/page_display.h"
#include "gps/mark_manager.h"
#include "persist/serial_reader.h"
#include "persist/serial_writer.h"
#include "weather/page_default_weather.h"

namespace raincast {

QString CRaincastApp::problem() const {
    const auto* const page = dynamic_cast<const CPageDisplay*>(current());
    return page != nullptr ? page->statusText() : QString();
}

QString CRaincastApp::caption() const {
    const auto* const page = dynamic_cast<const CPageDisplay*>(current());
    return page != nullptr ? page->caption() : QString();
}

bool CRaincastApp::Read(CSerialReader& reader) {
    CMarkManager& marks = CMarkManager::instance();
    marks.clear(); // as the pages are: a file that is loaded again doubles nothing
    reader.readInto(&marks);
    const bool read = CAppPaged::Read(reader);
    reader.readInto(nullptr);
    return read;
}

bool CRaincastApp::Write(CSerialWriter& writer) const {
    const CMarkManager& marks = CMarkManager::instance();
    return CAppPaged::Write(writer) && (marks.marks().empty() || writer.writeObject(marks));
}

void CRaincastApp::createDefaultPages() {
    append(std::make_unique<CPageDefaultWeather>());
}

} // namespace raincast
