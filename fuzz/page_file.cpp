// SPDX-License-Identifier: MIT
// Page files of any bytes: loaded, saved, and loaded again, which must find all that was saved. A
// seed is a page file as it lies on disk. The classes are those that register themselves in the
// rooms that the target is linked with, and the samples of the tests.
#include "../tests/persist/sample_objects.h"
#include "map/mark_manager.h"

#include <QBuffer>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

using namespace raincast;

/// A page list that takes objects of every class, and marks.
class AnyApplication : public CSerializable {
public:
    ~AnyApplication() override { m_objects.deleteElements(); }

    bool Read(CSerialReader& reader) override {
        reader.readInto(&m_marks);
        const bool read = reader.readObjects<CSerializable>(
            CountKind::unsignedCount,
            [this](std::unique_ptr<CSerializable> object) { m_objects.push_back(object.release()); }
        );
        reader.readRest();
        reader.readInto(nullptr);
        return read;
    }
    bool Write(CSerialWriter& writer) const override {
        return writer.writeObjects(m_objects) &&
               (m_marks.marks().empty() || writer.writeObject(m_marks));
    }

private:
    CSerializableList m_objects;
    CMarkManager m_marks;
};

QByteArray saved(const CSerializable& application) {
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    CSerialWriter writer(file);
    if (!application.Write(writer) || !writer.finish()) {
        std::abort();
    }
    return file.data();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    AnyApplication application;
    CSerialReader reader({data, size});
    static_cast<void>(application.Read(reader));

    const QByteArray once = saved(application);
    AnyApplication again;
    CSerialReader savedReader(bytesOf(once));
    if (!again.Read(savedReader) || !savedReader.whole() || saved(again) != once) {
        std::abort();
    }
    return 0;
}
