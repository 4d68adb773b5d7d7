// SPDX-License-Identifier: MIT
#pragma once

#include "core/listener.h"
#include "position/nmea/nmea_sentence.h"

#include <memory>
#include <string_view>

namespace raincast {

/// A kind of sentence that is understood. Each kind has one static object, which stands in the
/// list of kinds from its construction to its end: a new kind is a record class with its Type, and
/// nothing else changes.
class CNMEASentenceType {
public:
    virtual ~CNMEASentenceType();

    /// A fresh record of this kind, all zero.
    [[nodiscard]] virtual std::unique_ptr<CNMEASentence> Create() const = 0;

    /// Parses a sentence of this kind (see CNMEASentence::Parse) and publishes the record.
    virtual void receive(std::string_view text) const = 0;

    /// The three letters after the talker's two, "RMC".
    [[nodiscard]] std::string_view name() const { return m_name; }

    /// The kind of that name, the one constructed last if there are several; null without one.
    [[nodiscard]] static const CNMEASentenceType* find(std::string_view name);

    CNMEASentenceType(const CNMEASentenceType&) = delete;
    CNMEASentenceType& operator=(const CNMEASentenceType&) = delete;

protected:
    /// The name must be a literal.
    explicit CNMEASentenceType(std::string_view name);

private:
    static inline CNMEASentenceType* s_first = nullptr;
    CNMEASentenceType* m_next;
    std::string_view m_name;
};

/// What the types of all records share. Records are published from the stack: receivers send for
/// as long as the program runs.
template<class Record>
class NmeaSentenceTypeOf : public CNMEASentenceType {
public:
    using CNMEASentenceType::CNMEASentenceType;

    [[nodiscard]] std::unique_ptr<CNMEASentence> Create() const override {
        return std::make_unique<Record>(*this);
    }

    void receive(std::string_view text) const override {
        Record record(*this);
        record.Parse(text);
        Listener<Record>::Notify(record);
    }
};

} // namespace raincast
