// SPDX-License-Identifier: MIT
#include "core/resource_module.h"

#include "core/program_paths.h"

#include <QResource>

namespace raincast {

namespace {

ResourceModule* moduleInUse = nullptr;

const QString kRoot = QStringLiteral("/Res");

} // namespace

ResourceModule::ResourceModule(const QString& folder)
    : m_file(folder + QStringLiteral("/Res.rcc")) {}

ResourceModule::~ResourceModule() {
    if (m_registered) {
        QResource::unregisterResource(m_file, kRoot);
    }
}

bool ResourceModule::provides(int identifier) {
    if (identifier >= kFirstIdentifier && !m_registered) {
        m_registered = QResource::registerResource(m_file, kRoot);
    }
    return identifier < kFirstIdentifier || m_registered;
}

QString ResourceModule::path(const QString& kind, int identifier) {
    const bool own = identifier < kFirstIdentifier;
    const auto root = own ? QStringLiteral(":/raincast/") : QStringLiteral(":/Res/");
    return root + kind + u'/' + QString::number(identifier);
}

ResourceModule& ResourceModule::current() {
    // Never destroyed: what it registered may be in use until the process ends.
    static auto* const own = new ResourceModule(programFolder());
    return moduleInUse != nullptr ? *moduleInUse : *own;
}

void ResourceModule::use(ResourceModule* module) {
    moduleInUse = module;
}

} // namespace raincast
