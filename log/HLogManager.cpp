#include "log/HLogManager.h"

#include "log/Logger.h"

namespace {

const QString defaultName = QStringLiteral("default");

} // namespace

HLogManager::HLogManager() = default;

HLogManager::~HLogManager()
{
    // std::map walks in key order; null entries are skipped by unique_ptr.
    for (auto &entry : m_logs)
        entry.second.reset();
    m_logs.clear();
    m_replaced.clear();
}

void HLogManager::set(const QString &first, const QString &name)
{
    const QString key = name.isEmpty() ? defaultName : name;
    auto created = std::make_unique<Logger>(first);
    std::unique_ptr<Logger> &slot = m_logs[key];
    if (slot)
        m_replaced.push_back(std::move(slot));
    slot = std::move(created);
}

Logger *HLogManager::getLog(const QString &name)
{
    if (name.isEmpty())
        return m_logs[defaultName].get();
    const auto found = m_logs.find(name);
    return found == m_logs.end() ? nullptr : found->second.get();
}

bool HLogManager::contains(const QString &name) const
{
    return m_logs.find(name) != m_logs.end();
}
