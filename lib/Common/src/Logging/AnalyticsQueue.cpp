#include "Common/Logging/AnalyticsQueue.h"

#include "Common/Logging/AnalyticsMessage.h"

namespace Common::Analytics {

namespace {

constexpr qint32 largestWaiting = 200'000;

} // namespace

void Queue::append(const QVariantMap& message)
{
    m_messages.append(message);
    m_bytes += sizeOf(message);
}

bool Queue::isOverfull() const
{
    return m_bytes > largestWaiting;
}

void Queue::clear()
{
    m_messages.clear();
    m_bytes = 0;
}

} // namespace Common::Analytics
