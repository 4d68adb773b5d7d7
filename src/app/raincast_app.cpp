// SPDX-License-Identifier: MIT
#include "app/raincast_app.h"

#include "page/page_display.h"
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
    m_marks.clear(); // as the pages are: a file that is loaded again doubles nothing
    reader.readInto(&m_marks);
    const bool read = CAppPaged::Read(reader);
    reader.readInto(nullptr);
    return read;
}

bool CRaincastApp::Write(CSerialWriter& writer) const {
    return CAppPaged::Write(writer) && (m_marks.marks().empty() || writer.writeObject(m_marks));
}

void CRaincastApp::createDefaultPages() {
    append(std::make_unique<CPageDefaultWeather>());
}

} // namespace raincast
