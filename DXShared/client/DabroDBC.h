// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "client/ssh/DXSSHTunnelModel.h"
#include "core/DXGlobal.h"

#include <QCborMap>
#include <QMap>
#include <QString>
#include <QStringList>

#include <memory>
#include <typeinfo>

class DXAutocompleteHelper;
class DXConnectionWindowController;
class DXDatabaseImportHelper;
class DXDatabaseTreeContextHelper;
class DXDatabaseTreeViewController;
class DXEditRowHelper;
class DXQueryPreviewViewController;
class DXQuerySplitter;
class DXScriptCatalogue;
class DXTableDesignerViewController;
class DabroDatabaseClient;
class DatabaseTreeEntryServerRoot;
class ResultSetViewControllerHelper;
class SQLMetadataTokenizerOptions;
class SQLRecentConnectionList;

/// One connection as the user described it, and the factory of everything that a driver offers for
/// it: the only class of a driver that the host knows. A plain record: it may cross threads as long
/// as nobody changes it meanwhile; clients hold copies.
///
/// A `create…` operation that a driver does not override answers nothing: the driver does not offer
/// that capability, and the host leaves its commands disabled.
class DXSHARED_EXPORT DabroDBC
{
public:
    virtual ~DabroDBC();

    /// The identity of the saved connection; null for one that was never saved.
    QString connectionId() const { return m_connectionId; }
    void setConnectionId(const QString &connectionId) { m_connectionId = connectionId; }
    /// The user's name for the connection.
    QString alias() const { return m_alias; }
    void setAlias(const QString &alias) { m_alias = alias; }
    QString username() const { return m_username; }
    void setUsername(const QString &username) { m_username = username; }
    /// May be absent (null). Never logged, and written nowhere but to the secret store.
    QString password() const { return m_password; }
    void setPassword(const QString &password) { m_password = password; }
    /// A name, an address, or the folder of a Unix socket.
    QString host() const { return m_host; }
    void setHost(const QString &host) { m_host = host; }
    /// The database to open; absent or empty for the server's own choice.
    QString database() const { return m_database; }
    void setDatabase(const QString &database) { m_database = database; }
    /// The TCP port; 0 when not given.
    quint16 port() const { return m_port; }
    void setPort(quint16 port) { m_port = port; }
    /// Settings applied to each new session, by name.
    QMap<QString, QString> connectionSessionPreferences() const { return m_sessionPreferences; }
    void setConnectionSessionPreferences(const QMap<QString, QString> &preferences)
    {
        m_sessionPreferences = preferences;
    }
    /// The tunnel to connect through; nothing when none is used.
    std::shared_ptr<DXSSHTunnelModel> sshTunnelModel() const { return m_sshTunnelModel; }
    void setSshTunnelModel(const std::shared_ptr<DXSSHTunnelModel> &model)
    {
        m_sshTunnelModel = model;
    }

    /// A deep copy: changing it never reaches this record.
    virtual std::shared_ptr<DabroDBC> copy() const = 0;
    /// User, host, port and database in one line, without the password.
    virtual QString description() const = 0;
    /// Whether both describe the same login on the same server; the driver tells what counts.
    virtual bool isEqualToDatabaseConnectionDetails(const DabroDBC &other) const = 0;
    /// Everything that makes a session on the server what it is, as one opaque key, the password
    /// included only as a salted hash: connections are shared only between records with equal keys.
    virtual QByteArray sessionKey() const;

    /// The driver's saved connections, which live as long as the program; nothing when it keeps
    /// none. The caller needs "client/SQLRecentConnectionList.h". [main]
    virtual SQLRecentConnectionList *recentConnectionClass() const { return nullptr; }
    /// The class of the clients that createNewClient() makes.
    virtual const std::type_info &databaseClientClass() const = 0;
    /// A new, unconnected client that holds a copy of this record.
    virtual std::unique_ptr<DabroDatabaseClient> createNewClient() const = 0;
    /// How this driver's SQL is read; the caller needs "query/SQLMetadataTokenizerOptions.h".
    virtual std::unique_ptr<SQLMetadataTokenizerOptions> createPreParserOptions() const = 0;
    /// Splits an editor's text into statements; the caller needs "query/DXQuerySplitter.h".
    virtual std::unique_ptr<DXQuerySplitter> createQuerySplitter() const = 0;
    /// The driver's scripts by name; the caller needs "query/DXScriptCatalogue.h".
    virtual std::shared_ptr<DXScriptCatalogue> createScriptCatalogue() const { return {}; }

    /// The root of this connection's catalogue tree, for the host to give a delegate, a context
    /// helper and connection details; the caller needs "tree/DatabaseTreeEntryServerRoot.h".
    virtual std::shared_ptr<DatabaseTreeEntryServerRoot> createRootDatabaseTreeNode() const
    {
        return {};
    }
    /// What carries out the actions on the tree that controller shows, which outlives it; the
    /// caller needs "tree/DXDatabaseTreeContextHelper.h".
    virtual std::shared_ptr<DXDatabaseTreeContextHelper>
    createDatabaseTreeContextHelper(DXDatabaseTreeViewController &controller) const
    {
        Q_UNUSED(controller)
        return {};
    }

    /// What edits one row of a table; the caller needs "editing/DXEditRowHelper.h".
    virtual std::shared_ptr<DXEditRowHelper> createEditRowHelper() const { return {}; }
    /// What the grid of one query asks; the caller needs "editing/ResultSetViewControllerHelper.h".
    virtual std::shared_ptr<ResultSetViewControllerHelper>
    createResultSetViewControllerHelper() const
    {
        return {};
    }
    /// What the import of files asks; the caller needs "editing/DXDatabaseImportHelper.h".
    virtual std::shared_ptr<DXDatabaseImportHelper> createDatabaseImportHelper() const
    {
        return {};
    }
    /// The names that editors complete, for all connections of the driver; the caller needs
    /// "editing/DXAutocompleteHelper.h".
    virtual std::shared_ptr<DXAutocompleteHelper> sharedAutocompleteHelper() const { return {}; }
    /// The sheet that shows a script and runs it on this connection once the user accepts, for the
    /// caller to set up, who needs "ui/query/DXQueryPreviewViewController.h". [main]
    virtual std::shared_ptr<DXQueryPreviewViewController> createQueryPreviewViewContoller() const
    {
        return {};
    }
    /// The tab that designs a table. [main]
    virtual std::shared_ptr<DXTableDesignerViewController> createTableDesignerViewController() const
    {
        return {};
    }
    /// The dialog that edits this record. [main]
    virtual std::shared_ptr<DXConnectionWindowController> createConnectionWindowController() const
    {
        return {};
    }

    /// Words for highlighting and completion, each sorted and without duplicates.
    virtual QStringList sqlKeywords() const = 0;
    virtual QStringList sqlFunctions() const = 0;
    virtual QStringList functionsAndKeywords() const = 0;

    /// Writes this record into archive, for the secret store only: the password is in it.
    virtual void encode(QCborMap &archive) const;
    /// Reads what encode() wrote; what is missing or of another kind stays as it is.
    virtual void decode(const QCborMap &archive);

protected:
    DabroDBC() = default;
    /// Copies the fields, and the tunnel model as a record of its own.
    DabroDBC(const DabroDBC &other);
    DabroDBC &operator=(const DabroDBC &) = delete;

private:
    QString m_connectionId;
    QString m_alias;
    QString m_username;
    QString m_password;
    QString m_host;
    QString m_database;
    quint16 m_port = 0;
    QMap<QString, QString> m_sessionPreferences;
    std::shared_ptr<DXSSHTunnelModel> m_sshTunnelModel;
};
