#pragma once

#include <QVariantList>
#include <QVariantMap>

namespace Common::Analytics {

/// The messages that wait for the next post, in their order, and how large they are together. One
/// thread.
class Queue
{
public:
    void append(const QVariantMap& message);

    /// Whether so much waits (more than 200,000 bytes of compact JSON) that it has to go at once.
    bool isOverfull() const;

    bool isEmpty() const { return m_messages.isEmpty(); }
    const QVariantList& messages() const { return m_messages; }
    void clear();

private:
    QVariantList m_messages;
    qint32 m_bytes = 0;
};

} // namespace Common::Analytics
