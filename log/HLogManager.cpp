#include "log/HLogManager.h"

#include "log/Logger.h"

#include <map>
#include <vector>

class HLogManagerPrivate
{
public:
    std::map<QString, std::unique_ptr<Logger>> m_logs;
    // Replaced loggers stay alive until the manager goes, for the pointers handed out.
    std::vector<std::unique_ptr<Logger>> m_replaced;
};

namespace {

const QString defaultName = QStringLiteral("default");

} // namespace

HLogManager::HLogManager() : d(std::make_unique<HLogManagerPrivate>()) {}

HLogManager::~HLogManager()
{
    // std::map walks in key order; null entries are skipped by unique_ptr.
    for (auto &entry : d->m_logs)
        entry.second.reset();
    d->m_logs.clear();
    d->m_replaced.clear();
}

void HLogManager::set(const QString &first, const QString &name)
{
    const QString key = name.isEmpty() ? defaultName : name;
    auto created = std::make_unique<Logger>(first);
    std::unique_ptr<Logger> &slot = d->m_logs[key];
    if (slot)
        d->m_replaced.push_back(std::move(slot));
    slot = std::move(created);
}

Logger *HLogManager::getLog(const QString &name)
{
    if (name.isEmpty())
        return d->m_logs[defaultName].get();
    const auto found = d->m_logs.find(name);
    return found == d->m_logs.end() ? nullptr : found->second.get();
}

bool HLogManager::contains(const QString &name) const
{
    return d->m_logs.find(name) != d->m_logs.end();
}
