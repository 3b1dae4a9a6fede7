// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "driver/PostgresDatabaseResultSet.h"

#include "client/DXRowStore.h"

#include <utility>

namespace
{

// pg_type.h; these never change.
enum TypeOid : quint32 {
    BoolOid = 16,
    ByteaOid = 17,
    Int8Oid = 20,
    Int2Oid = 21,
    Int4Oid = 23,
    OidOid = 26,
    NameOid = 19,
    TextOid = 25,
    NumericOid = 1700,
};

// Longer texts hardly come twice in turn.
constexpr qsizetype mostShared = 64;

} // namespace

PostgresDatabaseResultSet::PostgresDatabaseResultSet(
    const std::shared_ptr<PostgresConnectionHandle> &connection, DXError *error)
    : m_connection(connection)
{
    processFirstRow(error);
}

PostgresDatabaseResultSet::~PostgresDatabaseResultSet()
{
    if (m_isAtEnd || !m_connection->get())
        return;
    m_currentResult.reset();
    m_firstResult.reset();
    m_nextResultSetFirstResult.reset();
    while (receive(nullptr)) { }
}

QString PostgresDatabaseResultSet::sqlStateKey()
{
    return DXProductName(u"sqlState");
}

QString PostgresDatabaseResultSet::statementPositionKey()
{
    return DXProductName(u"statementPosition");
}

void PostgresDatabaseResultSet::processFirstRow(DXError *error)
{
    m_hasColumns = false;
    m_totalFields = 0;
    setShouldHaveRows(false);
    m_affectedRows = -1;
    m_commandTag.clear();
    if (next(error))
        m_firstResult = std::move(m_currentResult);
}

bool PostgresDatabaseResultSet::next(DXError *error)
{
    if (m_unreported)
        report(error, std::exchange(m_unreported, DXError()));
    if (m_nextResultSetFirstResult)
        return false;
    m_currentResult = std::move(m_firstResult);
    if (!m_currentResult && !m_isAtEnd)
        m_currentResult = receive(error);
    if (!m_hasColumns)
        takeColumns();

    switch (PQresultStatus(m_currentResult.get())) {
    case PGRES_SINGLE_TUPLE:
        setShouldHaveRows(true);
        return true;
    case PGRES_COMMAND_OK:
    case PGRES_TUPLES_OK:
    case PGRES_EMPTY_QUERY: {
        const QByteArrayView affected = PQcmdTuples(m_currentResult.get());
        m_affectedRows = affected.isEmpty() ? -1 : DXValue::leadingInteger(affected);
        m_commandTag = PQcmdStatus(m_currentResult.get());
        m_currentResult.reset();
        prepareNextResultSet();
        return false;
    }
    default:
        return fail(error);
    }
}

bool PostgresDatabaseResultSet::hasEndedTransaction() const
{
    return m_commandTag == "COMMIT" || m_commandTag == "ROLLBACK"
           || m_commandTag == "PREPARE TRANSACTION";
}

// A failed statement, or no result at all: the server runs nothing more of the text that was sent.
bool PostgresDatabaseResultSet::fail(DXError *error)
{
    if (m_isAtEnd)
        return false;
    QVariantMap details;
    if (const char *state = PQresultErrorField(m_currentResult.get(), PG_DIAG_SQLSTATE))
        details.insert(sqlStateKey(), QString::fromLatin1(state));
    if (const char *position =
            PQresultErrorField(m_currentResult.get(), PG_DIAG_STATEMENT_POSITION))
        details.insert(statementPositionKey(), DXValue::leadingInteger(position));
    // A pipeline forgets the connection's message when it goes on to its next statement.
    const QString ownMessage = QString::fromUtf8(PQresultErrorMessage(m_currentResult.get()));
    m_currentResult.reset();
    prepareNextResultSet();
    QString message = m_connection->errorMessage();
    if (message.isEmpty())
        message = ownMessage;
    if (!message.isEmpty())
        report(error, {QStringLiteral(""), 0, message, details});
    return false;
}

void PostgresDatabaseResultSet::prepareNextResultSet()
{
    m_nextResultSetFirstResult = receive(nullptr);
    m_isAtEnd = !m_nextResultSetFirstResult;
}

void PostgresDatabaseResultSet::report(DXError *slot, const DXError &error)
{
    if (!slot)
        m_unreported = error;
    else if (slot->isEmpty())
        *slot = error;
}

bool PostgresDatabaseResultSet::nextResultSet(DXError *error)
{
    setColumnNames({});
    setColumnTypes({});
    if (!m_nextResultSetFirstResult)
        return false;
    m_firstResult = std::move(m_nextResultSetFirstResult);
    processFirstRow(error);
    return true;
}

