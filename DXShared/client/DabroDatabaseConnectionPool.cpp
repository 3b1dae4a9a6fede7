// SPDX-FileCopyrightText: 2026 The Dabro developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "client/DabroDatabaseConnectionPool.h"

#include "client/DXClientPool.h"
#include "dispatch/DXDispatch.h"

namespace
{

thread_local int exemptions = 0;

// Never destroyed: by the time static objects are, the driver's code may be gone.
DXClientPool &pool()
{
    static auto *const instance = new DXClientPool;
    return *instance;
}

} // namespace

bool DabroDatabaseConnectionPool::executeQuery(const Block &block,
                                               const DabroDBC &connectionDetails, DXError *error,
                                               const Options &options)
{
    Q_ASSERT_X(exemptions > 0 || !DXDispatch::isMainThread(), Q_FUNC_INFO,
               "never on the main thread without an exemption");
    return pool().executeQuery(block, connectionDetails, error, options);
}

void DabroDatabaseConnectionPool::adopt(const std::shared_ptr<DabroDatabaseClient> &client)
{
    pool().adopt(client);
}

void DabroDatabaseConnectionPool::disconnectAll(const DabroDBC &connectionDetails)
{
    pool().disconnectAll(connectionDetails);
}

void DabroDatabaseConnectionPool::shutdown()
{
    pool().shutdown();
}

DabroDatabaseConnectionPool::MainThreadExemption::MainThreadExemption()
{
    ++exemptions;
}

DabroDatabaseConnectionPool::MainThreadExemption::~MainThreadExemption()
{
    --exemptions;
}
