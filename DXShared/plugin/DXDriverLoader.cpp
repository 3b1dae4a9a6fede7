// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "plugin/DXDriverLoader.h"

#include "plugin/DXDriverPlugin.h"
#include "plugin/DXElfFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QPluginLoader>

#include <algorithm>
#include <cstdlib>
#include <exception>

namespace
{

#ifdef QT_NO_DEBUG
constexpr bool hostIsDebugBuild = false;
#else
constexpr bool hostIsDebugBuild = true;
#endif

QStringList environmentFolders()
{
    const QString list = QFile::decodeName(secure_getenv("DABRO_DRIVER_PATH"));
    QStringList folders = list.split(QLatin1Char(':'), Qt::SkipEmptyParts);
    folders.removeIf([](const QString &folder) { return QDir::isRelativePath(folder); });
    return folders;
}

/// The loading of one list of folders.
class Run
{
public:
    void loadFolder(const QString &folder);

    DXDriverLoader::Report report;

private:
    void loadFile(const QFileInfo &file);
    std::optional<DXDriverMetadata> acceptableMetadata(const QPluginLoader &loader,
                                                       const QString &path);
    QString mismatch(const QJsonObject &description) const;
    void refuse(const QString &path, const QString &reason);

    QStringList m_seenFolders;
};

void Run::refuse(const QString &path, const QString &reason)
{
    report.refusals.append({path, reason});
}

void Run::loadFolder(const QString &folder)
{
    const QFileInfo info(folder);
    const QString canonical = info.canonicalFilePath();
    if (!info.isDir() || m_seenFolders.contains(canonical))
        return;
    m_seenFolders.append(canonical);
    if (info.permission(QFile::WriteOther) && !environmentFolders().contains(folder)) {
        refuse(folder, QStringLiteral("Everybody may write to this folder, so its drivers are not "
                                      "trusted: take that right away."));
        return;
    }
    // "System" brings dangling links, too, which are told of.
    const QFileInfoList files = QDir(canonical).entryInfoList(
        {QStringLiteral("*.so")}, QDir::Files | QDir::System, QDir::Name);
    for (const QFileInfo &file : files)
        loadFile(file);
}

void Run::loadFile(const QFileInfo &file)
{
    const QString path = file.filePath();
    if (const QString fault = DXElfFile::faultOf(path); !fault.isEmpty()) {
        refuse(path, fault);
        return;
    }
    QPluginLoader loader(path);
    // Every symbol is found now, or the file is refused: not in the middle of some later call.
    loader.setLoadHints(QLibrary::ResolveAllSymbolsHint | QLibrary::PreventUnloadHint);
    const auto metadata = acceptableMetadata(loader, path);
    if (!metadata)
        return;
    try {
        if (auto *plugin = qobject_cast<DXDriverPlugin *>(loader.instance()))
            report.drivers.append({*metadata, path, plugin});
        else
            refuse(path, loader.isLoaded()
                             ? QStringLiteral("It holds no driver, though it says that it does.")
                             : loader.errorString());
    } catch (const std::exception &failure) {
        refuse(path, QStringLiteral("It failed when it was started: %1")
                         .arg(QString::fromLocal8Bit(failure.what())));
    }
}

std::optional<DXDriverMetadata> Run::acceptableMetadata(const QPluginLoader &loader,
                                                        const QString &path)
{
    const QJsonObject description = loader.metaData();
    if (description.isEmpty()) {
        refuse(path, QStringLiteral("It is no plugin: %1").arg(loader.errorString()));
        return std::nullopt;
    }
    if (const QString reason = mismatch(description); !reason.isEmpty()) {
        refuse(path, reason);
        return std::nullopt;
    }
    DXError error;
    auto metadata =
        DXDriverMetadata::fromJson(description.value(QLatin1String("MetaData")).toObject(), &error);
    if (!metadata) {
        refuse(path, error.description());
        return std::nullopt;
    }
    const auto same =
        std::ranges::find(report.drivers, metadata->identifier,
                          [](const auto &driver) { return driver.metadata.identifier; });
    if (same != report.drivers.cend()) {
        refuse(path, QStringLiteral("Its driver \"%1\" was loaded from %2 already.")
                         .arg(metadata->identifier, same->path));
        return std::nullopt;
    }
    return metadata;
}

QString Run::mismatch(const QJsonObject &description) const
{
    const QString interface = description.value(QLatin1String("IID")).toString();
    if (interface != QLatin1String(DXDriverPlugin_iid))
        return QStringLiteral("It is a plugin of another kind (\"%1\"), not a driver.")
            .arg(interface);
    if (description.value(QLatin1String("debug")).toBool() != hostIsDebugBuild)
        return hostIsDebugBuild
                   ? QStringLiteral("It is a release build, and this program is a debug build.")
                   : QStringLiteral("It is a debug build, and this program is a release build.");
    const int version = description.value(QLatin1String("MetaData"))
                            .toObject()
                            .value(QLatin1String("interfaceVersion"))
                            .toInt();
    if (version <= 0 || version == DXDriverMetadata::hostInterfaceVersion)
        return {};
    const QString text = QStringLiteral("It was built for version %1 of the driver interface, and "
                                        "this program has version %2: %3.");
    return text.arg(QString::number(version),
                    QString::number(DXDriverMetadata::hostInterfaceVersion),
                    version < DXDriverMetadata::hostInterfaceVersion
                        ? QStringLiteral("install a newer driver")
                        : QStringLiteral("install a newer program"));
}

} // namespace

const DXDriverLoader::Driver *DXDriverLoader::Report::driverForScheme(const QString &scheme) const
{
    const auto found = std::ranges::find_if(drivers, [&scheme](const Driver &driver) {
        return driver.metadata.schemes.contains(scheme, Qt::CaseInsensitive);
    });
    return found == drivers.cend() ? nullptr : &*found;
}

QStringList DXDriverLoader::searchPath()
{
    const QDir program(QCoreApplication::applicationDirPath());
    QStringList folders = environmentFolders();
    folders.append(QDir::cleanPath(program.filePath(QStringLiteral("../lib/drivers"))));
    folders.append(
        QDir::cleanPath(program.filePath(QStringLiteral(DX_DRIVER_FOLDER_FROM_PROGRAM))));
    return folders;
}

DXDriverLoader::Report DXDriverLoader::load(const QStringList &folders)
{
    Run run;
    for (const QString &folder : folders)
        run.loadFolder(folder);
    return run.report;
}