// libpq's next result. COPY would leave the connection in a state in which it yields the same
// result for ever: it is ended here, before anybody sees it.
PGresultPointer PostgresDatabaseResultSet::receive(DXError *error)
{
    PGresultPointer result(PQgetResult(m_connection->get()));
    for (;;) {
        switch (PQresultStatus(result.get())) {
        case PGRES_COPY_IN:
        case PGRES_COPY_BOTH:
            result = refuseCopyIn(std::move(result));
            break;
        case PGRES_COPY_OUT:
            return discardCopyOut(std::move(result), error);
        default:
            return result;
        }
    }
}

PGresultPointer PostgresDatabaseResultSet::refuseCopyIn(PGresultPointer result)
{
    result.reset();
    PQputCopyEnd(
        m_connection->get(),
        "there is no data to read here; import the file, or use COPY ... FROM a file on the "
        "server");
    return PGresultPointer(PQgetResult(m_connection->get()));
}

PGresultPointer PostgresDatabaseResultSet::discardCopyOut(PGresultPointer result, DXError *error)
{
    result.reset();
    char *row = nullptr;
    while (PQgetCopyData(m_connection->get(), &row, 0) > 0)
        PQfreemem(row);
    result.reset(PQgetResult(m_connection->get()));
    if (PQresultStatus(result.get()) == PGRES_COMMAND_OK)
        report(error, {QStringLiteral(""), 0,
                       QStringLiteral(
                           "The rows of COPY ... TO STDOUT were read and dropped: they cannot be "
                           "shown here. Run the query itself, or use COPY ... TO a file on the "
                           "server.")});
    return result;
}

void PostgresDatabaseResultSet::takeColumns()
{
    const PGresult *const result = m_currentResult.get();
    if (!result)
        return;
    const int count = PQnfields(result);
    QStringList names;
    QList<quint32> types;
    names.reserve(count);
    types.reserve(count);
    for (int column = 0; column < count; ++column) {
        const char *const name = PQfname(result, column);
        names.append(name && *name ? QString::fromUtf8(name) : QStringLiteral("nil"));
        types.append(PQftype(result, column));
    }
    m_totalFields = static_cast<quint32>(count);
    m_lastTexts.assign(m_totalFields, LastText());
    setColumnNames(names);
    setColumnTypes(types);
    m_hasColumns = true;
}

DXValue PostgresDatabaseResultSet::objectForColumnIndex(quint32 index) const
{
    const PGresult *const result = m_currentResult.get();
    const auto column = static_cast<int>(index);
    if (!result || index >= m_totalFields || PQgetisnull(result, 0, column))
        return {};
    const QByteArrayView bytes(PQgetvalue(result, 0, column), PQgetlength(result, 0, column));
    const quint32 type = PQftype(result, column);
    const bool isShared = (type == NameOid || type == TextOid) && bytes.size() <= mostShared;
    return isShared ? sharedText(index, bytes) : valueFromCell(type, bytes);
}

DXValue PostgresDatabaseResultSet::sharedText(quint32 index, QByteArrayView bytes) const
{
    LastText &last = m_lastTexts[index];
    if (!last.value.isNull() && bytes == QByteArrayView(last.bytes))
        return last.value;
    last.value = valueFromCell(TextOid, bytes);
    last.bytes.assign(bytes.data(), static_cast<std::size_t>(bytes.size()));
    return last.value;
}

DXValue PostgresDatabaseResultSet::valueFromCell(quint32 typeOid, QByteArrayView bytes)
{
    switch (typeOid) {
    case BoolOid:
        if (bytes == "t")
            return QStringLiteral("True");
        if (bytes == "f")
            return QStringLiteral("False");
        break;
    case ByteaOid:
        return bytes.toByteArray();
    case Int8Oid:
    case Int2Oid:
    case Int4Oid:
    case OidOid:
        return DXValue::leadingInteger(bytes);
    case NumericOid:
        if (const auto decimal = DXDecimal::fromString(bytes))
            return *decimal;
        break;
    default:
        break;
    }
    if (!bytes.isValidUtf8())
        return {};
    return bytes.isEmpty() ? QStringLiteral("") : QString::fromUtf8(bytes);
}

void PostgresDatabaseResultSet::appendCurrentRow(DXRowStore &store) const
{
    const PGresult *const result = m_currentResult.get();
    store.appendRow([result](quint32 index) {
        const auto column = static_cast<int>(index);
        const int length = PQgetlength(result, 0, column);
        // libpq gives NULL no bytes, so most cells need no second question.
        if (length == 0 && PQgetisnull(result, 0, column))
            return DXRowStore::Cell{};
        return DXRowStore::Cell{PQgetvalue(result, 0, column), length};
    });
}
