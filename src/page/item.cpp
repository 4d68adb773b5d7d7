// SPDX-License-Identifier: MIT
#include "page/item.h"

#include "persist/record_reader.h"
#include "persist/record_writer.h"
#include "window/commands.h"
#include "window/window.h"

#include <cstdlib>

namespace raincast {

CPageDisplay::CItem::~CItem() = default;

bool CPageDisplay::CItem::Read(CSerialReader& reader) {
    CRecordReader record(reader);
    auto bytes = m_placement.toBytes();
    record.bytes(bytes);
    record.end();
    m_placement.fromBytes(bytes);
    return true;
}

bool CPageDisplay::CItem::Write(CSerialWriter& writer) const {
    CRecordWriter record(writer);
    record.bytes(m_placement.toBytes());
    return record.end();
}

QRect CPageDisplay::CItem::opaqueArea() const {
    return {};
}

void CPageDisplay::CItem::windowCreated() {}

void CPageDisplay::CItem::coveredTopChanged(int /*before*/) {}

void CPageDisplay::CItem::setRectangle(const PageRectangle& rectangle) {
    m_placement.rectangle = rectangle;
    if (m_page != nullptr && !m_page->deviceSize().isEmpty()) {
        m_placement.anchorTo(m_page->deviceSize());
    }
    invalidate();
}

bool CPageDisplay::CItem::command(int /*id*/, int /*notification*/) {
    return false;
}

bool CPageDisplay::CItem::keyDown(int /*key*/) {
    return false;
}

bool CPageDisplay::CItem::character(char16_t /*unit*/) {
    return false;
}

bool CPageDisplay::CItem::stylusDown(int /*x*/, int /*y*/, Qt::KeyboardModifiers /*keys*/) {
    return false;
}

void CPageDisplay::CItem::stylusMove(int /*x*/, int /*y*/) {}
void CPageDisplay::CItem::stylusUp(int /*x*/, int /*y*/) {}
void CPageDisplay::CItem::stylusLost() {}

bool CPageDisplay::CItem::doublePress(int /*x*/, int /*y*/) {
    return false;
}

bool CPageDisplay::CItem::zoom(int steps, int /*x*/, int /*y*/) {
    bool taken = false;
    for (int step = 0; step < std::abs(steps); ++step) {
        taken = command(steps > 0 ? kZoomIn : kZoomOut, clicked);
    }
    return taken;
}

void CPageDisplay::CItem::pointerMoved(int /*x*/, int /*y*/) {}
void CPageDisplay::CItem::pointerRested(int /*x*/, int /*y*/) {}
void CPageDisplay::CItem::pointerLeft() {}

QString CPageDisplay::CItem::contextHeading(int /*x*/, int /*y*/) const {
    return {};
}

std::span<const MenuRow> CPageDisplay::CItem::contextMenu(int /*x*/, int /*y*/) {
    return {};
}

QString CPageDisplay::CItem::statusText() const {
    return {};
}

QString CPageDisplay::CItem::caption() const {
    return {};
}

void CPageDisplay::CItem::menuPopUp(QMenu& /*menu*/) {}

void CPageDisplay::CItem::setDecoration(const ItemPlacement& decoration) {
    m_placement.fillColour = decoration.fillColour;
    m_placement.edgeStyle = decoration.edgeStyle;
    m_placement.frameWidth = decoration.frameWidth;
    m_placement.clip = decoration.clip;
    invalidate();
}

// setRectangle() would read new anchors off the place: an item that merely happens to end at the
// page's edge during one of several changes of size would stick to it from then on.
void CPageDisplay::CItem::followPageSize() {
    const ItemPlacement before = m_placement;
    const PageRectangle wanted = before.anchoredOn(m_page->deviceSize());
    if (wanted != before.rectangle) {
        setRectangle(wanted);
        m_placement.hAnchor = before.hAnchor;
        m_placement.vAnchor = before.vAnchor;
    }
}

void CPageDisplay::CItem::attachTo(CPageDisplay& page) {
    m_page = &page;
    page.addMenu(m_menuId);
}

void CPageDisplay::CItem::invalidate() {
    if (m_page != nullptr) {
        m_page->invalidate();
    }
}

void CPageDisplay::CItem::invalidate(const QRect& part) {
    if (m_page != nullptr) {
        m_page->invalidate(part);
    }
}

void CPageDisplay::CItem::refresh() {
    if (m_page != nullptr) {
        m_page->refresh();
    }
}

} // namespace raincast
