// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_descriptor.h"
#include "position/navigator/navigator_status.h"

#include <cstdint>
#include <span>

namespace raincast {

struct NavigatorLink;

/// One exchange with the navigator over a link: parameters are written to the shared
/// file, the request is sent, results are read from the file. The mutex is held from construction,
/// which waits for it without limit of time, to destruction: other clients wait meanwhile.
///
/// Numbers in the file are little-endian and follow one another without gaps. The first one written
/// empties the file, the first one read opens it from its beginning. There is one of each in a
/// transaction: a second round of writing or reading after a further Call fails.
///
/// Without the mutex, as when nothing is linked, the file is not touched and the navigator counts
/// as gone.
class CQV_transaction {
public:
    /// Borrows the link.
    explicit CQV_transaction(NavigatorLink& link);
    virtual ~CQV_transaction();
    CQV_transaction(const CQV_transaction&) = delete;
    CQV_transaction& operator=(const CQV_transaction&) = delete;

    /// Has the navigator handle the request and returns what it answers; kNavigatorGone when it has
    /// gone, or goes without an answer. Closes the file.
    [[nodiscard]] NavigatorStatus Call(std::uint32_t request);

    // Each of these moves exactly 4 or 8 bytes or returns kNavigatorFileFailed; a reader that fails
    // leaves its argument as it was.
    NavigatorStatus WriteUInt32(std::uint32_t value);
    NavigatorStatus WriteDouble(double value);
    [[nodiscard]] NavigatorStatus ReadUInt32(std::uint32_t& value);
    /// 4 bytes: true for any number but 0.
    [[nodiscard]] NavigatorStatus ReadBool(bool& value);
    [[nodiscard]] NavigatorStatus ReadDouble(double& value);
    /// 8 bytes: a double that is narrowed, and 0 for one that no float can hold.
    [[nodiscard]] NavigatorStatus ReadFloat(float& value);

private:
    template<class T>
    [[nodiscard]] NavigatorStatus writeValue(T value);
    template<class T>
    [[nodiscard]] NavigatorStatus readValue(T& value);
    [[nodiscard]] FileDescriptor openShared(int flags) const;
    [[nodiscard]] bool startWriting();
    [[nodiscard]] bool startReading();

    NavigatorLink& m_link;
    FileDescriptor m_file;
    bool m_hasMutex;
    bool m_openForWriting = false;
    bool m_openForReading = false;
};

} // namespace raincast
