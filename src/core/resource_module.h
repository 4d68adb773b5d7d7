// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace raincast {

/// The file "Res.rcc" that holds the resources numbered 5000 and above. Those below 5000 are
/// compiled into the program.
///
/// The file is registered on first need and stays registered for the life of this object. While it
/// cannot be registered, every request tries again.
class ResourceModule {
public:
    static constexpr int kFirstIdentifier = 5000;

    /// The module in `folder`; nothing is read yet.
    explicit ResourceModule(const QString& folder);
    ~ResourceModule();
    ResourceModule(const ResourceModule&) = delete;
    ResourceModule& operator=(const ResourceModule&) = delete;

    /// Whether the resource's holder is there: always for identifiers below 5000, for the others
    /// when "Res.rcc" is or can now be registered.
    [[nodiscard]] bool provides(int identifier);

    /// The path of a resource for QFile, QImage and their like: of the program's own resources
    /// (":/raincast/KIND/NUMBER") or of this module (":/Res/KIND/NUMBER"). It says nothing about
    /// whether the resource exists.
    [[nodiscard]] static QString path(const QString& kind, int identifier);

    /// The module in use: the one beside the program until another one is set.
    [[nodiscard]] static ResourceModule& current();

    /// Puts a module in use; null puts the program's own back. Borrowed: it must outlive its use.
    static void use(ResourceModule* module);

private:
    QString m_file;
    bool m_registered = false;
};

} // namespace raincast
